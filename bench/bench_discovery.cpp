// SPDX-License-Identifier: MIT
//
// How long discovery takes for N services that are announced already: from the begin of the browse to the
// last serviceAdded, beside avahi-browse, which resolves the same services on the same daemon, to the last
// line in which it has resolved one; its own start, as that of `avahi-browse --version`, is taken off. Each
// begins with a daemon at rest. Wished for: faster, and linear or better.
//
//   scripts/lab -- build/release/bench/bench_discovery
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTimer>

#include "bench/tools/child_process.h"
#include "bench/tools/house_of.h"
#include "bench/tools/lab_daemon.h"
#include "bench/tools/table.h"
#include "simulator/monotonic.h"
#include "zeroconf/qzeroconf.h"

namespace
{
constexpr int rounds = 15;
constexpr int counts[] = {1, 10, 100, 250};
constexpr quint16 some_port = 80;
constexpr const char *service_type = "_lodeset._tcp";

struct Times {
    Samples first_us;
    Samples last_us;
};

void browse(int count, Times &times)
{
    QZeroConf discovery;
    qint64 first = 0;
    qint64 last = 0;
    int found = 0;
    QObject::connect(&discovery, &QZeroConf::serviceAdded, &discovery, [&] {
        last = monotonic_us();
        if (found++ == 0)
            first = last;
    });
    const qint64 begin = monotonic_us();
    discovery.startBrowser(service_type, QAbstractSocket::IPv4Protocol);
    QTimer::singleShot(Child_Process::patience_ms, &discovery, [] { give_up("a service is not found"); });
    while (found < count)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    times.first_us.push_back(first - begin);
    times.last_us.push_back(last - begin);
}

qint64 start_of_avahi_browse_us()
{
    Child_Process child("avahi-browse", {"--version"});
    child.read_line();
    const qint64 needed = monotonic_us() - child.begin_us();
    child.wait();
    return needed;
}

qint64 avahi_browse_us(int count)
{
    const qint64 start = start_of_avahi_browse_us();
    Child_Process child("avahi-browse", {"--resolve", "--terminate", "--parsable", service_type});
    qint64 last = 0;
    int found = 0;
    for (QByteArray line = child.read_line(); !line.isNull(); line = child.read_line()) {
        if (!line.startsWith('='))
            continue;
        last = monotonic_us();
        ++found;
    }
    child.wait();
    if (found != count)
        give_up(QString("avahi-browse found %1 services of %2").arg(found).arg(count));
    return last - child.begin_us() - start;
}

QString spread(const Samples &us)
{
    return in_ms(percentile(us, 0)) + " to " + in_ms(percentile(us, 90));
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // as the program does with debug off

    Table table({"services", "first serviceAdded, ms", "last serviceAdded, ms", "best to 90th percentile",
                 "ms a service", "avahi-browse, last, ms", "best to 90th percentile", "ratio of the last"});
    for (const int count : counts) {
        Announcer announcer;
        for (int number = 0; number < count; ++number) {
            const Speaker_Config speaker = speaker_of_house(number);
            announcer.announce(speaker.name, speaker, some_port);
        }
        if (!announcer.wait_until_established(Child_Process::patience_ms))
            give_up("the announcements do not come to stand; this wants scripts/lab");

        Times ours;
        Samples peers_us;
        for (int round = 0; round < rounds; ++round) {
            await_daemon_at_rest();
            browse(count, ours);
            await_daemon_at_rest();
            peers_us.push_back(avahi_browse_us(count));
        }
        const qint64 last = median(ours.last_us);
        table.add_row({whole(count), in_ms(median(ours.first_us)), in_ms(last), spread(ours.last_us),
                       in_ms(last / count), in_ms(median(peers_us)), spread(peers_us),
                       ratio(last, median(peers_us))});
    }
    table.print();
    return 0;
}
