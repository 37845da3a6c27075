// SPDX-License-Identifier: MIT
#include <QSignalSpy>
#include <QTest>

#include "app/globals.h"
#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/device/status_fields.h"

// What the replies of the two information reads do to a record.
class tst_device_desc_status : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_device_reply_fills_three_fields();
    void a_huge_reply_is_read_to_its_end();
    void a_reply_beyond_1_MB_is_no_document();
    void a_device_key_that_is_missing_or_no_string_reads_as_empty_data();
    void a_device_key_that_is_missing_or_no_string_reads_as_empty();
    void the_network_reply_fills_all_fields();
    void a_network_reply_without_wlan_leaves_all_fields();
    void a_network_reply_without_stationinfo_leaves_only_the_station_fields();
    void network_values_of_a_wrong_type_read_as_nothing_data();
    void network_values_of_a_wrong_type_read_as_nothing();

private:
    QScopedPointer<Http_Peer> peer;
};

void tst_device_desc_status::init()
{
    resolves_running = 0;
    peer.reset(new Http_Peer(QHostAddress(own_loopback(1))));
    QVERIFY(peer->isListening());
}

void tst_device_desc_status::cleanup()
{
    QCOMPARE(resolves_running, 0);
}

void tst_device_desc_status::the_device_reply_fills_three_fields()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer(device_info);
    record.request_device_status();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(record.model, QString("VIRELO Air"));
    QCOMPARE(record.firmware, QString("1.4.2"));
    QCOMPARE(record.hardware, QString("2.0"));
}

void tst_device_desc_status::a_huge_reply_is_read_to_its_end()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    const QByteArray blanks(400'000, ' ');
    peer->answer = http_answer("{" + blanks + R"("model": "M")" + blanks + R"(, "hardware": "2.0"})");
    record.request_device_status();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(record.model, QString("M"));
    QCOMPARE(record.hardware, QString("2.0"));
}

void tst_device_desc_status::a_reply_beyond_1_MB_is_no_document()
{
    Device_Desc record(nullptr, false, "");
    fill_status(record);
    const QString before = record.model;
    peer->point_at_me(record);
    peer->answer = http_answer("{" + QByteArray(50'000'000, ' ') + R"("model": "M"})");
    QSignalSpy defect(&record, &Device_Desc::device_defect);
    record.request_device_status();
    QTRY_COMPARE(defect.size(), 1);
    QCOMPARE(resolves_running, 0);
    QCOMPARE(record.model, before);
}

void tst_device_desc_status::a_device_key_that_is_missing_or_no_string_reads_as_empty_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("fields");
    QTest::newRow("no model") << QByteArray(R"({"firmware": "1", "hardware": "2"})") << "/1/2";
    QTest::newRow("no firmware") << QByteArray(R"({"model": "M", "hardware": "2"})") << "M//2";
    QTest::newRow("no hardware") << QByteArray(R"({"model": "M", "firmware": "1"})") << "M/1/";
    QTest::newRow("none") << QByteArray(R"({"other": 1})") << "//";
    QTest::newRow("wrong types") << QByteArray(R"({"model": 1, "firmware": {}, "hardware": null})") << "//";
    QTest::newRow("keys are told apart by case")
        << QByteArray(R"({"Model": "M", "FIRMWARE": "1", "hardware": "2"})") << "//2";
}

void tst_device_desc_status::a_device_key_that_is_missing_or_no_string_reads_as_empty()
{
    QFETCH(QByteArray, body);
    Device_Desc record(nullptr, false, "");
    fill_status(record);
    peer->point_at_me(record);
    peer->answer = http_answer(body);
    record.request_device_status();
    QTRY_COMPARE(resolves_running, 0);
    QTEST(record.model + "/" + record.firmware + "/" + record.hardware, "fields");
}

void tst_device_desc_status::the_network_reply_fills_all_fields()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer(network_info);
    record.request_network_status();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(record.wlan_mode, QString("STA"));
    QCOMPARE(record.ssid, QString("Home"));
    QCOMPARE(record.mac, QString("02:00:00:00:00:01"));
    QCOMPARE(record.signal, -52);
    QCOMPARE(record.channelwidth, 40);
    QCOMPARE(record.bitrate, 144.5f);
}

void tst_device_desc_status::a_network_reply_without_wlan_leaves_all_fields()
{
    Device_Desc record(nullptr, false, "");
    QSignalSpy defect(&record, &Device_Desc::device_defect);
    fill_status(record);
    peer->point_at_me(record);
    peer->answer = http_answer(R"({"lan": {"mode": "AP"}, "stationinfo": {"signal": 9}})");
    QTest::ignoreMessage(QtDebugMsg, "NO wlan Object in response...");
    record.request_network_status();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(status_of(record), filled_status());
    QCOMPARE(defect.count(), 0);
}

void tst_device_desc_status::a_network_reply_without_stationinfo_leaves_only_the_station_fields()
{
    Device_Desc record(nullptr, false, "");
    fill_status(record);
    peer->point_at_me(record);
    peer->answer = http_answer(R"({"wlan": {"mode": "AP", "ssid": "Own", "mac": "02"}})");
    QTest::ignoreMessage(QtDebugMsg, "NO stationinfo Object in response...");
    record.request_network_status();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(status_of(record), QString("m/f/h/AP/Own/02/1/2/3"));
}

void tst_device_desc_status::network_values_of_a_wrong_type_read_as_nothing_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("fields");
    QTest::newRow("wlan is a string") << QByteArray(R"({"wlan": "STA"})") << "///1/2/3";
    QTest::newRow("wlan is null, so not missing") << QByteArray(R"({"wlan": null})") << "///1/2/3";
    QTest::newRow("stationinfo is null, so not missing")
        << QByteArray(R"({"wlan": {"mode": "AP", "stationinfo": null}})") << "AP///0/0/0";
    QTest::newRow("stationinfo is a list")
        << QByteArray(R"({"wlan": {"ssid": "Home", "stationinfo": [1]}})") << "/Home//0/0/0";
    QTest::newRow("single values") << QByteArray(
                                          R"({"wlan": {"mode": 1, "ssid": true, "mac": {}, "stationinfo":
        {"signal": "-52", "channelwidth": 20.5, "bitrate": "fast"}}})")
                                   << "///0/0/0";
    QTest::newRow("a whole bitrate, numbers with an exponent")
        << QByteArray(R"({"wlan": {"stationinfo": {"signal": -5e1, "channelwidth": 8e1, "bitrate": 54}}})")
        << "///-50/80/54";
}

void tst_device_desc_status::network_values_of_a_wrong_type_read_as_nothing()
{
    QFETCH(QByteArray, body);
    Device_Desc record(nullptr, false, "");
    fill_status(record);
    peer->point_at_me(record);
    peer->answer = http_answer(body);
    record.request_network_status();
    QTRY_COMPARE(resolves_running, 0);
    QTEST(status_of(record).mid(QString("m/f/h/").size()), "fields");
}

QTEST_GUILESS_MAIN(tst_device_desc_status)
#include "tst_device_desc_status.moc"
