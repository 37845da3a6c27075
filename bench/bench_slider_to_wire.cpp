// SPDX-License-Identifier: MIT
//
// How long a move of the volume slider takes to reach the speaker: from set_volume on an idle worker to the
// moment when the virtual speaker has read the frame, beside a bare blocking socket that writes the same
// frame to the same speaker, and beside one that a thread of its own writes to when it is woken, which is the
// least that a worker can cost; in turns, so that all see the same load of the machine. Wished for: a median
// under twice that of the bare socket, 99 % under 5 ms.
//
//   build/release/bench/bench_slider_to_wire
//
// takes some 100 s, since a worker is idle only 150 ms after a command, and the bare sockets get the same
// rest.
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QThread>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unistd.h>

#include "bench/tools/bare_link.h"
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

// A thread that sleeps until it is given a frame, and writes it to a bare socket.
class Bare_Worker
{
public:
    explicit Bare_Worker(int descriptor)
        : thread([this, descriptor] { run(descriptor); })
    {
    }

    ~Bare_Worker()
    {
        send({});
        thread.join();
    }

    void send(const QByteArray &next) // an empty one ends the thread
    {
        const std::lock_guard<std::mutex> lock(mutex);
        frame = next;
        given = true;
        condition.notify_one();
    }

private:
    void run(int descriptor)
    {
        for (;;) {
            std::unique_lock<std::mutex> lock(mutex);
            condition.wait(lock, [this] { return given; });
            given = false;
            if (frame.isEmpty())
                return;
            write_bare(descriptor, frame);
        }
    }

    std::mutex mutex;
    std::condition_variable condition;
    QByteArray frame;
    bool given = false;
    std::thread thread; // the last: it uses those above
};

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

    auto bare_worker = std::make_unique<Bare_Worker>(bare);
    Samples by_worker;
    Samples by_bare_worker;
    Samples by_bare_socket;
    for (int round = 0; round < rounds; ++round) {
        const int volume = round % 100; // never the one that was sent last
        const QByteArray frame = volume_frame(volume);
        by_worker.push_back(time_to_wire(speaker, frame, [&] { control.set_volume(volume); }));
        by_bare_worker.push_back(time_to_wire(speaker, frame, [&] { bare_worker->send(frame); }));
        by_bare_socket.push_back(time_to_wire(speaker, frame, [&] { write_bare(bare, frame); }));
    }
    control.terminate();

    Table table({"microseconds", "median", "99th percentile", "worst", "ratio of the medians"});
    add_row(table, "set_volume to the speaker", by_worker, by_bare_socket);
    add_row(table, "bare socket, written to by a thread that is woken", by_bare_worker, by_bare_socket);
    add_row(table, "bare blocking socket", by_bare_socket, by_bare_socket);
    table.print();
    bare_worker.reset();
    close(bare);
    return 0;
}
