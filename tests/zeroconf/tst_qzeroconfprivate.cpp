// SPDX-License-Identifier: MIT
#include <QPointer>
#include <QSocketNotifier>
#include <QTest>

#include "tests/zeroconf/engine_fixture.h"

using fake_dns_sd::Kind;

class tst_QZeroConfPrivate : public QObject, private Engine_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin_with_browse(); }
    void cleanup() { end(); }

    void each_browse_reply_is_logged();
    void an_add_makes_a_record_and_starts_its_resolver();
    void names_are_utf8();
    void a_service_on_two_interfaces_is_two_services();
    void services_whose_keys_fall_together_are_one();
    void more_coming_beside_the_add_flag_changes_nothing();
    void more_coming_alone_is_a_removal();
    void an_add_of_a_known_key_is_ignored();
    void a_repeat_before_the_address_starts_a_second_resolver();
    void a_removal_of_a_known_service_ends_its_resolver_and_is_told();
    void a_removal_before_the_address_is_ignored_and_the_resolver_stays();
    void a_removal_of_a_service_never_seen_is_ignored();
    void a_removal_of_a_service_without_resolver_is_told();
    void a_service_that_comes_back_is_told_again();

    void an_error_reply_ends_the_browse_data();
    void an_error_reply_ends_the_browse();
    void a_browse_handle_that_fails_ends_the_browse();
    void the_end_of_the_browse_removes_services_without_resolver();
    void the_end_of_the_browse_leaves_resolvers_in_work();
    void the_browse_is_released_after_its_services_were_removed();
    void services_are_listed_until_the_last_is_told();
    void a_wakeup_with_nothing_to_read_changes_nothing();
    void a_null_handle_has_nothing_to_clean_up();
    void a_handle_of_neither_kind_is_released_and_no_more();

    void a_slot_on_added_may_stop_the_browse();
    void a_slot_on_added_may_run_events_that_bring_more();
    void a_slot_on_added_may_run_events_that_remove_its_service();
    void a_slot_on_removed_may_start_the_browse_again();
    void a_slot_on_removed_may_run_events();
    void a_slot_on_error_may_start_the_browse_again();
    void a_failure_behind_an_error_reply_spares_the_browse_started_meanwhile();
};

void tst_QZeroConfPrivate::each_browse_reply_is_logged()
{
    const QString line = "QZeroConfPrivate::browseCallback() ...";
    engine->come("Left");
    QCOMPARE(engine->log.debug_lines(), QStringList({line}));
    engine->go("Left");
    QCOMPARE(engine->log.debug_lines(), QStringList({line, line}));
    Engine::fail(browse, kDNSServiceErr_Unknown);
    QCOMPARE(engine->log.debug_lines(), QStringList({line, line, line}));
}

void tst_QZeroConfPrivate::an_add_makes_a_record_and_starts_its_resolver()
{
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd, 7, "Left", "_lodeset._tcp.", "local.");
    Engine::deliver(browse);

    const Resolver *resolver = engine->resolver_of("Left", 7);
    QVERIFY(resolver);
    QCOMPARE(resolver->ref, engine->zeroconf.pri);
    QCOMPARE(resolver->zcs->name, QString("Left"));
    QCOMPARE(resolver->zcs->type, QString("_lodeset._tcp."));
    QCOMPARE(resolver->zcs->domain, QString("local."));
    QCOMPARE(resolver->zcs->interfaceIndex, 7u);
    QVERIFY(resolver->zcs->host.isEmpty());
    QVERIFY(resolver->zcs->ip.isNull());
    QCOMPARE(fake_dns_sd::last_call(Kind::Resolve).context, resolver);
    // Nobody hears of it before it has an address.
    QVERIFY(engine->silent());
    QVERIFY(engine->zeroconf.services.isEmpty());
}

void tst_QZeroConfPrivate::names_are_utf8()
{
    engine->come("K\xc3\xbc"
                 "che \xf0\x9f\x94\x8a");
    QVERIFY(engine->resolver_of(QString::fromUtf8("Küche 🔊")));
    // Bytes that are no UTF-8 at all still make a service.
    engine->come("\xff\xfe");
    QCOMPARE(engine->resolvers(), 2);
}

void tst_QZeroConfPrivate::a_service_on_two_interfaces_is_two_services()
{
    engine->make_known("Left", 2);
    engine->make_known("Left", 3);
    QCOMPARE(Engine::names(engine->added), QStringList({"Left", "Left"}));
    QCOMPARE(engine->zeroconf.services.keys(), QStringList({"Left2", "Left3"}));

    engine->go("Left", 2);
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left"}));
    QCOMPARE(Engine::record(engine->removed)->interfaceIndex, 2u);
    QCOMPARE(engine->zeroconf.services.keys(), QStringList({"Left3"}));
}

void tst_QZeroConfPrivate::services_whose_keys_fall_together_are_one()
{
    engine->make_known("Left1", 2);
    engine->come("Left", 12);
    QCOMPARE(fake_dns_sd::calls(Kind::Resolve).size(), 1);
    engine->go("Left", 12);
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left1"}));
}

void tst_QZeroConfPrivate::more_coming_beside_the_add_flag_changes_nothing()
{
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd | kDNSServiceFlagsMoreComing, Engine::wlan, "Left");
    Engine::deliver(browse);
    QVERIFY(engine->resolver_of("Left"));
}

void tst_QZeroConfPrivate::more_coming_alone_is_a_removal()
{
    engine->make_known("Left");
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsMoreComing, Engine::wlan, "Left");
    Engine::deliver(browse);
    QCOMPARE(engine->removed.size(), 1);
}

void tst_QZeroConfPrivate::an_add_of_a_known_key_is_ignored()
{
    const Resolver *resolver = engine->make_known("Left");
    const int calls = fake_dns_sd::calls().size();
    engine->come("Left");
    QCOMPARE(fake_dns_sd::calls().size(), calls);
    QCOMPARE(engine->resolver_of("Left"), resolver);
    QCOMPARE(engine->added.size(), 1);
    QVERIFY(engine->updated.isEmpty());
}

void tst_QZeroConfPrivate::a_repeat_before_the_address_starts_a_second_resolver()
{
    const DNSServiceRef first_ref = engine->come("Left");
    const Resolver *first = engine->resolver_of("Left");
    const DNSServiceRef second_ref = engine->come("Left");
    const Resolver *second = engine->resolver_of("Left");
    QVERIFY(first != second);
    QVERIFY(first_ref != second_ref);
    QVERIFY(fake_dns_sd::is_open(first_ref));

    // The first goes on: its address makes the service known, the second's updates it with a record of its
    // own.
    Engine::address(Engine::resolve(first_ref), "127.0.0.1");
    QCOMPARE(Engine::record(engine->added), first->zcs);
    Engine::address(Engine::resolve(second_ref), "127.0.0.2");
    QCOMPARE(Engine::record(engine->updated), second->zcs);
    QCOMPARE(engine->zeroconf.services.value("Left3"), first->zcs);

    // The removal ends the one in the table. The other is never released while the engine lives.
    engine->go("Left");
    QVERIFY(!fake_dns_sd::is_open(second_ref));
    QVERIFY(fake_dns_sd::is_open(first_ref));
    QCOMPARE(Engine::record(engine->removed), first->zcs);
    engine->zeroconf.stopBrowser();
    QVERIFY(fake_dns_sd::is_open(first_ref));
}

void tst_QZeroConfPrivate::a_removal_of_a_known_service_ends_its_resolver_and_is_told()
{
    const QPointer<Resolver> resolver = engine->make_known("Left");
    const QZeroConfService service = resolver->zcs;
    engine->make_known("Right");
    bool gone_when_told = false;
    const QObject until_return; // the end of the engine tells of the other one
    connect(&engine->zeroconf, &QZeroConf::serviceRemoved, &until_return,
            [&] { gone_when_told = !resolver && !engine->zeroconf.services.contains("Left3"); });

    engine->go("Left");
    QVERIFY(gone_when_told);
    QCOMPARE(engine->removed.size(), 1);
    QCOMPARE(Engine::record(engine->removed), service);
    QVERIFY(!resolver);
    QVERIFY(!engine->resolver_of("Left"));
    QVERIFY(engine->resolver_of("Right"));
    QCOMPARE(engine->zeroconf.services.keys(), QStringList({"Right3"}));
    QCOMPARE(fake_dns_sd::open_refs(Kind::Resolve).size(), 1);
    QCOMPARE(fake_dns_sd::open_refs(Kind::GetAddrInfo).size(), 1);
    // The record lives on through its holders.
    QCOMPARE(service->ip, QHostAddress("127.0.0.11"));
}

void tst_QZeroConfPrivate::a_removal_before_the_address_is_ignored_and_the_resolver_stays()
{
    const DNSServiceRef resolve = engine->come("Left");
    const DNSServiceRef address = Engine::resolve(resolve);
    engine->go("Left");
    QVERIFY(engine->silent());
    QVERIFY(engine->resolver_of("Left"));
    QVERIFY(fake_dns_sd::is_open(resolve));
    QVERIFY(fake_dns_sd::is_open(address));

    // So an address that comes late after all makes it known.
    Engine::address(address);
    QCOMPARE(Engine::names(engine->added), QStringList({"Left"}));
}

void tst_QZeroConfPrivate::a_removal_of_a_service_never_seen_is_ignored()
{
    engine->go("Left");
    QVERIFY(engine->silent());
    QCOMPARE(fake_dns_sd::calls().size(), 1);
}

void tst_QZeroConfPrivate::a_removal_of_a_service_without_resolver_is_told()
{
    const Resolver *resolver = engine->make_known("Left");
    Engine::fail(resolver->DNSaddressRef, kDNSServiceErr_Unknown);
    QVERIFY(!engine->resolver_of("Left"));
    QVERIFY(engine->removed.isEmpty());

    engine->go("Left");
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left"}));
    QVERIFY(engine->zeroconf.services.isEmpty());
}

void tst_QZeroConfPrivate::a_service_that_comes_back_is_told_again()
{
    engine->make_known("Left");
    engine->go("Left");
    engine->make_known("Left");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left", "Left"}));
    QVERIFY(Engine::record(engine->added, 0) != Engine::record(engine->added, 1));
}

void tst_QZeroConfPrivate::an_error_reply_ends_the_browse_data()
{
    QTest::addColumn<DNSServiceErrorType>("code");
    QTest::newRow("daemon gone") << DNSServiceErrorType(kDNSServiceErr_ServiceNotRunning);
    QTest::newRow("unknown") << DNSServiceErrorType(kDNSServiceErr_Unknown);
    QTest::newRow("positive") << DNSServiceErrorType(1);
}

void tst_QZeroConfPrivate::an_error_reply_ends_the_browse()
{
    QFETCH(DNSServiceErrorType, code);
    engine->make_known("Left");
    engine->make_known("Right");
    QStringList order;
    connect(&engine->zeroconf, &QZeroConf::serviceRemoved, this,
            [&](const QZeroConfService &service) { order << service->name; });
    connect(&engine->zeroconf, &QZeroConf::error, this, [&] { order << "error"; });

    Engine::fail(browse, code);
    QCOMPARE(order, QStringList({"Left", "Right", "error"}));
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-3}));
    QVERIFY(engine->zeroconf.services.isEmpty());
    QVERIFY(engine->zeroconf.pri->resolvers.isEmpty());
    QVERIFY(!engine->zeroconf.pri->browser);
    QVERIFY(!engine->zeroconf.pri->browserSocket);
    QCOMPARE(fake_dns_sd::releases(browse), 1);
    QCOMPARE(fake_dns_sd::open_refs(), 0);
}

void tst_QZeroConfPrivate::a_browse_handle_that_fails_ends_the_browse()
{
    engine->make_known("Left");
    fake_dns_sd::fail_process(browse, kDNSServiceErr_Unknown);
    QTRY_COMPARE(Engine::codes(engine->errors), QList<int>({-3}));
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left"}));
    QCOMPARE(fake_dns_sd::releases(browse), 1);
    QVERIFY(!engine->zeroconf.pri->browser);
    QCOMPARE(fake_dns_sd::open_refs(), 0);
}

void tst_QZeroConfPrivate::the_end_of_the_browse_removes_services_without_resolver()
{
    const Resolver *resolver = engine->make_known("Left");
    engine->make_known("Right");
    Engine::fail(resolver->DNSresolverRef, kDNSServiceErr_Timeout);
    engine->zeroconf.pri->cleanUp(browse);
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left", "Right"}));
    QVERIFY(engine->zeroconf.services.isEmpty());
}

void tst_QZeroConfPrivate::the_end_of_the_browse_leaves_resolvers_in_work()
{
    const DNSServiceRef resolve = engine->come("Left");
    Engine::fail(browse, kDNSServiceErr_ServiceNotRunning);
    QVERIFY(engine->removed.isEmpty());
    QVERIFY(engine->resolver_of("Left"));
    Engine::address(Engine::resolve(resolve));
    QCOMPARE(Engine::names(engine->added), QStringList({"Left"}));
}

void tst_QZeroConfPrivate::the_browse_is_released_after_its_services_were_removed()
{
    engine->make_known("Left");
    bool open = false;
    bool cleared = false;
    bool resolver_ended = false;
    connect(&engine->zeroconf, &QZeroConf::serviceRemoved, this, [&] {
        open = fake_dns_sd::is_open(browse);
        cleared = !engine->zeroconf.pri->browser && !engine->zeroconf.pri->browserSocket;
        resolver_ended = engine->resolvers() == 0;
    });
    engine->zeroconf.stopBrowser();
    QVERIFY(open);
    QVERIFY(cleared);
    QVERIFY(resolver_ended);
    QVERIFY(!fake_dns_sd::is_open(browse));
}

void tst_QZeroConfPrivate::services_are_listed_until_the_last_is_told()
{
    engine->make_known("Left");
    engine->make_known("Right");
    QList<int> listed;
    connect(&engine->zeroconf, &QZeroConf::serviceRemoved, this,
            [&] { listed << engine->zeroconf.services.size(); });
    engine->zeroconf.stopBrowser();
    QCOMPARE(listed, QList<int>({2, 2}));
    QVERIFY(engine->zeroconf.services.isEmpty());
}

void tst_QZeroConfPrivate::a_wakeup_with_nothing_to_read_changes_nothing()
{
    const int before = fake_dns_sd::processed(browse);
    fake_dns_sd::wake(browse);
    Engine::deliver(browse);
    QCOMPARE(fake_dns_sd::processed(browse), before + 1);
    engine->zeroconf.pri->browserRead(); // as a notifier does that has lost the race for the reply
    QVERIFY(engine->silent());
    QVERIFY(engine->zeroconf.pri->browser);
}

void tst_QZeroConfPrivate::a_null_handle_has_nothing_to_clean_up()
{
    engine->make_known("Left");
    engine->zeroconf.pri->cleanUp(nullptr);
    QCOMPARE(fake_dns_sd::releases(), 0);
    QVERIFY(engine->removed.isEmpty());
    QVERIFY(engine->zeroconf.pri->browser);
}

void tst_QZeroConfPrivate::a_handle_of_neither_kind_is_released_and_no_more()
{
    engine->make_known("Left");
    const DNSServiceRef address = engine->resolver_of("Left")->DNSaddressRef;
    engine->resolver_of("Left")->DNSaddressRef = nullptr;
    engine->zeroconf.pri->cleanUp(address);
    QCOMPARE(fake_dns_sd::releases(address), 1);
    QCOMPARE(fake_dns_sd::releases(), 1);
    QVERIFY(engine->removed.isEmpty());
    QVERIFY(engine->zeroconf.pri->browser);
}

void tst_QZeroConfPrivate::a_slot_on_added_may_stop_the_browse()
{
    connect(&engine->zeroconf, &QZeroConf::serviceAdded, this, [&] { engine->zeroconf.stopBrowser(); });
    engine->make_known("Left");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left"}));
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left"}));
    QCOMPARE(fake_dns_sd::open_refs(), 0);
}

void tst_QZeroConfPrivate::a_slot_on_added_may_run_events_that_bring_more()
{
    // Replies of all three stages stand in line while the slot runs.
    const DNSServiceRef left = Engine::resolve(engine->come("Left"));
    const DNSServiceRef right = Engine::resolve(engine->come("Right"));
    fake_dns_sd::address_reply(left, kDNSServiceFlagsAdd, Engine::wlan, "127.0.0.1");
    fake_dns_sd::address_reply(right, kDNSServiceFlagsAdd, Engine::wlan, "127.0.0.2");
    fake_dns_sd::address_reply(left, kDNSServiceFlagsAdd, Engine::wlan, "127.0.0.3");
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd, Engine::wlan, "Center");
    int depth = 0;
    int deepest = 0;
    connect(&engine->zeroconf, &QZeroConf::serviceAdded, this, [&] {
        deepest = qMax(deepest, ++depth);
        QCoreApplication::processEvents();
        --depth;
    });

    QTRY_COMPARE(engine->added.size(), 2);
    QTRY_COMPARE(engine->updated.size(), 1);
    QTRY_VERIFY(engine->resolver_of("Center"));
    QCOMPARE(deepest, 2);
    QCOMPARE(engine->zeroconf.services.value("Left3")->ip, QHostAddress("127.0.0.3"));
    QVERIFY(engine->errors.isEmpty());
}

void tst_QZeroConfPrivate::a_slot_on_added_may_run_events_that_remove_its_service()
{
    const DNSServiceRef address = Engine::resolve(engine->come("Left"));
    const QPointer<Resolver> resolver = engine->resolver_of("Left");
    connect(&engine->zeroconf, &QZeroConf::serviceAdded, this, [&] {
        fake_dns_sd::browse_reply(browse, 0, Engine::wlan, "Left");
        QTRY_COMPARE(engine->removed.size(), 1);
        // Deleted while its own callback is on the stack.
        QVERIFY(!resolver);
    });
    Engine::address(address);
    QCOMPARE(engine->removed.size(), 1);
    QVERIFY(engine->zeroconf.services.isEmpty());
}

void tst_QZeroConfPrivate::a_slot_on_removed_may_start_the_browse_again()
{
    engine->make_known("Left");
    connect(&engine->zeroconf, &QZeroConf::serviceRemoved, this, [&] { engine->browse(); });
    engine->zeroconf.stopBrowser();
    QVERIFY(!fake_dns_sd::is_open(browse));
    QVERIFY(engine->zeroconf.pri->browser);
    QVERIFY(engine->zeroconf.pri->browserSocket);
    QVERIFY(engine->errors.isEmpty());

    disconnect(&engine->zeroconf, &QZeroConf::serviceRemoved, this, nullptr);
    engine->make_known("Right");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left", "Right"}));
}

void tst_QZeroConfPrivate::a_slot_on_removed_may_run_events()
{
    const Resolver *left = engine->make_known("Left");
    const Resolver *right = engine->make_known("Right");
    // They still have something to say when their end has begun.
    fake_dns_sd::address_reply(left->DNSaddressRef, kDNSServiceFlagsAdd, Engine::wlan, "127.0.0.2");
    fake_dns_sd::error_reply(right->DNSaddressRef, kDNSServiceErr_ServiceNotRunning);
    connect(&engine->zeroconf, &QZeroConf::serviceRemoved, this, [] { QCoreApplication::processEvents(); });
    engine->zeroconf.stopBrowser();
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left", "Right"}));
    QVERIFY(engine->zeroconf.services.isEmpty());
    QCOMPARE(fake_dns_sd::open_refs(), 0);
}

void tst_QZeroConfPrivate::a_slot_on_error_may_start_the_browse_again()
{
    engine->make_known("Left");
    connect(&engine->zeroconf, &QZeroConf::error, this, [&] {
        if (!engine->zeroconf.pri->browser)
            engine->browse();
    });
    Engine::fail(browse, kDNSServiceErr_ServiceNotRunning);
    QCOMPARE(engine->errors.size(), 1);
    QVERIFY(engine->zeroconf.pri->browser);
    engine->make_known("Left");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left", "Left"}));
}

void tst_QZeroConfPrivate::a_failure_behind_an_error_reply_spares_the_browse_started_meanwhile()
{
    connect(&engine->zeroconf, &QZeroConf::error, this, [&] {
        if (!engine->zeroconf.pri->browser)
            engine->browse();
    });
    fake_dns_sd::error_reply(browse, kDNSServiceErr_ServiceNotRunning);
    fake_dns_sd::fail_after_reply(browse, kDNSServiceErr_ServiceNotRunning);
    QTRY_COMPARE(Engine::codes(engine->errors), QList<int>({-3, -3}));
    QCOMPARE(fake_dns_sd::releases(), 1);
    engine->make_known("Left");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left"}));
}

QTEST_GUILESS_MAIN(tst_QZeroConfPrivate)
#include "tst_qzeroconfprivate.moc"
