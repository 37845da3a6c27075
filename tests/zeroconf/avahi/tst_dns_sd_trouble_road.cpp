// SPDX-License-Identifier: MIT
#include <QByteArray>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QHostAddress>
#include <QList>
#include <QRegularExpression>
#include <QTest>
#include <QtEndian>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "tests/zeroconf/avahi/readable.h"
#include "zeroconf/avahi/dns_sd.h"

// What the daemon of the lab says in trouble only, said for it by the test over the lab's bus; and what it
// never announces by itself, announced by the test: addresses of the other family, which go again.
class tst_dns_sd_trouble_road : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { heard.clear(); }
    void cleanup();

    void a_txt_record_that_is_none_is_an_error_reply_on_a_fresh_connection_too();
    void a_browse_that_fails_later_says_so_once_and_no_more();
    void a_resolve_that_fails_later_says_so_once_and_no_more();
    void a_resolve_goes_on_where_an_address_is_refused();
    void the_same_answer_twice_is_one_answer();
    void an_answer_of_a_type_that_is_none_has_no_full_name();
    void an_address_that_came_with_a_resolve_answers_the_query_behind_it();
    void an_address_that_came_with_a_resolve_goes_with_it();
    void an_address_query_that_fails_later_says_so_once_and_no_more();
    void a_registration_that_fails_later_says_so();
    void a_name_found_taken_later_is_replaced_by_another();
    void an_address_of_the_other_family_comes_and_goes_data();
    void an_address_of_the_other_family_comes_and_goes();

private:
    struct Reply {
        DNSServiceErrorType code = 1;
        DNSServiceFlags flags = 0;
        QByteArray name; // null where the call tells none
        QByteArray address;
        uint32_t scope = 0;
    };

    static void on_browse(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *,
                          const char *, const char *, void *);
    static void on_resolve(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *,
                           const char *, uint16_t, uint16_t, const unsigned char *, void *);
    static void on_address(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *,
                           const sockaddr *, uint32_t, void *);
    static void on_register(DNSServiceRef, DNSServiceFlags, DNSServiceErrorType, const char *, const char *,
                            const char *, void *);

    DNSServiceRef announce(const char *name, const char *type);
    static Reply next_reply(DNSServiceRef ref);
    QString announce_address(const char *host, const char *address);
    QDBusMessage ask(const QString &path, const char *interface, const char *method,
                     const QVariantList &arguments = {});
    QStringList strangers() const;
    void say(const char *kind, const char *signal, const QVariantList &arguments);
    void fails_once_and_no_more(DNSServiceRef ref, const char *kind);
    DNSServiceRef resolve_with_forged_address(const char *type, const char *host, const char *address);
    DNSServiceRef query_address(const char *host);
    void await_fence(const char *type);

    QDBusConnection bus = QDBusConnection::systemBus();
    QString library;     // its name on the bus
    QString its_objects; // path of what it has the daemon make
    QList<DNSServiceRef> open;
    static inline QList<Reply> heard;
};

namespace
{
const QString daemon_name = "org.freedesktop.Avahi";
const QString too_many = "org.freedesktop.Avahi.TooManyObjectsError";
constexpr int group_collision = 3, group_failure = 4; // states of an entry group
constexpr uint no_reverse = 16;                       // an address without the name of its own
} // namespace

void tst_dns_sd_trouble_road::on_browse(DNSServiceRef, DNSServiceFlags flags, uint32_t,
                                        DNSServiceErrorType code, const char *name, const char *,
                                        const char *, void *)
{
    heard << Reply{code, flags, name, {}, 0};
}

void tst_dns_sd_trouble_road::on_resolve(DNSServiceRef, DNSServiceFlags flags, uint32_t,
                                         DNSServiceErrorType code, const char *full_name, const char *,
                                         uint16_t, uint16_t, const unsigned char *, void *)
{
    heard << Reply{code, flags, full_name, {}, 0};
}

void tst_dns_sd_trouble_road::on_address(DNSServiceRef, DNSServiceFlags flags, uint32_t,
                                         DNSServiceErrorType code, const char *host, const sockaddr *address,
                                         uint32_t, void *)
{
    Reply reply{code, flags, host, {}, 0};
    if (address) {
        QHostAddress without_scope(address);
        without_scope.setScopeId({});
        reply.address = without_scope.toString().toLatin1();
        if (address->sa_family == AF_INET6)
            reply.scope = reinterpret_cast<const sockaddr_in6 *>(address)->sin6_scope_id;
    }
    heard << reply;
}

void tst_dns_sd_trouble_road::on_register(DNSServiceRef, DNSServiceFlags flags, DNSServiceErrorType code,
                                          const char *name, const char *, const char *, void *)
{
    heard << Reply{code, flags, name, {}, 0};
}

QDBusMessage tst_dns_sd_trouble_road::ask(const QString &path, const char *interface, const char *method,
                                          const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(daemon_name, path, daemon_name + '.' + interface, method);
    call.setArguments(arguments);
    return bus.call(call);
}

QStringList tst_dns_sd_trouble_road::strangers() const
{
    QStringList names = bus.interface()->registeredServiceNames().value().filter(QRegularExpression("^:"));
    names.removeOne(bus.baseService());
    return names;
}

// The daemon numbers its clients in the order in which they come: the library comes right behind this test.
void tst_dns_sd_trouble_road::initTestCase()
{
    QVERIFY(bus.isConnected());
    qDBusRegisterMetaType<QList<QByteArray>>();
    const QDBusReply<QDBusObjectPath> own = ask("/", "Server", "EntryGroupNew");
    QVERIFY2(own.isValid(), qPrintable(own.error().message()));
    const auto path = QRegularExpression("^/Client(\\d+)/").match(own.value().path());
    QVERIFY(path.hasMatch());
    its_objects = QString("/Client%1/").arg(path.captured(1).toInt() + 1);

    const QStringList before = strangers();
    announce("First", "_trouble-first._tcp");
    QCOMPARE(next_reply(open.first()).code, 0);
    QStringList now = strangers();
    for (const QString &name : before)
        now.removeOne(name);
    QCOMPARE(now.size(), 1);
    library = now.first();
}

void tst_dns_sd_trouble_road::cleanup()
{
    for (DNSServiceRef ref : qAsConst(open))
        DNSServiceRefDeallocate(ref);
    open.clear();
}

DNSServiceRef tst_dns_sd_trouble_road::announce(const char *name, const char *type)
{
    DNSServiceRef ref = nullptr;
    DNSServiceRegister(&ref, 0, 0, name, type, nullptr, nullptr, qToBigEndian(uint16_t(80)), 0, nullptr,
                       on_register, nullptr);
    open << ref;
    return ref;
}

// One with code 1 if none comes.
tst_dns_sd_trouble_road::Reply tst_dns_sd_trouble_road::next_reply(DNSServiceRef ref)
{
    const int before = heard.size();
    if (is_readable(DNSServiceRefSockFD(ref), patience_ms))
        DNSServiceProcessResult(ref);
    return heard.size() == before + 1 ? heard.last() : Reply();
}

// A signal of the daemon to every object of a kind that the library may have: one that is not there hears
// nothing.
void tst_dns_sd_trouble_road::say(const char *kind, const char *signal, const QVariantList &arguments)
{
    constexpr int highest_number = 100;
    // The highest first: what comes into being at this is not meant.
    for (int number = highest_number; number > 0; --number) {
        QDBusMessage message = QDBusMessage::createTargetedSignal(
            library, its_objects + kind + QString::number(number), daemon_name + '.' + kind, signal);
        message.setArguments(arguments);
        QVERIFY(bus.send(message));
    }
    // Once this is answered they are on their way to the library, in front of all that follows.
    QCOMPARE(ask("/", "Server", "GetState").type(), QDBusMessage::ReplyMessage);
}

void tst_dns_sd_trouble_road::fails_once_and_no_more(DNSServiceRef ref, const char *kind)
{
    say(kind, "Failure", {too_many});
    const Reply failure = next_reply(ref);
    QCOMPARE(failure.code, DNSServiceErrorType(kDNSServiceErr_NoMemory));
    QVERIFY(failure.name.isNull());

    say(kind, "Failure", {too_many});
    // Once another ref has been answered the library has heard it.
    DNSServiceRef fence = announce("Fence", "_trouble-fence._tcp");
    QCOMPARE(next_reply(fence).code, 0);
    QVERIFY(!is_readable(DNSServiceRefSockFD(ref), 0));
}

void tst_dns_sd_trouble_road::a_txt_record_that_is_none_is_an_error_reply_on_a_fresh_connection_too()
{
    constexpr char too_short[] = "\x40too short";
    DNSServiceRef ref = nullptr;
    QCOMPARE(DNSServiceRegister(&ref, 0, 0, "Broken", "_trouble-broken._tcp", nullptr, nullptr,
                                qToBigEndian(uint16_t(80)), sizeof too_short - 1, too_short, on_register,
                                nullptr),
             DNSServiceErrorType(kDNSServiceErr_NoError));
    open << ref;
    QCOMPARE(next_reply(ref).code, DNSServiceErrorType(kDNSServiceErr_BadParam));
}

void tst_dns_sd_trouble_road::a_browse_that_fails_later_says_so_once_and_no_more()
{
    QCOMPARE(next_reply(announce("Here", "_trouble-browse._tcp")).code, 0);
    DNSServiceRef ref = nullptr;
    DNSServiceBrowse(&ref, 0, 0, "_trouble-browse._tcp", nullptr, on_browse, nullptr);
    open << ref;
    QCOMPARE(next_reply(ref).name, QByteArray("Here"));
    fails_once_and_no_more(ref, "ServiceBrowser");
}

void tst_dns_sd_trouble_road::a_resolve_that_fails_later_says_so_once_and_no_more()
{
    QCOMPARE(next_reply(announce("Here", "_trouble-resolve._tcp")).code, 0);
    DNSServiceRef ref = nullptr;
    DNSServiceResolve(&ref, kDNSServiceFlagsTimeout, if_nametoindex("lo"), "Here", "_trouble-resolve._tcp.",
                      "local.", on_resolve, nullptr);
    open << ref;
    QCOMPARE(next_reply(ref).name, QByteArray("Here._trouble-resolve._tcp.local."));
    fails_once_and_no_more(ref, "ServiceResolver");
}

void tst_dns_sd_trouble_road::a_resolve_goes_on_where_an_address_is_refused()
{
    const int lo = static_cast<int>(if_nametoindex("lo"));
    DNSServiceRef ref = nullptr;
    DNSServiceResolve(&ref, 0, uint32_t(lo), "Nobody", "_trouble-refused._tcp.", "local.", on_resolve,
                      nullptr);
    open << ref;
    await_fence("_trouble-asked._tcp");
    say("ServiceResolver", "Failure", {too_many});
    await_fence("_trouble-refused._tcp");
    QVERIFY(!is_readable(DNSServiceRefSockFD(ref), 0));
    say("ServiceResolver", "Found",
        {lo, 0, "Nobody", "_trouble-refused._tcp", "local", "lab.local", -1, "",
         QVariant::fromValue<ushort>(80), QVariant::fromValue(QList<QByteArray>()), 0U});
    QCOMPARE(next_reply(ref).name, QByteArray("Nobody._trouble-refused._tcp.local."));
}

void tst_dns_sd_trouble_road::the_same_answer_twice_is_one_answer()
{
    const int lo = static_cast<int>(if_nametoindex("lo"));
    QCOMPARE(next_reply(announce("Here", "_trouble-twice._tcp")).code, 0);
    DNSServiceRef ref = nullptr;
    DNSServiceResolve(&ref, 0, uint32_t(lo), "Here", "_trouble-twice._tcp.", "local.", on_resolve, nullptr);
    open << ref;
    QCOMPARE(next_reply(ref).code, 0);
    for (const int protocol : {0, 1, 0}) // IPv4, IPv6
        say("ServiceResolver", "Found",
            {lo, protocol, "Other", "_trouble-twice._tcp", "local", "lab.local", 0, "127.0.0.1",
             QVariant::fromValue<ushort>(80), QVariant::fromValue(QList<QByteArray>()), 0U});
    QCOMPARE(next_reply(ref).name, QByteArray("Other._trouble-twice._tcp.local."));
    await_fence("_trouble-thrice._tcp");
    QVERIFY(!is_readable(DNSServiceRefSockFD(ref), 0));
}

void tst_dns_sd_trouble_road::an_answer_of_a_type_that_is_none_has_no_full_name()
{
    const int lo = static_cast<int>(if_nametoindex("lo"));
    QCOMPARE(next_reply(announce("Here", "_trouble-type._tcp")).code, 0);
    DNSServiceRef ref = nullptr;
    DNSServiceResolve(&ref, kDNSServiceFlagsTimeout, uint32_t(lo), "Here", "_trouble-type._tcp.", "local.",
                      on_resolve, nullptr);
    open << ref;
    QCOMPARE(next_reply(ref).name, QByteArray("Here._trouble-type._tcp.local."));
    say("ServiceResolver", "Found",
        {lo, 0, "Here", "no type at all", "local", "lab.local", 0, "127.0.0.1",
         QVariant::fromValue<ushort>(80), QVariant::fromValue(QList<QByteArray>()), 0U});
    const Reply reply = next_reply(ref);
    QCOMPARE(reply.code, 0);
    QCOMPARE(reply.name, QByteArray(""));
}

// A resolve whose answer came with an address that nobody announces.
DNSServiceRef tst_dns_sd_trouble_road::resolve_with_forged_address(const char *type, const char *host,
                                                                   const char *address)
{
    const int lo = static_cast<int>(if_nametoindex("lo"));
    next_reply(announce("Here", type));
    DNSServiceRef ref = nullptr;
    DNSServiceResolve(&ref, kDNSServiceFlagsTimeout, uint32_t(lo), "Here", type, "local.", on_resolve,
                      nullptr);
    next_reply(ref);
    say("ServiceResolver", "Found",
        {lo, 0, "Here", type, "local", host, 0, address, QVariant::fromValue<ushort>(80),
         QVariant::fromValue(QList<QByteArray>()), 0U});
    next_reply(ref);
    return ref;
}

DNSServiceRef tst_dns_sd_trouble_road::query_address(const char *host)
{
    DNSServiceRef ref = nullptr;
    DNSServiceGetAddrInfo(&ref, kDNSServiceFlagsForceMulticast, if_nametoindex("lo"),
                          kDNSServiceProtocol_IPv4, host, on_address, nullptr);
    open << ref;
    return ref;
}

// Once this has been answered the library has done all that was asked for before.
void tst_dns_sd_trouble_road::await_fence(const char *type)
{
    QCOMPARE(next_reply(announce("Fence", type)).code, 0);
}

void tst_dns_sd_trouble_road::an_address_that_came_with_a_resolve_answers_the_query_behind_it()
{
    open << resolve_with_forged_address("_trouble-early._tcp", "early.local", "127.0.0.99");
    const Reply reply = next_reply(query_address("early.local."));
    QCOMPARE(reply.code, 0);
    QCOMPARE(reply.flags, DNSServiceFlags(kDNSServiceFlagsAdd));
    QCOMPARE(reply.name, QByteArray("early.local."));
    QCOMPARE(reply.address, QByteArray("127.0.0.99"));

    DNSServiceRef second = query_address("early.local."); // it is told once
    await_fence("_trouble-early-fence._tcp");
    QVERIFY(!is_readable(DNSServiceRefSockFD(second), 0));
}

void tst_dns_sd_trouble_road::an_address_that_came_with_a_resolve_goes_with_it()
{
    DNSServiceRefDeallocate(resolve_with_forged_address("_trouble-gone._tcp", "gone.local", "127.0.0.98"));
    await_fence("_trouble-gone-fence._tcp");
    DNSServiceRef query = query_address("gone.local.");
    await_fence("_trouble-gone-fence2._tcp");
    QVERIFY(!is_readable(DNSServiceRefSockFD(query), 0));
}

void tst_dns_sd_trouble_road::an_address_query_that_fails_later_says_so_once_and_no_more()
{
    DNSServiceRef ref = nullptr;
    DNSServiceGetAddrInfo(&ref, kDNSServiceFlagsForceMulticast, if_nametoindex("lo"),
                          kDNSServiceProtocol_IPv4, "lab.local.", on_address, nullptr);
    open << ref;
    QCOMPARE(next_reply(ref).address, QByteArray("127.0.0.1"));
    fails_once_and_no_more(ref, "RecordBrowser");
}

void tst_dns_sd_trouble_road::a_registration_that_fails_later_says_so()
{
    DNSServiceRef ref = announce("Here", "_trouble-register._tcp");
    QCOMPARE(next_reply(ref).name, QByteArray("Here"));
    say("EntryGroup", "StateChanged", {group_failure, too_many});
    const Reply failure = next_reply(ref);
    QCOMPARE(failure.code, DNSServiceErrorType(kDNSServiceErr_NoMemory));
    QVERIFY(failure.name.isNull());
}

void tst_dns_sd_trouble_road::a_name_found_taken_later_is_replaced_by_another()
{
    DNSServiceRef ref = announce("Taken", "_trouble-taken._tcp");
    QCOMPARE(next_reply(ref).name, QByteArray("Taken"));
    say("EntryGroup", "StateChanged", {group_collision, "org.freedesktop.Avahi.CollisionError"});
    const Reply reply = next_reply(ref);
    QCOMPARE(reply.code, 0);
    QCOMPARE(reply.name, QByteArray("Taken #2"));

    DNSServiceRef browsed = nullptr;
    DNSServiceBrowse(&browsed, 0, 0, "_trouble-taken._tcp", nullptr, on_browse, nullptr);
    open << browsed;
    QCOMPARE(next_reply(browsed).name, QByteArray("Taken #2"));
}

// The path of the announcement, by which it is taken back; empty on failure.
QString tst_dns_sd_trouble_road::announce_address(const char *host, const char *address)
{
    const QDBusReply<QDBusObjectPath> group = ask("/", "Server", "EntryGroupNew");
    const QString path = group.value().path();
    constexpr int any = -1; // interface, and family of the wire
    const QDBusMessage added = ask(path, "EntryGroup", "AddAddress", {any, any, no_reverse, host, address});
    const QDBusMessage committed = ask(path, "EntryGroup", "Commit");
    for (const QDBusMessage &answer : {added, committed})
        if (answer.type() == QDBusMessage::ErrorMessage)
            return {};
    return path;
}

void tst_dns_sd_trouble_road::an_address_of_the_other_family_comes_and_goes_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<bool>("scoped");
    QTest::newRow("of the world") << QByteArray("2001:db8::7") << false;
    QTest::newRow("of the link alone") << QByteArray("fe80::7") << true;
    QTest::newRow("of the link alone, the last") << QByteArray("febf::7") << true;
    QTest::newRow("right behind those") << QByteArray("fec0::7") << false;
}

void tst_dns_sd_trouble_road::an_address_of_the_other_family_comes_and_goes()
{
    QFETCH(QByteArray, address);
    QFETCH(bool, scoped);
    const uint32_t lo = if_nametoindex("lo");
    const QString path = announce_address("six.local", address);
    QVERIFY(!path.isEmpty());

    DNSServiceRef ref = nullptr;
    DNSServiceGetAddrInfo(&ref, kDNSServiceFlagsForceMulticast, lo, kDNSServiceProtocol_IPv6, "six.local.",
                          on_address, nullptr);
    open << ref;
    const Reply came = next_reply(ref);
    QCOMPARE(came.code, 0);
    QVERIFY(came.flags & kDNSServiceFlagsAdd);
    QCOMPARE(came.name, QByteArray("six.local."));
    QCOMPARE(came.address, address);
    QCOMPARE(came.scope, scoped ? lo : 0);

    ask(path, "EntryGroup", "Free");
    const Reply went = next_reply(ref);
    QCOMPARE(went.code, 0);
    QVERIFY(!(went.flags & kDNSServiceFlagsAdd));
    QCOMPARE(went.address, address);
}

QTEST_GUILESS_MAIN(tst_dns_sd_trouble_road)
#include "tst_dns_sd_trouble_road.moc"
