// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QSignalSpy>
#include <QStringList>
#include <QTest>
#include <memory>

#include "tests/fakes/fake_dns_sd.h"
#include "tests/fakes/log_capture.h"
#include "zeroconf/qzeroconf.h"
#include "zeroconf/qzeroconfprivate.h"
#include "zeroconf/resolver.h"

struct Fresh_Start {
    Fresh_Start()
    {
        fake_dns_sd::reset();
        // For the spies; the program's own connections are direct and need it not.
        qRegisterMetaType<QZeroConf::error_t>("QZeroConf::error_t");
    }
};

// What every test of the engine begins with: a fresh scripted dns_sd and a facade whose signals are recorded.
struct Engine {
    static constexpr quint32 wlan = 3; // an interface

    DNSServiceRef browse(QAbstractSocket::NetworkLayerProtocol protocol = QAbstractSocket::IPv4Protocol)
    {
        zeroconf.startBrowser("_lodeset._tcp", protocol);
        return zeroconf.pri->browser;
    }

    // The three stages of one service. Each begins the stage and gives its ref.
    DNSServiceRef come(const QByteArray &name, quint32 interface = wlan)
    {
        fake_dns_sd::browse_reply(zeroconf.pri->browser, kDNSServiceFlagsAdd, interface, name);
        deliver(zeroconf.pri->browser);
        return fake_dns_sd::last_call(fake_dns_sd::Kind::Resolve).ref;
    }
    static DNSServiceRef resolve(DNSServiceRef resolve_ref, const QByteArray &txt = QByteArray(),
                                 quint32 interface = wlan)
    {
        fake_dns_sd::resolve_reply(resolve_ref, interface, "speaker.local.", 8080, txt);
        deliver(resolve_ref);
        return fake_dns_sd::last_call(fake_dns_sd::Kind::GetAddrInfo).ref;
    }
    static void address(DNSServiceRef address_ref, const QByteArray &address = "127.0.0.11",
                        quint32 interface = wlan)
    {
        fake_dns_sd::address_reply(address_ref, kDNSServiceFlagsAdd, interface, address);
        deliver(address_ref);
    }
    // All three: the service is known afterwards. Gives its resolver.
    Resolver *make_known(const QByteArray &name, quint32 interface = wlan)
    {
        const DNSServiceRef ref = come(name, interface);
        Resolver *resolver = resolver_of(name, interface);
        address(resolve(ref, {}, interface), "127.0.0.11", interface);
        return resolver;
    }
    void go(const QByteArray &name, quint32 interface = wlan)
    {
        fake_dns_sd::browse_reply(zeroconf.pri->browser, 0, interface, name);
        deliver(zeroconf.pri->browser);
    }

    // Runs events until a ref has no reply left.
    static void deliver(DNSServiceRef ref) { QTRY_COMPARE(fake_dns_sd::waiting(ref), 0); }
    static void fail(DNSServiceRef ref, DNSServiceErrorType code)
    {
        fake_dns_sd::error_reply(ref, code);
        deliver(ref);
    }

    Resolver *resolver_of(const QString &name, quint32 interface = wlan) const
    {
        return zeroconf.pri->resolvers.value(service_key(name, interface));
    }
    // All resolvers, those too that the table has lost.
    int resolvers() const { return zeroconf.pri->findChildren<Resolver *>().size(); }

    static QZeroConfService record(const QSignalSpy &spy, int index = 0)
    {
        return spy.value(index).value(0).value<QZeroConfService>();
    }
    static QStringList names(const QSignalSpy &spy)
    {
        QStringList names;
        for (int i = 0; i < spy.size(); ++i)
            names << record(spy, i)->name;
        return names;
    }
    static QList<int> codes(const QSignalSpy &spy)
    {
        QList<int> codes;
        for (const QList<QVariant> &arguments : spy)
            codes << arguments.value(0).value<QZeroConf::error_t>();
        return codes;
    }
    bool silent() const
    {
        return added.isEmpty() && updated.isEmpty() && removed.isEmpty() && errors.isEmpty();
    }

    Log_Capture log;
    const Fresh_Start fresh; // before the facade
    QZeroConf zeroconf;
    QSignalSpy added{&zeroconf, &QZeroConf::serviceAdded};
    QSignalSpy updated{&zeroconf, &QZeroConf::serviceUpdated};
    QSignalSpy removed{&zeroconf, &QZeroConf::serviceRemoved};
    QSignalSpy errors{&zeroconf, &QZeroConf::error};
    QSignalSpy published{&zeroconf, &QZeroConf::servicePublished};
};

// What every test program of the engine holds: one engine for each test function, whose end must be clean.
class Engine_Holder
{
protected:
    void begin() { engine = std::make_unique<Engine>(); }
    void begin_with_browse()
    {
        begin();
        browse = engine->browse();
        QCOMPARE(engine->log.warnings(), QStringList());
        engine->log.clear();
    }
    void end()
    {
        const QStringList complaints = engine->log.warnings();
        engine.reset();
        QCOMPARE(complaints, QStringList());
        QCOMPARE(fake_dns_sd::misuses(), QStringList());
        QCOMPARE(fake_dns_sd::open_refs(), 0);
    }

    std::unique_ptr<Engine> engine;
    DNSServiceRef browse = nullptr;
};
