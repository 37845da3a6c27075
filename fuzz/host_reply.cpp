// SPDX-License-Identifier: MIT
// What a speaker's host says on the link: replies to queries, flow marks, and the answer on the AT channel.
// The first byte of an input is the size of the parts that the rest arrives in, 0 for all at once.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "control/serial_wifi.h"
#include "fuzz/memory_socket.h"
#include "fuzz/require.h"
#include "fuzz/start_up.h"

namespace
{
constexpr int parts_max = 24;
constexpr int read_size = 100; // bytes that one read of the link keeps
constexpr int payload_offset = 5;

// A long reply comes in larger parts than asked for, to keep the run short.
QByteArrayList in_parts(const QByteArray &bytes, int size)
{
    if (size == 0)
        return {bytes};
    size = std::max(size, bytes.size() / parts_max);
    QByteArrayList parts;
    for (int at = 0; at < bytes.size(); at += size)
        parts.append(bytes.mid(at, size));
    return parts;
}

struct Answer {
    int status;
    QByteArray payload; // up to its carriage return
};

class Link
{
public:
    // Nobody listens there, so the link comes up without a connection.
    Link()
        : link("127.0.0.0", "fuzz", 57600, 8, 0, 1)
    {
        link.connected = true;
    }

    Answer ask(const QByteArrayList &parts)
    {
        plug(link.host_socket, parts);
        char reply[serial_wifi::reply_size] = {};
        const int status = link.host_query("vo", "", reply);
        require(std::memchr(reply, 0, sizeof reply), "the payload ends within the caller's buffer");
        const QByteArray payload(reply);
        return {status, payload.left(payload.indexOf('\r'))};
    }

    void ask_for_number(const QByteArrayList &parts)
    {
        plug(link.host_socket, parts);
        link.host_query_int("vo");
    }

    bool xon_after(const QByteArray &marks)
    {
        link.xon = false;
        plug(link.host_socket, {marks});
        link.readReady();
        return link.xon;
    }

    void ask_at_channel(const QByteArrayList &parts)
    {
        plug(link.at_socket, parts);
        link.query_uart();
    }

private:
    static void plug(QTcpSocket *&socket, const QByteArrayList &parts)
    {
        delete socket;
        socket = new Memory_Socket(parts);
    }

    serial_wifi link;
};
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    static auto *const link = new Link;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    const QByteArrayList parts = in_parts(bytes, data[0]);

    const Answer answer = link->ask(parts);
    // What one read drops, and what stands behind the carriage return, depends on the way it arrives.
    if (bytes.size() <= read_size && bytes.indexOf('\r') >= payload_offset) {
        const Answer byte_by_byte = link->ask(in_parts(bytes, 1));
        require(answer.status == byte_by_byte.status, "the status is the same however it arrives");
        require(answer.payload == byte_by_byte.payload, "the payload is the same however it arrives");
    }
    link->ask_for_number(parts);
    link->ask_at_channel(parts);
    require(link->xon_after(bytes) == (bytes.lastIndexOf('!') > bytes.lastIndexOf('?')),
            "the last mark decides");
    return 0;
}
