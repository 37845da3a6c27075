// SPDX-License-Identifier: MIT
#include "zeroconf/resolver.h"

#include <QDebug>
#include <QList>
#include <QMutexLocker>
#include <QPointer>
#include <QSocketNotifier>
#include <QtEndian>

#include "zeroconf/qzeroconf.h"
#include "zeroconf/qzeroconfprivate.h"

namespace
{
// The length byte counts as signed: above this it is negative, and the record makes no sense from there on.
constexpr int longest_txt_string = 127;
} // namespace

Resolver::Resolver(QZeroConfPrivate *engine, const QZeroConfService &service)
    : QObject(engine)
    , zcs(service)
    , ref(engine)
{
}

Resolver::~Resolver()
{
    release_handles();
}

void Resolver::start()
{
    const DNSServiceErrorType err = DNSServiceResolve(
        &DNSresolverRef, kDNSServiceFlagsTimeout, zcs->interfaceIndex, zcs->name.toUtf8().constData(),
        zcs->type.toUtf8().constData(), zcs->domain.toUtf8().constData(), resolverCallback, this);
    const int socket = err == 0 ? DNSServiceRefSockFD(DNSresolverRef) : -1;
    if (socket == -1) {
        cleanUp();
        return;
    }
    resolverNotifier = watch(socket, &Resolver::resolverReady);
}

// Without a parent: the notifier stays behind, see release_handles.
QSocketNotifier *Resolver::watch(int socket, void (Resolver::*ready)())
{
    auto *notifier = new QSocketNotifier(socket, QSocketNotifier::Read);
    connect(notifier, &QSocketNotifier::activated, this, ready);
    return notifier;
}

void Resolver::resolverReady()
{
    const QPointer<Resolver> alive(this);
    if (DNSServiceProcessResult(DNSresolverRef) != 0 && alive)
        cleanUp();
}

void Resolver::addressReady()
{
    const QPointer<Resolver> alive(this);
    if (DNSServiceProcessResult(DNSaddressRef) != 0 && alive)
        cleanUp();
}

void Resolver::resolverCallback(DNSServiceRef, DNSServiceFlags, quint32 interfaceIndex,
                                DNSServiceErrorType err, const char *, const char *hostName, quint16 port,
                                quint16 txtLen, const unsigned char *txtRecord, void *context)
{
    // The log names the engine, for both of its classes. Meant.
    qDebug() << "QZeroConfPrivate::resolverCallback() ...";
    auto *resolver = static_cast<Resolver *>(context);
    // A time-out ends here too.
    if (err != 0) {
        resolver->cleanUp();
        return;
    }
    parse_txt_record(txtRecord, txtLen, resolver->zcs->txt);
    resolver->zcs->host = QString::fromUtf8(hostName);
    resolver->zcs->port = qFromBigEndian(port);
    resolver->start_addresses(interfaceIndex, hostName);
}

void Resolver::start_addresses(quint32 interfaceIndex, const char *hostName)
{
    if (DNSaddressRef) {
        delete addressNotifier;
        addressNotifier = nullptr;
        DNSServiceRefDeallocate(DNSaddressRef);
        DNSaddressRef = nullptr;
    }

    const DNSServiceErrorType err =
        DNSServiceGetAddrInfo(&DNSaddressRef, kDNSServiceFlagsForceMulticast, interfaceIndex, ref->protocol,
                              hostName, addrInfoCallback, this);
    const int socket = err == 0 ? DNSServiceRefSockFD(DNSaddressRef) : -1;
    if (socket == -1) {
        cleanUp();
        return;
    }
    addressNotifier = watch(socket, &Resolver::addressReady);
}

void Resolver::addrInfoCallback(DNSServiceRef, DNSServiceFlags flags, quint32 interfaceIndex,
                                DNSServiceErrorType err, const char *, const struct sockaddr *address,
                                quint32, void *context)
{
    auto *resolver = static_cast<Resolver *>(context);
    if (err != 0) {
        resolver->cleanUp();
        return;
    }
    if (!(flags & kDNSServiceFlagsAdd))
        return;

    const QZeroConfService service = resolver->zcs;
    QMutexLocker lock(&service->ip_mutex);
    service->ip = QHostAddress(address);
    lock.unlock();

    // The interface is that of this reply, which may differ from the record's. Meant.
    const QString key = service_key(service->name, interfaceIndex);
    QZeroConf *facade = resolver->ref->pub;
    if (facade->services.contains(key)) {
        emit facade->serviceUpdated(service);
    } else {
        facade->services.insert(key, service);
        emit facade->serviceAdded(service);
    }
}

void Resolver::cleanUp()
{
    release_handles();
    ref->resolvers.remove(service_key(zcs->name, zcs->interfaceIndex));
    delete this;
}

// The notifiers stay behind, since the signal of one of them may be on its way through this resolver just
// now. They are disabled before their sockets close, or Qt would complain about those.
void Resolver::release_handles()
{
    for (QSocketNotifier *notifier : {resolverNotifier, addressNotifier}) {
        if (notifier)
            notifier->setEnabled(false);
    }
    for (DNSServiceRef *handle : {&DNSresolverRef, &DNSaddressRef}) {
        if (*handle)
            DNSServiceRefDeallocate(*handle);
        *handle = nullptr;
    }
}

void parse_txt_record(const unsigned char *record, quint16 size, QMap<QByteArray, QByteArray> &entries)
{
    int remaining = size;
    while (remaining > 0) {
        const int length = *record;
        if (length > longest_txt_string || length >= remaining)
            return;
        const QList<QByteArray> parts =
            QByteArray(reinterpret_cast<const char *>(record + 1), length).split('=');
        // An entry with two "=" loses its value. Meant.
        entries.insert(parts.first(), parts.size() == 2 ? parts.last() : QByteArray());
        record += length + 1;
        remaining -= length + 1;
    }
}
