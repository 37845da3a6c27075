// SPDX-License-Identifier: MIT
#include "zeroconf/qzeroconfprivate.h"

#include <QDebug>
#include <QMap>
#include <QPointer>
#include <QSocketNotifier>

#include "zeroconf/qzeroconf.h"
#include "zeroconf/resolver.h"

QZeroConfPrivate::QZeroConfPrivate(QZeroConf *facade)
    : pub(facade)
{
}

// The notifier goes with its handle. So once it is gone the callback has ended that handle already, and the
// one found here was opened by a slot meanwhile: the failure is not its own.
void QZeroConfPrivate::bsRead()
{
    const QPointer<QSocketNotifier> notifier = bs;
    if (DNSServiceProcessResult(dnssref) != 0) {
        if (notifier)
            cleanUp(dnssref);
        emit pub->error(QZeroConf::service_registration_failed);
    }
}

void QZeroConfPrivate::browserRead()
{
    const QPointer<QSocketNotifier> notifier = browserSocket;
    if (DNSServiceProcessResult(browser) != 0) {
        if (notifier)
            cleanUp(browser);
        emit pub->error(QZeroConf::browser_failed);
    }
}

void QZeroConfPrivate::browseCallback(DNSServiceRef, DNSServiceFlags flags, quint32 interfaceIndex,
                                      DNSServiceErrorType err, const char *name, const char *type,
                                      const char *domain, void *context)
{
    qDebug() << "QZeroConfPrivate::browseCallback() ...";
    auto *engine = static_cast<QZeroConfPrivate *>(context);
    // Tested before anything is read: the loss of the daemon comes with null texts.
    if (err != 0) {
        engine->cleanUp(engine->browser);
        emit engine->pub->error(QZeroConf::browser_failed);
        return;
    }

    const QString key = service_key(QString::fromUtf8(name), interfaceIndex);
    const bool known = engine->pub->services.contains(key);
    const bool came = flags & kDNSServiceFlagsAdd;
    if (came && !known)
        engine->service_came(name, type, domain, interfaceIndex);
    else if (!came && known)
        engine->service_went(key);
}

// A key that is being resolved already gets a second resolver; the first goes on without being in the table.
// Meant.
void QZeroConfPrivate::service_came(const char *name, const char *type, const char *domain,
                                    quint32 interfaceIndex)
{
    QZeroConfService service(new QZeroConfServiceData);
    service->name = QString::fromUtf8(name);
    service->type = QString::fromUtf8(type);
    service->domain = QString::fromUtf8(domain);
    service->interfaceIndex = interfaceIndex;

    auto *resolver = new Resolver(this, service);
    resolvers.insert(service_key(service->name, interfaceIndex), resolver);
    resolver->start();
}

void QZeroConfPrivate::service_went(const QString &key)
{
    const QZeroConfService service = pub->services.take(key);
    if (Resolver *resolver = resolvers.value(key))
        resolver->cleanUp();
    emit pub->serviceRemoved(service);
}

void QZeroConfPrivate::registerCallback(DNSServiceRef, DNSServiceFlags, DNSServiceErrorType err, const char *,
                                        const char *, const char *, void *context)
{
    auto *engine = static_cast<QZeroConfPrivate *>(context);
    if (err != 0) {
        engine->cleanUp(engine->dnssref);
        emit engine->pub->error(QZeroConf::service_registration_failed);
        return;
    }
    emit engine->pub->servicePublished();
}

void QZeroConfPrivate::cleanUp(DNSServiceRef ref)
{
    if (!ref)
        return;

    if (ref == browser) {
        browser = nullptr;
        delete browserSocket;
        browserSocket = nullptr;
        // A copy, since a slot may run events that change the table.
        const QMap<QString, QZeroConfService> services = pub->services;
        for (auto service = services.cbegin(); service != services.cend(); ++service) {
            // A service whose resolver has ended has nothing left to release, and is removed like the others.
            if (Resolver *resolver = resolvers.value(service.key()))
                resolver->cleanUp();
            emit pub->serviceRemoved(service.value());
        }
        pub->services.clear();
    } else if (ref == dnssref) {
        dnssref = nullptr;
        delete bs;
        bs = nullptr;
    }
    DNSServiceRefDeallocate(ref);
}
