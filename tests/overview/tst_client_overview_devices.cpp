// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <QTreeWidget>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "overview/client_overview.h"
#include "settings/rzpushbutton.h"
#include "simulator/loopback.h"
#include "tests/fakes/fake_dns_sd.h"
#include "tests/overview/air_waves.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"
#include "tests/overview/paint_log.h"
#include "tests/overview/silent_speaker.h"
#include "zeroconf/qzeroconf.h"

using fake_dns_sd::Kind;

// The road from discovery's signals to device_list and back.
class tst_client_overview_devices : public QObject
{
    Q_OBJECT

private slots:
    void browse_is_started_by_the_constructor();
    void network_without_speakers_stays_searching();
    void failed_browse_looks_like_an_empty_network();
    void lost_browse_takes_every_speaker_away();

    void found_speaker_is_counted_before_its_row_shows_data();
    void found_speaker_is_counted_before_its_row_shows();
    void count_is_told_in_german_in_german();
    void silent_speaker_keeps_every_row_away();
    void speakers_that_arrive_while_others_are_in_flight_are_counted_on();
    void service_is_known_by_name_address_and_port_data();
    void service_is_known_by_name_address_and_port();
    void known_service_leaves_list_label_and_tree_as_they_are();
    void arrival_is_logged_with_the_list_before_and_after();
    void known_service_is_logged_up_to_its_record();
    void one_speaker_on_two_interfaces_is_one_record();
    void same_name_at_a_new_address_is_a_second_record_and_row();
    void speaker_that_arrives_while_a_record_is_made_comes_first();
    void service_reported_again_while_its_record_is_made_is_known();
    void service_removed_while_its_record_is_made_is_not_listed();
    void speaker_whose_replies_all_come_before_it_is_listed_has_its_row();
    void second_address_changes_nothing_and_is_logged();

    void status_ends_in_one_character_of_that_code_data();
    void status_ends_in_one_character_of_that_code();
    void status_text_is_painted_at_once();
    void progress_signal_of_a_record_reaches_nobody();
    void reload_does_not_browse_again();
    void dummy_redraws();
};

void tst_client_overview_devices::browse_is_started_by_the_constructor()
{
    Overview_World world;
    world.open();
    const QList<fake_dns_sd::Call> browses = fake_dns_sd::calls(Kind::Browse);
    QCOMPARE(browses.size(), 1);
    QCOMPARE(browses.first().type, QByteArray("_lodeset._tcp"));
    QVERIFY(browses.first().domain.isNull());
    QCOMPARE(world.log.texts().last(),
             QString("$$$ Client_Overview::Client_Overview(): zeroConf created and startBrowser() called"));

    air_waves::approach("Kitchen", 1, closed_port);
    QCOMPARE(fake_dns_sd::last_call(Kind::GetAddrInfo).protocol, 1U); // IPv4
}

void tst_client_overview_devices::network_without_speakers_stays_searching()
{
    Overview_World world;
    world.open_and_show();
    QVERIFY(device_list.isEmpty());
    QCOMPARE(label(), QString("<b>Searching Speakers...</b>"));
    QVERIFY(overview->spinner_label->isVisible());
    for (QPushButton *button : {overview->update_button, overview->group_button, overview->wifi_button})
        QVERIFY(!button->isEnabled());
    QVERIFY(overview->quit_button->isEnabled());
    // Nothing would end the search: there is no timer.
    QVERIFY(overview->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).isEmpty());
    QVERIFY(!overview->spare_timer.isActive());
}

void tst_client_overview_devices::failed_browse_looks_like_an_empty_network()
{
    Overview_World world;
    fake_dns_sd::fail_next(Kind::Browse, -65563);
    world.open_and_show();
    QCoreApplication::processEvents();
    QVERIFY(fake_dns_sd::open_refs(Kind::Browse).isEmpty());
    QCOMPARE(label(), QString("<b>Searching Speakers...</b>"));
    QVERIFY(overview->spinner_label->isVisible());
}

void tst_client_overview_devices::lost_browse_takes_every_speaker_away()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    air_waves::announce("Hall", 1, own_loopback(2), closed_port);
    QTRY_COMPARE(row_names(), QStringList({"Kitchen", "Hall"}));
    fake_dns_sd::error_reply(fake_dns_sd::last_call(Kind::Browse).ref, -65563);
    QTRY_VERIFY(device_list.isEmpty());
    QCOMPARE(row_names(), QStringList());
}

void tst_client_overview_devices::found_speaker_is_counted_before_its_row_shows_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("text");
    QTest::newRow("unset") << 0 << "<b>Speakers Found: 1...</b>";
    QTest::newRow("phone") << DEVICE_PHONE << "<b>Found 1...</b>";
    QTest::newRow("tablet") << DEVICE_TABLET << "<b>Speakers Found: 1...</b>";
    QTest::newRow("desktop") << DEVICE_DESKTOP << "<b>Speakers Found: 1...</b>";
}

void tst_client_overview_devices::found_speaker_is_counted_before_its_row_shows()
{
    QFETCH(int, device_class);
    QFETCH(QString, text);
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world(device_class);
    world.open_and_show();
    overview->spinner_label->hide();
    air_waves::announce("Kitchen", 1, own_loopback(1), speaker.http_port());
    QTRY_COMPARE(device_list.size(), 1);
    const Device_Desc *device = device_list.first();
    QCOMPARE(device->name, QString("Kitchen"));
    QCOMPARE(device->ip, own_loopback(1));
    QCOMPARE(device->port.toInt(), int(speaker.http_port()));
    QCOMPARE(device->parent(), overview);
    QVERIFY(!device->is_group);
    QCOMPARE(device->tab_index, -1);
    QCOMPARE(label(), text);
    QVERIFY(overview->spinner_label->isVisible());
    QCOMPARE(row_names(), QStringList());

    speaker.end();
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    QCOMPARE(label(), QString());
    QVERIFY(!overview->spinner_label->isVisible());
}

void tst_client_overview_devices::count_is_told_in_german_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    for (const int device_class : {0, DEVICE_PHONE}) {
        Silent_Speaker speaker(own_loopback(1));
        Overview_World world(device_class);
        world.open();
        air_waves::announce("Kitchen", 1, own_loopback(1), speaker.http_port());
        QTRY_COMPARE(device_list.size(), 1);
        const char *source = device_class == DEVICE_PHONE ? "<b>Found " : "<b>Speakers Found: ";
        QCOMPARE(label(), german.translate("Client_Overview", source) + "1...</b>");
        QVERIFY(!label().startsWith(source));
        speaker.end();
    }
}

void tst_client_overview_devices::silent_speaker_keeps_every_row_away()
{
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world;
    world.open();
    air_waves::announce("Silent", 1, own_loopback(1), speaker.http_port());
    QTRY_COMPARE(device_list.size(), 1);
    QCOMPARE(in_flight(), 6); // five requests and the thread
    air_waves::announce("Kitchen", 1, own_loopback(2), closed_port);
    QTRY_COMPARE(device_list.size(), 2);
    QTRY_COMPARE(in_flight(), 6);
    QCOMPARE(row_names(), QStringList());

    speaker.end();
    QTRY_COMPARE(row_names(), QStringList({"Silent", "Kitchen"}));
}

void tst_client_overview_devices::speakers_that_arrive_while_others_are_in_flight_are_counted_on()
{
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world;
    world.open();
    air_waves::announce("Silent", 1, own_loopback(1), speaker.http_port());
    QTRY_COMPARE(label(), QString("<b>Speakers Found: 1...</b>"));
    air_waves::announce("Kitchen", 1, own_loopback(2), closed_port);
    QTRY_COMPARE(label(), QString("<b>Speakers Found: 2...</b>"));
    air_waves::announce("Hall", 1, own_loopback(3), closed_port);
    QTRY_COMPARE(label(), QString("<b>Speakers Found: 3...</b>"));
    speaker.end();
}

void tst_client_overview_devices::service_is_known_by_name_address_and_port_data()
{
    add_known_and_unknown_rows();
}

void tst_client_overview_devices::service_is_known_by_name_address_and_port()
{
    QFETCH(QString, name);
    QFETCH(QString, address);
    QFETCH(int, port);
    QFETCH(bool, known);
    Overview_World world;
    world.open();
    add_known_records(world);

    overview->addService(air_waves::service(name, address, quint16(port)));
    QCOMPARE(device_list.size(), known ? 2 : 3);
    QCOMPARE(world.log.texts().contains("$$$ Device already exists!"), known);
    QTRY_COMPARE(in_flight(), 0);
}

void tst_client_overview_devices::known_service_leaves_list_label_and_tree_as_they_are()
{
    Overview_World world;
    world.open_and_show();
    overview->addService(air_waves::service("Kitchen", own_loopback(1), closed_port));
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    const QTreeWidgetItem *row = Overview_World::row(0);
    const QList<Device_Desc *> before = device_list;

    overview->addService(air_waves::service("Kitchen", own_loopback(1), closed_port));
    QCoreApplication::processEvents();
    QCOMPARE(device_list, before);
    QCOMPARE(label(), QString());
    QCOMPARE(Overview_World::row(0), row);
    QVERIFY(!overview->spinner_label->isVisible());
}

void tst_client_overview_devices::arrival_is_logged_with_the_list_before_and_after()
{
    Overview_World world;
    world.open();
    add_known_records(world);
    const QZeroConfService hall = air_waves::service("Hall", own_loopback(2), closed_port);
    world.log.clear();
    overview->addService(hall);
    const QStringList log = world.log.texts();
    QCOMPARE(log.mid(0, 3), QStringList({logged_service("$$$ Added service: ", hall),
                                         "Device # 0 :  \"Attic\"", "Device # 1 :  \"Kitchen\""}));
    QCOMPARE(log.mid(log.size() - 5),
             QStringList({"======================================= device_list", "Device # 0 :  \"Attic\"",
                          "Device # 1 :  \"Kitchen\"", "Device # 2 :  \"Hall\"",
                          "Client_Overview::addService finished"}));
    QTRY_COMPARE(in_flight(), 0);
}

void tst_client_overview_devices::known_service_is_logged_up_to_its_record()
{
    Overview_World world;
    world.open();
    add_known_records(world);
    const QZeroConfService attic = air_waves::service("Attic", own_loopback(9), 8080);
    world.log.clear();
    overview->addService(attic);
    QCOMPARE(world.log.texts(), QStringList({logged_service("$$$ Added service: ", attic),
                                             "Device # 0 :  \"Attic\"", "$$$ Device already exists!"}));
}

void tst_client_overview_devices::one_speaker_on_two_interfaces_is_one_record()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    air_waves::announce("Kitchen", 2, own_loopback(1), closed_port);
    QTRY_COMPARE(overview->zeroConf->services.size(), 2);
    QCOMPARE(device_list.size(), 1);
    QCOMPARE(row_names(), QStringList("Kitchen"));
    QVERIFY(world.log.texts().contains("$$$ Device already exists!"));
}

void tst_client_overview_devices::same_name_at_a_new_address_is_a_second_record_and_row()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), closed_port);
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    air_waves::announce("Kitchen", 2, own_loopback(2), closed_port);
    QTRY_COMPARE(row_names(), QStringList({"Kitchen", "Kitchen"}));
    QCOMPARE(device_list.at(0)->ip, own_loopback(1));
    QCOMPARE(device_list.at(1)->ip, own_loopback(2));

    air_waves::withdraw("Kitchen", 1); // the old one stays until a removal names it
    QTRY_COMPARE(device_list.size(), 1);
    QCOMPARE(device_list.first()->ip, own_loopback(2));
}

void tst_client_overview_devices::speaker_that_arrives_while_a_record_is_made_comes_first()
{
    Silent_Speaker first_speaker(own_loopback(1));
    Silent_Speaker second_speaker(own_loopback(2));
    Overview_World world;
    world.open();
    const DNSServiceRef first = air_waves::approach("First", 1, first_speaker.http_port());
    const DNSServiceRef second = air_waves::approach("Second", 1, second_speaker.http_port());
    // Both wait: the record of the one runs events before it is listed, and the other comes in.
    air_waves::answer(first, 1, own_loopback(1));
    air_waves::answer(second, 1, own_loopback(2));
    QTRY_COMPARE(device_list.size(), 2);
    // Which notifier fires first is the event loop's affair: the one reported within the other is listed
    // first.
    const bool as_sent = world.log.texts().indexOf(QRegularExpression(".*Added service.* First .*")) <
                         world.log.texts().indexOf(QRegularExpression(".*Added service.* Second .*"));
    QCOMPARE(listed_names(), as_sent ? QStringList({"Second", "First"}) : QStringList({"First", "Second"}));
    QCOMPARE(label(), QString("<b>Speakers Found: 2...</b>"));
    first_speaker.end();
    second_speaker.end();
    QTRY_COMPARE(overview->tree->topLevelItemCount(), 2);
}

void tst_client_overview_devices::service_reported_again_while_its_record_is_made_is_known()
{
    Overview_World world;
    world.open();
    const DNSServiceRef first = air_waves::approach("Kitchen", 1, closed_port);
    const DNSServiceRef second = air_waves::approach("Kitchen", 2, closed_port);
    air_waves::answer(first, 1, own_loopback(1));
    air_waves::answer(second, 2, own_loopback(1));
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    QTRY_COMPARE(overview->zeroConf->services.size(), 2);
    QCOMPARE(device_list.size(), 1);
    QVERIFY(world.log.texts().contains("$$$ Device already exists!"));
}

void tst_client_overview_devices::service_removed_while_its_record_is_made_is_not_listed()
{
    Overview_World world;
    world.open();
    const QZeroConfService kitchen = air_waves::service("Kitchen", own_loopback(1), closed_port);
    QTimer::singleShot(0, overview, [kitchen] { overview->removeService(kitchen); });
    overview->addService(kitchen);
    QVERIFY(device_list.isEmpty());
    QTRY_COMPARE(in_flight(), 0);
    QCOMPARE(row_names(), QStringList());
    overview->addService(kitchen); // back again
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
}

void tst_client_overview_devices::speaker_whose_replies_all_come_before_it_is_listed_has_its_row()
{
    Overview_World world;
    world.open();
    QTimer::singleShot(0, overview, [] { // as a box does that a click opens
        QVERIFY(device_list.isEmpty());
        QTRY_COMPARE(in_flight(), 0);
    });
    overview->addService(air_waves::service("Kitchen", own_loopback(1), closed_port));
    QCOMPARE(row_names(), QStringList("Kitchen"));
    QCOMPARE(label(), QString());
}

void tst_client_overview_devices::second_address_changes_nothing_and_is_logged()
{
    Overview_World world;
    world.open();
    const DNSServiceRef handle = air_waves::approach("Kitchen", 1, closed_port);
    air_waves::answer(handle, 1, own_loopback(1));
    QTRY_COMPARE(row_names(), QStringList("Kitchen"));
    air_waves::answer(handle, 1, own_loopback(2));
    const QString text =
        QString("$$$ Updated IPv6 service:  Zeroconf Service: Kitchen @ speaker.local. (%1:%2)")
            .arg(own_loopback(2))
            .arg(closed_port);
    QTRY_COMPARE(world.log.texts().last().simplified(), text.simplified());
    QCOMPARE(device_list.size(), 1);
    QCOMPARE(device_list.first()->ip, own_loopback(1));
    QCOMPARE(row_names(), QStringList("Kitchen"));
}

void tst_client_overview_devices::status_ends_in_one_character_of_that_code_data()
{
    QTest::addColumn<int>("running");
    QTest::addColumn<int>("code");
    QTest::newRow("letter") << 65 << 65;
    QTest::newRow("no digit") << 3 << 3;
    QTest::newRow("above 127") << 200 << 200;
    QTest::newRow("above 255") << 256 + 66 << 66;
    QTest::newRow("negative") << -1 << 255;
}

void tst_client_overview_devices::status_ends_in_one_character_of_that_code()
{
    QFETCH(int, running);
    QFETCH(int, code);
    Overview_World world;
    world.open();
    world.log.clear();
    overview->update_status(running);
    QCOMPARE(label(), QString("<b>Reading Status...</b>") + QChar(code));
    QCOMPARE(world.log.texts().size(), 1);
    const QString line = world.log.texts().first();
    QVERIFY2(line.startsWith(QString(64, '*') + " \"<b>Reading Status...</b>"), qPrintable(line));
}

void tst_client_overview_devices::status_text_is_painted_at_once()
{
    Overview_World world;
    world.open_and_show();
    QCoreApplication::processEvents();
    Paint_Log log({overview->status_label});
    overview->setStatusText("one");
    QCOMPARE(label(), QString("one"));
    QCOMPARE(log.painted.size(), 1);
    overview->update_status(65);
    QCOMPARE(log.painted.size(), 2);
}

void tst_client_overview_devices::progress_signal_of_a_record_reaches_nobody()
{
    Silent_Speaker speaker(own_loopback(1));
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), speaker.http_port());
    QTRY_COMPARE(label(), QString("<b>Speakers Found: 1...</b>"));
    emit device_list.first()->one_resolve_completed(65);
    emit device_list.first()->device_defect(device_list.first());
    QCoreApplication::processEvents();
    QCOMPARE(label(), QString("<b>Speakers Found: 1...</b>"));
    speaker.end();
}

void tst_client_overview_devices::reload_does_not_browse_again()
{
    Overview_World world;
    world.open();
    overview->ReloadClicked();
    QCOMPARE(fake_dns_sd::calls(Kind::Browse).size(), 1);
    QCOMPARE(fake_dns_sd::releases(), 0);
}

void tst_client_overview_devices::dummy_redraws()
{
    Overview_World world;
    world.open();
    world.add_record("Kitchen", control_of_type(255));
    world.log.clear();
    overview->dummy();
    QCOMPARE(world.log.texts().value(0), QString("Client_Overview::dummy()"));
    QCOMPARE(row_names(), QStringList("Kitchen"));
}

QTEST_MAIN(tst_client_overview_devices)
#include "tst_client_overview_devices.moc"
