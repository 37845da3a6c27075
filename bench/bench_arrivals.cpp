// SPDX-License-Identifier: MIT
//
// How long it takes from the begin of the search until all of N announced speakers stand in the tree, if each
// answers every query and every request after 20 ms; and for how long the window did not answer meanwhile.
// Beside it: one speaker's two, ten and three queries over bare blocking sockets, one after the other, of
// which the last three are the worker's, behind the row. Wished for: 100 speakers in under 3 times the time
// of one, no pause above 50 ms.
//
//   scripts/lab -- build/release/bench/bench_arrivals [N]...       with DISPLAY, or QT_QPA_PLATFORM=offscreen
//
// The program's window runs in a process of its own for each figure.
#include <QApplication>
#include <QTimer>
#include <QTreeWidget>
#include <cstdio>
#include <unistd.h>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "bench/tools/bare_link.h"
#include "bench/tools/child_process.h"
#include "bench/tools/counts.h"
#include "bench/tools/house_of.h"
#include "bench/tools/lab_daemon.h"
#include "bench/tools/pause_watch.h"
#include "bench/tools/program_world.h"
#include "bench/tools/table.h"
#include "overview/client_overview.h"
#include "simulator/monotonic.h"
#include "zeroconf/qzeroconf.h"

namespace
{
constexpr int rounds = 5;
constexpr int settle_ms = 500;
constexpr int answer_ms = 20;

// In the process of the window

class Arrivals : public QObject
{
public:
    explicit Arrivals(int count)
        : count(count)
    {
        // The search is begun again once the window and the daemon have come to rest.
        overview->zeroConf->stopBrowser();
        QTimer::singleShot(settle_ms, this, [this] { begin(); });
    }

private:
    void begin()
    {
        await_daemon_at_rest();
        QCoreApplication::processEvents();
        const QAbstractItemModel *model = overview->tree->model();
        connect(model, &QAbstractItemModel::modelReset, this, [this] { ++redraws; });
        connect(model, &QAbstractItemModel::rowsInserted, this, [this] {
            if (overview->tree->topLevelItemCount() == count)
                QTimer::singleShot(0, this, [this] { all_are_there(); });
        });
        watch = std::make_unique<Pause_Watch>();
        begin_us = monotonic_us();
        overview->zeroConf->startBrowser("_lodeset._tcp", QAbstractSocket::IPv4Protocol);
    }

    void all_are_there()
    {
        const qint64 needed = monotonic_us() - begin_us;
        QTimer::singleShot(settle_ms, this, [this, needed] { // what it draws belongs to the pauses
            std::printf("%lld %lld %lld %d\n", static_cast<long long>(needed),
                        static_cast<long long>(watch->longest_us()),
                        static_cast<long long>(watch->longest_cpu_us()), redraws);
            std::fflush(stdout);
            QCoreApplication::quit();
        });
    }

    const int count;
    std::unique_ptr<Pause_Watch> watch;
    qint64 begin_us = 0;
    int redraws = 0;
};

[[noreturn]] void run_window(int argc, char *argv[], int count)
{
    rzplattform::set_up_process();
    QApplication application(argc, argv);
    make_program_world();
    client = new Client(nullptr);
    client->show();
    {
        const Arrivals arrivals(count);
        QApplication::exec();
    }
    leave_program_world();
}

// Beside it

void ask_over_one_link(const QString &address, const QList<QByteArray> &queries)
{
    const int at = connect_bare(address, 8991);
    const int host = connect_bare(address, 8990);
    for (const QByteArray &query : queries) {
        const QByteArray frame = "RZ?" + query + '\n';
        char answer[100];
        if (write(host, frame.constData(), static_cast<size_t>(frame.size())) != frame.size() ||
            read(host, answer, sizeof answer) <= 0)
            give_up("the bare socket gets no answer");
    }
    close(host);
    close(at);
}

qint64 by_bare_sockets_us(const House_Of &house)
{
    const qint64 begin = monotonic_us();
    ask_over_one_link(house.address(0), {"STm", "QO"});
    ask_over_one_link(house.address(0), {"IN", "vo", "ba", "pl", "ro", "ga", "gw", "g1", "g2", "td"});
    ask_over_one_link(house.address(0), {"MO", "LO", "MT"});
    return monotonic_us() - begin;
}

// The table

struct Figures {
    Samples row_us, pause_us, pause_cpu_us, redraws, bare_us;
};

Figures measure(const QString &program, int count)
{
    Figures figures;
    for (int round = 0; round < rounds; ++round) {
        House_Of house(count, answer_ms);
        house.announce();
        figures.bare_us.push_back(by_bare_sockets_us(house));
        Child_Process window(program, {"--window", QString::number(count)});
        const QList<QByteArray> fields = window.read_fields();
        window.wait();
        figures.row_us.push_back(fields.at(0).toLongLong());
        figures.pause_us.push_back(fields.at(1).toLongLong());
        figures.pause_cpu_us.push_back(fields.at(2).toLongLong());
        figures.redraws.push_back(fields.at(3).toLongLong());
    }
    return figures;
}
} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && qstrcmp(argv[1], "--window") == 0)
        run_window(argc, argv, QByteArray(argv[2]).toInt());

    QCoreApplication application(argc, argv);
    Table table({"speakers", "ms until all stand in the tree", "beside one speaker", "beside bare sockets",
                 "redraws", "longest pause, ms", "of its own processor time, ms"});
    qint64 one = 0;
    for (const int count : counts_asked_for(QCoreApplication::arguments(), {1, 10, 50, 100, 250})) {
        const Figures figures = measure(QCoreApplication::applicationFilePath(), count);
        const qint64 row = median(figures.row_us);
        if (one == 0)
            one = row;
        table.add_row({whole(count), in_ms(row), ratio(row, one), ratio(row, median(figures.bare_us)),
                       whole(median(figures.redraws)), in_ms(percentile(figures.pause_us, 100)),
                       in_ms(percentile(figures.pause_cpu_us, 100))});
    }
    table.print();
    return 0;
}
