// SPDX-License-Identifier: MIT
#include <QMutexLocker>
#include <QPointer>
#include <QSocketNotifier>
#include <QTest>
#include <QThread>
#include <atomic>
#include <memory>

#include "tests/fakes/lock_watch.h"
#include "tests/zeroconf/engine_fixture.h"

using fake_dns_sd::Kind;

class tst_Resolver : public QObject, private Engine_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin_with_browse(); }
    void cleanup() { end(); }

    void the_resolve_asks_with_the_time_limit_on_the_interface_of_the_record();
    void a_resolve_that_cannot_start_is_gone_silently();
    void a_resolve_without_socket_is_released_and_gone_silently();
    void the_notifiers_have_no_parent();
    void the_resolve_reply_is_logged();
    void the_resolve_reply_fills_host_port_and_txt();
    void an_error_of_the_resolve_ends_it_silently_data();
    void an_error_of_the_resolve_ends_it_silently();
    void a_resolve_handle_that_fails_ends_it_silently();

    void the_address_query_asks_the_link_on_the_interface_of_the_reply_data();
    void the_address_query_asks_the_link_on_the_interface_of_the_reply();
    void an_address_query_that_cannot_start_ends_it_silently();
    void an_address_query_without_socket_ends_it_silently();
    void a_repeated_resolve_reply_restarts_the_address_query();
    void a_repeat_that_cannot_restart_the_query_ends_it();

    void the_first_address_makes_the_service_known();
    void the_address_is_written_under_its_mutex();
    void the_address_mutex_is_free_while_the_slots_run();
    void a_second_address_updates_the_record_for_every_holder();
    void the_loss_of_an_address_is_not_told();
    void an_ipv6_address_takes_the_same_field();
    void an_address_on_another_interface_has_a_key_of_its_own();
    void an_address_error_ends_it_and_a_known_service_stays();
    void an_address_error_before_the_first_address_is_silent();
    void an_address_handle_that_fails_ends_it_silently();
    void a_failure_after_the_callback_ended_it_is_nothing_more_data();
    void a_failure_after_the_callback_ended_it_is_nothing_more();
    void a_wakeup_with_nothing_to_read_changes_nothing();

    void the_end_leaves_the_notifiers_disabled_and_disconnected();
    void the_end_takes_the_key_out_even_where_another_resolver_holds_it();
    void events_inside_a_slot_may_restart_the_query_that_called_it();
};

void tst_Resolver::the_resolve_asks_with_the_time_limit_on_the_interface_of_the_record()
{
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd, 7,
                              "K\xc3\xbc"
                              "che",
                              "_lodeset._tcp.", "local.");
    Engine::deliver(browse);
    const fake_dns_sd::Call call = fake_dns_sd::last_call(Kind::Resolve);
    QCOMPARE(call.flags, 0x10000u);
    QCOMPARE(call.interfaceIndex, 7u);
    QCOMPARE(call.name, QByteArray("K\xc3\xbc"
                                   "che"));
    QCOMPARE(call.type, QByteArray("_lodeset._tcp."));
    QCOMPARE(call.domain, QByteArray("local."));
    const Resolver *resolver = engine->resolver_of(QString::fromUtf8("Küche"), 7);
    QCOMPARE(call.context, resolver);
    QCOMPARE(resolver->DNSresolverRef, call.ref);
    QVERIFY(!resolver->DNSaddressRef);
}

void tst_Resolver::a_resolve_that_cannot_start_is_gone_silently()
{
    fake_dns_sd::fail_next(Kind::Resolve, kDNSServiceErr_NoMemory);
    engine->come("Left");
    QCOMPARE(fake_dns_sd::calls(Kind::Resolve).size(), 1);
    QCOMPARE(engine->resolvers(), 0);
    QVERIFY(engine->zeroconf.pri->resolvers.isEmpty());
    QVERIFY(engine->silent());
    // The next report of the service begins anew.
    engine->make_known("Left");
    QCOMPARE(engine->added.size(), 1);
}

void tst_Resolver::a_resolve_without_socket_is_released_and_gone_silently()
{
    fake_dns_sd::no_socket_next(Kind::Resolve);
    const DNSServiceRef ref = engine->come("Left");
    QCOMPARE(fake_dns_sd::releases(ref), 1);
    QCOMPARE(engine->resolvers(), 0);
    QVERIFY(engine->zeroconf.pri->resolvers.isEmpty());
    QVERIFY(engine->silent());
}

void tst_Resolver::the_notifiers_have_no_parent()
{
    const Resolver *resolver = engine->make_known("Left");
    QVERIFY(!resolver->resolverNotifier->parent());
    QVERIFY(!resolver->addressNotifier->parent());
    QCOMPARE(int(resolver->resolverNotifier->socket()), DNSServiceRefSockFD(resolver->DNSresolverRef));
    QCOMPARE(int(resolver->addressNotifier->socket()), DNSServiceRefSockFD(resolver->DNSaddressRef));
}

void tst_Resolver::the_resolve_reply_is_logged()
{
    const QString line = "QZeroConfPrivate::resolverCallback() ...";
    const DNSServiceRef ref = engine->come("Left");
    QCOMPARE(engine->log.warnings(), QStringList());
    engine->log.clear();
    Engine::resolve(ref);
    QCOMPARE(engine->log.debug_lines(), QStringList({line}));
    Engine::fail(ref, kDNSServiceErr_Timeout);
    QCOMPARE(engine->log.debug_lines(), QStringList({line, line}));
}

void tst_Resolver::the_resolve_reply_fills_host_port_and_txt()
{
    const DNSServiceRef ref = engine->come("Left");
    const QZeroConfService service = engine->resolver_of("Left")->zcs;
    fake_dns_sd::resolve_reply(ref, Engine::wlan, "l\xc3\xa4utsprecher.local.", 0x1f90, "\x05id=42");
    Engine::deliver(ref);
    QCOMPARE(service->host, QString::fromUtf8("läutsprecher.local."));
    QCOMPARE(service->port, quint16(0x1f90));
    QCOMPARE(service->txt, (QMap<QByteArray, QByteArray>{{"id", "42"}}));
    QVERIFY(service->ip.isNull());
    QVERIFY(engine->silent());
}

void tst_Resolver::an_error_of_the_resolve_ends_it_silently_data()
{
    QTest::addColumn<DNSServiceErrorType>("code");
    QTest::newRow("time-out") << DNSServiceErrorType(kDNSServiceErr_Timeout);
    QTest::newRow("daemon gone") << DNSServiceErrorType(kDNSServiceErr_ServiceNotRunning);
}

void tst_Resolver::an_error_of_the_resolve_ends_it_silently()
{
    QFETCH(DNSServiceErrorType, code);
    const DNSServiceRef ref = engine->come("Left");
    Engine::fail(ref, code);
    QCOMPARE(fake_dns_sd::releases(ref), 1);
    QCOMPARE(engine->resolvers(), 0);
    QVERIFY(engine->zeroconf.pri->resolvers.isEmpty());
    QVERIFY(engine->silent());
}

void tst_Resolver::a_resolve_handle_that_fails_ends_it_silently()
{
    const DNSServiceRef resolve = engine->come("Left");
    const DNSServiceRef address = Engine::resolve(resolve);
    fake_dns_sd::fail_process(resolve, kDNSServiceErr_Unknown);
    QTRY_COMPARE(engine->resolvers(), 0);
    QCOMPARE(fake_dns_sd::releases(resolve), 1);
    QCOMPARE(fake_dns_sd::releases(address), 1);
    QVERIFY(engine->silent());
}

void tst_Resolver::the_address_query_asks_the_link_on_the_interface_of_the_reply_data()
{
    QTest::addColumn<QAbstractSocket::NetworkLayerProtocol>("protocol");
    QTest::addColumn<quint32>("word");
    QTest::newRow("IPv4") << QAbstractSocket::IPv4Protocol << 1u;
    QTest::newRow("IPv6") << QAbstractSocket::IPv6Protocol << 2u;
}

void tst_Resolver::the_address_query_asks_the_link_on_the_interface_of_the_reply()
{
    QFETCH(QAbstractSocket::NetworkLayerProtocol, protocol);
    QFETCH(quint32, word);
    engine->zeroconf.stopBrowser();
    engine->browse(protocol);

    const DNSServiceRef resolve = engine->come("Left", 3);
    fake_dns_sd::resolve_reply(resolve, 9, "l\xc3\xa4ut.local.", 8080);
    Engine::deliver(resolve);
    const fake_dns_sd::Call call = fake_dns_sd::last_call(Kind::GetAddrInfo);
    QCOMPARE(call.flags, 0x400u);
    QCOMPARE(call.interfaceIndex, 9u);
    QCOMPARE(call.protocol, word);
    QCOMPARE(call.name, QByteArray("l\xc3\xa4ut.local."));
    const Resolver *resolver = engine->resolver_of("Left", 3);
    QCOMPARE(call.context, resolver);
    QCOMPARE(resolver->DNSaddressRef, call.ref);
    QCOMPARE(resolver->zcs->interfaceIndex, 3u);
}

void tst_Resolver::an_address_query_that_cannot_start_ends_it_silently()
{
    const DNSServiceRef resolve = engine->come("Left");
    fake_dns_sd::fail_next(Kind::GetAddrInfo, kDNSServiceErr_Unknown);
    Engine::resolve(resolve);
    QCOMPARE(engine->resolvers(), 0);
    QCOMPARE(fake_dns_sd::releases(resolve), 1);
    QVERIFY(engine->silent());
}

void tst_Resolver::an_address_query_without_socket_ends_it_silently()
{
    const DNSServiceRef resolve = engine->come("Left");
    fake_dns_sd::no_socket_next(Kind::GetAddrInfo);
    const DNSServiceRef address = Engine::resolve(resolve);
    QCOMPARE(engine->resolvers(), 0);
    QCOMPARE(fake_dns_sd::releases(resolve), 1);
    QCOMPARE(fake_dns_sd::releases(address), 1);
    QVERIFY(engine->silent());
}

void tst_Resolver::a_repeated_resolve_reply_restarts_the_address_query()
{
    const DNSServiceRef resolve = engine->come("Left");
    const DNSServiceRef first = Engine::resolve(resolve, "\x03"
                                                         "a=1");
    const Resolver *resolver = engine->resolver_of("Left");
    const QPointer<QSocketNotifier> first_notifier = resolver->addressNotifier;
    Engine::address(first, "127.0.0.1");

    fake_dns_sd::resolve_reply(resolve, Engine::wlan, "other.local.", 81,
                               "\x03"
                               "b=2");
    Engine::deliver(resolve);
    const DNSServiceRef second = fake_dns_sd::last_call(Kind::GetAddrInfo).ref;
    QVERIFY(first != second);
    QCOMPARE(fake_dns_sd::releases(first), 1);
    QVERIFY(!first_notifier);
    QVERIFY(fake_dns_sd::is_open(resolve));
    QCOMPARE(fake_dns_sd::last_call(Kind::GetAddrInfo).name, QByteArray("other.local."));
    QCOMPARE(resolver->zcs->host, QString("other.local."));
    QCOMPARE(resolver->zcs->port, quint16(81));
    QCOMPARE(resolver->zcs->txt, (QMap<QByteArray, QByteArray>{{"a", "1"}, {"b", "2"}}));

    Engine::address(second, "127.0.0.2");
    QCOMPARE(engine->added.size(), 1);
    QCOMPARE(engine->updated.size(), 1);
    QCOMPARE(resolver->zcs->ip, QHostAddress("127.0.0.2"));
}

void tst_Resolver::a_repeat_that_cannot_restart_the_query_ends_it()
{
    const DNSServiceRef resolve = engine->come("Left");
    const DNSServiceRef address = Engine::resolve(resolve);
    fake_dns_sd::fail_next(Kind::GetAddrInfo, kDNSServiceErr_Unknown);
    Engine::resolve(resolve);
    QCOMPARE(engine->resolvers(), 0);
    QCOMPARE(fake_dns_sd::releases(resolve), 1);
    QCOMPARE(fake_dns_sd::releases(address), 1);
}

void tst_Resolver::the_first_address_makes_the_service_known()
{
    const DNSServiceRef address = Engine::resolve(engine->come("Left"));
    const QZeroConfService service = engine->resolver_of("Left")->zcs;
    QVERIFY(engine->silent());
    QVERIFY(engine->zeroconf.services.isEmpty());
    bool listed = false;
    connect(&engine->zeroconf, &QZeroConf::serviceAdded, this,
            [&] { listed = engine->zeroconf.services.value("Left3") == service; });

    Engine::address(address, "127.0.0.11");
    QCOMPARE(engine->added.size(), 1);
    QVERIFY(listed);
    QCOMPARE(Engine::record(engine->added), service);
    QCOMPARE(service->ip, QHostAddress("127.0.0.11"));
    QVERIFY(engine->updated.isEmpty());
    // The resolver stays as the listener.
    QVERIFY(engine->resolver_of("Left"));
    QVERIFY(fake_dns_sd::is_open(address));
}

void tst_Resolver::the_address_is_written_under_its_mutex()
{
    const DNSServiceRef address = Engine::resolve(engine->come("Left"));
    const QZeroConfService service = engine->resolver_of("Left")->zcs;
    const pid_t writer = gettid();
    std::atomic<bool> locked{false};
    std::atomic<bool> seen_unwritten{false};
    const std::unique_ptr<QThread> reader(QThread::create([&] {
        const QMutexLocker lock(&service->ip_mutex);
        locked = true;
        let_run_into_lock(writer);
        seen_unwritten = service->ip.isNull();
    }));
    reader->start();
    QTRY_VERIFY(locked);
    Engine::address(address);
    QVERIFY(seen_unwritten);
    QCOMPARE(engine->added.size(), 1);
    QVERIFY(reader->wait(5000));
}

void tst_Resolver::the_address_mutex_is_free_while_the_slots_run()
{
    int free = 0;
    const auto try_it = [&](const QZeroConfService &service) {
        if (service->ip_mutex.tryLock()) {
            ++free;
            service->ip_mutex.unlock();
        }
    };
    connect(&engine->zeroconf, &QZeroConf::serviceAdded, this, try_it);
    connect(&engine->zeroconf, &QZeroConf::serviceUpdated, this, try_it);
    const Resolver *resolver = engine->make_known("Left");
    Engine::address(resolver->DNSaddressRef, "127.0.0.12");
    QCOMPARE(free, 2);
}

void tst_Resolver::a_second_address_updates_the_record_for_every_holder()
{
    const Resolver *resolver = engine->make_known("Left");
    const QZeroConfService held = Engine::record(engine->added);
    Engine::address(resolver->DNSaddressRef, "127.0.0.12");
    QCOMPARE(engine->added.size(), 1);
    QCOMPARE(engine->updated.size(), 1);
    QCOMPARE(Engine::record(engine->updated), held);
    QCOMPARE(held->ip, QHostAddress("127.0.0.12"));
    QCOMPARE(engine->zeroconf.services.size(), 1);
}

void tst_Resolver::the_loss_of_an_address_is_not_told()
{
    const Resolver *resolver = engine->make_known("Left");
    fake_dns_sd::address_reply(resolver->DNSaddressRef, 0, Engine::wlan, "127.0.0.11");
    fake_dns_sd::address_reply(resolver->DNSaddressRef, kDNSServiceFlagsMoreComing, Engine::wlan,
                               "127.0.0.99");
    Engine::deliver(resolver->DNSaddressRef);
    QVERIFY(engine->removed.isEmpty());
    QVERIFY(engine->updated.isEmpty());
    QCOMPARE(resolver->zcs->ip, QHostAddress("127.0.0.11"));
}

void tst_Resolver::an_ipv6_address_takes_the_same_field()
{
    const DNSServiceRef address = Engine::resolve(engine->come("Left"));
    Engine::address(address, "fd00::17");
    QCOMPARE(Engine::record(engine->added)->ip, QHostAddress("fd00::17"));
    Engine::address(address, "127.0.0.1");
    QCOMPARE(Engine::record(engine->added)->ip, QHostAddress("127.0.0.1"));
}

void tst_Resolver::an_address_on_another_interface_has_a_key_of_its_own()
{
    const Resolver *resolver = engine->make_known("Left", 3);
    Engine::address(resolver->DNSaddressRef, "127.0.0.12", 4);
    // Added twice with one record, whose interface stays that of the browse.
    QCOMPARE(engine->added.size(), 2);
    QCOMPARE(Engine::record(engine->added, 0), Engine::record(engine->added, 1));
    QCOMPARE(engine->zeroconf.services.keys(), QStringList({"Left3", "Left4"}));
    QCOMPARE(resolver->zcs->interfaceIndex, 3u);
}

void tst_Resolver::an_address_error_ends_it_and_a_known_service_stays()
{
    const QPointer<Resolver> resolver = engine->make_known("Left");
    const DNSServiceRef resolve = resolver->DNSresolverRef;
    const DNSServiceRef address = resolver->DNSaddressRef;
    Engine::fail(address, kDNSServiceErr_Unknown);
    QVERIFY(!resolver);
    QVERIFY(engine->zeroconf.pri->resolvers.isEmpty());
    QCOMPARE(fake_dns_sd::releases(resolve), 1);
    QCOMPARE(fake_dns_sd::releases(address), 1);
    QCOMPARE(engine->zeroconf.services.keys(), QStringList({"Left3"}));
    QVERIFY(engine->removed.isEmpty());
    QVERIFY(engine->errors.isEmpty());
    // Known services are not resolved again.
    engine->come("Left");
    QCOMPARE(fake_dns_sd::calls(Kind::Resolve).size(), 1);
}

void tst_Resolver::an_address_error_before_the_first_address_is_silent()
{
    Engine::fail(Engine::resolve(engine->come("Left")), kDNSServiceErr_Unknown);
    QCOMPARE(engine->resolvers(), 0);
    QVERIFY(engine->silent());
}

void tst_Resolver::an_address_handle_that_fails_ends_it_silently()
{
    const DNSServiceRef resolve = engine->come("Left");
    const DNSServiceRef address = Engine::resolve(resolve);
    fake_dns_sd::fail_process(address, kDNSServiceErr_Unknown);
    QTRY_COMPARE(engine->resolvers(), 0);
    QCOMPARE(fake_dns_sd::releases(resolve), 1);
    QCOMPARE(fake_dns_sd::releases(address), 1);
    QVERIFY(engine->silent());
}

void tst_Resolver::a_failure_after_the_callback_ended_it_is_nothing_more_data()
{
    QTest::addColumn<bool>("in_address_stage");
    QTest::newRow("resolve") << false;
    QTest::newRow("address") << true;
}

void tst_Resolver::a_failure_after_the_callback_ended_it_is_nothing_more()
{
    QFETCH(bool, in_address_stage);
    DNSServiceRef ref = engine->come("Left");
    if (in_address_stage)
        ref = Engine::resolve(ref);
    fake_dns_sd::error_reply(ref, kDNSServiceErr_ServiceNotRunning);
    fake_dns_sd::fail_after_reply(ref, kDNSServiceErr_Unknown);
    QTRY_COMPARE(engine->resolvers(), 0);
    QCOMPARE(fake_dns_sd::releases(ref), 1);
    QVERIFY(engine->silent());
}

void tst_Resolver::a_wakeup_with_nothing_to_read_changes_nothing()
{
    Resolver *resolver = engine->make_known("Left");
    resolver->resolverReady(); // as a notifier does that has lost the race for the reply
    resolver->addressReady();
    QCOMPARE(engine->resolver_of("Left"), resolver);
    QVERIFY(engine->updated.isEmpty());
}

void tst_Resolver::the_end_leaves_the_notifiers_disabled_and_disconnected()
{
    Resolver *resolver = engine->make_known("Left");
    const QPointer<QSocketNotifier> resolve = resolver->resolverNotifier;
    const QPointer<QSocketNotifier> address = resolver->addressNotifier;
    QVERIFY(resolve->isEnabled());
    resolver->cleanUp();
    for (const QPointer<QSocketNotifier> &notifier : {resolve, address}) {
        QVERIFY(notifier);
        QVERIFY(!notifier->isEnabled());
        // Whatever it might still say reaches nobody.
        QVERIFY(!QObject::disconnect(notifier, nullptr, nullptr, nullptr));
    }
    // Qt has nothing to say about the closed sockets: cleanup() looks.
    QCoreApplication::processEvents();
    delete resolve;
    delete address;
}

void tst_Resolver::the_end_takes_the_key_out_even_where_another_resolver_holds_it()
{
    const DNSServiceRef first = engine->come("Left");
    const DNSServiceRef second = engine->come("Left");
    Engine::fail(first, kDNSServiceErr_Timeout);
    QVERIFY(engine->zeroconf.pri->resolvers.isEmpty());
    QVERIFY(fake_dns_sd::is_open(second));

    // It goes on, and its service is removed without it.
    Engine::address(Engine::resolve(second));
    QCOMPARE(engine->added.size(), 1);
    engine->go("Left");
    QCOMPARE(engine->removed.size(), 1);
    QVERIFY(fake_dns_sd::is_open(second));
}

void tst_Resolver::events_inside_a_slot_may_restart_the_query_that_called_it()
{
    const DNSServiceRef resolve = engine->come("Left");
    const DNSServiceRef address = Engine::resolve(resolve);
    fake_dns_sd::address_reply(address, kDNSServiceFlagsAdd, Engine::wlan, "127.0.0.1");
    fake_dns_sd::address_reply(address, kDNSServiceFlagsAdd, Engine::wlan, "127.0.0.2");
    connect(&engine->zeroconf, &QZeroConf::serviceAdded, this, [&] {
        Engine::resolve(resolve);
        // Released while its own callback is on the stack.
        QVERIFY(!fake_dns_sd::is_open(address));
    });
    QTRY_COMPARE(engine->added.size(), 1);
    Engine::address(engine->resolver_of("Left")->DNSaddressRef, "127.0.0.3");
    QTRY_COMPARE(engine->resolver_of("Left")->zcs->ip, QHostAddress("127.0.0.3"));
}

QTEST_GUILESS_MAIN(tst_Resolver)
#include "tst_resolver.moc"
