// SPDX-License-Identifier: MIT
//
// What 1,000 changes of the volume within 3 s make of the wire: how many frames go out, beside what the pace
// of 150 ms a command allows, and whether the last one carries the last value. Wished for: at that limit, and
// never an old value last.
//
//   build/release/bench/bench_volume_stream
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QThread>

#include "bench/tools/bare_link.h"
#include "bench/tools/child_process.h"
#include "bench/tools/table.h"
#include "control/virelo_air.h"
#include "simulator/loopback.h"
#include "simulator/monotonic.h"
#include "simulator/virtual_speaker.h"

namespace
{
constexpr int changes = 1000;
constexpr int gap_us = 3000;
constexpr int pace_us = 150000;
constexpr int rounds = 3;

// Never twice the same in a row, and another last one each round.
int volume_of(int round, int change)
{
    return (change * 7 + round * 13) % 101;
}

void add_row(Table &table, int round, const QList<Recorded_Line> &frames, qint64 begin_us,
             qint64 last_change_us, int last_volume)
{
    const qint64 span = frames.last().us - frames.first().us;
    // One at the begin, and one more after each 150 ms.
    const qint64 limit = span / pace_us + 1;
    table.add_row({whole(round + 1), whole(frames.size()), whole(limit), ratio(frames.size(), limit),
                   in_ms(frames.first().us - begin_us), in_ms(frames.last().us - last_change_us),
                   frames.last().line == volume_frame(last_volume) ? "the last" : "AN OLD ONE"});
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
    if (!speaker.wait_for_host_line("RZ?MT\n"))
        give_up("the worker does not start");

    Table table({"round of 1,000 changes", "frames", "the pace allows", "ratio", "first frame after, ms",
                 "last frame after the last change, ms", "value on the wire at the end"});
    for (int round = 0; round < rounds; ++round) {
        QThread::usleep(2 * pace_us); // the worker rests behind its last command
        speaker.clear_record();
        const qint64 begin = monotonic_us();
        for (int change = 0; change < changes; ++change) {
            control.set_volume(volume_of(round, change));
            const qint64 rest = begin + (change + 1LL) * gap_us - monotonic_us();
            if (rest > 0 && change + 1 < changes)
                QThread::usleep(static_cast<unsigned long>(rest));
        }
        const qint64 last_change = monotonic_us();
        const int last_volume = volume_of(round, changes - 1);
        if (!speaker.wait_for_value("vo", QString::number(last_volume)))
            give_up("the last value does not arrive");
        QThread::usleep(3 * pace_us); // whatever might still follow it
        add_row(table, round, speaker.timed_host_lines(), begin, last_change, last_volume);
    }
    control.terminate();
    table.print();
    return 0;
}
