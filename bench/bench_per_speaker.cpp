// SPDX-License-Identifier: MIT
//
// What a speaker costs the program as it ships once it has been identified: threads, descriptors and memory,
// as the difference that so many speakers make to none. Wished for: one worker, two sockets, under 250 kB.
//
//   scripts/lab -- build/release/bench/bench_per_speaker       with DISPLAY
#include <QCoreApplication>
#include <QThread>

#include "bench/tools/child_process.h"
#include "bench/tools/house_of.h"
#include "bench/tools/proc_figures.h"
#include "bench/tools/table.h"

namespace
{
constexpr int counts[] = {10, 100, 250};
constexpr int rounds = 5;             // of which the median counts
constexpr unsigned long settle_s = 5; // pooled threads, and what belongs to the last replies, go away

Proc_Figures figures_once_with(int speakers)
{
    House_Of house(speakers);
    if (speakers > 0)
        house.announce();
    Child_Process program(built_program("../VireloApp"), {});
    house.await_workers();
    QThread::sleep(settle_s);
    return Proc_Figures::of(program.pid());
}

Proc_Figures figures_with(int speakers)
{
    Samples threads, descriptors, private_kb;
    for (int round = 0; round < rounds; ++round) {
        const Proc_Figures figures = figures_once_with(speakers);
        threads.push_back(figures.threads);
        descriptors.push_back(figures.descriptors);
        private_kb.push_back(figures.private_kb);
    }
    Proc_Figures figures;
    figures.threads = static_cast<int>(median(threads));
    figures.descriptors = static_cast<int>(median(descriptors));
    figures.private_kb = median(private_kb);
    return figures;
}

QString each(qint64 more, int speakers)
{
    return QString::number(static_cast<double>(more) / speakers, 'f', 2);
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const Proc_Figures alone = figures_with(0);
    Table table({"speakers", "threads", "descriptors", "private MB", "threads a speaker",
                 "descriptors a speaker", "kB a speaker", "kB a further speaker"});
    table.add_row(
        {"0", whole(alone.threads), whole(alone.descriptors), in_mb(alone.private_kb), "-", "-", "-", "-"});
    Proc_Figures before = alone;
    int fewer = 0;
    for (const int count : counts) {
        const Proc_Figures with = figures_with(count);
        table.add_row({whole(count), whole(with.threads), whole(with.descriptors), in_mb(with.private_kb),
                       each(with.threads - alone.threads, count),
                       each(with.descriptors - alone.descriptors, count),
                       each(with.private_kb - alone.private_kb, count),
                       each(with.private_kb - before.private_kb, count - fewer)});
        before = with;
        fewer = count;
    }
    table.print();
    return 0;
}
