// SPDX-License-Identifier: MIT
//
// How long a move of the volume slider takes to reach the speaker: from set_volume on an idle worker to the
// moment when the virtual speaker has read the frame, beside a bare blocking socket that writes the same
// frame to the same speaker, in turns, so that both see the same load of the machine. Wished for: a median
// under 1 ms and under twice that of the bare socket.
//
//   build/release/bench/bench_slider_to_wire
//
// takes some 70 s, since a worker is idle only 150 ms after a command, and the bare socket gets the same
// rest.
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QThread>
#include <arpa/inet.h>
#include <functional>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "bench/tools/child_process.h"
#include "bench/tools/table.h"
#include "control/virelo_air.h"
#include "simulator/loopback.h"
#include "simulator/monotonic.h"
#include "simulator/virtual_speaker.h"

namespace
{
constexpr int rounds = 200;
constexpr int rest_ms = 170; // the worker sleeps for 150 ms behind each command

int connect_bare(const QString &address, quint16 port)
{
    sockaddr_in peer = {};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    inet_pton(AF_INET, qPrintable(address), &peer.sin_addr);
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    if (descriptor < 0 || connect(descriptor, reinterpret_cast<sockaddr *>(&peer), sizeof peer) != 0)
        give_up("the bare socket cannot connect");
    return descriptor;
}

// The frame of a volume, as both sides must put it on the wire.
QByteArray volume_frame(int volume)
{
    return "RZ!vo" + QByteArray::number(volume).rightJustified(3, '0') + '\n';
}

// Microseconds from the call of `send` until the speaker has read the frame.
qint64 time_to_wire(Virtual_Speaker &speaker, const QByteArray &frame, const std::function<void()> &send)
{
    QThread::msleep(rest_ms);
    speaker.clear_record();
    const qint64 begin = monotonic_us();
    send();
    if (!speaker.wait_for_host_line(frame))
        give_up("a frame did not arrive");
    return speaker.timed_host_lines().first().us - begin;
}

void add_row(Table &table, const QString &name, const Samples &times, const Samples &peers)
{
    table.add_row({name, whole(percentile(times, 50)), whole(percentile(times, 99)),
                   whole(percentile(times, 100)), ratio(percentile(times, 50), percentile(peers, 50))});
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // as the program does with debug off

    Speaker_Config config;
    config.address = own_loopback(1);
    Virtual_Speaker speaker(config);
    if (!speaker.start())
        give_up(speaker.error());

    Virelo_Air control(config.type, config.address, "bench");
    control.start();
    const int bare = connect_bare(config.address, config.host_port);
    if (!speaker.wait_for_host_line("RZ?MT\n"))
        give_up("the worker does not start");

    Samples by_worker;
    Samples by_bare_socket;
    for (int round = 0; round < rounds; ++round) {
        const int volume = round % 100; // never the one that was sent last
        const QByteArray frame = volume_frame(volume);
        by_worker.push_back(time_to_wire(speaker, frame, [&] { control.set_volume(volume); }));
        by_bare_socket.push_back(time_to_wire(speaker, frame, [&] {
            if (write(bare, frame.constData(), static_cast<size_t>(frame.size())) != frame.size())
                give_up("the bare socket cannot write");
        }));
    }
    control.terminate();
    close(bare);

    Table table({"microseconds", "median", "99th percentile", "worst", "ratio of the medians"});
    add_row(table, "set_volume to the speaker", by_worker, by_bare_socket);
    add_row(table, "bare blocking socket", by_bare_socket, by_bare_socket);
    table.print();
    return 0;
}
