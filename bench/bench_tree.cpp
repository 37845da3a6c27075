// SPDX-License-Identifier: MIT
//
// What a redraw of the speakers' tree costs, drawn on the window included, beside a bare QTreeWidget that is
// cleared and filled with the same rows and drawn at the same size, its pictures loaded once. Wished for:
// under twice.
//
//   build/release/bench/bench_tree [N]...       with DISPLAY, or QT_QPA_PLATFORM=offscreen
#include <QApplication>
#include <QDialog>
#include <QHash>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/client.h"
#include "app/globals.h"
#include "bench/tools/counts.h"
#include "bench/tools/program_world.h"
#include "bench/tools/table.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "overview/client_overview.h"
#include "settings/itemdelegate.h"
#include "simulator/monotonic.h"

namespace
{
constexpr int rounds = 40;
constexpr int row_height = 100;

struct Kind {
    int type;
    const char *picture;
};
constexpr Kind kinds[] = {{13, "vc3"}, {14, "vc5"}, {15, "vc7"}, {16, "vc8"}, {17, "vc9"}, {18, "vs12"}};

const Kind &kind_of(int number)
{
    return kinds[static_cast<size_t>(number) % std::size(kinds)];
}

QString name_of(int number)
{
    return QString("Speaker %1").arg(number);
}

void list_records(int count)
{
    while (device_list.size() < count) {
        const int number = device_list.size();
        auto *record = new Device_Desc(nullptr, false, QString());
        record->name = name_of(number);
        record->ssid = "Home";
        record->control = new Virelo_Unknown(kind_of(number).type, QString(), QString());
        device_list.append(record);
    }
}

// A tree of the same looks, and nothing else in its window.
class Bare_Window : public QDialog
{
public:
    explicit Bare_Window(const QTreeWidget &model)
        : tree(new QTreeWidget)
    {
        delegate.row_height = row_height;
        tree->setItemDelegate(&delegate);
        tree->setIconSize(QSize(row_height, row_height));
        tree->setColumnCount(model.columnCount());
        for (int column = 0; column < model.columnCount(); ++column)
            tree->setColumnWidth(column, model.columnWidth(column));
        tree->setFont(model.font());
        tree->setFixedSize(model.size());
        for (const Kind &kind : kinds)
            pictures.insert(kind.type, QIcon(QString(":/GRAFX/%1.jpg").arg(kind.picture)));
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(tree);
    }

    void fill(int count)
    {
        tree->clear();
        for (int number = 0; number < count; ++number) {
            const Kind &kind = kind_of(number);
            auto *item = new QTreeWidgetItem;
            item->setIcon(0, pictures.value(kind.type));
            item->setText(1, name_of(number));
            item->setText(2, "in Home");
            item->setText(3, model_name(kind.type));
            item->setData(0, Qt::UserRole, number);
            tree->addTopLevelItem(item);
        }
        tree->expandAll();
    }

    QTreeWidget *tree;

private:
    ItemDelegate delegate;
    QHash<int, QIcon> pictures;
};

// Until nothing is left to be laid out or drawn.
template<class Fill>
void time_it(const Fill &fill, Samples &fill_us, Samples &whole_us)
{
    const qint64 begin = monotonic_us();
    fill();
    fill_us.push_back(monotonic_us() - begin);
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
    whole_us.push_back(monotonic_us() - begin);
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    make_program_world();
    client = new Client(nullptr);
    client->show();
    QCoreApplication::processEvents();
    Bare_Window bare(*overview->tree);
    bare.show();
    QCoreApplication::processEvents();

    Table table({"records", "update_tree_widget, ms", "drawn, ms", "bare tree filled, ms", "drawn, ms",
                 "ratio, filled", "ratio, drawn"});
    for (const int count : counts_asked_for(QApplication::arguments(), {10, 100, 500})) {
        list_records(count);
        Samples ours_fill, ours_whole, bare_fill, bare_whole;
        for (int round = 0; round < rounds; ++round) {
            time_it([] { overview->update_tree_widget(); }, ours_fill, ours_whole);
            time_it([&] { bare.fill(count); }, bare_fill, bare_whole);
        }
        table.add_row({whole(count), in_ms(median(ours_fill)), in_ms(median(ours_whole)),
                       in_ms(median(bare_fill)), in_ms(median(bare_whole)),
                       ratio(median(ours_fill), median(bare_fill)),
                       ratio(median(ours_whole), median(bare_whole))});
    }
    table.print();
    leave_program_world();
}
