// SPDX-License-Identifier: MIT
#include <QMetaEnum>
#include <QMetaMethod>
#include <QSocketNotifier>
#include <QTest>
#include <memory>

#include "tests/zeroconf/engine_fixture.h"

using fake_dns_sd::Kind;

class tst_QZeroConf : public QObject, private Engine_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void a_new_facade_knows_nothing_and_calls_nothing();
    void the_error_codes_are_minus_1_and_minus_3();
    void the_signals_stand_in_their_order();

    void a_browse_asks_all_interfaces_for_the_type();
    void a_browse_logs_its_start_and_return();
    void the_notifier_of_the_browse_belongs_to_the_facade();
    void the_protocol_becomes_a_dns_sd_word_data();
    void the_protocol_becomes_a_dns_sd_word();
    void a_second_browse_is_refused_and_the_first_goes_on();
    void a_browse_that_cannot_start_is_an_error();
    void a_browse_without_socket_is_an_error_and_is_released();
    void after_a_failed_browse_another_can_start();
    void stopping_the_browse_removes_every_known_service();
    void stopping_without_a_browse_does_nothing();
    void after_a_stop_another_browse_can_start();

    void publishing_passes_name_type_domain_and_port();
    void publishing_passes_the_txt_bytes();
    void a_publish_reply_is_told();
    void a_publish_error_is_told_and_releases();
    void a_publish_that_cannot_start_is_an_error();
    void a_publish_without_socket_is_an_error_and_is_released();
    void a_second_publish_is_refused_and_the_first_goes_on();
    void a_publish_handle_that_fails_is_an_error_and_is_released();
    void a_failure_behind_a_publish_error_spares_what_was_published_meanwhile();
    void stopping_to_publish_releases_and_says_nothing();

    void the_end_releases_publish_then_browse_and_removes_every_service();
    void the_end_releases_resolvers_in_work();
};

namespace
{
const QString started = "QZeroConf::startBrowser: started!";
const QString returned = "QZeroConf::startBrowser: return";
} // namespace

void tst_QZeroConf::a_new_facade_knows_nothing_and_calls_nothing()
{
    QVERIFY(engine->zeroconf.services.isEmpty());
    QVERIFY(fake_dns_sd::calls().isEmpty());
    QVERIFY(!engine->zeroconf.pri->browser);
    QVERIFY(!engine->zeroconf.pri->dnssref);
    QCOMPARE(engine->zeroconf.pri->pub, &engine->zeroconf);
}

void tst_QZeroConf::the_error_codes_are_minus_1_and_minus_3()
{
    const QMetaEnum codes = QMetaEnum::fromType<QZeroConf::error_t>();
    QCOMPARE(codes.keyCount(), 2);
    QCOMPARE(codes.keyToValue("service_registration_failed"), -1);
    QCOMPARE(codes.keyToValue("browser_failed"), -3);
}

void tst_QZeroConf::the_signals_stand_in_their_order()
{
    QList<QByteArray> signatures;
    const QMetaObject &meta = QZeroConf::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        signatures << meta.method(i).methodSignature();
    QCOMPARE(signatures,
             QList<QByteArray>({"servicePublished()", "error(QZeroConf::error_t)",
                                "serviceAdded(QZeroConfService)", "serviceUpdated(QZeroConfService)",
                                "serviceRemoved(QZeroConfService)"}));
}

void tst_QZeroConf::a_browse_asks_all_interfaces_for_the_type()
{
    engine->zeroconf.startBrowser(QString::fromUtf8("_lödeset._tcp"), QAbstractSocket::IPv4Protocol);

    QCOMPARE(fake_dns_sd::calls().size(), 1);
    const fake_dns_sd::Call call = fake_dns_sd::last_call(Kind::Browse);
    QCOMPARE(call.flags, 0u);
    QCOMPARE(call.interfaceIndex, 0u);
    QCOMPARE(call.type, QByteArray("_l\xc3\xb6"
                                   "deset._tcp"));
    QVERIFY(call.domain.isNull());
    QCOMPARE(call.context, engine->zeroconf.pri);
    QCOMPARE(engine->zeroconf.pri->browser, call.ref);
    QVERIFY(engine->silent());
}

void tst_QZeroConf::a_browse_logs_its_start_and_return()
{
    engine->browse();
    QCOMPARE(engine->log.debug_lines(), QStringList({started, returned}));
}

void tst_QZeroConf::the_notifier_of_the_browse_belongs_to_the_facade()
{
    const DNSServiceRef ref = engine->browse();
    const QSocketNotifier *notifier = engine->zeroconf.pri->browserSocket;
    QCOMPARE(notifier->parent(), &engine->zeroconf);
    QCOMPARE(int(notifier->socket()), DNSServiceRefSockFD(ref));
    QCOMPARE(notifier->type(), QSocketNotifier::Read);
}

void tst_QZeroConf::the_protocol_becomes_a_dns_sd_word_data()
{
    QTest::addColumn<QAbstractSocket::NetworkLayerProtocol>("protocol");
    QTest::addColumn<quint32>("word");
    QTest::addColumn<bool>("unsupported");
    QTest::newRow("IPv4") << QAbstractSocket::IPv4Protocol << 1u << false;
    QTest::newRow("IPv6") << QAbstractSocket::IPv6Protocol << 2u << false;
    QTest::newRow("any") << QAbstractSocket::AnyIPProtocol << 1u << true;
    QTest::newRow("unknown") << QAbstractSocket::UnknownNetworkLayerProtocol << 1u << true;
}

void tst_QZeroConf::the_protocol_becomes_a_dns_sd_word()
{
    QFETCH(QAbstractSocket::NetworkLayerProtocol, protocol);
    QFETCH(quint32, word);
    QFETCH(bool, unsupported);
    engine->zeroconf.pri->protocol = 99;
    engine->browse(protocol);
    QCOMPARE(engine->zeroconf.pri->protocol, word);
    QCOMPARE(
        engine->log.debug_lines().contains("QZeroConf::startBrowser() - unsupported protocol, using IPv4"),
        unsupported);
    QVERIFY(engine->zeroconf.pri->browser);
}

void tst_QZeroConf::a_second_browse_is_refused_and_the_first_goes_on()
{
    const DNSServiceRef first = engine->browse(QAbstractSocket::IPv6Protocol);
    QCOMPARE(engine->log.warnings(), QStringList());
    engine->log.clear();

    engine->browse(QAbstractSocket::IPv4Protocol);
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-3}));
    QCOMPARE(engine->log.debug_lines(), QStringList({started, "QZeroConf::startBrowser: Error 1"}));
    QCOMPARE(fake_dns_sd::calls(Kind::Browse).size(), 1);
    QCOMPARE(engine->zeroconf.pri->browser, first);
    QCOMPARE(engine->zeroconf.pri->protocol, 2u);

    engine->make_known("Left");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left"}));
}

void tst_QZeroConf::a_browse_that_cannot_start_is_an_error()
{
    fake_dns_sd::fail_next(Kind::Browse, kDNSServiceErr_ServiceNotRunning);
    engine->browse();
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-3}));
    QCOMPARE(engine->log.debug_lines(),
             QStringList({started, "QZeroConf::startBrowser: Error 3  ret err= -65563", returned}));
    QVERIFY(!engine->zeroconf.pri->browser);
    QVERIFY(!engine->zeroconf.pri->browserSocket);
}

void tst_QZeroConf::a_browse_without_socket_is_an_error_and_is_released()
{
    fake_dns_sd::no_socket_next(Kind::Browse);
    engine->browse();
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-3}));
    QCOMPARE(engine->log.debug_lines(), QStringList({started, "QZeroConf::startBrowser: Error 2", returned}));
    QVERIFY(!engine->zeroconf.pri->browser);
    QVERIFY(!engine->zeroconf.pri->browserSocket);
    QCOMPARE(fake_dns_sd::releases(fake_dns_sd::last_call(Kind::Browse).ref), 1);
}

void tst_QZeroConf::after_a_failed_browse_another_can_start()
{
    fake_dns_sd::fail_next(Kind::Browse, kDNSServiceErr_Unknown);
    engine->browse();
    QVERIFY(engine->browse());
    engine->make_known("Left");
    QCOMPARE(engine->added.size(), 1);
}

void tst_QZeroConf::stopping_the_browse_removes_every_known_service()
{
    const DNSServiceRef browse = engine->browse();
    engine->make_known("Left");
    engine->make_known("Right");

    engine->zeroconf.stopBrowser();
    QCOMPARE(Engine::names(engine->removed), QStringList({"Left", "Right"}));
    QVERIFY(engine->zeroconf.services.isEmpty());
    QVERIFY(engine->errors.isEmpty());
    QVERIFY(!engine->zeroconf.pri->browser);
    QVERIFY(!engine->zeroconf.pri->browserSocket);
    QCOMPARE(fake_dns_sd::releases(browse), 1);
    QCOMPARE(fake_dns_sd::open_refs(), 0);
}

void tst_QZeroConf::stopping_without_a_browse_does_nothing()
{
    engine->zeroconf.stopBrowser();
    engine->zeroconf.stopServicePublish();
    QVERIFY(engine->silent());
    QCOMPARE(fake_dns_sd::releases(), 0);
}

void tst_QZeroConf::after_a_stop_another_browse_can_start()
{
    engine->browse();
    engine->make_known("Left");
    engine->zeroconf.stopBrowser();
    engine->browse();
    engine->make_known("Left");
    QCOMPARE(Engine::names(engine->added), QStringList({"Left", "Left"}));
    QVERIFY(engine->errors.isEmpty());
}

void tst_QZeroConf::publishing_passes_name_type_domain_and_port()
{
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 0x1f90);

    const fake_dns_sd::Call call = fake_dns_sd::last_call(Kind::Register);
    QCOMPARE(call.flags, 0u);
    QCOMPARE(call.interfaceIndex, 0u);
    QCOMPARE(call.name, QByteArray("Name"));
    QCOMPARE(call.type, QByteArray("_lodeset._tcp"));
    QCOMPARE(call.domain, QByteArray("local"));
    QVERIFY(call.host.isNull());
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(&call.port), 2), QByteArray("\x1f\x90"));
    QVERIFY(call.txt.isEmpty());
    QCOMPARE(call.context, engine->zeroconf.pri);
    QCOMPARE(engine->zeroconf.pri->dnssref, call.ref);
    QCOMPARE(int(engine->zeroconf.pri->bs->socket()), DNSServiceRefSockFD(call.ref));
    QVERIFY(engine->silent());
}

void tst_QZeroConf::publishing_passes_the_txt_bytes()
{
    engine->zeroconf.pri->txt = QByteArray("\x03"
                                           "a=1\x00\x01"
                                           "b",
                                           7);
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", nullptr, 80);
    const fake_dns_sd::Call call = fake_dns_sd::last_call(Kind::Register);
    QCOMPARE(call.txt, engine->zeroconf.pri->txt);
    QVERIFY(call.domain.isNull());
}

void tst_QZeroConf::a_publish_reply_is_told()
{
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
    const DNSServiceRef ref = engine->zeroconf.pri->dnssref;
    QVERIFY(engine->published.isEmpty());
    fake_dns_sd::register_reply(ref);
    QTRY_COMPARE(engine->published.size(), 1);
    QVERIFY(engine->errors.isEmpty());
    QVERIFY(fake_dns_sd::is_open(ref));
}

void tst_QZeroConf::a_publish_error_is_told_and_releases()
{
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
    const DNSServiceRef ref = engine->zeroconf.pri->dnssref;
    fake_dns_sd::error_reply(ref, kDNSServiceErr_NameConflict);
    QTRY_COMPARE(Engine::codes(engine->errors), QList<int>({-1}));
    QVERIFY(engine->published.isEmpty());
    QCOMPARE(fake_dns_sd::releases(ref), 1);
    QVERIFY(!engine->zeroconf.pri->dnssref);
    QVERIFY(!engine->zeroconf.pri->bs);
}

void tst_QZeroConf::a_publish_that_cannot_start_is_an_error()
{
    fake_dns_sd::fail_next(Kind::Register, kDNSServiceErr_Unknown);
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-1}));
    QVERIFY(!engine->zeroconf.pri->dnssref);
    QVERIFY(!engine->zeroconf.pri->bs);
}

void tst_QZeroConf::a_publish_without_socket_is_an_error_and_is_released()
{
    fake_dns_sd::no_socket_next(Kind::Register);
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-1}));
    QCOMPARE(fake_dns_sd::releases(fake_dns_sd::last_call(Kind::Register).ref), 1);
    QVERIFY(!engine->zeroconf.pri->dnssref);
    QVERIFY(!engine->zeroconf.pri->bs);
}

void tst_QZeroConf::a_second_publish_is_refused_and_the_first_goes_on()
{
    engine->zeroconf.startServicePublish("First", "_lodeset._tcp", "local", 80);
    const DNSServiceRef first = engine->zeroconf.pri->dnssref;
    engine->zeroconf.startServicePublish("Second", "_lodeset._tcp", "local", 81);
    QCOMPARE(Engine::codes(engine->errors), QList<int>({-1}));
    QCOMPARE(fake_dns_sd::calls(Kind::Register).size(), 1);
    QCOMPARE(engine->zeroconf.pri->dnssref, first);

    fake_dns_sd::register_reply(first);
    QTRY_COMPARE(engine->published.size(), 1);
}

void tst_QZeroConf::a_publish_handle_that_fails_is_an_error_and_is_released()
{
    engine->browse();
    engine->make_known("Left");
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
    const DNSServiceRef ref = engine->zeroconf.pri->dnssref;

    fake_dns_sd::fail_process(ref, kDNSServiceErr_Unknown);
    QTRY_COMPARE(Engine::codes(engine->errors), QList<int>({-1}));
    QCOMPARE(fake_dns_sd::releases(ref), 1);
    QVERIFY(!engine->zeroconf.pri->dnssref);
    QVERIFY(!engine->zeroconf.pri->bs);
    // The browse has nothing to do with it.
    QVERIFY(engine->removed.isEmpty());
    QVERIFY(engine->zeroconf.pri->browser);
}

void tst_QZeroConf::a_failure_behind_a_publish_error_spares_what_was_published_meanwhile()
{
    const auto publish = [this] {
        engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
        return engine->zeroconf.pri->dnssref;
    };
    const DNSServiceRef first = publish();
    connect(&engine->zeroconf, &QZeroConf::error, this, [&] {
        if (!engine->zeroconf.pri->dnssref)
            publish();
    });
    fake_dns_sd::error_reply(first, kDNSServiceErr_NameConflict);
    fake_dns_sd::fail_after_reply(first, kDNSServiceErr_Unknown);
    QTRY_COMPARE(Engine::codes(engine->errors), QList<int>({-1, -1}));
    QCOMPARE(fake_dns_sd::releases(), 1);
    fake_dns_sd::register_reply(engine->zeroconf.pri->dnssref);
    QTRY_COMPARE(engine->published.size(), 1);
}

void tst_QZeroConf::stopping_to_publish_releases_and_says_nothing()
{
    engine->zeroconf.startServicePublish("Name", "_lodeset._tcp", "local", 80);
    const DNSServiceRef ref = engine->zeroconf.pri->dnssref;
    engine->zeroconf.stopServicePublish();
    QCOMPARE(fake_dns_sd::releases(ref), 1);
    QVERIFY(engine->silent());
    QVERIFY(!engine->zeroconf.pri->dnssref);
    QVERIFY(!engine->zeroconf.pri->bs);
}

void tst_QZeroConf::the_end_releases_publish_then_browse_and_removes_every_service()
{
    auto facade = std::make_unique<QZeroConf>();
    facade->startServicePublish("Name", "_lodeset._tcp", "local", 80);
    const DNSServiceRef publish = facade->pri->dnssref;
    facade->startBrowser("_lodeset._tcp", QAbstractSocket::IPv4Protocol);
    const DNSServiceRef browse = facade->pri->browser;
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd, 3, "Left");
    Engine::deliver(browse);
    Engine::address(Engine::resolve(fake_dns_sd::last_call(Kind::Resolve).ref));

    QStringList removed;
    connect(facade.get(), &QZeroConf::serviceRemoved, this, [&](const QZeroConfService &service) {
        removed << service->name;
        QVERIFY(!fake_dns_sd::is_open(publish));
        QVERIFY(fake_dns_sd::is_open(browse));
    });
    facade.reset();
    QCOMPARE(removed, QStringList({"Left"}));
    QVERIFY(!fake_dns_sd::is_open(browse));
    QCOMPARE(fake_dns_sd::open_refs(), 0);
}

void tst_QZeroConf::the_end_releases_resolvers_in_work()
{
    auto facade = std::make_unique<QZeroConf>();
    facade->startBrowser("_lodeset._tcp", QAbstractSocket::IPv4Protocol);
    const DNSServiceRef browse = facade->pri->browser;
    // Twice, so that the table has lost the first of two resolvers.
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd, 3, "Left");
    fake_dns_sd::browse_reply(browse, kDNSServiceFlagsAdd, 3, "Left");
    Engine::deliver(browse);
    const DNSServiceRef resolve = fake_dns_sd::last_call(Kind::Resolve).ref;
    Engine::resolve(resolve);
    QCOMPARE(fake_dns_sd::open_refs(), 4);

    facade.reset();
    QCOMPARE(fake_dns_sd::open_refs(), 0);
    // Nothing is left that would listen to them.
    QCoreApplication::processEvents();
}

QTEST_GUILESS_MAIN(tst_QZeroConf)
#include "tst_qzeroconf.moc"
