// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "overview/client_group.h"
#include "settings/rzpixmaplabel.h"
#include "tests/overview/overview_world.h"
#include "tests/settings/grid_probe.h"

// Where things stand in the dialog, and how large they are.
class tst_client_group_layout : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { world.reset(); }

    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void captions_stand_in_front_of_their_values();
    void the_busy_sign_is_centred_in_its_place();
    void the_window_has_the_size_of_the_platform();
    void names_take_half_of_the_window_data();
    void names_take_half_of_the_window();

private:
    std::unique_ptr<Overview_World> world;
    Device_Desc *device = nullptr;
};

void tst_client_group_layout::init()
{
    world = std::make_unique<Overview_World>();
    world->open();
    device = world->add_record("Speaker", nullptr);
}

void tst_client_group_layout::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<bool>("group");
    for (const bool group : {false, true}) {
        const char *state = group ? "group" : "no group";
        QTest::addRow("unset, %s", state) << 0 << group;
        QTest::addRow("phone, %s", state) << DEVICE_PHONE << group;
        QTest::addRow("tablet, %s", state) << DEVICE_TABLET << group;
        QTest::addRow("desktop, %s", state) << DEVICE_DESKTOP << group;
    }
}

void tst_client_group_layout::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    QFETCH(bool, group);
    plattform->device_class = device_class;
    if (group)
        sender_device = device;
    const Client_Group dialog(device, nullptr);
    const struct {
        QWidget *widget;
        QList<int> place;
    } places[] = {
        {dialog.findChild<RZPixmapLabel *>(), {0, 0, 1, 4}},
        {dialog.master_label, {1, 1, 1, 1}},
        {dialog.dissolve_button, {1, 3, 1, 1}},
        {dialog.group_label, {2, 1, 1, 1}},
        {dialog.hint_label, {2, 2, 1, 1}},
        {dialog.busy_label, {2, 3, 1, 1}},
        {dialog.tree, {3, 0, 1, 4}},
        {dialog.add_button, {4, 2, 1, 1}},
        {dialog.remove_button, {4, 3, 1, 1}},
        {dialog.back_button, {5, 0, 1, 1}},
    };
    for (const auto &entry : places)
        QCOMPARE(place_of(dialog.grid, entry.widget), entry.place);
    QCOMPARE(dialog.grid->count(), 10 + 2); // with the two captions
    QCOMPARE(dialog.layout(), dialog.grid);
}

void tst_client_group_layout::captions_stand_in_front_of_their_values()
{
    const Client_Group dialog(device, nullptr);
    QCOMPARE(text_at(dialog.grid, 1, 0), QString("Master:"));
    QCOMPARE(text_at(dialog.grid, 2, 0), QString("Group:"));
    for (const int row : {1, 2})
        QCOMPARE(alignment_of(dialog.grid, label_at(dialog.grid, row, 0)), Qt::AlignRight);
}

void tst_client_group_layout::the_busy_sign_is_centred_in_its_place()
{
    const Client_Group dialog(device, nullptr);
    QCOMPARE(alignment_of(dialog.grid, dialog.busy_label), Qt::AlignCenter);
}

void tst_client_group_layout::the_window_has_the_size_of_the_platform()
{
    plattform->window_width = 811;
    plattform->window_height = 701;
    QCOMPARE(Client_Group(device, nullptr).size(), QSize(811, 701));
}

void tst_client_group_layout::names_take_half_of_the_window_data()
{
    QTest::addColumn<int>("window");
    QTest::addColumn<int>("names");
    QTest::newRow("as it starts") << 726 << 363;
    QTest::newRow("odd") << 901 << 450;
}

void tst_client_group_layout::names_take_half_of_the_window()
{
    QFETCH(int, window);
    plattform->window_width = window;
    QTEST(Client_Group(device, nullptr).tree->columnWidth(0), "names");
}

QTEST_MAIN(tst_client_group_layout)
#include "tst_client_group_layout.moc"
