// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include "app/client.h"
#include "app/globals.h"
#include "overview/client_overview.h"
#include "simulator/loopback.h"
#include "tests/overview/air_waves.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"
#include "tests/overview/silent_speaker.h"

// How speakers leave device_list.
class tst_client_overview_removal : public QObject
{
    Q_OBJECT

private slots:
    void removed_speaker_leaves_list_and_tree();
    void removal_compares_name_address_and_port_data();
    void removal_compares_name_address_and_port();
    void removal_logs_what_it_compares();
    void removal_without_match_redraws_nothing();
    void removal_stops_at_the_first_match();
    void removal_clears_the_count();
    void removed_record_goes_on_until_it_ends_by_itself();
    void removed_master_stays_the_master();
    void tab_of_a_removed_record_stays_and_a_new_record_gets_another();
    void deleted_records_leave_nothing_behind();
    void deleted_record_in_flight_goes_when_its_thread_has_ended();
};

void tst_client_overview_removal::removed_speaker_leaves_list_and_tree()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    QTRY_COMPARE(device_list.size(), 1);
    air_waves::announce("Hall", 1, own_loopback(2), closed_port);
    QTRY_COMPARE(row_names(), QStringList({"Kitchen", "Hall"}));
    air_waves::withdraw("Kitchen", 1);
    QTRY_COMPARE(listed_names(), QStringList("Hall"));
    QCOMPARE(row_names(), QStringList("Hall"));
}

void tst_client_overview_removal::removal_compares_name_address_and_port_data()
{
    add_known_and_unknown_rows();
}

void tst_client_overview_removal::removal_compares_name_address_and_port()
{
    QFETCH(QString, name);
    QFETCH(QString, address);
    QFETCH(int, port);
    QFETCH(bool, known);
    Overview_World world;
    world.open();
    add_known_records(world);
    overview->update_tree_widget();

    overview->removeService(air_waves::service(name, address, quint16(port)));
    QStringList left{"Attic", "Kitchen"};
    if (known)
        left.removeAll(name);
    QCOMPARE(listed_names(), left);
    QCOMPARE(row_names(), left);
    QCOMPARE(world.log.texts().contains("$$$ Device found - removing!"), known);
}

void tst_client_overview_removal::removal_logs_what_it_compares()
{
    Overview_World world;
    world.open();
    add_known_records(world);
    const QZeroConfService kitchen = air_waves::service("Kitchen", own_loopback(1), 80);
    world.log.clear();
    overview->removeService(kitchen);
    const auto same_address = [](int attic_or_kitchen) {
        return QString("\"%1\" == \"%2\"").arg(own_loopback(attic_or_kitchen), own_loopback(1));
    };
    QCOMPARE(world.log.texts().mid(0, 10),
             QStringList({logged_service("$$$ Removed service: ", kitchen), "Device # 0 :  \"Attic\"",
                          "\"Attic\" == \"Kitchen\"", same_address(9), "\"08080\" == 80",
                          "Device # 1 :  \"Kitchen\"", "\"Kitchen\" == \"Kitchen\"", same_address(1),
                          "\"80\" == 80", "$$$ Device found - removing!"}));
}

void tst_client_overview_removal::removal_without_match_redraws_nothing()
{
    Overview_World world;
    world.open_and_show();
    world.add_record("Kitchen", control_of_type(255));
    overview->update_tree_widget();
    Overview_World::row(0)->setSelected(true);
    overview->setStatusText("as it was");
    overview->spinner_label->show();
    overview->removeService(air_waves::service("Kitchen", own_loopback(1), 80));
    QCOMPARE(label(), QString("as it was"));
    QVERIFY(overview->spinner_label->isVisible());
    QVERIFY(Overview_World::row(0)->isSelected());
    QCOMPARE(device_list.size(), 1);
}

void tst_client_overview_removal::removal_stops_at_the_first_match()
{
    Overview_World world;
    world.open();
    for (int i = 0; i < 2; ++i) {
        Device_Desc *device = world.add_record("Kitchen", control_of_type(255));
        device->set_ip(own_loopback(1));
        device->set_port("80");
    }
    Device_Desc *const second = device_list.last();
    overview->removeService(air_waves::service("Kitchen", own_loopback(1), 80));
    QCOMPARE(device_list, QList<Device_Desc *>{second});
}

void tst_client_overview_removal::removal_clears_the_count()
{
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world;
    world.open_and_show();
    air_waves::announce("Silent", 1, own_loopback(1), speaker.http_port());
    air_waves::announce("Kitchen", 1, own_loopback(2), closed_port);
    QTRY_COMPARE(label(), QString("<b>Speakers Found: 2...</b>"));
    air_waves::withdraw("Kitchen", 1);
    QTRY_COMPARE(device_list.size(), 1);
    QCOMPARE(label(), QString()); // not "1": the redraw clears it
    QVERIFY(!overview->spinner_label->isVisible());
    // The redraw shows what is in the list, identified or not.
    QCOMPARE(row_names(), QStringList("Silent"));
    QCOMPARE(Overview_World::row(0)->text(3), QString("Unknown Speaker :-("));
    speaker.end();
}

void tst_client_overview_removal::removed_record_goes_on_until_it_ends_by_itself()
{
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), speaker.http_port());
    QTRY_COMPARE(device_list.size(), 1);
    const QPointer<Device_Desc> record = device_list.first();
    air_waves::withdraw("Kitchen", 1);
    QTRY_VERIFY(device_list.isEmpty());
    QVERIFY(record);
    QVERIFY(record->isRunning());
    QCOMPARE(in_flight(), 6);

    speaker.end();
    QTRY_COMPARE(in_flight(), 0);
    QTRY_VERIFY(record->isFinished());
    QVERIFY(record->control);
    QCOMPARE(row_names(), QStringList());
}

void tst_client_overview_removal::removed_master_stays_the_master()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    sender_device = device_list.first();
    sender_device->groupname = "Party";
    air_waves::withdraw("Kitchen", 1);
    QTRY_VERIFY(device_list.isEmpty());
    QVERIFY(sender_device);
    QCOMPARE(row_names(), QStringList("Party"));
}

void tst_client_overview_removal::tab_of_a_removed_record_stays_and_a_new_record_gets_another()
{
    Overview_World world;
    world.open_and_show();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(client->tabs->count(), 2);
    QWidget *const tab = client->tabs->widget(1);
    Device_Desc *const record = device_list.first();

    air_waves::withdraw("Kitchen", 1);
    QTRY_VERIFY(device_list.isEmpty());
    QCOMPARE(client->tabs->count(), 2);
    QCOMPARE(client->tabs->widget(1), tab);
    QVERIFY(client->tabs->isTabEnabled(1));
    QCOMPARE(record->tab_index, 1);

    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    QVERIFY(device_list.first() != record);
    QCOMPARE(device_list.first()->tab_index, -1);
    client->tabs->setCurrentIndex(0);
    Overview_World::click(Overview_World::row(0));
    QCOMPARE(device_list.first()->tab_index, 2);
    QCOMPARE(client->tabs->count(), 3);
    QCOMPARE(client->tabs->tabText(2), QString("Kitchen"));
}

void tst_client_overview_removal::deleted_records_leave_nothing_behind()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    air_waves::announce("Hall", 1, own_loopback(2), closed_port);
    QTRY_COMPARE(row_names(), QStringList({"Kitchen", "Hall"}));
    const QList<QPointer<Device_Desc>> records{device_list.at(0), device_list.at(1)};
    for (const QPointer<Device_Desc> &record : records)
        QTRY_VERIFY(!record->isRunning());
    sender_device = device_list.first();
    overview->item_clicked(Overview_World::row(0), 0);

    overview->deleteRecords();
    QVERIFY(device_list.isEmpty());
    QCOMPARE(row_names(), QStringList());
    QVERIFY(!records.at(0));
    QVERIFY(!records.at(1));
    QVERIFY(!sender_device);
    QVERIFY(!overview->selected);
    QVERIFY(!overview->selected_device());
}

void tst_client_overview_removal::deleted_record_in_flight_goes_when_its_thread_has_ended()
{
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), speaker.http_port());
    QTRY_COMPARE(device_list.size(), 1);
    const QPointer<Device_Desc> record = device_list.first();
    QVERIFY(record->isRunning());

    overview->deleteRecords();
    QVERIFY(device_list.isEmpty());
    QVERIFY(record); // not under its running thread, and not by waiting for it
    QVERIFY(record->isRunning());
    overview->setStatusText("as it was");
    speaker.end();
    QTRY_VERIFY(!record);
    QTRY_COMPARE(in_flight(), 0);
    QCOMPARE(label(), QString("as it was")); // its end redraws nothing any more
}

QTEST_MAIN(tst_client_overview_removal)
#include "tst_client_overview_removal.moc"
