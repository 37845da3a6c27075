// SPDX-License-Identifier: MIT
#include <QDir>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/client.h"
#include "app/globals.h"
#include "control/virelo_air.h"
#include "control/virelo_group.h"
#include "control/virelo_sub.h"
#include "overview/client_group.h"
#include "overview/client_overview.h"
#include "settings/client_settings_group.h"
#include "settings/client_settings_sub.h"
#include "simulator/loopback.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"

// The way from the overview to a subwoofer, to the group and to the group's dialog.
class tst_client_overview_group : public QObject
{
    Q_OBJECT

private slots:
    void click_on_a_subwoofer_opens_its_sub_tab();
    void click_on_the_group_row_opens_the_groups_tab();
    void click_on_the_group_row_after_a_redraw_opens_a_new_tab();
    void redraws_and_group_tabs_take_no_thread_and_no_descriptor();
    void group_button_opens_the_group_dialog_for_the_selected_row();
    void each_press_of_the_group_button_opens_a_further_dialog();
};

void tst_client_overview_group::click_on_a_subwoofer_opens_its_sub_tab()
{
    Overview_World world;
    world.open_and_show();
    Device_Desc *device =
        world.add_record("Cellar", std::make_unique<Virelo_Sub>(18, own_loopback(1), "Cellar"));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(device->tab_index, 1);
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(client->tabs->tabText(1), QString("Cellar"));
    auto *tab = qobject_cast<Client_Settings_Sub *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->sub, device->control);
}

void tst_client_overview_group::click_on_the_group_row_opens_the_groups_tab()
{
    Overview_World world;
    world.open_and_show();
    sender_device = world.add_record("Master", std::make_unique<Virelo_Air>(13, own_loopback(1), "Master"));
    sender_device->groupname = "Party";
    overview->update_tree_widget();
    for (int opening = 0; opening < 2; ++opening) {
        client->tabs->setCurrentIndex(0);
        Overview_World::click(Overview_World::row(0));
        QCOMPARE(client->tabs->count(), 2);
        QCOMPARE(client->tabs->currentIndex(), 1);
    }
    QCOMPARE(client->tabs->tabText(1), QString("Party"));
    auto *tab = qobject_cast<Client_Settings_Group *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->group_control, overview->selected->control);
    QCOMPARE(tab->master_air, sender_device->control);
}

void tst_client_overview_group::click_on_the_group_row_after_a_redraw_opens_a_new_tab()
{
    Overview_World world;
    world.open_and_show();
    sender_device = world.add_record("Master", std::make_unique<Virelo_Air>(13, own_loopback(1), "Master"));
    for (int redraw = 1; redraw <= 3; ++redraw) {
        overview->update_tree_widget();
        client->tabs->setCurrentIndex(0);
        Overview_World::click(Overview_World::row(0));
        QCOMPARE(client->tabs->count(), 1 + redraw);
        QCOMPARE(client->tabs->currentIndex(), redraw);
    }
}

void tst_client_overview_group::redraws_and_group_tabs_take_no_thread_and_no_descriptor()
{
    const auto count = [](const char *folder) {
        return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
    };
    Overview_World world;
    world.open_and_show();
    sender_device = world.add_record("Master", std::make_unique<Virelo_Air>(13, own_loopback(1), "Master"));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0)); // the first tab may load what all share
    const int threads = count("/proc/self/task");
    const int descriptors = count("/proc/self/fd");
    for (int redraw = 0; redraw < 20; ++redraw) {
        overview->update_tree_widget();
        client->tabs->setCurrentIndex(0);
        Overview_World::click(Overview_World::row(0));
    }
    QCOMPARE(client->tabs->count(), 22);
    QTRY_VERIFY(count("/proc/self/task") <= threads);
    QTRY_VERIFY(count("/proc/self/fd") <= descriptors);
}

void tst_client_overview_group::group_button_opens_the_group_dialog_for_the_selected_row()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Hall", control_of_type(255));
    Device_Desc *kitchen = world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(1));
    client->tabs->setCurrentIndex(0);
    QTest::mouseClick(overview->group_button, Qt::LeftButton);
    QVERIFY(group_dialog);
    QVERIFY(group_dialog->isVisible());
    QVERIFY(!group_dialog->isModal());
    QVERIFY(!group_dialog->parent());
    QCOMPARE(group_dialog->device, kitchen);
    delete group_dialog;
    group_dialog = nullptr;
}

void tst_client_overview_group::each_press_of_the_group_button_opens_a_further_dialog()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Hall", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    client->tabs->setCurrentIndex(0);
    QTest::mouseClick(overview->group_button, Qt::LeftButton);
    const std::unique_ptr<Client_Group> first(group_dialog);
    QTest::mouseClick(overview->group_button, Qt::LeftButton);
    const std::unique_ptr<Client_Group> second(group_dialog);
    QVERIFY(first != second);
    QVERIFY(first->isVisible() && second->isVisible());
    group_dialog = nullptr;
}

QTEST_MAIN(tst_client_overview_group)
#include "tst_client_overview_group.moc"
