// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractSocket>
#include <QMap>
#include <QObject>
#include <QString>

#include "zeroconf/qzeroconfservice.h"

class QZeroConfPrivate;

// All that the rest of the program sees of DNS-SD: it browses for a service type and reports each service,
// once it is fully resolved, as a shared record. GUI thread only. Signals come out of socket notifier slots
// and run their slots directly; such a slot may run events, start and stop a browse, and must not delete this
// object. Failures are told by error alone; a service that cannot be resolved is passed over in silence.
class QZeroConf : public QObject
{
    Q_OBJECT

public:
    enum error_t {
        service_registration_failed = -1, // the publish handle failed
        browser_failed = -3               // the browse could not start, or failed later
    };
    Q_ENUM(error_t)

    explicit QZeroConf(QObject *parent = nullptr);
    // Ends publishing and then the browse, so serviceRemoved is emitted for every service still known.
    ~QZeroConf() override;

    // Starts the one browse for a type such as "_http._tcp". Addresses are asked for in the given protocol;
    // what is neither IPv4 nor IPv6 counts as IPv4. Emits error(browser_failed) on failure and where a browse
    // runs already; that one goes on.
    void startBrowser(QString type, QAbstractSocket::NetworkLayerProtocol protocol);
    // Ends the browse: serviceRemoved for every service known. Nothing to do without a browse.
    void stopBrowser();

    // Announces a service on all interfaces; port in host byte order. Then servicePublished, or
    // error(service_registration_failed): at once where a service is announced already, which goes on.
    void startServicePublish(const char *name, const char *type, const char *domain, quint16 port);
    void stopServicePublish();

    QZeroConfPrivate *pri; // the engine, owned
    QMap<QString, QZeroConfService>
        services; // the fully resolved services by service_key; only the engine writes

Q_SIGNALS:
    void servicePublished();
    void error(QZeroConf::error_t);
    void serviceAdded(QZeroConfService);   // the first address of a service arrived
    void serviceUpdated(QZeroConfService); // a further address of a known service arrived
    void serviceRemoved(QZeroConfService); // a known service went away, or the browse ended
};
