// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

#include "zeroconf/dns_sd_port.h"

class QSocketNotifier;
class QZeroConf;
class Resolver;

// The discovery engine. It drives the dns_sd handles from the event loop: each has a socket, each socket a
// notifier, and the notifier's slot lets dns_sd process the socket, which calls back here. A service passes
// through browse, resolve and address (the last two in its Resolver), and only then reaches the facade. No
// thread, no timer; GUI thread only.
//
// Re-entrancy: every callback emits as its last act and touches nothing afterwards, since a slot may run
// events in which handles and resolvers come to an end. dns_sd allows the release of a handle inside its own
// callback.
class QZeroConfPrivate : public QObject
{
    Q_OBJECT

public:
    explicit QZeroConfPrivate(QZeroConf *facade);

    // Ends what a handle stands for and releases it; null does nothing. The end of the browse looks like the
    // departure of every known service.
    void cleanUp(DNSServiceRef ref);

    static void DNSSD_API browseCallback(DNSServiceRef, DNSServiceFlags flags, quint32 interfaceIndex,
                                         DNSServiceErrorType err, const char *name, const char *type,
                                         const char *domain, void *context);
    static void DNSSD_API registerCallback(DNSServiceRef, DNSServiceFlags, DNSServiceErrorType err,
                                           const char *, const char *, const char *, void *context);

    QZeroConf *pub;                           // the facade, for its signals and services
    DNSServiceRef dnssref = nullptr;          // publish handle, null when not publishing
    DNSServiceRef browser = nullptr;          // browse handle, null when not browsing
    quint32 protocol = 1;                     // dns_sd word for address queries: 1 for IPv4, 2 for IPv6
    QSocketNotifier *bs = nullptr;            // on dnssref
    QSocketNotifier *browserSocket = nullptr; // on browser
    QByteArray txt;                           // TXT bytes to publish; stays empty
    QHash<QString, Resolver *> resolvers;     // by service_key, the newest where there are several

public Q_SLOTS:
    void bsRead();
    void browserRead();

private:
    void service_came(const char *name, const char *type, const char *domain, quint32 interfaceIndex);
    void service_went(const QString &key);
};
