// SPDX-License-Identifier: MIT
#include <QJsonArray>
#include <QtTest>
#include <memory>

#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/http_client.h"

namespace
{
const QByteArray device_path = "/api/v19/device.action";
const QByteArray network_path = "/api/v19/network.action";
const QByteArray sender_path = "/api/v19/songcast/sender.action";
const QByteArray info = R"({"action": "info"})";
const QByteArray info_answer =
    R"({"devicename":"Speaker","firmware":"1.4.2","hardware":"2.0","model":"VIRELO Air"})";
const QByteArray enable = R"({"action": "enable", "groupname": "G", "mode": 0 })";
constexpr int a_while_ms = 50; // for what must not come; nothing depends on its length
} // namespace

// What each fault of the JSON API looks like from the other side.
class tst_Http_Faults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void an_answer_is_spoilt_as_asked_data();
    void an_answer_is_spoilt_as_asked();
    void a_spoilt_answer_was_carried_out_all_the_same();
    void a_silent_side_takes_the_request_and_does_nothing();
    void a_held_answer_comes_when_the_fault_is_lifted();
    void a_held_request_is_forgotten_when_the_speaker_goes();
    void a_reset_ends_the_connection();
    void a_length_may_be_wrong_data();
    void a_length_may_be_wrong();
    void a_huge_answer_is_json_of_8_mib();
    void a_bulky_answer_is_json_of_the_size_asked_for();
    void every_value_may_have_a_wrong_type();
    void what_is_inside_may_have_a_wrong_type();
    void a_late_answer_is_late();
    void another_returncode_means_that_nothing_was_done();
    void a_fault_may_be_limited_to_a_path_or_an_action();
    void a_refused_port_is_refused_from_the_start();

private:
    void give(const char *key, const QString &text);

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Http_Client> client;
};

void tst_Http_Faults::init()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    Wlan_Network network;
    network.ssid = "Zuhause";
    config.networks.append(network);
    speaker = std::make_unique<Virtual_Speaker>(config);
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    client = std::make_unique<Http_Client>();
    QVERIFY(client->open(speaker->address(), speaker->http_port()));
}

void tst_Http_Faults::cleanup()
{
    client.reset();
    speaker.reset();
}

void tst_Http_Faults::give(const char *key, const QString &text)
{
    Speaker_Faults faults = speaker->faults();
    QString error;
    QVERIFY2(set_fault(faults, key, text, &error), qPrintable(error));
    speaker->set_faults(faults);
}

void tst_Http_Faults::an_answer_is_spoilt_as_asked_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("none") << "none" << 200 << info_answer;
    QTest::newRow("error-page") << "error-page" << 500
                                << QByteArray("<html><body><h1>Internal Server Error</h1></body></html>\n");
    QTest::newRow("empty") << "empty" << 200 << QByteArray();
    QTest::newRow("empty-object") << "empty-object" << 200 << QByteArray("{}");
    QTest::newRow("half") << "half" << 200 << info_answer.left(info_answer.size() / 2);
}

void tst_Http_Faults::an_answer_is_spoilt_as_asked()
{
    QFETCH(QString, fault);
    give("http", fault);
    const Http_Answer answer = client->post(device_path, info);
    QTEST(answer.status, "status");
    QTEST(answer.body, "body");
    give("http", "none");
    QCOMPARE(client->post(device_path, info).body, info_answer);
    QCOMPARE(speaker->http_requests("info").size(), 2);
}

void tst_Http_Faults::a_spoilt_answer_was_carried_out_all_the_same()
{
    give("http", "empty-object");
    QCOMPARE(client->post(sender_path, enable).body, QByteArray("{}"));
    QVERIFY(speaker->config().sender_enabled);
}

void tst_Http_Faults::a_silent_side_takes_the_request_and_does_nothing()
{
    give("http", "silent");
    client->send("POST " + sender_path + " HTTP/1.1\r\nContent-Length: " + QByteArray::number(enable.size()) +
                 "\r\n\r\n" + enable);
    QVERIFY(speaker->wait_for_http_requests(1));
    QCOMPARE(client->read_to("}", a_while_ms), QByteArray());
    QVERIFY(!speaker->config().sender_enabled);
    QCOMPARE(client->socket.state(), QAbstractSocket::ConnectedState);
    give("http", "none"); // that does not make it speak
    QCOMPARE(client->read_to("}", a_while_ms), QByteArray());
}

void tst_Http_Faults::a_held_answer_comes_when_the_fault_is_lifted()
{
    give("http", "hold");
    client->send("POST " + device_path + " HTTP/1.1\r\nContent-Length: 18\r\n\r\n" + info);
    QVERIFY(speaker->wait_for_http_requests(1));
    QCOMPARE(client->read_to("}", a_while_ms), QByteArray());
    give("http", "none");
    QCOMPARE(client->read_answer().body, info_answer);
}

void tst_Http_Faults::a_held_request_is_forgotten_when_the_speaker_goes()
{
    give("http", "hold");
    client->send("POST " + sender_path + " HTTP/1.1\r\nContent-Length: " + QByteArray::number(enable.size()) +
                 "\r\n\r\n" + enable);
    QVERIFY(speaker->wait_for_http_requests(1));
    speaker->stop();
    QVERIFY(client->wait_closed());
    QVERIFY(speaker->start());
    give("http", "none");
    QVERIFY(!speaker->config().sender_enabled);
}

void tst_Http_Faults::a_reset_ends_the_connection()
{
    give("http", "reset");
    const QByteArray request = "POST " + device_path + " HTTP/1.1\r\nContent-Length: 18\r\n\r\n" + info;
    QCOMPARE(error_at_end(speaker->address(), speaker->http_port(), request), ECONNRESET);
    QCOMPARE(speaker->http_requests("info").size(), 1);
}

void tst_Http_Faults::a_huge_answer_is_json_of_8_mib()
{
    give("http", "huge");
    const Http_Answer answer = client->post(device_path, info);
    QCOMPARE(answer.body.size(), info_answer.size() + 8 * 1024 * 1024);
    QCOMPARE(answer.json(), QJsonDocument::fromJson(info_answer).object());
}

void tst_Http_Faults::a_bulky_answer_is_json_of_the_size_asked_for()
{
    give("http", "bulky");
    give("http-size", "100000");
    const Http_Answer answer = client->post(device_path, info);
    QVERIFY(answer.body.size() > 100'000);
    QVERIFY(answer.body.size() < 110'000);
    const QJsonObject object = answer.json();
    QCOMPARE(object.value("model").toString(), QString("VIRELO Air"));
    QVERIFY(object.value("bulk").toArray().size() > 1000);
}

void tst_Http_Faults::a_length_may_be_wrong_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("error");
    QTest::newRow("more than comes") << "too-long" << 20;
    QTest::newRow("less than comes") << "too-short" << -20;
}

void tst_Http_Faults::a_length_may_be_wrong()
{
    QFETCH(QString, fault);
    QFETCH(int, error);
    give("http", fault);
    client->send("POST " + device_path + " HTTP/1.1\r\nContent-Length: " + QByteArray::number(info.size()) +
                 "\r\n\r\n" + info);
    const QByteArray got = client->read_to_end();
    const QByteArray length = "Content-Length: " + QByteArray::number(info_answer.size() + error) + "\r\n";
    QVERIFY2(got.contains(length), got.constData());
    QVERIFY2(got.endsWith("\r\n\r\n" + info_answer), got.constData());
}

void tst_Http_Faults::every_value_may_have_a_wrong_type()
{
    give("http", "wrong-types");
    const QJsonObject device = client->post(device_path, info).json();
    QCOMPARE(device.keys(), (QStringList{"devicename", "firmware", "hardware", "model"}));
    for (const QJsonValue value : device)
        QVERIFY(!value.isString());
    const QJsonObject network = client->post(network_path, info).json();
    QVERIFY(network.value("wlan").isArray());
    const QJsonObject sender = client->post(sender_path, R"({"action": "status"})").json();
    QVERIFY(!sender.value("enabled").isBool());
    QVERIFY(!sender.value("state").isDouble());
    const QJsonObject scan = client->post("/api/v14/configure.action", R"({"action": "wifiscan"})").json();
    QVERIFY(!scan.value("aplist").isUndefined());
    QVERIFY(!scan.value("aplist").isArray());
}

void tst_Http_Faults::what_is_inside_may_have_a_wrong_type()
{
    give("http", "wrong-members");
    const QJsonObject wlan = client->post(network_path, info).json().value("wlan").toObject();
    QVERIFY(wlan.contains("ssid"));
    QVERIFY(!wlan.value("ssid").isString());
    const QJsonObject station = wlan.value("stationinfo").toObject();
    QVERIFY(station.contains("signal"));
    QVERIFY(!station.value("signal").isDouble());
    const QJsonObject scan = client->post("/api/v14/configure.action", R"({"action": "wifiscan"})").json();
    const QJsonArray networks = scan.value("aplist").toArray();
    QVERIFY(!networks.isEmpty());
    for (const QJsonValue network : networks) {
        QVERIFY(network.toObject().contains("ssid"));
        QVERIFY(!network.toObject().value("ssid").isString());
    }
}

void tst_Http_Faults::a_late_answer_is_late()
{
    give("http-slow", "60");
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(client->post(device_path, info).body, info_answer);
    QVERIFY(clock.elapsed() >= 60);
}

void tst_Http_Faults::another_returncode_means_that_nothing_was_done()
{
    give("http-returncode", "SUCCESS");
    QCOMPARE(client->post(sender_path, enable).body, QByteArray(R"({"returncode":"SUCCESS"})"));
    QVERIFY(!speaker->config().sender_enabled);
    give("http-returncode", "-");
    QCOMPARE(client->post(sender_path, enable).json().value("returncode").toString(), QString("success"));
    QVERIFY(speaker->config().sender_enabled);
}

void tst_Http_Faults::a_fault_may_be_limited_to_a_path_or_an_action()
{
    give("http", "empty-object");
    give("http-only", "enable");
    QCOMPARE(client->post(sender_path, enable).body, QByteArray("{}"));
    QCOMPARE(client->post(device_path, info).body, info_answer);
    give("http-only", device_path);
    QCOMPARE(client->post(device_path, info).body, QByteArray("{}"));
    QVERIFY(client->post(network_path, info).body != "{}");
    give("http-only", "-");
    QCOMPARE(client->post(network_path, info).body, QByteArray("{}"));
}

void tst_Http_Faults::a_refused_port_is_refused_from_the_start()
{
    speaker->stop();
    give("http-refused", "on");
    QVERIFY(speaker->start());
    const quint16 port = speaker->http_port();
    QVERIFY(port != 0); // there is one that can be announced
    Raw_Client refused;
    QVERIFY(!refused.open(speaker->address(), port));
    QCOMPARE(refused.socket.error(), QAbstractSocket::ConnectionRefusedError);
    give("http-refused", "off");
    QCOMPARE(speaker->http_port(), port);
    Http_Client again;
    QVERIFY(again.open(speaker->address(), port));
    QCOMPARE(again.post(device_path, info).body, info_answer);
}

QTEST_GUILESS_MAIN(tst_Http_Faults)
#include "tst_http_faults.moc"
