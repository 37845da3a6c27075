// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "device/device_desc.h"
#include "network/client_conf.h"
#include "network/client_wlans.h"
#include "overview/client_overview.h"
#include "tests/network/wlan_world.h"
#include "tests/overview/air_waves.h"

// The step from the list of WLANs to the WLAN settings, and the way into the list.
class tst_client_wlans_choice : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void next_hands_the_chosen_name_on();
    void the_settings_are_a_window_of_their_own();
    void enter_in_the_list_is_next();
    void the_name_is_what_the_row_shows();
    void the_first_of_several_selected_rows_counts();
    void without_a_selection_next_only_disables_itself();
    void what_the_global_names_is_hidden();
    void back_in_the_settings_does_not_bring_the_list_back();
    void without_a_record_nothing_can_be_chosen();
    void a_record_that_left_the_list_can_be_chosen();
    void each_click_in_the_overview_opens_another_list();
    void without_a_selected_speaker_no_list_opens();

private:
    Client_WLANs *open();

    std::unique_ptr<Wlan_World> world;
};

void tst_client_wlans_choice::init()
{
    world = std::make_unique<Wlan_World>();
}

void tst_client_wlans_choice::cleanup()
{
    world.reset();
}

// With three networks, "B" first and selected.
Client_WLANs *tst_client_wlans_choice::open()
{
    world->peer.answer = http_answer(R"({"aplist": [{"ssid": "A", "signal_level": "-70"},
        {"ssid": "B", "signal_level": "-100"}, {"ssid": "C", "signal_level": "-8"}]})");
    wlans_dialog = new Client_WLANs(world->record, nullptr);
    wlans_dialog->show();
    wlans_dialog->activateWindow();
    if (!QTest::qWaitForWindowActive(wlans_dialog) ||
        !QTest::qWaitFor([] { return wlans_dialog->next_button->isEnabled(); }))
        qFatal("the list does not come up");
    return wlans_dialog;
}

static void click_row(const Client_WLANs *dialog, int row)
{
    QTest::mouseClick(dialog->tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      dialog->tree->visualItemRect(dialog->tree->topLevelItem(row)).center());
}

void tst_client_wlans_choice::next_hands_the_chosen_name_on()
{
    const Client_WLANs *dialog = open();
    click_row(dialog, 2);
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QCOMPARE(world->record->ssid, QString("C"));
    QVERIFY(!dialog->isVisible());
    QVERIFY(!dialog->next_button->isEnabled());
    QVERIFY(conf_dialog && conf_dialog->isVisible());
    QCOMPARE(conf_dialog->device.data(), world->record);
    QCOMPARE(world->peer.requests.size(), 1); // the scan
}

void tst_client_wlans_choice::the_settings_are_a_window_of_their_own()
{
    QTest::mouseClick(open()->next_button, Qt::LeftButton);
    QVERIFY(!conf_dialog->parent());
    QVERIFY(!conf_dialog->isModal());
    QVERIFY(conf_dialog->isWindow());
}

void tst_client_wlans_choice::enter_in_the_list_is_next()
{
    const Client_WLANs *dialog = open();
    QTest::keyClick(dialog->tree, Qt::Key_Down);
    QTest::keyClick(dialog->tree, Qt::Key_Return);
    QCOMPARE(world->record->ssid, QString("A"));
    QVERIFY(conf_dialog && conf_dialog->isVisible());
}

void tst_client_wlans_choice::the_name_is_what_the_row_shows()
{
    const Client_WLANs *dialog = open();
    dialog->tree->selectedItems().first()->setText(0, "Shown");
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QCOMPARE(world->record->ssid, QString("Shown")); // not the held JSON
}

void tst_client_wlans_choice::the_first_of_several_selected_rows_counts()
{
    const Client_WLANs *dialog = open();
    dialog->tree->setSelectionMode(QAbstractItemView::MultiSelection);
    dialog->tree->clearSelection();
    click_row(dialog, 2);
    click_row(dialog, 1);
    const QString first = dialog->tree->selectedItems().first()->text(0);
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QCOMPARE(world->record->ssid, first);
}

void tst_client_wlans_choice::without_a_selection_next_only_disables_itself()
{
    const Client_WLANs *dialog = open();
    dialog->tree->clearSelection();
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QVERIFY(!dialog->next_button->isEnabled());
    QVERIFY(dialog->isVisible());
    QVERIFY(!conf_dialog);
    QCOMPARE(world->record->ssid, QString("VIRELO-0015"));

    click_row(dialog, 0); // does not bring it back
    QVERIFY(!dialog->next_button->isEnabled());
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
}

void tst_client_wlans_choice::what_the_global_names_is_hidden()
{
    const Client_WLANs *first = open();
    const Client_WLANs *second = open();
    QTest::mouseClick(first->next_button, Qt::LeftButton);
    QVERIFY(first->isVisible());
    QVERIFY(!second->isVisible());
}

void tst_client_wlans_choice::back_in_the_settings_does_not_bring_the_list_back()
{
    const Client_WLANs *dialog = open();
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QTest::mouseClick(conf_dialog->back_button, Qt::LeftButton);
    QVERIFY(!conf_dialog->isVisible());
    QVERIFY(!dialog->isVisible());
}

void tst_client_wlans_choice::without_a_record_nothing_can_be_chosen()
{
    world->start_up.open();
    const Client_WLANs *dialog = open();
    overview->deleteRecords();
    QVERIFY(!dialog->device);
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QVERIFY(!dialog->next_button->isEnabled());
    QVERIFY(dialog->isVisible());
    QVERIFY(!conf_dialog);
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
}

void tst_client_wlans_choice::a_record_that_left_the_list_can_be_chosen()
{
    world->start_up.open();
    const Client_WLANs *dialog = open();
    overview->removeService(
        air_waves::service(world->record->name, world->record->ip, world->record->port.toUShort()));
    QVERIFY(device_list.isEmpty());
    QTest::mouseClick(dialog->next_button, Qt::LeftButton);
    QCOMPARE(world->record->ssid, QString("B"));
    QCOMPARE(conf_dialog->device.data(), world->record);
}

static int lists_open()
{
    int count = 0;
    for (const QWidget *widget : QApplication::topLevelWidgets())
        count += qobject_cast<const Client_WLANs *>(widget) && widget->isVisible() ? 1 : 0;
    return count;
}

void tst_client_wlans_choice::each_click_in_the_overview_opens_another_list()
{
    world->start_up.open_and_show();
    overview->update_tree_widget();
    overview->tree->topLevelItem(0)->setSelected(true);
    overview->wifi_button->setEnabled(true);
    QTest::mouseClick(overview->wifi_button, Qt::LeftButton);
    const Client_WLANs *first = wlans_dialog;
    QVERIFY(first && first->isVisible());
    QCOMPARE(first->device.data(), world->record);
    QVERIFY(!first->parent());
    QVERIFY(!first->isModal());
    QTest::mouseClick(overview->wifi_button, Qt::LeftButton);
    QVERIFY(wlans_dialog != first);
    QCOMPARE(lists_open(), 2);
}

void tst_client_wlans_choice::without_a_selected_speaker_no_list_opens()
{
    world->start_up.open_and_show();
    overview->update_tree_widget();
    overview->wifi_button->setEnabled(true);
    QTest::mouseClick(overview->wifi_button, Qt::LeftButton);
    QVERIFY(!wlans_dialog);
    QCOMPARE(lists_open(), 0);
}

QTEST_MAIN(tst_client_wlans_choice)
#include "tst_client_wlans_choice.moc"
