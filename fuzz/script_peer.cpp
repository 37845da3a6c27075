// SPDX-License-Identifier: MIT
#include "fuzz/script_peer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "fuzz/require.h"

namespace
{
constexpr quint16 host_port = 8990;
constexpr quint16 at_port = 8991;
constexpr int read_size = 100; // bytes that one read of a link keeps
constexpr char empty_reply[] = "RZ#00\r";

int listen_on(const QString &address, quint16 port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    inet_pton(AF_INET, qPrintable(address), &name.sin_addr);
    require(bind(listener, reinterpret_cast<sockaddr *>(&name), sizeof name) == 0, "the address is free");
    require(listen(listener, 16) == 0, "the peer listens");
    return listener;
}

// A link that has such a reply asks for no more of it.
bool ends_by_itself(const QByteArray &reply)
{
    return reply.size() <= read_size && reply.contains('\r');
}
} // namespace

Script_Peer::Script_Peer(const QString &address)
    : at_listener(listen_on(address, at_port))
    , host_listener(listen_on(address, host_port))
    , thread(&Script_Peer::serve, this)
{
}

void Script_Peer::set_script(const QByteArrayList &replies)
{
    const std::lock_guard<std::mutex> lock(mutex);
    script = replies;
}

QByteArray Script_Peer::next_reply()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return script.isEmpty() ? QByteArray(empty_reply) : script.takeFirst();
}

void Script_Peer::serve()
{
    for (;;) {
        std::vector<pollfd> wanted = {{at_listener, POLLIN, 0}, {host_listener, POLLIN, 0}};
        for (const Connection &connection : connections)
            wanted.push_back({connection.socket, POLLIN, 0});
        poll(wanted.data(), wanted.size(), -1);

        std::vector<Connection> alive;
        for (size_t i = 0; i < connections.size(); ++i)
            if (wanted[i + 2].revents == 0 || serve_connection(connections[i]))
                alive.push_back(connections[i]);
        connections = alive;
        if (wanted[0].revents)
            take_connection(at_listener, false);
        if (wanted[1].revents)
            take_connection(host_listener, true);
    }
}

void Script_Peer::take_connection(int listener, bool host)
{
    const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket >= 0)
        connections.push_back({socket, host});
}

bool Script_Peer::serve_connection(const Connection &connection)
{
    char asked[1000];
    const ssize_t count = recv(connection.socket, asked, sizeof asked, 0);
    bool goes_on = count > 0;
    if (goes_on && connection.host) {
        const QByteArray reply = next_reply();
        send(connection.socket, reply.constData(), static_cast<size_t>(reply.size()), MSG_NOSIGNAL);
        goes_on = ends_by_itself(reply);
    }
    if (!goes_on)
        close(connection.socket);
    return goes_on;
}
