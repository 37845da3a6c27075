// SPDX-License-Identifier: MIT
//
// How often the program as it ships wakes up within 60 s, and what it uses of the processor, while 20
// speakers are shown and nothing happens. Wished for: no wakeup of its own, 0 % of the processor.
//
//   scripts/lab -- build/release/bench/bench_idle [SECONDS]       with DISPLAY
#include <QCoreApplication>
#include <QThread>

#include "bench/tools/child_process.h"
#include "bench/tools/house_of.h"
#include "bench/tools/proc_figures.h"
#include "bench/tools/table.h"

namespace
{
constexpr int speakers = 20;
constexpr int usual_seconds = 60;
// By then pooled threads, which Qt scales pictures in, have gone, and so has a timer of Qt's that wakes the
// window's thread every ten seconds for some two minutes behind the last request.
constexpr unsigned long settle_s = 150;
const QString qt_own =
    "Qt bearer threa"; // Qt looks for network interfaces every ten seconds, once a request was made
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const int asked = QCoreApplication::arguments().value(1).toInt();
    const int seconds = asked > 0 ? asked : usual_seconds;

    House_Of house(speakers);
    house.announce();
    Child_Process program(built_program("../VireloApp"), {});
    house.await_workers();
    QThread::sleep(settle_s);
    const Proc_Figures before = Proc_Figures::of(program.pid());
    QThread::sleep(static_cast<unsigned long>(seconds));
    const Proc_Figures after = Proc_Figures::of(program.pid());

    qint64 own = 0;
    QStringList who; // woke up, and how often
    for (auto entry = after.sleeps.begin(); entry != after.sleeps.end(); ++entry) {
        const qint64 wakeups = entry.value() - before.sleeps.value(entry.key());
        if (entry.key() == qt_own || wakeups == 0)
            continue;
        own += wakeups;
        who += QString("%1: %2").arg(entry.key()).arg(wakeups);
    }

    Table table({"20 speakers shown", "seconds", "threads", "wakeups of its own", "by thread",
                 "wakeups of Qt's network watch", "ms of processor", "share of a processor"});
    const qint64 cpu_us = after.cpu_us - before.cpu_us;
    table.add_row({"nothing happens", whole(seconds), whole(after.threads), whole(own),
                   who.isEmpty() ? "-" : who.join(", "),
                   whole(after.sleeps.value(qt_own) - before.sleeps.value(qt_own)), in_ms(cpu_us),
                   QString::number(static_cast<double>(cpu_us) / seconds / 1e4, 'f', 2) + " %"});
    table.print();
    return 0;
}
