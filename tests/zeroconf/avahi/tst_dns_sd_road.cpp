// SPDX-License-Identifier: MIT
#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QTest>
#include <QtEndian>
#include <functional>
#include <net/if.h>
#include <sys/socket.h>
#include <utility>

#include "tests/zeroconf/avahi/readable.h"
#include "zeroconf/avahi/dns_sd.h"

// The calls against the real daemon of the lab: what one ref announces, others find.
class tst_dns_sd_road : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { heard.clear(); }

    void a_service_is_found_as_it_was_announced_and_goes_with_its_ref();
    void a_txt_record_arrives_byte_by_byte_data();
    void a_txt_record_arrives_byte_by_byte();
    void a_name_that_is_taken_gets_a_number();
    void a_service_without_name_gets_that_of_the_machine();
    void a_type_that_is_none_is_an_error_reply();
    void a_resolve_of_a_type_that_is_none_is_an_error_reply();
    void a_txt_record_that_is_none_is_an_error_reply();
    void a_browse_on_one_interface_finds_what_is_there();
    void a_callback_may_release_another_ref();
    void more_coming_is_said_while_more_is_there();

private:
    struct Reply {
        DNSServiceRef ref = nullptr;
        DNSServiceFlags flags = 0;
        uint32_t interface = 0;
        DNSServiceErrorType code = 0;
        QByteArray name; // of a browse or a registration; full name of a resolve; host of an address query
        QByteArray type;
        QByteArray domain;
        QByteArray host;
        uint16_t port = 0;
        QByteArray txt;
        QHostAddress address;
        uint32_t ttl = 0;
    };

    static void hear(const Reply &reply);
    static void on_browse(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *,
                          const char *, const char *, void *);
    static void on_resolve(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *,
                           const char *, uint16_t, uint16_t, const unsigned char *, void *);
    static void on_address(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *,
                           const sockaddr *, uint32_t, void *);
    static void on_register(DNSServiceRef, DNSServiceFlags, DNSServiceErrorType, const char *, const char *,
                            const char *, void *);

    static DNSServiceRef announce(const char *name, const char *type, const QByteArray &txt = {},
                                  uint16_t port = 8080);
    static DNSServiceRef browse(const char *type, uint32_t interface = 0);
    static Reply next_reply(DNSServiceRef ref);

    static inline QList<Reply> heard;
    static inline std::function<void()> then;
};

void tst_dns_sd_road::hear(const Reply &reply)
{
    heard << reply;
    if (then)
        std::exchange(then, nullptr)();
}

void tst_dns_sd_road::on_browse(DNSServiceRef ref, DNSServiceFlags flags, uint32_t interface,
                                DNSServiceErrorType code, const char *name, const char *type,
                                const char *domain, void *)
{
    Reply reply{ref, flags, interface, code, name, type, domain, {}, 0, {}, {}, 0};
    hear(reply);
}

void tst_dns_sd_road::on_resolve(DNSServiceRef ref, DNSServiceFlags flags, uint32_t interface,
                                 DNSServiceErrorType code, const char *full_name, const char *host,
                                 uint16_t port, uint16_t txt_size, const unsigned char *txt, void *)
{
    const QByteArray bytes(reinterpret_cast<const char *>(txt), txt_size);
    hear({ref, flags, interface, code, full_name, {}, {}, host, port, bytes, {}, 0});
}

void tst_dns_sd_road::on_address(DNSServiceRef ref, DNSServiceFlags flags, uint32_t interface,
                                 DNSServiceErrorType code, const char *host, const sockaddr *address,
                                 uint32_t ttl, void *)
{
    hear({ref, flags, interface, code, host, {}, {}, {}, 0, {}, QHostAddress(address), ttl});
}

void tst_dns_sd_road::on_register(DNSServiceRef ref, DNSServiceFlags flags, DNSServiceErrorType code,
                                  const char *name, const char *type, const char *domain, void *)
{
    hear({ref, flags, 0, code, name, type, domain, {}, 0, {}, {}, 0});
}

DNSServiceRef tst_dns_sd_road::announce(const char *name, const char *type, const QByteArray &txt,
                                        uint16_t port)
{
    DNSServiceRef ref = nullptr;
    DNSServiceRegister(&ref, 0, 0, name, type, nullptr, nullptr, qToBigEndian(port), uint16_t(txt.size()),
                       txt.constData(), on_register, nullptr);
    return ref;
}

DNSServiceRef tst_dns_sd_road::browse(const char *type, uint32_t interface)
{
    DNSServiceRef ref = nullptr;
    DNSServiceBrowse(&ref, 0, interface, type, nullptr, on_browse, nullptr);
    return ref;
}

// The next reply of a ref; one with code 1 if none comes.
tst_dns_sd_road::Reply tst_dns_sd_road::next_reply(DNSServiceRef ref)
{
    const int before = heard.size();
    if (is_readable(DNSServiceRefSockFD(ref), patience_ms))
        DNSServiceProcessResult(ref);
    if (heard.size() == before + 1)
        return heard.last();
    Reply none;
    none.code = 1;
    return none;
}

void tst_dns_sd_road::a_service_is_found_as_it_was_announced_and_goes_with_its_ref()
{
    const uint32_t lo = if_nametoindex("lo");
    DNSServiceRef announced = announce("K\xc3\xbc"
                                       "che. \\ 1",
                                       "_road-found._tcp", "\x04id=7");
    Reply reply = next_reply(announced);
    QCOMPARE(reply.code, 0);
    QCOMPARE(reply.name, QByteArray("K\xc3\xbc"
                                    "che. \\ 1"));
    QCOMPARE(reply.type, QByteArray("_road-found._tcp."));
    QCOMPARE(reply.domain, QByteArray("local."));

    DNSServiceRef browsed = browse("_road-found._tcp");
    reply = next_reply(browsed);
    QCOMPARE(reply.code, 0);
    QVERIFY(reply.flags & kDNSServiceFlagsAdd);
    QCOMPARE(reply.interface, lo);
    QCOMPARE(reply.name, QByteArray("K\xc3\xbc"
                                    "che. \\ 1"));
    QCOMPARE(reply.type, QByteArray("_road-found._tcp."));
    QCOMPARE(reply.domain, QByteArray("local."));

    DNSServiceRef resolved = nullptr;
    QCOMPARE(DNSServiceResolve(&resolved, kDNSServiceFlagsTimeout, lo, reply.name, reply.type, reply.domain,
                               on_resolve, nullptr),
             0);
    reply = next_reply(resolved);
    QCOMPARE(reply.code, 0);
    QCOMPARE(reply.interface, lo);
    QVERIFY(reply.name.endsWith("._road-found._tcp.local."));
    QCOMPARE(reply.host, QByteArray("lab.local."));
    QCOMPARE(qFromBigEndian(reply.port), uint16_t(8080));
    QCOMPARE(reply.txt, QByteArray("\x04id=7"));

    DNSServiceRef asked = nullptr;
    QCOMPARE(DNSServiceGetAddrInfo(&asked, kDNSServiceFlagsForceMulticast, lo, kDNSServiceProtocol_IPv4,
                                   reply.host, on_address, nullptr),
             0);
    reply = next_reply(asked);
    QCOMPARE(reply.code, 0);
    QVERIFY(reply.flags & kDNSServiceFlagsAdd);
    QCOMPARE(reply.interface, lo);
    QCOMPARE(reply.name, QByteArray("lab.local."));
    QCOMPARE(reply.address, QHostAddress("127.0.0.1"));
    QCOMPARE(reply.ttl, uint32_t(120));

    DNSServiceRefDeallocate(announced);
    reply = next_reply(browsed);
    QCOMPARE(reply.code, 0);
    QVERIFY(!(reply.flags & kDNSServiceFlagsAdd));
    QCOMPARE(reply.name, QByteArray("K\xc3\xbc"
                                    "che. \\ 1"));
    // The host has gone nowhere, and nothing else is to be said.
    QVERIFY(!is_readable(DNSServiceRefSockFD(asked), 0));
    for (DNSServiceRef ref : {browsed, resolved, asked})
        DNSServiceRefDeallocate(ref);
}

void tst_dns_sd_road::a_txt_record_arrives_byte_by_byte_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("received");
    const auto wire = [](const QByteArray &text) { return char(text.size()) + text; };
    const QByteArray three = wire("b=2") + wire("a=1") + wire("flag");
    QTest::newRow("in order") << three << three;
    const QByteArray binary = wire(QByteArray("k=\x00\xff\xc3=\n", 7));
    QTest::newRow("any bytes") << binary << binary;
    const QByteArray longest = wire("a=1") + wire("k=" + QByteArray(253, 'v')) + wire("b=2");
    QTest::newRow("255 bytes in one string") << longest << longest;
    QByteArray many;
    for (int i = 0; i < 40; ++i)
        many += wire("key" + QByteArray::number(i) + "=value");
    QTest::newRow("forty strings") << many << many;
    // A TXT record is never quite empty on the wire.
    QTest::newRow("none") << QByteArray() << QByteArray(1, '\0');
}

void tst_dns_sd_road::a_txt_record_arrives_byte_by_byte()
{
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, received);
    const QByteArray name = QByteArray("TXT ") + QTest::currentDataTag();
    DNSServiceRef announced = announce(name, "_road-txt._tcp", sent);
    QCOMPARE(next_reply(announced).code, 0);
    DNSServiceRef resolved = nullptr;
    QCOMPARE(DNSServiceResolve(&resolved, 0, 0, name, "_road-txt._tcp.", "local.", on_resolve, nullptr), 0);
    const Reply reply = next_reply(resolved);
    QCOMPARE(reply.code, 0);
    QCOMPARE(reply.txt, received);
    DNSServiceRefDeallocate(resolved);
    DNSServiceRefDeallocate(announced);
}

void tst_dns_sd_road::a_name_that_is_taken_gets_a_number()
{
    DNSServiceRef first = announce("Taken", "_road-taken._tcp");
    QCOMPARE(next_reply(first).name, QByteArray("Taken"));
    DNSServiceRef second = announce("Taken", "_road-taken._tcp", {}, 8081);
    QCOMPARE(next_reply(second).name, QByteArray("Taken #2"));
    DNSServiceRefDeallocate(first);
    DNSServiceRefDeallocate(second);
}

void tst_dns_sd_road::a_service_without_name_gets_that_of_the_machine()
{
    DNSServiceRef ref = announce(nullptr, "_road-unnamed._tcp");
    QCOMPARE(next_reply(ref).name, QByteArray("lab"));
    DNSServiceRefDeallocate(ref);
}

void tst_dns_sd_road::a_type_that_is_none_is_an_error_reply()
{
    DNSServiceRef ref = browse("no type at all");
    QVERIFY(ref);
    const Reply reply = next_reply(ref);
    QCOMPARE(reply.code, DNSServiceErrorType(kDNSServiceErr_BadParam));
    QVERIFY(reply.name.isNull());
    DNSServiceRefDeallocate(ref);
}

void tst_dns_sd_road::a_resolve_of_a_type_that_is_none_is_an_error_reply()
{
    DNSServiceRef ref = nullptr;
    QCOMPARE(DNSServiceResolve(&ref, 0, 0, "Name", "no type at all", "local.", on_resolve, nullptr), 0);
    const Reply reply = next_reply(ref);
    QCOMPARE(reply.code, DNSServiceErrorType(kDNSServiceErr_BadParam));
    QVERIFY(reply.name.isNull());
    DNSServiceRefDeallocate(ref);
}

void tst_dns_sd_road::a_txt_record_that_is_none_is_an_error_reply()
{
    DNSServiceRef ref = announce("Broken", "_road-broken._tcp", "\x40too short");
    QVERIFY(ref);
    QCOMPARE(next_reply(ref).code, DNSServiceErrorType(kDNSServiceErr_BadParam));
    DNSServiceRefDeallocate(ref);
}

void tst_dns_sd_road::a_browse_on_one_interface_finds_what_is_there()
{
    DNSServiceRef announced = announce("Here", "_road-here._tcp");
    QCOMPARE(next_reply(announced).code, 0);
    DNSServiceRef ref = browse("_road-here._tcp", if_nametoindex("lo"));
    QCOMPARE(next_reply(ref).name, QByteArray("Here"));
    DNSServiceRefDeallocate(ref);
    DNSServiceRefDeallocate(announced);
}

void tst_dns_sd_road::a_callback_may_release_another_ref()
{
    DNSServiceRef announced = announce("Other", "_road-other._tcp");
    QCOMPARE(next_reply(announced).code, 0);
    DNSServiceRef one = browse("_road-other._tcp");
    DNSServiceRef other = browse("_road-other._tcp");
    // Its reply waits when it is released.
    QVERIFY(is_readable(DNSServiceRefSockFD(other), patience_ms));
    then = [other] { DNSServiceRefDeallocate(other); };
    QCOMPARE(next_reply(one).name, QByteArray("Other"));
    QCOMPARE(heard.size(), 2);
    DNSServiceRefDeallocate(one);
    DNSServiceRefDeallocate(announced);
}

void tst_dns_sd_road::more_coming_is_said_while_more_is_there()
{
    DNSServiceRef first = announce("First", "_road-more._tcp");
    DNSServiceRef second = announce("Second", "_road-more._tcp");
    QCOMPARE(next_reply(first).code, 0);
    QCOMPARE(next_reply(second).code, 0);
    DNSServiceRef fence = browse("_road-more._tcp");
    next_reply(fence);
    next_reply(fence);
    DNSServiceRef ref = browse("_road-more._tcp");
    // By the time the fence behind it has been answered both its replies wait.
    DNSServiceRef behind = browse("_road-more._tcp");
    next_reply(behind);
    next_reply(behind);
    QVERIFY(next_reply(ref).flags & kDNSServiceFlagsMoreComing);
    QVERIFY(!(next_reply(ref).flags & kDNSServiceFlagsMoreComing));
    for (DNSServiceRef open : {first, second, fence, ref, behind})
        DNSServiceRefDeallocate(open);
}

QTEST_GUILESS_MAIN(tst_dns_sd_road)
#include "tst_dns_sd_road.moc"
