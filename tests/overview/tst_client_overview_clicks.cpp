// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/client.h"
#include "app/globals.h"
#include "control/virelo_air.h"
#include "overview/client_overview.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_empty.h"
#include "simulator/loopback.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"
#include "tests/overview/paint_log.h"
#include "update/client_update.h"

namespace
{
enum { name = 1, status };

// Enabled state of the group, update and wifi button.
QList<bool> button_states()
{
    return {overview->group_button->isEnabled(), overview->update_button->isEnabled(),
            overview->wifi_button->isEnabled()};
}
} // namespace

// What a click on a row does.
class tst_client_overview_clicks : public QObject
{
    Q_OBJECT

private slots:
    void redraw_loses_the_selection_and_keeps_the_buttons();
    void selected_device_is_the_record_of_the_first_selected_row();
    void click_remembers_the_record();
    void click_on_an_unknown_speaker_opens_the_empty_tab();
    void click_on_a_speaker_opens_its_air_tab();
    void type_42_opens_an_air_tab_in_spite_of_its_picture();
    void second_click_on_a_speaker_only_selects_its_tab();
    void click_sets_the_buttons_data();
    void click_sets_the_buttons();
    void click_on_a_record_without_control_sets_the_buttons_and_opens_no_tab();
    void redraw_while_the_tab_opens_does_no_harm();
    void click_on_the_group_row_enables_the_buttons();
    void click_paints_the_buttons_at_once();
    void dialog_buttons_do_nothing_while_no_row_is_selected();
    void update_button_opens_a_dialog_for_whatever_row_is_selected();
};

void tst_client_overview_clicks::redraw_loses_the_selection_and_keeps_the_buttons()
{
    Overview_World world;
    world.open_and_show();
    Device_Desc *device = world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(overview->selected_device(), device);

    overview->update_tree_widget();
    QVERIFY(!overview->selected_device());
    QCOMPARE(button_states(), QList<bool>({true, true, true}));
    QCOMPARE(overview->selected, device);
    client->tabs->setCurrentIndex(0);
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(overview->selected_device(), device);
}

void tst_client_overview_clicks::selected_device_is_the_record_of_the_first_selected_row()
{
    Overview_World world;
    world.open();
    world.add_record("Hall", control_of_type(255));
    Device_Desc *device = world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    world.log.clear();
    QVERIFY(!overview->selected_device());
    QCOMPARE(world.log.texts(), QStringList());
    Overview_World::row(1)->setSelected(true);
    QCOMPARE(overview->selected_device(), device);
    QCOMPARE(world.log.texts(), QStringList("selected air: \"Kitchen\""));
}

void tst_client_overview_clicks::click_remembers_the_record()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Hall", control_of_type(255));
    Device_Desc *device = world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(1));
    QCOMPARE(overview->selected, device);
}

void tst_client_overview_clicks::click_on_an_unknown_speaker_opens_the_empty_tab()
{
    Overview_World world;
    world.open_and_show();
    Device_Desc *device = world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(client->tabs->count(), 2);
    QCOMPARE(device->tab_index, 1);
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(client->tabs->tabText(1), QString("Kitchen"));
    auto *tab = qobject_cast<Client_Settings_Empty *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->control, device->control);
}

void tst_client_overview_clicks::click_on_a_speaker_opens_its_air_tab()
{
    Overview_World world;
    world.open_and_show();
    Device_Desc *device =
        world.add_record("Kitchen", std::make_unique<Virelo_Air>(13, own_loopback(1), "Kitchen"));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(device->tab_index, 1);
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(client->tabs->tabText(1), QString("Kitchen"));
    auto *tab = qobject_cast<Client_Settings_Air *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->air, device->control);
    QCOMPARE(tab->device, device);
}

void tst_client_overview_clicks::type_42_opens_an_air_tab_in_spite_of_its_picture()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Deep", std::make_unique<Virelo_Air>(42, own_loopback(1), "Deep"));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QVERIFY(qobject_cast<Client_Settings_Air *>(client->tabs->currentWidget()));
}

void tst_client_overview_clicks::second_click_on_a_speaker_only_selects_its_tab()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Kitchen", std::make_unique<Virelo_Air>(13, own_loopback(1), "Kitchen"));
    Device_Desc *hall = world.add_record("Hall", control_of_type(255));
    overview->update_tree_widget();
    for (const int row : {0, 1, 0, 1}) {
        client->tabs->setCurrentIndex(0);
        Overview_World::click(Overview_World::row(row));
        QCOMPARE(client->tabs->currentIndex(), row + 1);
    }
    QCOMPARE(client->tabs->count(), 3);
    QCOMPARE(hall->tab_index, 2);
}

void tst_client_overview_clicks::click_sets_the_buttons_data()
{
    QTest::addColumn<QString>("name_text");
    QTest::addColumn<QString>("status_text");
    QTest::addColumn<QList<bool>>("states"); // group, update, wifi
    QTest::newRow("speaker") << "Kitchen"
                             << "in Home" << QList<bool>{true, true, true};
    QTest::newRow("named Access-Point") << "Access-Point"
                                        << "in Home" << QList<bool>{false, false, true};
    QTest::newRow("status Access-Point") << "Kitchen"
                                         << "Access-Point" << QList<bool>{true, true, true};
    QTest::newRow("named access-point") << "access-point"
                                        << "in Home" << QList<bool>{true, true, true};
    QTest::newRow("status Group") << "Kitchen"
                                  << "Group" << QList<bool>{true, false, true};
    QTest::newRow("status Is your Group") << "Party"
                                          << "Is your Group" << QList<bool>{true, true, true};
    QTest::newRow("both") << "Access-Point"
                          << "Group" << QList<bool>{false, false, true};
}

void tst_client_overview_clicks::click_sets_the_buttons()
{
    QFETCH(QString, name_text);
    QFETCH(QString, status_text);
    QFETCH(QList<bool>, states);
    Overview_World world;
    world.open_and_show();
    world.add_record("any", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::row(0)->setText(name, name_text);
    Overview_World::row(0)->setText(status, status_text);
    for (const bool before : {false, true}) {
        for (QPushButton *button : {overview->group_button, overview->update_button, overview->wifi_button})
            button->setEnabled(before);
        overview->item_clicked(Overview_World::row(0), 3);
        QCOMPARE(button_states(), states);
    }
}

void tst_client_overview_clicks::click_on_a_record_without_control_sets_the_buttons_and_opens_no_tab()
{
    Overview_World world;
    world.open_and_show();
    Device_Desc *device = world.add_record("Kitchen", nullptr);
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(overview->selected, device);
    QCOMPARE(button_states(), QList<bool>({true, true, true}));
    QCOMPARE(client->tabs->count(), 1);
    QCOMPARE(client->tabs->currentIndex(), 0);
    QCOMPARE(device->tab_index, -1);
}

void tst_client_overview_clicks::redraw_while_the_tab_opens_does_no_harm()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Access-Point", control_of_type(255));
    overview->update_tree_widget();
    connect(client->tabs, &QTabWidget::currentChanged, overview, [] {
        overview->update_tree_widget();
        Overview_World::row(0)->setText(name, "Kitchen"); // the buttons follow the row that was clicked
    });
    overview->item_clicked(Overview_World::row(0), 0);
    QCOMPARE(client->tabs->count(), 2);
    QCOMPARE(button_states(), QList<bool>({false, false, true}));
}

void tst_client_overview_clicks::click_on_the_group_row_enables_the_buttons()
{
    Overview_World world;
    world.open_and_show();
    sender_device = world.add_record("Master", control_of_type(13));
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    QVERIFY(overview->selected->is_group);
    QCOMPARE(button_states(), QList<bool>({true, true, true}));
}

void tst_client_overview_clicks::click_paints_the_buttons_at_once()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Kitchen", nullptr); // opens no tab, which would hide the buttons
    overview->update_tree_widget();
    QCoreApplication::processEvents();
    const QList<QPushButton *> buttons{overview->group_button, overview->update_button,
                                       overview->wifi_button};
    Paint_Log log({buttons.at(0), buttons.at(1), buttons.at(2)});
    overview->item_clicked(Overview_World::row(0), 0);
    for (QPushButton *button : buttons)
        QVERIFY2(log.painted.contains(button), qPrintable(button->text()));
}

void tst_client_overview_clicks::dialog_buttons_do_nothing_while_no_row_is_selected()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    const int windows = QApplication::topLevelWidgets().size();
    world.log.clear();
    for (QPushButton *button : {overview->update_button, overview->group_button, overview->wifi_button}) {
        button->setEnabled(true);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QVERIFY(!update_dialog);
    QVERIFY(!group_dialog);
    QVERIFY(!wlans_dialog);
    QCOMPARE(QApplication::topLevelWidgets().size(), windows);
    QCOMPARE(world.log.texts(), QStringList());
}

void tst_client_overview_clicks::update_button_opens_a_dialog_for_whatever_row_is_selected()
{
    Overview_World world;
    world.open_and_show();
    sender_device = world.add_record("Kitchen", control_of_type(255));
    sender_device->groupname = "Party";
    world.add_record("Hall", nullptr);
    overview->update_tree_widget();
    QTreeWidgetItem *group = Overview_World::row(0);
    for (QTreeWidgetItem *row : {group, group->child(0), Overview_World::row(1)}) {
        client->tabs->setCurrentIndex(0);
        overview->tree->scrollToItem(row);
        Overview_World::click(row);
        client->tabs->setCurrentIndex(0);
        QTest::mouseClick(overview->update_button, Qt::LeftButton);
        const std::unique_ptr<Client_Update> dialog(update_dialog);
        update_dialog = nullptr;
        QVERIFY2(dialog, qPrintable(row->text(name)));
        QVERIFY(dialog->isVisible());
        QVERIFY(!dialog->isModal());
        QVERIFY(!dialog->parent());
        QCOMPARE(dialog->device.data(), row->data(0, Qt::UserRole).value<Device_Desc *>());
    }
}

QTEST_MAIN(tst_client_overview_clicks)
#include "tst_client_overview_clicks.moc"
