// SPDX-License-Identifier: MIT
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "app/globals.h"
#include "device/device_desc.h"
#include "network/client_conf_statip.h"
#include "overview/client_overview.h"
#include "tests/network/statip_user.h"
#include "tests/network/wlan_world.h"

static const QString domain = VIRELO_MAKER_DOMAIN;

// What the dialog of the static address stores, and whom it tells.
class tst_client_conf_statip_save : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void a_static_address_is_stored();
    void the_broadcast_address_is_computed_data();
    void the_broadcast_address_is_computed();
    void nothing_is_validated_data();
    void nothing_is_validated();
    void dhcp_keeps_the_stored_values();
    void an_empty_domain_stays_empty_but_is_proposed_again();
    void update_comes_after_the_values_are_stored_and_before_the_end();
    void enter_saves();
    void back_stores_nothing_and_tells_nobody();
    void without_a_record_nothing_is_stored();

private:
    Client_Conf_StatIP *open() const { return open_statip(*world); }

    std::unique_ptr<Wlan_World> world;
    Device_Desc *record = nullptr;
};

void tst_client_conf_statip_save::init()
{
    world = std::make_unique<Wlan_World>();
    record = world->record;
    record->ip = "10.0.0.7";
}

void tst_client_conf_statip_save::cleanup()
{
    world.reset();
}

void tst_client_conf_statip_save::a_static_address_is_stored()
{
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    const QStringList typed{"192.168.1.20", "255.255.255.0", "192.168.1.1",
                            "home.example", "9.9.9.9",       "7.7.7.7"};
    for (int i = 0; i < typed.size(); ++i)
        type_over(edits_of(dialog).at(i), typed.at(i));
    world->start_up.log.clear();
    click(dialog->save_button);
    QVERIFY(record->static_network);
    QCOMPARE(stored_in(record), (QStringList{"192.168.1.20", "255.255.255.0", "192.168.1.255", "192.168.1.1",
                                             "home.example", "9.9.9.9", "7.7.7.7"}));
    QCOMPARE(world->start_up.log.debug_lines(),
             QStringList(R"(Calculated Boradcast Address: "192.168.1.255")"));
    QVERIFY(!dialog->isVisible());
    QCOMPARE(record->ip, QString("10.0.0.7"));
}

void tst_client_conf_statip_save::the_broadcast_address_is_computed_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("netmask");
    QTest::addColumn<QString>("broadcast");
    QTest::newRow("24 bits") << "192.168.1.20"
                             << "255.255.255.0"
                             << "192.168.1.255";
    QTest::newRow("32 bits") << "192.168.1.20"
                             << "255.255.255.255"
                             << "192.168.1.20";
    QTest::newRow("31 bits") << "192.168.1.20"
                             << "255.255.255.254"
                             << "192.168.1.21";
    QTest::newRow("28 bits") << "192.168.1.20"
                             << "255.255.255.240"
                             << "192.168.1.31";
    QTest::newRow("16 bits") << "172.16.5.4"
                             << "255.255.0.0"
                             << "172.16.255.255";
    QTest::newRow("8 bits") << "10.1.2.3"
                            << "255.0.0.0"
                            << "10.255.255.255";
    QTest::newRow("20 bits") << "10.1.18.3"
                             << "255.255.240.0"
                             << "10.1.31.255";
    QTest::newRow("0 bits") << "10.1.2.3"
                            << "0.0.0.0"
                            << "255.255.255.255";
    QTest::newRow("highest address") << "255.255.255.255"
                                     << "255.255.255.0"
                                     << "255.255.255.255";
    QTest::newRow("no netmask") << "10.1.2.3"
                                << ""
                                << "255.255.255.255";
    QTest::newRow("half a netmask") << "10.1.2.3"
                                    << "255.255"
                                    << "10.1.255.255";
    QTest::newRow("no address") << ""
                                << "255.255.255.0"
                                << "0.0.0.255";
}

void tst_client_conf_statip_save::the_broadcast_address_is_computed()
{
    QFETCH(QString, address);
    QFETCH(QString, netmask);
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    type_over(dialog->ip_edit, address);
    type_over(dialog->netmask_edit, netmask);
    click(dialog->save_button);
    QTEST(record->static_broadcast, "broadcast");
}

void tst_client_conf_statip_save::nothing_is_validated_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("no address") << "kitchen";
    QTest::newRow("out of range") << "999.999.999.999";
    QTest::newRow("quote") << "10.0.0.\"1";
    QTest::newRow("blanks") << "  10.0.0.1  ";
}

void tst_client_conf_statip_save::nothing_is_validated()
{
    QFETCH(QString, text);
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    for (QLineEdit *edit : edits_of(dialog))
        type_over(edit, text);
    click(dialog->save_button);
    QVERIFY(record->static_network);
    QStringList stored = stored_in(record);
    stored.removeAt(2); // the broadcast address
    QCOMPARE(stored, QStringList({text, text, text, text, text, text}));
    QVERIFY(!dialog->isVisible());
}

void tst_client_conf_statip_save::dhcp_keeps_the_stored_values()
{
    record->set_static_network("10.1.1.1", "255.0.0.0", "10.1.1.2", "a.example", "1.1.1.1", "2.2.2.2");
    const QStringList stored = stored_in(record);
    const Client_Conf_StatIP *dialog = open();
    click(dialog->dhcp_radio);
    click(dialog->save_button);
    QVERIFY(!record->static_network);
    QCOMPARE(stored_in(record), stored);

    dialog = open();
    QVERIFY(dialog->dhcp_radio->isChecked());
    click(dialog->static_radio);
    QCOMPARE(texts_of(dialog),
             (QStringList{"10.1.1.1", "255.0.0.0", "10.1.1.2", "a.example", "1.1.1.1", "2.2.2.2"}));
}

void tst_client_conf_statip_save::an_empty_domain_stays_empty_but_is_proposed_again()
{
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    QCOMPARE(dialog->domain_edit->text(), domain);
    type_over(dialog->domain_edit, "");
    click(dialog->save_button);
    QCOMPARE(record->static_domain, QString());
    QCOMPARE(open()->domain_edit->text(), domain);
    QCOMPARE(record->static_domain, QString());
}

void tst_client_conf_statip_save::update_comes_after_the_values_are_stored_and_before_the_end()
{
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    QStringList seen;
    connect(dialog, &Client_Conf_StatIP::update, this, [this, dialog, &seen] {
        seen += record->static_ip + (dialog->isVisible() ? " visible" : " closed");
    });
    click(dialog->save_button);
    QCOMPARE(seen, QStringList("10.0.0.7 visible"));
    QVERIFY(!dialog->isVisible());

    const Client_Conf_StatIP *dynamic = open();
    QSignalSpy updates(dynamic, &Client_Conf_StatIP::update);
    click(dynamic->dhcp_radio);
    QCOMPARE(updates.count(), 0);
    click(dynamic->save_button);
    QCOMPARE(updates.count(), 1); // also of a choice for DHCP
}

void tst_client_conf_statip_save::enter_saves()
{
    Client_Conf_StatIP *dialog = open();
    dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    click(dialog->static_radio);
    type_over(dialog->ip_edit, "10.9.9.9");
    QTest::keyClick(dialog->ip_edit, Qt::Key_Return);
    QCOMPARE(record->static_ip, QString("10.9.9.9"));
    QVERIFY(!dialog->isVisible());
}

void tst_client_conf_statip_save::back_stores_nothing_and_tells_nobody()
{
    const Client_Conf_StatIP *dialog = open();
    QSignalSpy updates(dialog, &Client_Conf_StatIP::update);
    click(dialog->static_radio);
    click(dialog->back_button);
    QVERIFY(!dialog->isVisible());
    QVERIFY(!record->static_network);
    QCOMPARE(stored_in(record), QStringList({"", "", "", "", "", "", ""}));
    QCOMPARE(updates.count(), 0);
}

void tst_client_conf_statip_save::without_a_record_nothing_is_stored()
{
    world->start_up.open();
    const Client_Conf_StatIP *dialog = open();
    QSignalSpy updates(dialog, &Client_Conf_StatIP::update);
    overview->deleteRecords();
    QVERIFY(!dialog->device);
    click(dialog->static_radio);
    QCOMPARE(texts_of(dialog), (QStringList{"192.168.1.1", "", "", "", "", ""}));
    click(dialog->dhcp_radio);
    QVERIFY(dialog->dhcp_radio->isChecked());
    click(dialog->save_button);
    QCOMPARE(updates.count(), 1);
    QVERIFY(!dialog->isVisible());
}

QTEST_MAIN(tst_client_conf_statip_save)
#include "tst_client_conf_statip_save.moc"
