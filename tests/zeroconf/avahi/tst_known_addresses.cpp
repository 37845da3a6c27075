// SPDX-License-Identifier: MIT
#include <QTest>

#include "zeroconf/avahi/known_addresses.h"

class tst_KnownAddresses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void what_was_put_is_told_once();
    void the_last_address_of_a_host_counts();
    void hosts_and_interfaces_are_told_apart();

private:
    KnownAddresses addresses;
};

void tst_KnownAddresses::what_was_put_is_told_once()
{
    QVERIFY(!addresses.take(1, "a.local."));
    addresses.put(1, "a.local.", {AVAHI_PROTO_INET6, "wxyz"});
    const auto known = addresses.take(1, "a.local.");
    QVERIFY(known);
    QCOMPARE(known->protocol, AVAHI_PROTO_INET6);
    QCOMPARE(known->bytes, std::string("wxyz"));
    QVERIFY(!addresses.take(1, "a.local."));
}

void tst_KnownAddresses::the_last_address_of_a_host_counts()
{
    addresses.put(1, "a.local.", {AVAHI_PROTO_INET, "1111"});
    addresses.put(1, "a.local.", {AVAHI_PROTO_INET, "2222"});
    QCOMPARE(addresses.take(1, "a.local.")->bytes, std::string("2222"));
    QVERIFY(!addresses.take(1, "a.local."));
}

void tst_KnownAddresses::hosts_and_interfaces_are_told_apart()
{
    addresses.put(1, "a.local.", {AVAHI_PROTO_INET, "1111"});
    QVERIFY(!addresses.take(2, "a.local."));
    QVERIFY(!addresses.take(1, "b.local."));
    QVERIFY(addresses.take(1, "a.local."));
}

QTEST_APPLESS_MAIN(tst_KnownAddresses)
#include "tst_known_addresses.moc"
