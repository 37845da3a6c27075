// SPDX-License-Identifier: MIT
#include <QTest>
#include <avahi-common/address.h>
#include <avahi-common/error.h>

#include "zeroconf/avahi/operation.h"

// What the daemon says, in the words of the calls.
class tst_operation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void errors_are_told_in_the_words_of_the_calls_data();
    void errors_are_told_in_the_words_of_the_calls();
    void interface_0_is_any_interface();
};

void tst_operation::errors_are_told_in_the_words_of_the_calls_data()
{
    QTest::addColumn<int>("avahi");
    QTest::addColumn<int>("code");
    const auto row = [](int avahi, int code) { QTest::newRow(avahi_strerror(avahi)) << avahi << code; };
    row(AVAHI_OK, kDNSServiceErr_NoError);
    row(AVAHI_ERR_TIMEOUT, kDNSServiceErr_Timeout);
    row(AVAHI_ERR_COLLISION, kDNSServiceErr_NameConflict);
    row(AVAHI_ERR_NO_DAEMON, kDNSServiceErr_ServiceNotRunning);
    row(AVAHI_ERR_DISCONNECTED, kDNSServiceErr_ServiceNotRunning);
    row(AVAHI_ERR_DBUS_ERROR, kDNSServiceErr_ServiceNotRunning);
    row(AVAHI_ERR_NO_MEMORY, kDNSServiceErr_NoMemory);
    row(AVAHI_ERR_TOO_MANY_CLIENTS, kDNSServiceErr_NoMemory);
    row(AVAHI_ERR_TOO_MANY_OBJECTS, kDNSServiceErr_NoMemory);
    row(AVAHI_ERR_TOO_MANY_ENTRIES, kDNSServiceErr_NoMemory);
    row(AVAHI_ERR_INVALID_HOST_NAME, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_DOMAIN_NAME, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_SERVICE_NAME, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_SERVICE_TYPE, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_PORT, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_INTERFACE, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_RECORD, kDNSServiceErr_BadParam);
    row(AVAHI_ERR_INVALID_ARGUMENT, kDNSServiceErr_BadParam);
    // Without a word of its own.
    row(AVAHI_ERR_OS, kDNSServiceErr_Unknown);
    row(AVAHI_ERR_NOT_SUPPORTED, kDNSServiceErr_Unknown);
}

void tst_operation::errors_are_told_in_the_words_of_the_calls()
{
    QFETCH(int, avahi);
    QTEST(int(dns_sd_error(avahi)), "code");
}

void tst_operation::interface_0_is_any_interface()
{
    QCOMPARE(avahi_interface(0), int(AVAHI_IF_UNSPEC));
    QCOMPARE(avahi_interface(1), 1);
    QCOMPARE(avahi_interface(7), 7);
}

QTEST_APPLESS_MAIN(tst_operation)
#include "tst_operation.moc"
