// SPDX-License-Identifier: MIT
#include <QTest>

#include "device/device_desc.h"
#include "network/wlan_bodies.h"

// Each body as it goes on the wire, blank by blank.
class tst_wlan_bodies : public QObject
{
    Q_OBJECT

private slots:
    void a_name_goes_out_as_typed_data();
    void a_name_goes_out_as_typed();
    void a_network_by_dhcp_data();
    void a_network_by_dhcp();
    void a_network_with_a_static_address();
    void an_empty_domain_drops_the_name_servers();
    void an_empty_gateway_stays_a_member();
    void static_fields_are_not_sent_while_the_address_is_dynamic();
    void the_id_of_a_network_has_no_quotes();
};

namespace
{
void fill_static(Device_Desc &device)
{
    device.ssid = "Zuhause";
    device.set_static_network("192.168.1.20", "255.255.255.0", "192.168.1.1", "home.example", "8.8.8.8",
                              "8.8.4.4");
}
} // namespace

void tst_wlan_bodies::a_name_goes_out_as_typed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("plain") << "Küche"
                           << QByteArray("{\"action\": \"setdevicename\", \"devicename\": \"Küche\" }");
    QTest::newRow("empty") << "" << QByteArray("{\"action\": \"setdevicename\", \"devicename\": \"\" }");
    QTest::newRow("quote") << "a\"b"
                           << QByteArray("{\"action\": \"setdevicename\", \"devicename\": \"a\"b\" }");
}

void tst_wlan_bodies::a_name_goes_out_as_typed()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, body);
    QCOMPARE(set_device_name_body(name).toUtf8(), body);
}

void tst_wlan_bodies::a_network_by_dhcp_data()
{
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("body");
    const QString long_password(63, 'p');
    const QString long_ssid(32, 's');
    QTest::newRow("plain")
        << "Zuhause"
        << "geheim"
        << QByteArray("{\"action\": \"addnetwork\", \"ssid\": \"Zuhause\", \"psk\": \"geheim\" } ");
    QTest::newRow("empty password")
        << "Café"
        << "" << QByteArray("{\"action\": \"addnetwork\", \"ssid\": \"Café\", \"psk\": \"\" } ");
    QTest::newRow("quotes") << "a\"b"
                            << "c\"d"
                            << QByteArray(
                                   "{\"action\": \"addnetwork\", \"ssid\": \"a\"b\", \"psk\": \"c\"d\" } ");
    QTest::newRow("longest") << long_ssid << long_password
                             << "{\"action\": \"addnetwork\", \"ssid\": \"" + long_ssid.toUtf8() +
                                    "\", \"psk\": \"" + long_password.toUtf8() + "\" } ";
}

void tst_wlan_bodies::a_network_by_dhcp()
{
    QFETCH(QString, ssid);
    QFETCH(QString, password);
    QFETCH(QByteArray, body);
    Device_Desc device(nullptr, false, "");
    device.ssid = ssid;
    QCOMPARE(add_network_body(device, password).toUtf8(), body);
}

void tst_wlan_bodies::a_network_with_a_static_address()
{
    Device_Desc device(nullptr, false, "");
    fill_static(device);
    QCOMPARE(add_network_body(device, "geheim"),
             QString("{\"action\": \"addstaticnetwork\", \"ssid\": \"Zuhause\", \"psk\": \"geheim\", "
                     "\"inet\": {\"address\": \"192.168.1.20\", \"netmask\": \"255.255.255.0\", "
                     "\"broadcast\": \"192.168.1.255\", \"gateway\": \"192.168.1.1\" } , "
                     "\"dns\": { \"domains\": [ \"home.example\" ], "
                     "\"nameservers\": [ \"8.8.8.8\", \"8.8.4.4\" ] } } "));
}

void tst_wlan_bodies::an_empty_domain_drops_the_name_servers()
{
    Device_Desc device(nullptr, false, "");
    fill_static(device);
    device.static_domain.clear();
    QCOMPARE(add_network_body(device, "geheim"),
             QString("{\"action\": \"addstaticnetwork\", \"ssid\": \"Zuhause\", \"psk\": \"geheim\", "
                     "\"inet\": {\"address\": \"192.168.1.20\", \"netmask\": \"255.255.255.0\", "
                     "\"broadcast\": \"192.168.1.255\", \"gateway\": \"192.168.1.1\" } } "));
}

void tst_wlan_bodies::an_empty_gateway_stays_a_member()
{
    Device_Desc device(nullptr, false, "");
    fill_static(device);
    device.static_gateway.clear();
    QVERIFY(add_network_body(device, "").contains("\"psk\": \"\", \"inet\": {"));
    QVERIFY(add_network_body(device, "").contains(", \"gateway\": \"\" } "));
}

void tst_wlan_bodies::static_fields_are_not_sent_while_the_address_is_dynamic()
{
    Device_Desc device(nullptr, false, "");
    fill_static(device);
    device.clear_static_network();
    QCOMPARE(add_network_body(device, "geheim"),
             QString("{\"action\": \"addnetwork\", \"ssid\": \"Zuhause\", \"psk\": \"geheim\" } "));
}

void tst_wlan_bodies::the_id_of_a_network_has_no_quotes()
{
    QCOMPARE(select_network_body("7"), QString("{\"action\": \"selectnetwork\", \"id\": 7 }"));
    QCOMPARE(select_network_body("-1"), QString("{\"action\": \"selectnetwork\", \"id\": -1 }"));
}

QTEST_GUILESS_MAIN(tst_wlan_bodies)
#include "tst_wlan_bodies.moc"
