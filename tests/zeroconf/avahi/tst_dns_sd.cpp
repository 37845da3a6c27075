// SPDX-License-Identifier: MIT
#include <QDir>
#include <QList>
#include <QTest>
#include <QThread>
#include <functional>

#include "tests/zeroconf/avahi/readable.h"
#include "zeroconf/avahi/dns_sd.h"

// The calls where there is no bus: what is refused at once, and what comes as an error reply.
class tst_dns_sd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus"); }
    void init();

    void a_call_without_what_it_needs_is_refused_data();
    void a_call_without_what_it_needs_is_refused();
    void an_address_query_takes_either_protocol_both_and_none();
    void null_refs_are_tolerated();
    void flags_and_codes_have_the_usual_numbers();
    void without_a_bus_every_call_fails_once_with_null_texts_data();
    void without_a_bus_every_call_fails_once_with_null_texts();
    void processing_with_nothing_to_read_returns_at_once();
    void the_callback_may_release_its_ref();
    void refs_that_are_released_at_once_leave_nothing();
};

namespace
{
struct Heard {
    DNSServiceErrorType code = 0;
    DNSServiceRef ref = nullptr;
    QThread *thread = nullptr;
    bool null_texts = false;
};
QList<Heard> heard;
bool release_in_callback = false;

void hear(DNSServiceRef ref, DNSServiceErrorType code, bool null_texts, void *context)
{
    QCOMPARE(context, &heard);
    heard << Heard{code, ref, QThread::currentThread(), null_texts};
    if (release_in_callback)
        DNSServiceRefDeallocate(ref);
}

void on_browse(DNSServiceRef ref, DNSServiceFlags, uint32_t, DNSServiceErrorType code, const char *name,
               const char *type, const char *domain, void *context)
{
    hear(ref, code, !name && !type && !domain, context);
}

void on_resolve(DNSServiceRef ref, DNSServiceFlags, uint32_t, DNSServiceErrorType code, const char *full_name,
                const char *host, uint16_t port, uint16_t txt_size, const unsigned char *txt, void *context)
{
    hear(ref, code, !full_name && !host && port == 0 && txt_size == 0 && !txt, context);
}

void on_address(DNSServiceRef ref, DNSServiceFlags, uint32_t, DNSServiceErrorType code, const char *host,
                const sockaddr *address, uint32_t, void *context)
{
    hear(ref, code, !host && !address, context);
}

void on_register(DNSServiceRef ref, DNSServiceFlags, DNSServiceErrorType code, const char *name,
                 const char *type, const char *domain, void *context)
{
    hear(ref, code, !name && !type && !domain, context);
}

const char *const type = "_lodeset._tcp";

DNSServiceErrorType browse(DNSServiceRef *ref)
{
    return DNSServiceBrowse(ref, 0, 0, type, nullptr, on_browse, &heard);
}

using Call = std::function<DNSServiceErrorType(DNSServiceRef *)>;

QList<QPair<const char *, Call>> good_calls()
{
    return {
        {"browse", browse},
        {"resolve",
         [](DNSServiceRef *ref) {
             return DNSServiceResolve(ref, kDNSServiceFlagsTimeout, 1, "Name", type, "local.", on_resolve,
                                      &heard);
         }},
        {"address",
         [](DNSServiceRef *ref) {
             return DNSServiceGetAddrInfo(ref, kDNSServiceFlagsForceMulticast, 1, kDNSServiceProtocol_IPv4,
                                          "host.local.", on_address, &heard);
         }},
        {"register",
         [](DNSServiceRef *ref) {
             return DNSServiceRegister(ref, 0, 0, "Name", type, nullptr, nullptr, 80, 0, nullptr, on_register,
                                       &heard);
         }},
    };
}

int descriptors()
{
    return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}
} // namespace

Q_DECLARE_METATYPE(Call)

void tst_dns_sd::init()
{
    heard.clear();
    release_in_callback = false;
}

void tst_dns_sd::a_call_without_what_it_needs_is_refused_data()
{
    QTest::addColumn<Call>("call");
    const auto row = [](const char *name, const Call &call) { QTest::newRow(name) << call; };
    for (const auto &good : good_calls())
        QTest::addRow("%s: no ref", good.first)
            << Call([call = good.second](DNSServiceRef *) { return call(nullptr); });
    row("browse: no type",
        [](auto *ref) { return DNSServiceBrowse(ref, 0, 0, nullptr, nullptr, on_browse, nullptr); });
    row("browse: empty type",
        [](auto *ref) { return DNSServiceBrowse(ref, 0, 0, "", nullptr, on_browse, nullptr); });
    row("browse: no callback",
        [](auto *ref) { return DNSServiceBrowse(ref, 0, 0, type, nullptr, nullptr, nullptr); });
    row("resolve: no name",
        [](auto *ref) { return DNSServiceResolve(ref, 0, 0, nullptr, type, "local.", on_resolve, nullptr); });
    row("resolve: no type", [](auto *ref) {
        return DNSServiceResolve(ref, 0, 0, "Name", nullptr, "local.", on_resolve, nullptr);
    });
    row("resolve: no domain",
        [](auto *ref) { return DNSServiceResolve(ref, 0, 0, "Name", type, nullptr, on_resolve, nullptr); });
    row("resolve: no callback",
        [](auto *ref) { return DNSServiceResolve(ref, 0, 0, "Name", type, "local.", nullptr, nullptr); });
    row("address: no host",
        [](auto *ref) { return DNSServiceGetAddrInfo(ref, 0, 0, 1, nullptr, on_address, nullptr); });
    row("address: no such protocol",
        [](auto *ref) { return DNSServiceGetAddrInfo(ref, 0, 0, 4, "host.local.", on_address, nullptr); });
    row("address: no callback",
        [](auto *ref) { return DNSServiceGetAddrInfo(ref, 0, 0, 1, "host.local.", nullptr, nullptr); });
    row("register: no type", [](auto *ref) {
        return DNSServiceRegister(ref, 0, 0, "Name", nullptr, nullptr, nullptr, 80, 0, nullptr, on_register,
                                  nullptr);
    });
    row("register: no callback", [](auto *ref) {
        return DNSServiceRegister(ref, 0, 0, "Name", type, nullptr, nullptr, 80, 0, nullptr, nullptr,
                                  nullptr);
    });
    row("register: a size and no TXT bytes", [](auto *ref) {
        return DNSServiceRegister(ref, 0, 0, "Name", type, nullptr, nullptr, 80, 4, nullptr, on_register,
                                  nullptr);
    });
}

void tst_dns_sd::a_call_without_what_it_needs_is_refused()
{
    QFETCH(Call, call);
    char anything;
    DNSServiceRef const untouched = reinterpret_cast<DNSServiceRef>(&anything);
    DNSServiceRef ref = untouched;
    QCOMPARE(call(&ref), DNSServiceErrorType(kDNSServiceErr_BadParam));
    QVERIFY(!ref || ref == untouched);
}

void tst_dns_sd::an_address_query_takes_either_protocol_both_and_none()
{
    for (const DNSServiceProtocol protocol : {0, 1, 2, 3}) {
        DNSServiceRef ref = nullptr;
        QCOMPARE(DNSServiceGetAddrInfo(&ref, 0, 0, protocol, "host.local.", on_address, &heard), 0);
        DNSServiceRefDeallocate(ref);
    }
}

void tst_dns_sd::null_refs_are_tolerated()
{
    QCOMPARE(DNSServiceRefSockFD(nullptr), -1);
    QCOMPARE(DNSServiceProcessResult(nullptr), DNSServiceErrorType(kDNSServiceErr_BadParam));
    DNSServiceRefDeallocate(nullptr);
}

// Else a program built for another library of these calls would not understand this one.
void tst_dns_sd::flags_and_codes_have_the_usual_numbers()
{
    QCOMPARE(int(kDNSServiceErr_Unknown), -65537);
    QCOMPARE(int(kDNSServiceErr_NoMemory), -65539);
    QCOMPARE(int(kDNSServiceErr_BadParam), -65540);
    QCOMPARE(int(kDNSServiceErr_NameConflict), -65548);
    QCOMPARE(int(kDNSServiceErr_ServiceNotRunning), -65563);
    QCOMPARE(int(kDNSServiceErr_Timeout), -65568);
    QCOMPARE(int(kDNSServiceFlagsMoreComing), 0x1);
    QCOMPARE(int(kDNSServiceFlagsAdd), 0x2);
    QCOMPARE(int(kDNSServiceFlagsForceMulticast), 0x400);
    QCOMPARE(int(kDNSServiceFlagsTimeout), 0x10000);
    QCOMPARE(int(kDNSServiceProtocol_IPv4), 0x1);
    QCOMPARE(int(kDNSServiceProtocol_IPv6), 0x2);
}

void tst_dns_sd::without_a_bus_every_call_fails_once_with_null_texts_data()
{
    QTest::addColumn<Call>("call");
    for (const auto &good : good_calls())
        QTest::newRow(good.first) << good.second;
}

void tst_dns_sd::without_a_bus_every_call_fails_once_with_null_texts()
{
    QFETCH(Call, call);
    DNSServiceRef ref = nullptr;
    QCOMPARE(call(&ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QVERIFY(is_readable(DNSServiceRefSockFD(ref), patience_ms));
    QVERIFY(heard.isEmpty());
    QCOMPARE(DNSServiceProcessResult(ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QCOMPARE(heard.size(), 1);
    QCOMPARE(heard[0].code, DNSServiceErrorType(kDNSServiceErr_ServiceNotRunning));
    QCOMPARE(heard[0].ref, ref);
    QCOMPARE(heard[0].thread, QThread::currentThread());
    QVERIFY(heard[0].null_texts);

    QVERIFY(!is_readable(DNSServiceRefSockFD(ref), 0));
    QCOMPARE(DNSServiceProcessResult(ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QCOMPARE(heard.size(), 1);
    DNSServiceRefDeallocate(ref);
}

void tst_dns_sd::processing_with_nothing_to_read_returns_at_once()
{
    DNSServiceRef ref = nullptr;
    QCOMPARE(browse(&ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QVERIFY(is_readable(DNSServiceRefSockFD(ref), patience_ms));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(DNSServiceProcessResult(ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QCOMPARE(heard.size(), 1);
    DNSServiceRefDeallocate(ref);
}

void tst_dns_sd::the_callback_may_release_its_ref()
{
    release_in_callback = true;
    DNSServiceRef ref = nullptr;
    QCOMPARE(browse(&ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QVERIFY(is_readable(DNSServiceRefSockFD(ref), patience_ms));
    QCOMPARE(DNSServiceProcessResult(ref), DNSServiceErrorType(kDNSServiceErr_NoError));
    QCOMPARE(heard.size(), 1);
}

void tst_dns_sd::refs_that_are_released_at_once_leave_nothing()
{
    // The first call brings the poll thread to life, and its reply says that the thread is done with it.
    DNSServiceRef ref = nullptr;
    browse(&ref);
    QVERIFY(is_readable(DNSServiceRefSockFD(ref), patience_ms));
    DNSServiceRefDeallocate(ref);
    const int before = descriptors();

    for (int i = 0; i < 1000; ++i) {
        for (const auto &good : good_calls()) {
            QCOMPARE(good.second(&ref), DNSServiceErrorType(kDNSServiceErr_NoError));
            DNSServiceRefDeallocate(ref);
        }
    }
    QTRY_COMPARE(descriptors(), before);
    QVERIFY(heard.isEmpty());
}

QTEST_GUILESS_MAIN(tst_dns_sd)
#include "tst_dns_sd.moc"
