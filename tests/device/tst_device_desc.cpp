// SPDX-License-Identifier: MIT
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include "app/globals.h"
#include "control/virelo_group.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/device/in_flight.h"
#include "tests/fakes/lock_watch.h"
#include "tests/fakes/log_capture.h"

namespace
{
// On an address where nothing listens on the host ports: identification ends at once.
QZeroConfService make_service(const Http_Peer &peer)
{
    QZeroConfService service(new QZeroConfServiceData);
    service->name = "Left";
    service->type = "_lodeset._tcp";
    service->domain = "local";
    service->host = "left.local";
    service->ip = peer.serverAddress();
    service->port = peer.serverPort();
    return service;
}
} // namespace

class tst_device_desc : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void a_new_record_is_empty();
    void a_group_record_has_a_group_control_that_does_not_run();
    void setting_address_or_port_rebuilds_all_urls();
    void a_port_is_taken_as_number_and_as_text();
    void setting_the_name_logs_it();

    void the_broadcast_address_is_computed_data();
    void the_broadcast_address_is_computed();
    void a_static_network_is_stored_and_clearing_keeps_its_values();

    void activities_count_up_and_down_and_0_is_told_each_time();
    void counting_from_many_threads_stays_right();

    void a_service_fills_the_record_and_starts_everything();
    void the_start_logs_the_service_and_posts_in_order();
    void records_are_numbered_in_order_of_arrival();
    void events_are_run_within_the_start();
    void a_service_without_address_ends_too();
    void the_address_is_taken_under_its_mutex();

private:
    QScopedPointer<Http_Peer> peer;
};

void tst_device_desc::init()
{
    resolves_running = 0;
    peer.reset(new Http_Peer(QHostAddress(own_loopback(1))));
    QVERIFY(peer->isListening());
}

void tst_device_desc::cleanup()
{
    QCOMPARE(in_flight(), 0);
}

void tst_device_desc::a_new_record_is_empty()
{
    QObject parent;
    Device_Desc record(&parent, false, "not used");
    QCOMPARE(record.parent(), &parent);
    QVERIFY(!record.control);
    QVERIFY(!record.is_group && !record.cell_master && !record.static_network && !record.sender_enabled);
    QVERIFY(!record.tree_row);
    QCOMPARE(record.tab_index, -1);
    for (const QString &text : {record.name,
                                record.groupname,
                                record.ip,
                                record.port,
                                record.model,
                                record.firmware,
                                record.hardware,
                                record.wlan_mode,
                                record.ssid,
                                record.mac,
                                record.uuid,
                                record.receiver_sender,
                                record.static_ip,
                                record.static_netmask,
                                record.static_broadcast,
                                record.static_gateway,
                                record.static_domain,
                                record.static_dns1,
                                record.static_dns2,
                                record.device_url,
                                record.configure_url,
                                record.otaupgrade_url,
                                record.network_url,
                                record.wifi_url,
                                record.bluetooth_url,
                                record.sender_url,
                                record.receiver_url})
        QCOMPARE(text, QString());
    for (int number :
         {record.signal, record.channelwidth, record.sender_mode, record.sender_state, record.receiver_state})
        QCOMPARE(number, 0);
    QCOMPARE(record.bitrate, 0.0f);
    QVERIFY(!record.isRunning());
}

void tst_device_desc::a_group_record_has_a_group_control_that_does_not_run()
{
    QTest::ignoreMessage(QtDebugMsg, "Name: \"Party\"");
    Device_Desc record(nullptr, true, "Party");
    QVERIFY(record.is_group);
    QCOMPARE(record.name, QString("Party"));
    QCOMPARE(record.groupname, QString("Party"));
    auto *group = qobject_cast<Virelo_Group *>(record.control);
    QVERIFY(group);
    QCOMPARE(group->name, QString("Party"));
    QVERIFY(!group->isRunning());
    QVERIFY(!record.isRunning());
    QVERIFY(record.ip.isEmpty() && record.device_url.isEmpty());
    delete group;
}

void tst_device_desc::setting_address_or_port_rebuilds_all_urls()
{
    Device_Desc record(nullptr, false, "");
    const auto verify = [&record](const QString &base) {
        QCOMPARE(record.configure_url, base + "/api/v14/configure.action");
        QCOMPARE(record.device_url, base + "/api/v19/device.action");
        QCOMPARE(record.otaupgrade_url, base + "/api/v14/otaupgrade.action");
        QCOMPARE(record.network_url, base + "/api/v19/network.action");
        QCOMPARE(record.wifi_url, base + "/api/v19/wifi.action");
        QCOMPARE(record.sender_url, base + "/api/v19/songcast/sender.action");
        QCOMPARE(record.receiver_url, base + "/api/v19/songcast/receiver.action");
        QCOMPARE(record.bluetooth_url, base + "/api/v20/bluetooth.action");
    };
    record.set_ip("192.168.1.20");
    verify("http://192.168.1.20:");
    record.set_port(80);
    verify("http://192.168.1.20:80");
    record.set_ip("10.0.0.1");
    verify("http://10.0.0.1:80");
    record.set_port(QString("8080"));
    verify("http://10.0.0.1:8080");
    record.ip = "10.0.0.2";
    verify("http://10.0.0.1:8080");
    record.make_urls();
    verify("http://10.0.0.2:8080");
}

void tst_device_desc::a_port_is_taken_as_number_and_as_text()
{
    Device_Desc record(nullptr, false, "");
    record.set_port(65535);
    QCOMPARE(record.port, QString("65535"));
    record.set_port(QString("80"));
    QCOMPARE(record.port, QString("80"));
}

void tst_device_desc::setting_the_name_logs_it()
{
    Device_Desc record(nullptr, false, "");
    QTest::ignoreMessage(QtDebugMsg, "Name: \"Left\"");
    record.set_name("Left");
    QCOMPARE(record.name, QString("Left"));
    QVERIFY(record.groupname.isEmpty());
}

void tst_device_desc::the_broadcast_address_is_computed_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("netmask");
    QTest::addColumn<QString>("broadcast");
    QTest::newRow("24 bits") << "192.168.1.20"
                             << "255.255.255.0"
                             << "192.168.1.255";
    QTest::newRow("20 bits") << "172.16.37.5"
                             << "255.255.240.0"
                             << "172.16.47.255";
    QTest::newRow("32 bits") << "10.1.2.3"
                             << "255.255.255.255"
                             << "10.1.2.3";
    QTest::newRow("0 bits") << "10.1.2.3"
                            << "0.0.0.0"
                            << "255.255.255.255";
    QTest::newRow("a mask with holes") << "10.1.2.3"
                                       << "255.0.255.0"
                                       << "10.255.2.255";
    QTest::newRow("empty mask") << "192.168.1.20"
                                << ""
                                << "255.255.255.255";
    QTest::newRow("short mask") << "192.168.1.20"
                                << "255.255"
                                << "192.168.255.255";
    QTest::newRow("mask with a dot at its end") << "192.168.1.20"
                                                << "255.255.255."
                                                << "192.168.1.255";
    QTest::newRow("empty address") << ""
                                   << "255.255.255.0"
                                   << "0.0.0.255";
    QTest::newRow("short address") << "192.168"
                                   << "255.255.255.0"
                                   << "192.168.0.255";
    QTest::newRow("both empty") << ""
                                << ""
                                << "255.255.255.255";
    QTest::newRow("too many parts") << "1.2.3.4.5"
                                    << "255.255.255.0.255"
                                    << "1.2.3.255";
    QTest::newRow("no numbers") << "a.b.c.d"
                                << "255.255.255.0"
                                << "0.0.0.255";
    QTest::newRow("a part above 255 runs over") << "192.300.1.20"
                                                << "255.255.255.0"
                                                << "193.44.1.255";
    QTest::newRow("the first part above 255") << "256.1.1.1"
                                              << "255.255.255.0"
                                              << "0.1.1.255";
    QTest::newRow("a part beyond 32 bits") << "1.99999999999.1.1"
                                           << "255.255.255.0"
                                           << "1.0.1.255";
    QTest::newRow("a negative part") << "1.-1.1.1"
                                     << "255.255.255.0"
                                     << "1.0.1.255";
    QTest::newRow("leading zeros are decimal") << "010.1.1.1"
                                               << "255.255.255.0"
                                               << "10.1.1.255";
}

void tst_device_desc::the_broadcast_address_is_computed()
{
    QFETCH(QString, ip);
    QFETCH(QString, netmask);
    QFETCH(QString, broadcast);
    Device_Desc record(nullptr, false, "");
    QTest::ignoreMessage(QtDebugMsg, qPrintable("Calculated Boradcast Address: \"" + broadcast + "\""));
    record.set_static_network(ip, netmask, "", "", "", "");
    QCOMPARE(record.static_broadcast, broadcast);
    QCOMPARE(record.static_ip, ip);
    QCOMPARE(record.static_netmask, netmask);
}

void tst_device_desc::a_static_network_is_stored_and_clearing_keeps_its_values()
{
    Device_Desc record(nullptr, false, "");
    record.set_static_network("192.168.1.20", "255.255.255.0", "192.168.1.1", "home", "9.9.9.9", "1.1.1.1");
    const auto values = [&record] {
        return QStringList{record.static_ip,      record.static_netmask, record.static_broadcast,
                           record.static_gateway, record.static_domain,  record.static_dns1,
                           record.static_dns2};
    };
    const QStringList expected = {"192.168.1.20", "255.255.255.0", "192.168.1.255", "192.168.1.1",
                                  "home",         "9.9.9.9",       "1.1.1.1"};
    QVERIFY(record.static_network);
    QCOMPARE(values(), expected);
    QVERIFY(record.ip.isEmpty());
    record.clear_static_network();
    QVERIFY(!record.static_network);
    QCOMPARE(values(), expected);
}

void tst_device_desc::activities_count_up_and_down_and_0_is_told_each_time()
{
    Device_Desc first(nullptr, false, "");
    Device_Desc second(nullptr, false, "");
    QSignalSpy by_first(&first, &Device_Desc::all_resolves_completed);
    QSignalSpy by_second(&second, &Device_Desc::all_resolves_completed);
    first.resolve_started();
    first.resolve_started();
    second.resolve_started();
    QCOMPARE(in_flight(), 3);
    first.resolve_finished();
    second.resolve_finished();
    QCOMPARE(in_flight(), 1);
    QCOMPARE(by_first.count() + by_second.count(), 0);
    first.resolve_finished();
    QCOMPARE(by_first.count(), 1);
    QCOMPARE(by_second.count(), 0);
    second.resolve_started();
    second.resolve_finished();
    QCOMPARE(by_first.count(), 1);
    QCOMPARE(by_second.count(), 1);
}

void tst_device_desc::counting_from_many_threads_stays_right()
{
    Device_Desc record(nullptr, false, "");
    QAtomicInt told = 0;
    connect(
        &record, &Device_Desc::all_resolves_completed, this, [&told] { told.ref(); }, Qt::DirectConnection);
    record.resolve_started();
    QList<QThread *> threads;
    for (int i = 0; i < 8; i++) {
        threads += QThread::create([&record] {
            for (int round = 0; round < 2000; round++) {
                record.resolve_started();
                record.resolve_finished();
            }
        });
        threads.last()->start();
    }
    for (QThread *thread : qAsConst(threads))
        QVERIFY(thread->wait());
    qDeleteAll(threads);
    QCOMPARE(in_flight(), 1);
    QCOMPARE(told.loadRelaxed(), 0);
    record.resolve_finished();
    QCOMPARE(told.loadRelaxed(), 1);
}

void tst_device_desc::a_service_fills_the_record_and_starts_everything()
{
    Device_Desc record(nullptr, false, "");
    QSignalSpy numbered(&record, &Device_Desc::one_resolve_completed);
    record.set_QZeroConfService(make_service(*peer));
    QCOMPARE(record.name, QString("Left"));
    QCOMPARE(record.ip, own_loopback(1));
    QCOMPARE(record.port, QString::number(peer->serverPort()));
    QCOMPARE(record.bluetooth_url, "http://" + record.ip + ":" + record.port + "/api/v20/bluetooth.action");
    QCOMPARE(numbered.count(), 1);

    // The peer answers nothing, so only the thread ends.
    QTRY_VERIFY(record.isFinished());
    QVERIFY(record.wait()); // takes no time, and makes sure that what the thread wrote is seen here
    QTRY_COMPARE(peer->requests.size(), 5);
    QCOMPARE(in_flight(), 5);
    QVERIFY(qobject_cast<Virelo_Unknown *>(record.control));
    QCOMPARE(last_typed_device, &record);

    QSignalSpy completed(&record, &Device_Desc::all_resolves_completed);
    for (const Http_Peer::Request &request : qAsConst(peer->requests))
        peer->answer_now(request, http_answer("{}"));
    QTRY_COMPARE(completed.count(), 1);
    delete record.control;
}

void tst_device_desc::the_start_logs_the_service_and_posts_in_order()
{
    const QString ip = own_loopback(1);
    const QString port = QString::number(peer->serverPort());
    peer->answer = http_answer("{}");
    Device_Desc record(nullptr, false, "");
    QStringList lines;
    {
        Log_Capture log;
        record.set_QZeroConfService(make_service(*peer));
        QVERIFY(record.wait());
        lines = log.texts();
    }
    QStringList paths;
    for (const QString &line : qAsConst(lines)) {
        if (line.contains(")::_request("))
            paths += line.section('"', 3, 3).section(port, 1);
    }
    QCOMPARE(paths, QStringList({"/api/v19/device.action", "/api/v19/network.action",
                                 "/api/v19/songcast/sender.action", "/api/v19/songcast/receiver.action",
                                 "/api/v20/bluetooth.action"}));

    const QStringList start = {"$$$ Device_Desc::set_QZeroConfService():",
                               "name: \"Left\"",
                               "type: \"_lodeset._tcp\"",
                               "domain: \"local\"",
                               "host: \"left.local\"",
                               "IP: \"" + ip + "\"",
                               "Port: " + port,
                               "Name: \"Left\"",
                               "Device_Desc: resolve of \"Left\"  finished: IP= \"" + ip +
                                   "\"  port= " + port};
    QCOMPARE(lines.mid(0, start.size()), start);
    for (int attempt = 0; attempt < 4; attempt++)
        QCOMPARE(lines.count("Reading Speaker Type, try # " + QString::number(attempt)), 1);
    QCOMPARE(lines.count("******** response: "), 4);
    QCOMPARE(lines.count("******** Speaker of type found: 0 \"Unknown Speaker :-(\""), 4);
    QCOMPARE(lines.count("******************** Virleo_Unknown found!"), 1);
    QTRY_COMPARE(in_flight(), 0);
    delete record.control;
}

void tst_device_desc::records_are_numbered_in_order_of_arrival()
{
    peer->answer = http_answer("{}");
    Device_Desc first(nullptr, false, "");
    Device_Desc second(nullptr, false, "");
    QSignalSpy by_first(&first, &Device_Desc::one_resolve_completed);
    QSignalSpy by_second(&second, &Device_Desc::one_resolve_completed);
    resolve_serial = 1;
    first.set_QZeroConfService(make_service(*peer));
    second.set_QZeroConfService(make_service(*peer));
    QCOMPARE(by_first.count(), 1);
    QCOMPARE(by_first.first().first().toInt(), 1);
    QCOMPARE(by_second.count(), 1);
    QCOMPARE(by_second.first().first().toInt(), 2);
    QCOMPARE(resolve_serial, 3);
    QTRY_COMPARE(in_flight(), 0);
    delete first.control;
    delete second.control;
}

void tst_device_desc::events_are_run_within_the_start()
{
    peer->answer = http_answer("{}");
    Device_Desc record(nullptr, false, "");
    QStringList order;
    QObject::connect(&record, &Device_Desc::one_resolve_completed, this, [&order] { order += "numbered"; });
    QMetaObject::invokeMethod(
        this, [&] { order += record.isRunning() || record.isFinished() ? "event" : "early"; },
        Qt::QueuedConnection);
    record.set_QZeroConfService(make_service(*peer));
    QCOMPARE(order, QStringList({"event", "numbered"}));
    QTRY_COMPARE(in_flight(), 0);
    delete record.control;
}

void tst_device_desc::a_service_without_address_ends_too()
{
    Device_Desc record(nullptr, false, "");
    QSignalSpy completed(&record, &Device_Desc::all_resolves_completed);
    record.set_QZeroConfService(QZeroConfService(new QZeroConfServiceData));
    QTRY_COMPARE(completed.count(), 1);
    QVERIFY(record.wait());
    QVERIFY(record.ip.isEmpty());
    QVERIFY(qobject_cast<Virelo_Unknown *>(record.control));
    delete record.control;
}

// The line before the address lets another thread, which holds the mutex, change the address and let go.
void tst_device_desc::the_address_is_taken_under_its_mutex()
{
    peer->answer = http_answer("{}");
    const QZeroConfService service = make_service(*peer);
    service->ip = QHostAddress(own_loopback(2));
    QSemaphore held;
    QSemaphore asked;
    const pid_t reader = gettid();
    const QScopedPointer<QThread> engine(QThread::create([&] {
        const QMutexLocker lock(&service->ip_mutex);
        held.release();
        asked.acquire();
        let_run_into_lock(reader);
        service->ip = peer->serverAddress();
    }));
    engine->start();
    held.acquire();

    Device_Desc record(nullptr, false, "");
    {
        Log_Capture log;
        log.on_debug_line = [&asked](const QString &line) {
            if (line.startsWith("host:"))
                asked.release();
        };
        record.set_QZeroConfService(service);
        QVERIFY(record.wait());
    }
    QVERIFY(engine->wait());
    QCOMPARE(record.ip, own_loopback(1));
    QTRY_COMPARE(in_flight(), 0);
    delete record.control;
}

QTEST_GUILESS_MAIN(tst_device_desc)
#include "tst_device_desc.moc"
