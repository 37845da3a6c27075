// SPDX-License-Identifier: MIT
//
// What the program costs until its window is drawn, from the begin of the process, with no speakers about:
// time, processor and peak memory, beside an empty dialog with a tab widget, in turns. Wished for: under 1.5
// times. The program keeps OpenGL out of its process, which Qt's own choice for any window is to load. What
// the dialog needs without it is shown as well.
//
//   scripts/lab -- build/release/bench/bench_start       with DISPLAY
#include <QCoreApplication>

#include "bench/tools/child_process.h"
#include "bench/tools/table.h"

namespace
{
constexpr int rounds = 25;

struct Costs {
    Samples wall_us;
    Samples cpu_us;
    Samples peak_kb;
};

using Environment = QMap<QString, QString>;

void start_once(const QString &program, Costs &costs, Environment environment = {})
{
    environment["QT_PLUGIN_PATH"] = built_program("stopwatch");
    environment["QT_QPA_GENERIC_PLUGINS"] = "virelo_stopwatch";
    Child_Process child(program, {}, environment);
    const QList<QByteArray> fields = child.read_fields();
    child.wait();
    costs.wall_us.push_back(fields.at(0).toLongLong() - child.begin_us());
    costs.cpu_us.push_back(fields.at(1).toLongLong());
    costs.peak_kb.push_back(fields.at(2).toLongLong());
}

void add_row(Table &table, const QString &name, const Costs &costs, const Costs &peers)
{
    const auto beside = [](const QString &text, const Samples &own, const Samples &others) {
        return text + " (" + ratio(median(own), median(others)) + ")";
    };
    table.add_row({name, beside(in_ms(median(costs.wall_us)), costs.wall_us, peers.wall_us),
                   in_ms(percentile(costs.wall_us, 90)),
                   beside(in_ms(median(costs.cpu_us)), costs.cpu_us, peers.cpu_us),
                   beside(in_mb(median(costs.peak_kb)), costs.peak_kb, peers.peak_kb)});
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QString program = built_program("../VireloApp");
    const QString dialog = built_program("empty_window");
    const Environment no_gl = {{"QT_XCB_GL_INTEGRATION", "none"}};

    Costs warming_up;
    start_once(program, warming_up);
    start_once(dialog, warming_up);

    Costs ours;
    Costs peers;
    Costs lean_peers;
    for (int round = 0; round < rounds; ++round) {
        start_once(program, ours);
        start_once(dialog, peers);
        start_once(dialog, lean_peers, no_gl);
    }
    Table table({"until the window is drawn", "ms", "90th percentile", "ms of processor", "MB at the peak"});
    add_row(table, "the program", ours, peers);
    add_row(table, "empty dialog", peers, peers);
    add_row(table, "empty dialog, no OpenGL", lean_peers, peers);
    table.print();
    return 0;
}
