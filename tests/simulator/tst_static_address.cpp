// SPDX-License-Identifier: MIT
#include <QTest>
#include <memory>
#include <mutex>

#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/http_client.h"

namespace
{
constexpr const char *wifi_path = "/api/v19/wifi.action";

QByteArray body_with(const QByteArray &address, const QByteArray &netmask, const QByteArray &broadcast,
                     const QByteArray &gateway, const QByteArray &more = QByteArray())
{
    return R"({"action": "addstaticnetwork", "ssid": "Home", "psk": "", "inet": {"address": ")" + address +
           R"(", "netmask": ")" + netmask + R"(", "broadcast": ")" + broadcast + R"(", "gateway": ")" +
           gateway + R"(" } )" + more + "} ";
}

const QByteArray name_servers = R"(, "dns": { "domains": [ "a", "b" ], "nameservers": [ "8.8.8.8", "" ] } )";
} // namespace

// What a virtual speaker makes of the static address that comes with a network.
class tst_static_address : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void it_is_taken_when_the_network_is_selected_data();
    void it_is_taken_when_the_network_is_selected();
    void a_later_network_without_one_takes_it_back();
    void what_is_no_address_is_refused_data();
    void what_is_no_address_is_refused();

private:
    bool joined(const QString &text);
    QByteArray post(const QByteArray &body) { return client->post(wifi_path, body).body; }

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Http_Client> client;
    std::mutex mutex;
    QStringList events; // under the mutex
};

void tst_static_address::init()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    speaker = std::make_unique<Virtual_Speaker>(config);
    events.clear();
    speaker->set_event_sink([this](const QString &text) {
        const std::lock_guard<std::mutex> lock(mutex);
        events += text;
    });
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    client = std::make_unique<Http_Client>();
    QVERIFY(client->open(speaker->address(), speaker->http_port()));
}

void tst_static_address::cleanup()
{
    client.reset();
    speaker.reset();
}

bool tst_static_address::joined(const QString &text)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return events.contains("joins " + text);
}

void tst_static_address::it_is_taken_when_the_network_is_selected_data()
{
    QTest::addColumn<QByteArray>("gateway");
    QTest::addColumn<QByteArray>("more");
    QTest::addColumn<QStringList>("domains");
    QTest::addColumn<QStringList>("servers");
    QTest::addColumn<QString>("rest");
    QTest::newRow("alone") << QByteArray() << QByteArray() << QStringList() << QStringList()
                           << R"(gateway "")";
    QTest::newRow("with all") << QByteArray("10.0.0.1") << name_servers << QStringList{"a", "b"}
                              << QStringList{"8.8.8.8", ""}
                              << R"(gateway "10.0.0.1", domains a b, name servers 8.8.8.8 )";
}

void tst_static_address::it_is_taken_when_the_network_is_selected()
{
    QFETCH(QByteArray, gateway);
    QFETCH(QByteArray, more);
    QFETCH(QString, rest);
    QCOMPARE(post(body_with("10.0.0.20", "255.0.0.0", "10.255.255.255", gateway, more)),
             QByteArray(R"({"id":1,"returncode":"success"})"));
    QCOMPARE(speaker->config().static_address.address, QString());
    QCOMPARE(post(R"({"action": "selectnetwork", "id": 1 })"), QByteArray(R"({"returncode":"success"})"));
    QVERIFY(speaker->wait_until_stopped());
    const Static_Address place = speaker->config().static_address;
    QCOMPARE((QStringList{place.address, place.netmask, place.broadcast, place.gateway}),
             (QStringList{"10.0.0.20", "255.0.0.0", "10.255.255.255", gateway}));
    QTEST(place.domains, "domains");
    QTEST(place.name_servers, "servers");
    QVERIFY(joined(R"("Home" at 10.0.0.20, netmask 255.0.0.0, broadcast 10.255.255.255, )" + rest));
}

void tst_static_address::a_later_network_without_one_takes_it_back()
{
    speaker->change([](Speaker_Config &config) { config.static_address.address = "10.0.0.20"; });
    post(R"({"action": "addnetwork", "ssid": "Home", "psk": "" } )");
    post(R"({"action": "selectnetwork", "id": 1 })");
    QVERIFY(speaker->wait_until_stopped());
    QCOMPARE(speaker->config().static_address.address, QString());
    QVERIFY(joined(R"("Home" by DHCP)"));
}

void tst_static_address::what_is_no_address_is_refused_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("member");
    const auto row = [](const char *title, const QByteArray &body, const char *member) {
        QTest::newRow(title) << body << QByteArray(member);
    };
    row("word", body_with("kitchen", "255.0.0.0", "10.0.0.255", ""), "address");
    row("empty address", body_with("", "255.0.0.0", "10.0.0.255", ""), "address");
    row("three parts", body_with("10.0.0", "255.0.0.0", "10.0.0.255", ""), "address");
    row("256", body_with("10.0.0.256", "255.0.0.0", "10.0.0.255", ""), "address");
    row("blank", body_with("10.0.0. 1 x", "255.0.0.0", "10.0.0.255", ""), "address");
    row("empty netmask", body_with("10.0.0.1", "", "10.0.0.255", ""), "netmask");
    row("empty broadcast", body_with("10.0.0.1", "255.0.0.0", "", ""), "broadcast");
    row("gateway", body_with("10.0.0.1", "255.0.0.0", "10.0.0.255", "x"), "gateway");
}

void tst_static_address::what_is_no_address_is_refused()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, member);
    QCOMPARE(post(body), R"({"reason":"no address in inet/)" + member + R"(","returncode":"error"})");
    QCOMPARE(post(R"({"action": "selectnetwork", "id": 1 })"),
             QByteArray(R"({"reason":"unknown network","returncode":"error"})"));
}

QTEST_GUILESS_MAIN(tst_static_address)
#include "tst_static_address.moc"
