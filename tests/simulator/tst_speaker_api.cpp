// SPDX-License-Identifier: MIT
#include <QJsonArray>
#include <QtTest>
#include <mutex>

#include "simulator/download_server.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/http_client.h"

namespace
{
constexpr const char *configure_path = "/api/v14/configure.action";
constexpr const char *device_path = "/api/v19/device.action";
constexpr const char *upgrade_path = "/api/v14/otaupgrade.action";
constexpr const char *network_path = "/api/v19/network.action";
constexpr const char *wifi_path = "/api/v19/wifi.action";
constexpr const char *sender_path = "/api/v19/songcast/sender.action";
constexpr const char *receiver_path = "/api/v19/songcast/receiver.action";
constexpr const char *bluetooth_path = "/api/v20/bluetooth.action";

const char *const bluetooth_body = R"({ "action": "setproperties", "discoverable": true, "pairable": true, )"
                                   R"("discoverableTimeout": 600,  "pairableTimeout": 600 })";
const char *const static_body = R"({"action": "addstaticnetwork", "ssid": "Home", "psk": "", )"
                                R"("inet": {"address": "192.168.1.20", "netmask": "255.255.255.0", )"
                                R"("broadcast": "192.168.1.255", "gateway": "" } })";

Speaker_Config some_config()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.name = "Küche";
    config.sender_uuid = "uuid-1";
    return config;
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}
} // namespace

// The JSON API as bytes on a socket, with the bodies that the program sends.
class tst_Speaker_Api : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void an_action_is_answered_data();
    void an_action_is_answered();
    void an_access_point_has_no_station_information();
    void the_scan_tells_the_networks_as_texts();
    void what_was_set_is_told_from_then_on();
    void a_new_name_is_kept();
    void a_network_is_added_with_the_right_password_only();
    void name_servers_are_lists_where_there_are_any_data();
    void name_servers_are_lists_where_there_are_any();
    void a_selected_network_is_answered_and_then_left_for();
    void a_speaker_leaves_also_when_nobody_waits_for_the_answer();
    void an_unknown_network_is_not_selected();
    void a_body_that_is_no_json_is_told_and_not_carried_out_data();
    void a_body_that_is_no_json_is_told_and_not_carried_out();
    void a_wrong_member_is_refused_data();
    void a_wrong_member_is_refused();
    void only_the_eight_paths_are_there();
    void only_post_is_taken();
    void a_request_is_recorded_byte_for_byte();
    void an_upgrade_is_started_and_followed_by_texts();
    void an_answer_can_be_replaced();
    void the_record_can_be_cleared();

private:
    void begin(const Speaker_Config &config = some_config());
    QJsonObject ask(const char *path, const QByteArray &body);

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Http_Client> client;
    std::mutex mutex;
    QStringList events; // under the mutex
};

void tst_Speaker_Api::init()
{
    begin();
}

void tst_Speaker_Api::cleanup()
{
    client.reset();
    speaker.reset();
}

void tst_Speaker_Api::begin(const Speaker_Config &config)
{
    cleanup();
    events.clear();
    speaker = std::make_unique<Virtual_Speaker>(config);
    speaker->set_event_sink([this](const QString &text) {
        const std::lock_guard<std::mutex> lock(mutex);
        events += text;
    });
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    client = std::make_unique<Http_Client>();
    QVERIFY(client->open(speaker->address(), speaker->http_port()));
}

QJsonObject tst_Speaker_Api::ask(const char *path, const QByteArray &body)
{
    return client->post(path, body).json();
}

void tst_Speaker_Api::an_action_is_answered_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *path, const QByteArray &body, const char *answer) {
        QTest::newRow(qPrintable(QString("%1 %2").arg(path, QString(body).left(30))))
            << QByteArray(path) << body << QByteArray(answer);
    };
    const char *const done = R"({"returncode":"success"})";
    const char *const sender = R"({"enabled":true,"groupname":"Group","mode":0,"returncode":"success",)"
                               R"("state":1,"uuid":"uuid-1"})";
    row(configure_path, R"({"action": "wifiscan"})", R"({"aplist":[]})");
    row(device_path, R"({"action": "info"})",
        R"({"devicename":"Küche","firmware":"1.4.2","hardware":"2.0","model":"VIRELO Air"})");
    row(device_path, R"({"action": "setdevicename", "devicename": "Bad" })", done);
    row(upgrade_path, R"({"action": "querystatus"} )", R"({"downprogress":"0","errinfo":"-1","status":"5"})");
    row(network_path, R"({"action": "info"})",
        R"({"wlan":{"mac":"02:00:00:00:00:01","mode":"STA","ssid":"Home",)"
        R"("stationinfo":{"bitrate":144.4,"channelwidth":40,"signal":-52}}})");
    row(wifi_path, R"({"action": "addnetwork", "ssid": "Home", "psk": "" } )",
        R"({"id":1,"returncode":"success"})");
    row(wifi_path, static_body, R"({"id":1,"returncode":"success"})");
    row(sender_path, R"({"action": "status"})",
        R"({"enabled":false,"groupname":"","mode":0,"state":0,"uuid":"uuid-1"})");
    row(sender_path, R"({"action": "enable", "groupname": "Group", "mode": 0 })", sender);
    row(sender_path, R"({"action": "disable"})", done);
    row(sender_path, R"({"action": "play"})", done);
    row(sender_path, R"({"action": "stop"})",
        R"({"enabled":false,"groupname":"","mode":0,"returncode":"success","state":1,"uuid":"uuid-1"})");
    row(receiver_path, R"({"action": "state"})", R"({"sender":"","state":0})");
    row(receiver_path, R"({"action": "link", "uuid": "uuid-2"})", done);
    row(receiver_path, R"({"action": "unlink" })", done);
    row(receiver_path, R"({"action": "play" })", done);
    row(receiver_path, R"({"action": "stop" })", done);
    row(bluetooth_path, bluetooth_body, done);
}

void tst_Speaker_Api::an_action_is_answered()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, body);
    const Http_Answer answer = client->post(path, body);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.header("Content-Type"), QByteArray("application/json"));
    QTEST(answer.body, "answer");
    QVERIFY(speaker->http_requests().first().json_ok);
}

void tst_Speaker_Api::an_access_point_has_no_station_information()
{
    speaker->change([](Speaker_Config &config) { config.wlan_mode = "AP"; });
    QCOMPARE(client->post(network_path, R"({"action": "info"})").body,
             QByteArray(R"({"wlan":{"mac":"02:00:00:00:00:01","mode":"AP","ssid":"Home"}})"));
}

void tst_Speaker_Api::the_scan_tells_the_networks_as_texts()
{
    Speaker_Config config = some_config();
    Wlan_Network open;
    open.ssid = "Café";
    open.encrypt_type = "OPEN";
    open.signal_level = "-83";
    Wlan_Network closed;
    closed.ssid = "Home";
    config.networks = {open, closed};
    begin(config);
    QCOMPARE(client->post(configure_path, R"({"action": "wifiscan"})").body,
             QByteArray(R"({"aplist":[{"encrypt_type":"OPEN","signal_level":"-83","ssid":"Café"},)"
                        R"({"encrypt_type":"WPA2","signal_level":"-60","ssid":"Home"}]})"));
}

void tst_Speaker_Api::what_was_set_is_told_from_then_on()
{
    const auto sender = [this] { return compact(ask(sender_path, R"({"action": "status"})")); };
    const auto receiver = [this] { return compact(ask(receiver_path, R"({"action": "state"})")); };
    ask(sender_path, R"({"action": "enable", "groupname": "Ä B", "mode": 0 })");
    QCOMPARE(sender(),
             QByteArray(R"({"enabled":true,"groupname":"Ä B","mode":0,"state":1,"uuid":"uuid-1"})"));
    ask(sender_path, R"({"action": "play"})");
    QCOMPARE(sender(),
             QByteArray(R"({"enabled":true,"groupname":"Ä B","mode":0,"state":2,"uuid":"uuid-1"})"));
    ask(sender_path, R"({"action": "stop"})");
    QCOMPARE(sender(),
             QByteArray(R"({"enabled":true,"groupname":"Ä B","mode":0,"state":1,"uuid":"uuid-1"})"));
    ask(sender_path, R"({"action": "disable"})");
    QCOMPARE(sender(),
             QByteArray(R"({"enabled":false,"groupname":"Ä B","mode":0,"state":0,"uuid":"uuid-1"})"));

    ask(receiver_path, R"({"action": "link", "uuid": "uuid-2"})");
    QCOMPARE(receiver(), QByteArray(R"({"sender":"uuid-2","state":1})"));
    ask(receiver_path, R"({"action": "play" })");
    QCOMPARE(receiver(), QByteArray(R"({"sender":"uuid-2","state":2})"));
    ask(receiver_path, R"({"action": "stop" })");
    QCOMPARE(receiver(), QByteArray(R"({"sender":"uuid-2","state":1})"));
    ask(receiver_path, R"({"action": "unlink" })");
    QCOMPARE(receiver(), QByteArray(R"({"sender":"","state":0})"));

    ask(bluetooth_path, bluetooth_body);
    const Speaker_Config config = speaker->config();
    QVERIFY(config.discoverable);
    QVERIFY(config.pairable);
    QCOMPARE(config.discoverable_timeout, 600);
    QCOMPARE(config.pairable_timeout, 600);
}

void tst_Speaker_Api::a_new_name_is_kept()
{
    ask(device_path, R"({"action": "setdevicename", "devicename": "Gäste Bad" })");
    QCOMPARE(speaker->config().name, QString("Gäste Bad"));
    QCOMPARE(ask(device_path, R"({"action": "info"})").value("devicename").toString(), QString("Gäste Bad"));
    QCOMPARE(client->post(device_path, R"({"action": "setdevicename", "devicename": "" })").body,
             QByteArray(R"({"reason":"empty name","returncode":"error"})"));
    QCOMPARE(speaker->config().name, QString("Gäste Bad"));
}

void tst_Speaker_Api::a_network_is_added_with_the_right_password_only()
{
    Speaker_Config config = some_config();
    Wlan_Network closed;
    closed.ssid = "Closed";
    closed.password = "right";
    Wlan_Network any;
    any.ssid = "Any";
    config.networks = {closed, any};
    begin(config);
    const auto add = [this](const QByteArray &ssid, const QByteArray &password) {
        return client
            ->post(wifi_path,
                   R"({"action": "addnetwork", "ssid": ")" + ssid + R"(", "psk": ")" + password + R"(" } )")
            .body;
    };
    QCOMPARE(add("Closed", "wrong"), QByteArray(R"({"returncode":"wrong password"})"));
    QCOMPARE(add("Closed", ""), QByteArray(R"({"returncode":"wrong password"})"));
    QCOMPARE(add("Closed", "right"), QByteArray(R"({"id":1,"returncode":"success"})"));
    QCOMPARE(add("Any", "whatever"), QByteArray(R"({"id":2,"returncode":"success"})"));
    QCOMPARE(add("Hidden", ""), QByteArray(R"({"id":3,"returncode":"success"})"));
}

void tst_Speaker_Api::name_servers_are_lists_where_there_are_any_data()
{
    QTest::addColumn<QByteArray>("dns");
    QTest::addColumn<QByteArray>("answer");
    const QByteArray done = R"({"id":1,"returncode":"success"})";
    QTest::newRow("both") << QByteArray(R"({ "domains": [ "home" ], "nameservers": [ "1.1.1.1", "" ] } )")
                          << done;
    QTest::newRow("one text") << QByteArray(R"({ "domains": "home", "nameservers": [ "1.1.1.1", "" ] } )")
                              << QByteArray(R"({"reason":"bad member dns/domains","returncode":"error"})");
    QTest::newRow("numbers") << QByteArray(R"({ "domains": [ "home" ], "nameservers": [ 1, 2 ] } )")
                             << QByteArray(R"({"reason":"bad member dns/nameservers","returncode":"error"})");
    QTest::newRow("one list") << QByteArray(R"({ "domains": [ "home" ] } )")
                              << QByteArray(
                                     R"({"reason":"bad member dns/nameservers","returncode":"error"})");
}

void tst_Speaker_Api::name_servers_are_lists_where_there_are_any()
{
    QFETCH(QByteArray, dns);
    const QByteArray body = static_body;
    QTEST(client->post(wifi_path, body.chopped(1) + R"(, "dns": )" + dns + "} ").body, "answer");
}

void tst_Speaker_Api::a_selected_network_is_answered_and_then_left_for()
{
    QStringList presence;
    speaker->set_presence_sink([&presence](bool there) { presence += there ? "there" : "away"; });
    speaker->change([](Speaker_Config &config) { config.wlan_mode = "AP"; });
    Raw_Client host;
    QVERIFY(host.open(speaker->address(), 8990));
    QVERIFY(speaker->wait_for_host_open(1));
    const quint16 http_port = speaker->http_port();
    ask(wifi_path, R"({"action": "addnetwork", "ssid": "New Home", "psk": "" } )");
    QVERIFY(speaker->running());

    const Http_Answer answer = client->post(wifi_path, R"({"action": "selectnetwork", "id": 1 })");
    QCOMPARE(answer.body, QByteArray(R"({"returncode":"success"})"));
    QVERIFY(speaker->wait_until_stopped());
    QVERIFY(client->wait_closed());
    QVERIFY(host.wait_closed());
    for (const quint16 port : {http_port, quint16(8990), quint16(8991)}) {
        Raw_Client refused;
        QVERIFY(!refused.open(speaker->address(), port));
        QCOMPARE(refused.socket.error(), QAbstractSocket::ConnectionRefusedError);
    }
    QCOMPARE(presence, QStringList("away"));
    QCOMPARE(speaker->config().ssid, QString("New Home"));
    QCOMPARE(speaker->config().wlan_mode, QString("STA"));

    // It is found in its new network; the networks that were added are forgotten like all else but its
    // values.
    QVERIFY(speaker->start());
    QCOMPARE(presence, (QStringList{"away", "there"}));
    Http_Client again;
    QVERIFY(again.open(speaker->address(), speaker->http_port()));
    QCOMPARE(again.post(wifi_path, R"({"action": "selectnetwork", "id": 1 })").body,
             QByteArray(R"({"reason":"unknown network","returncode":"error"})"));
}

void tst_Speaker_Api::a_speaker_leaves_also_when_nobody_waits_for_the_answer()
{
    ask(wifi_path, R"({"action": "addnetwork", "ssid": "Home", "psk": "" } )");
    Speaker_Faults faults;
    faults.http_slow_ms = 100;
    speaker->set_faults(faults);
    const QByteArray body = R"({"action": "selectnetwork", "id": 1 })";
    client->send(QByteArray("POST ") + wifi_path +
                 " HTTP/1.1\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    QVERIFY(speaker->wait_for_http_requests(2));
    client->socket.abort();
    QVERIFY(speaker->wait_until([this] { return speaker->http_connections().open == 0; }));
    QVERIFY(speaker->wait_until_stopped());
}

void tst_Speaker_Api::an_unknown_network_is_not_selected()
{
    QCOMPARE(client->post(wifi_path, R"({"action": "selectnetwork", "id": 1 })").body,
             QByteArray(R"({"reason":"unknown network","returncode":"error"})"));
    QVERIFY(speaker->running());
}

void tst_Speaker_Api::a_body_that_is_no_json_is_told_and_not_carried_out_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *body, const char *reason) {
        QTest::newRow(body) << QByteArray(body) << QString(reason);
    };
    row(R"({"action": "enable", "groupname": "a"b", "mode": 0 })", "missing comma or end at byte 37");
    row(R"({"action": "enable", "groupname": "a\", "mode": 0 })", "missing comma or end at byte 41");
    row(R"({"action": "enable", "groupname": "Group", "mode": 0, })", "missing key at byte 54");
    row(R"({"action": "enable", "groupname": "Group", "mode": 0 )", "missing comma or end at byte 53");
    row("", "no value at byte 0");
    row(R"(["enable"])", "no object");
    row(R"("enable")", "no object");
}

void tst_Speaker_Api::a_body_that_is_no_json_is_told_and_not_carried_out()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, reason);
    const QJsonObject answer = ask(sender_path, body);
    QCOMPARE(answer.value("returncode").toString(), QString("error"));
    QCOMPARE(answer.value("reason").toString(), "no JSON: " + reason);
    const Http_Request request = speaker->http_requests().first();
    QVERIFY(!request.json_ok);
    QCOMPARE(request.json_error, reason);
    QCOMPARE(request.action, QString());
    QCOMPARE(request.body, body);
    QVERIFY(!speaker->config().sender_enabled);
    const std::lock_guard<std::mutex> lock(mutex);
    QVERIFY2(events.contains("!! the body is not JSON: " + reason), qPrintable(events.join('\n')));
}

void tst_Speaker_Api::a_wrong_member_is_refused_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *path, const char *body, const char *reason) {
        QTest::newRow(body) << QByteArray(path) << QByteArray(body) << QString(reason);
    };
    row(sender_path, R"({"action": "fly"})", "unknown action");
    row(sender_path, R"({"action": "link", "uuid": "x"})", "unknown action");
    row(sender_path, R"({"action": "Status"})", "unknown action");
    row(sender_path, R"({"Action": "status"})", "unknown action");
    row(sender_path, R"({"action": 1})", "unknown action");
    row(sender_path, "{}", "unknown action");
    row(sender_path, R"({"action": "enable", "mode": 0 })", "bad member groupname");
    row(sender_path, R"({"action": "enable", "groupname": "G", "mode": "0" })", "bad member mode");
    row(receiver_path, R"({"action": "link", "uuid": 7})", "bad member uuid");
    row(device_path, R"({"action": "setdevicename", "name": "x" })", "bad member devicename");
    row(wifi_path, R"({"action": "addnetwork", "ssid": "x" } )", "bad member psk");
    row(wifi_path, R"({"action": "addstaticnetwork", "ssid": "x", "psk": "" } )", "bad member inet/address");
    row(wifi_path, R"({"action": "addstaticnetwork", "ssid": "x", "psk": "", "inet": "1.2.3.4" } )",
        "bad member inet/address");
    row(wifi_path, R"({"action": "selectnetwork", "id": "1" })", "bad member id");
    row(upgrade_path, R"({"action": "seturl", "otaaddress": "http://127.0.0.1/", "filesize": 7 })",
        "bad member filesize");
    row(upgrade_path, R"({"action": "seturl", "otaaddress": "http://127.0.0.1/", "filesize": "x" })",
        "bad address or size");
    row(upgrade_path, R"({"action": "seturl", "otaaddress": "http://127.0.0.1", "filesize": "7" })",
        "bad address or size");
    row(upgrade_path, R"({"action": "seturl", "otaaddress": "file:///tmp/", "filesize": "7" })",
        "bad address or size");
    row(bluetooth_path, R"({"action": "setproperties", "discoverable": 1})", "bad member discoverable");
}

void tst_Speaker_Api::a_wrong_member_is_refused()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, body);
    QFETCH(QString, reason);
    QCOMPARE(compact(ask(path.constData(), body)), compact({{"returncode", "error"}, {"reason", reason}}));
    QVERIFY(speaker->http_requests().first().json_ok);
}

void tst_Speaker_Api::only_the_eight_paths_are_there()
{
    for (const char *path : {configure_path, device_path, upgrade_path, network_path, wifi_path, sender_path,
                             receiver_path, bluetooth_path})
        QCOMPARE(client->post(path, "{}").status, 200);
    for (const char *path : {"/", "/api/v19/", "/api/v14/device.action", "/api/v19/bluetooth.action",
                             "/api/v19/songcast/sender.action/", "/API/v19/device.action"})
        QCOMPARE(client->post(path, R"({"action": "info"})").status, 404);
}

void tst_Speaker_Api::only_post_is_taken()
{
    const Http_Answer answer = client->get(device_path);
    QCOMPARE(answer.status, 405);
    QCOMPARE(answer.header("Allow"), QByteArray("POST"));
    QCOMPARE(
        client->exchange(QByteArray("PUT ") + device_path + " HTTP/1.1\r\nContent-Length: 0\r\n\r\n").status,
        405);
}

void tst_Speaker_Api::a_request_is_recorded_byte_for_byte()
{
    const QByteArray body = "{\"action\": \"link\", \"uuid\": \"\xc3\xa4 \\u00e4\"}  ";
    client->post(receiver_path, body, "Content-Type: application/json\r\ncharset:UTF-8\r\nX-Blank:\r\n");
    const Http_Request request = speaker->http_requests().first();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.path, QByteArray(receiver_path));
    QCOMPARE(request.body, body);
    QCOMPARE(request.headers, (QList<QPair<QByteArray, QByteArray>>{
                                  {"Host", "speaker"},
                                  {"Content-Type", "application/json"},
                                  {"charset", "UTF-8"},
                                  {"X-Blank", ""},
                                  {"Content-Length", QByteArray::number(body.size())},
                              }));
    QCOMPARE(request.header("CHARSET"), QByteArray("UTF-8"));
    QVERIFY(request.header("Nothing").isNull());
    QCOMPARE(request.action, QString("link"));
    QVERIFY(request.json_ok);
    QCOMPARE(request.connection, 1);
    QVERIFY(request.us > 0);
    QCOMPARE(speaker->config().receiver_sender, QString("ä ä"));
}

void tst_Speaker_Api::an_upgrade_is_started_and_followed_by_texts()
{
    Download_Config download;
    download.address = own_loopback(2);
    Download_Server server(download);
    QVERIFY2(server.start(), qPrintable(server.error()));
    const QByteArray body =
        R"({"action": "seturl", "otaaddress": ")" + server.url().toUtf8() + R"(", "filesize": "200000" })";
    QCOMPARE(client->post(upgrade_path, body).body, QByteArray(R"({"returncode":"success"})"));
    QStringList statuses;
    const auto done = [&] {
        const QJsonValue status = ask(upgrade_path, R"({"action": "querystatus"} )").value("status");
        if (statuses.isEmpty() || statuses.last() != status.toString())
            statuses += status.toString(); // empty for a number
        return statuses.last() == "6";
    };
    QTRY_VERIFY(done());
    QCOMPARE(statuses, (QStringList{"1", "2", "3", "4", "6"}));
    QCOMPARE(server.requests().first().path, QByteArray("/current/ventaro.swu"));
}

void tst_Speaker_Api::an_answer_can_be_replaced()
{
    speaker->set_http_reply(sender_path, "enable", "nonsense");
    const QByteArray body = R"({"action": "enable", "groupname": "G", "mode": 0 })";
    QCOMPARE(client->post(sender_path, body).body, QByteArray("nonsense"));
    QVERIFY(!speaker->config().sender_enabled);
    QCOMPARE(ask(sender_path, R"({"action": "disable"})").value("returncode").toString(), QString("success"));
    speaker->clear_http_reply(sender_path, "enable");
    QCOMPARE(ask(sender_path, body).value("returncode").toString(), QString("success"));
    QVERIFY(speaker->config().sender_enabled);
}

void tst_Speaker_Api::the_record_can_be_cleared()
{
    ask(device_path, R"({"action": "info"})");
    QVERIFY(speaker->wait_for_http_requests(1));
    speaker->clear_record();
    QCOMPARE(speaker->http_requests().size(), 0);
    QVERIFY(!speaker->wait_for_http_requests(1, 20));
    QCOMPARE(speaker->http_connections().open, 1);
}

QTEST_GUILESS_MAIN(tst_Speaker_Api)
#include "tst_speaker_api.moc"
