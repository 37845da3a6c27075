// SPDX-License-Identifier: MIT
//
// How long a move of the group's volume slider takes until the last of 100 speakers has read its frame,
// beside a group of one, in turns. All workers are idle. Wished for: under 20 ms more.
//
//   build/release/bench/bench_group_slider
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QThread>
#include <algorithm>

#include "app/globals.h"
#include "bench/tools/bare_link.h"
#include "bench/tools/child_process.h"
#include "bench/tools/house_of.h"
#include "bench/tools/table.h"
#include "control/virelo_air.h"
#include "control/virelo_group.h"
#include "device/device_desc.h"
#include "simulator/monotonic.h"

namespace
{
constexpr int many = 100;
constexpr int rounds = 30;
constexpr int rest_ms = 170; // a worker sleeps for 150 ms behind each command

struct Times {
    Samples call_us;
    Samples first_us;
    Samples last_us;
};

QList<Device_Desc *> records_with_workers(const House_Of &house)
{
    QList<Device_Desc *> records;
    for (int number = 0; number < house.count(); ++number) {
        auto *record = new Device_Desc(nullptr, false, QString());
        record->control = new Virelo_Air(13, house.address(number), QString::number(number));
        record->control->start();
        records.append(record);
    }
    house.await_workers();
    return records;
}

void move_slider(Virelo_Group &group, const House_Of &house, int speakers, int volume, Times &times)
{
    for (int number = 0; number < house.count(); ++number)
        house.speaker(number).clear_record();
    QThread::msleep(rest_ms);

    const QByteArray frame = volume_frame(volume);
    const qint64 begin = monotonic_us();
    group.set_volume(volume);
    times.call_us.push_back(monotonic_us() - begin);
    qint64 first = 0;
    qint64 last = 0;
    for (int number = 0; number < speakers; ++number) {
        if (!house.speaker(number).wait_for_host_line(frame))
            give_up("a frame did not arrive");
        const qint64 arrival = house.speaker(number).timed_host_lines().first().us;
        first = number == 0 ? arrival : std::min(first, arrival);
        last = std::max(last, arrival);
    }
    times.first_us.push_back(first - begin);
    times.last_us.push_back(last - begin);
}

void add_row(Table &table, int speakers, const Times &times, const Times &one)
{
    const qint64 last = median(times.last_us);
    table.add_row({whole(speakers), in_ms(median(times.call_us)), in_ms(median(times.first_us)), in_ms(last),
                   in_ms(percentile(times.last_us, 99)), in_ms(last - median(one.last_us))});
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // as the program does with debug off

    const House_Of house(many, 0);
    const QList<Device_Desc *> all = records_with_workers(house);
    Virelo_Group group("bench");
    Times of_one;
    Times of_all;
    for (int round = 0; round < rounds; ++round) {
        device_list = all.mid(0, 1);
        move_slider(group, house, 1, (2 * round) % 100, of_one);
        device_list = all;
        move_slider(group, house, many, (2 * round + 1) % 100, of_all);
    }
    for (const Device_Desc *record : all)
        record->control->terminate();

    Table table({"speakers", "the call returns after, ms", "first frame, ms", "last frame, median, ms",
                 "99th, ms", "more than one, ms"});
    add_row(table, 1, of_one, of_one);
    add_row(table, many, of_all, of_one);
    table.print();
    return 0;
}
