// SPDX-License-Identifier: MIT
#include <QTest>
#include <memory>

#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/network/conf_user.h"
#include "tests/network/wlan_world.h"
#include "tests/update/box_reader.h"

// What the WLAN settings send, byte for byte as a speaker receives it.
class tst_client_conf_wire : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void a_new_name_goes_out_as_typed_data();
    void a_new_name_goes_out_as_typed();
    void a_network_goes_out_as_typed_data();
    void a_network_goes_out_as_typed();
    void a_static_address_goes_out_with_its_network();
    void static_values_go_out_as_typed();
    void without_a_domain_the_name_servers_stay_away();
    void empty_members_stay_members();
    void static_values_stay_here_while_the_address_is_dynamic();
    void the_id_goes_out_without_quotes_data();
    void the_id_goes_out_without_quotes();
    void each_body_is_logged();
    void a_real_speaker_reads_each_body_data();
    void a_real_speaker_reads_each_body();
    void a_quote_makes_a_body_that_the_speaker_refuses_data();
    void a_quote_makes_a_body_that_the_speaker_refuses();

private:
    void check_request(int number, const QByteArray &path, const QByteArray &body) const;
    void fill_static() const;

    std::unique_ptr<Wlan_World> world;
};

const QByteArray umlauts = "K\xc3\xbc"
                           "che \xc3\x84\xc3\x96\xc3\x9f \xe6\x9d\xb1";

void tst_client_conf_wire::init()
{
    world = std::make_unique<Wlan_World>();
    world->record->ssid = "Home";
}

void tst_client_conf_wire::cleanup()
{
    world.reset();
}

void tst_client_conf_wire::check_request(int number, const QByteArray &path, const QByteArray &body) const
{
    QTRY_COMPARE(world->peer.requests.size(), number + 1);
    const Http_Peer::Request &request = world->peer.requests.at(number);
    QCOMPARE(request.line, "POST " + path + " HTTP/1.1");
    QCOMPARE(request.body, body);
    QCOMPARE(request.headers.count("Content-Type: text/plain"), 1);
    QCOMPARE(request.headers.count("charset: UTF-8"), 1);
    QCOMPARE(request.headers.count("Content-Length: " + QByteArray::number(body.size())), 1);
}

void tst_client_conf_wire::a_new_name_goes_out_as_typed_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("plain") << QByteArray("Bath");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("quotes") << QByteArray("a\"b\"");
    QTest::newRow("backslash") << QByteArray("a\\b\\");
    QTest::newRow("umlauts") << umlauts;
    QTest::newRow("blanks") << QByteArray("  Bath  ");
    QTest::newRow("other case") << QByteArray("kitchen");
    QTest::newRow("long") << QByteArray(200, 'n');
}

void tst_client_conf_wire::a_new_name_goes_out_as_typed()
{
    QFETCH(QByteArray, name);
    const Client_Conf *dialog = open_conf(*world);
    dialog->name_edit->setText(QString::fromUtf8(name));
    save(dialog);
    check_request(0, "/api/v19/device.action",
                  "{\"action\": \"setdevicename\", \"devicename\": \"" + name + "\" }");
}

void tst_client_conf_wire::a_network_goes_out_as_typed_data()
{
    QTest::addColumn<QByteArray>("ssid");
    QTest::addColumn<QByteArray>("password");
    QTest::newRow("plain") << QByteArray("Home") << QByteArray("secret");
    QTest::newRow("no password") << QByteArray("Home") << QByteArray();
    QTest::newRow("no name") << QByteArray() << QByteArray("secret");
    QTest::newRow("quotes") << QByteArray("a\"b") << QByteArray("\"");
    QTest::newRow("backslashes") << QByteArray("a\\b") << QByteArray("\\\"");
    QTest::newRow("umlauts") << umlauts << umlauts;
    QTest::newRow("longest") << QByteArray(32, 'W') << QByteArray(63, 'p');
    QTest::newRow("32 bytes of umlauts")
        << QByteArray("\xc3\xbc").repeated(16) << QByteArray("\xc3\xbc").repeated(31);
    QTest::newRow("blanks") << QByteArray("  Home ") << QByteArray(" a b ");
    QTest::newRow("JSON") << QByteArray("\", \"x\": \"") << QByteArray("\" }");
}

void tst_client_conf_wire::a_network_goes_out_as_typed()
{
    QFETCH(QByteArray, ssid);
    QFETCH(QByteArray, password);
    world->record->ssid = QString::fromUtf8(ssid);
    const Client_Conf *dialog = open_conf(*world);
    dialog->passwd_edit->setText(QString::fromUtf8(password));
    save(dialog);
    const QByteArray network = ", \"ssid\": \"" + ssid + "\", \"psk\": \"" + password + "\"";
    check_request(0, "/api/v19/wifi.action", "{\"action\": \"addnetwork\"" + network + " } ");

    fill_static();
    save(dialog);
    check_request(1, "/api/v19/wifi.action",
                  "{\"action\": \"addstaticnetwork\"" + network +
                      ", \"inet\": {\"address\": \"192.168.1.20\", \"netmask\": \"255.255.255.0\", "
                      "\"broadcast\": \"192.168.1.255\", \"gateway\": \"192.168.1.1\" } , "
                      "\"dns\": { \"domains\": [ \"home.example\" ], "
                      "\"nameservers\": [ \"8.8.8.8\", \"8.8.4.4\" ] } } ");
}

void tst_client_conf_wire::fill_static() const
{
    world->record->set_static_network("192.168.1.20", "255.255.255.0", "192.168.1.1", "home.example",
                                      "8.8.8.8", "8.8.4.4");
}

void tst_client_conf_wire::static_values_go_out_as_typed()
{
    world->record->set_static_network("\"1\"", "2\\", "  3  ", QString::fromUtf8(umlauts), "5\", \"5",
                                      "6\" ]");
    world->record->static_broadcast = "7\" }";
    save(open_conf(*world));
    check_request(0, "/api/v19/wifi.action",
                  "{\"action\": \"addstaticnetwork\", \"ssid\": \"Home\", \"psk\": \"\", "
                  "\"inet\": {\"address\": \"\"1\"\", \"netmask\": \"2\\\", \"broadcast\": \"7\" }\", "
                  "\"gateway\": \"  3  \" } , \"dns\": { \"domains\": [ \"" +
                      umlauts + "\" ], \"nameservers\": [ \"5\", \"5\", \"6\" ]\" ] } } ");
}

void tst_client_conf_wire::a_static_address_goes_out_with_its_network()
{
    fill_static();
    const Client_Conf *dialog = open_conf(*world);
    dialog->passwd_edit->setText("secret");
    save(dialog);
    check_request(0, "/api/v19/wifi.action",
                  "{\"action\": \"addstaticnetwork\", \"ssid\": \"Home\", \"psk\": \"secret\", "
                  "\"inet\": {\"address\": \"192.168.1.20\", \"netmask\": \"255.255.255.0\", "
                  "\"broadcast\": \"192.168.1.255\", \"gateway\": \"192.168.1.1\" } , "
                  "\"dns\": { \"domains\": [ \"home.example\" ], "
                  "\"nameservers\": [ \"8.8.8.8\", \"8.8.4.4\" ] } } ");
}

void tst_client_conf_wire::without_a_domain_the_name_servers_stay_away()
{
    fill_static();
    world->record->static_domain.clear();
    save(open_conf(*world));
    check_request(0, "/api/v19/wifi.action",
                  "{\"action\": \"addstaticnetwork\", \"ssid\": \"Home\", \"psk\": \"\", "
                  "\"inet\": {\"address\": \"192.168.1.20\", \"netmask\": \"255.255.255.0\", "
                  "\"broadcast\": \"192.168.1.255\", \"gateway\": \"192.168.1.1\" } } ");
}

void tst_client_conf_wire::empty_members_stay_members()
{
    world->record->set_static_network("", "", "", "x", "", "");
    world->record->static_broadcast.clear();
    world->record->ssid.clear();
    save(open_conf(*world));
    check_request(
        0, "/api/v19/wifi.action",
        "{\"action\": \"addstaticnetwork\", \"ssid\": \"\", \"psk\": \"\", "
        "\"inet\": {\"address\": \"\", \"netmask\": \"\", \"broadcast\": \"\", \"gateway\": \"\" } , "
        "\"dns\": { \"domains\": [ \"x\" ], \"nameservers\": [ \"\", \"\" ] } } ");
}

void tst_client_conf_wire::static_values_stay_here_while_the_address_is_dynamic()
{
    fill_static();
    world->record->clear_static_network();
    save(open_conf(*world));
    check_request(0, "/api/v19/wifi.action",
                  "{\"action\": \"addnetwork\", \"ssid\": \"Home\", \"psk\": \"\" } ");
}

void tst_client_conf_wire::the_id_goes_out_without_quotes_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<QByteArray>("id");
    QTest::newRow("number") << QByteArray(", \"id\": 7") << QByteArray("7");
    QTest::newRow("zero") << QByteArray(", \"id\": 0") << QByteArray("0");
    QTest::newRow("negative") << QByteArray(", \"id\": -1") << QByteArray("-1");
    QTest::newRow("largest") << QByteArray(", \"id\": 2147483647") << QByteArray("2147483647");
    QTest::newRow("too large") << QByteArray(", \"id\": 4294967296") << QByteArray("0");
    QTest::newRow("fraction") << QByteArray(", \"id\": 7.5") << QByteArray("0");
    QTest::newRow("text") << QByteArray(", \"id\": \"7\"") << QByteArray("0");
    QTest::newRow("null") << QByteArray(", \"id\": null") << QByteArray("0");
    QTest::newRow("none") << QByteArray() << QByteArray("0");
}

void tst_client_conf_wire::the_id_goes_out_without_quotes()
{
    QFETCH(QByteArray, member);
    QFETCH(QByteArray, id);
    save(open_conf(*world));
    QVERIFY(answer_json(*world, 0, "{\"returncode\": \"success\"" + member + "}"));
    check_request(1, "/api/v19/wifi.action", "{\"action\": \"selectnetwork\", \"id\": " + id + " }");
}

void tst_client_conf_wire::each_body_is_logged()
{
    const auto configs = [this] {
        QStringList lines;
        for (const QString &line : world->start_up.log.debug_lines())
            if (line.startsWith("CONFIG"))
                lines += line;
        return lines;
    };
    const Client_Conf *dialog = open_conf(*world);
    dialog->name_edit->setText("Bath");
    save(dialog);
    QVERIFY(answer_json(*world, 0, success));
    QVERIFY(answer_json(*world, 1, added));
    QTRY_COMPARE(world->peer.requests.size(), 3);
    QStringList wanted;
    for (const Http_Peer::Request &request : world->peer.requests)
        wanted += reply_line("CONFIG STRING: >>>", request.body) + " <<<\n\n";
    QCOMPARE(configs(), wanted);
}

static void add_kinds()
{
    QTest::addColumn<bool>("is_static");
    QTest::addColumn<QString>("domain");
    QTest::newRow("DHCP") << false << "";
    QTest::newRow("static with name servers") << true << "home.example";
    QTest::newRow("static without name servers") << true << "";
}

static std::unique_ptr<Virtual_Speaker> speaker_of(const Wlan_World &world)
{
    Speaker_Config config;
    config.address = own_loopback(2);
    Wlan_Network home;
    home.ssid = "Home";
    home.password = QString(63, 'p');
    config.networks = {home};
    auto speaker = std::make_unique<Virtual_Speaker>(config);
    if (!speaker->start())
        qFatal("%s", qPrintable(speaker->error()));
    world.record->set_ip(speaker->address());
    world.record->set_port(speaker->http_port());
    return speaker;
}

void tst_client_conf_wire::a_real_speaker_reads_each_body_data()
{
    add_kinds();
}

void tst_client_conf_wire::a_real_speaker_reads_each_body()
{
    QFETCH(bool, is_static);
    QFETCH(QString, domain);
    const auto speaker = speaker_of(*world);
    fill_static();
    world->record->static_network = is_static;
    world->record->static_domain = domain;
    world->start_up.open();
    const Client_Conf *dialog = open_conf(*world);
    dialog->name_edit->setText(QString::fromUtf8(umlauts));
    dialog->passwd_edit->setText(QString(63, 'p'));
    Box_Reader user;
    save(dialog);
    QTRY_VERIFY(user.met());
    QCOMPARE(user.title, QString("Info"));

    QStringList actions;
    for (const Http_Request &request : speaker->http_requests()) {
        QVERIFY2(request.json_ok, qPrintable(request.json_error));
        actions += request.action;
    }
    QCOMPARE(actions,
             (QStringList{"setdevicename", is_static ? "addstaticnetwork" : "addnetwork", "selectnetwork"}));
    QCOMPARE(speaker->config().name, QString::fromUtf8(umlauts));
    QCOMPARE(speaker->config().ssid, QString("Home"));
    QCOMPARE(speaker->config().wlan_mode, QString("STA"));
    QVERIFY(speaker->wait_until_stopped()); // it has left
    const Static_Address place = speaker->config().static_address;
    QCOMPARE(place.address, QString(is_static ? "192.168.1.20" : ""));
    QCOMPARE(place.broadcast, QString(is_static ? "192.168.1.255" : ""));
    QCOMPARE(place.domains, domain.isEmpty() ? QStringList() : QStringList(domain));
    QCOMPARE(place.name_servers, domain.isEmpty() ? QStringList() : (QStringList{"8.8.8.8", "8.8.4.4"}));
}

void tst_client_conf_wire::a_quote_makes_a_body_that_the_speaker_refuses_data()
{
    add_kinds();
}

void tst_client_conf_wire::a_quote_makes_a_body_that_the_speaker_refuses()
{
    QFETCH(bool, is_static);
    QFETCH(QString, domain);
    const auto speaker = speaker_of(*world);
    fill_static();
    world->record->static_network = is_static;
    world->record->static_domain = domain;
    const Client_Conf *dialog = open_conf(*world);
    dialog->passwd_edit->setText("a\"b");
    Box_Reader user;
    save(dialog);
    QTRY_VERIFY(user.met());
    QCOMPARE(user.seen(), (QStringList{"Add/Static/Network", "Result error something went wrong...", "OK"}));
    QCOMPARE(speaker->http_requests().size(), 1);
    QVERIFY(!speaker->http_requests().first().json_ok);

    dialog->passwd_edit->clear();
    dialog->name_edit->setText("a\"b");
    Box_Reader another;
    save(dialog);
    QTRY_VERIFY(another.met());
    QCOMPARE(another.seen(), (QStringList{"Info", "DeviceName could not be set", "OK"}));
    QCOMPARE(speaker->http_requests().size(), 2);
    QVERIFY(dialog->isVisible());
}

QTEST_MAIN(tst_client_conf_wire)
#include "tst_client_conf_wire.moc"
