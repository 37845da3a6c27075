// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>

#include "zeroconf/dns_sd_port.h"
#include "zeroconf/qzeroconfservice.h"

class QSocketNotifier;
class QZeroConfPrivate;

// Takes one service from its browse reply to its addresses, and then stays as the listener for later replies
// until the service goes away or something fails; failures are silent. GUI thread only.
//
// cleanUp deletes the resolver at once, also while its notifier's signal is being delivered or a callback of
// it is on the stack: whoever calls it touches nothing of the resolver afterwards. The engine is the parent,
// so resolvers that nothing refers to any more go with it.
class Resolver : public QObject
{
    Q_OBJECT

public:
    Resolver(QZeroConfPrivate *engine, const QZeroConfService &service);
    ~Resolver() override;

    // Begins the resolve stage. On failure the resolver is gone.
    void start();
    // Releases the handles, takes the key out of the engine's resolvers and deletes the resolver. The record
    // lives on.
    void cleanUp();

    static void DNSSD_API resolverCallback(DNSServiceRef, DNSServiceFlags, quint32 interfaceIndex,
                                           DNSServiceErrorType err, const char *, const char *hostName,
                                           quint16 port, quint16 txtLen, const unsigned char *txtRecord,
                                           void *context);
    static void DNSSD_API addrInfoCallback(DNSServiceRef, DNSServiceFlags flags, quint32 interfaceIndex,
                                           DNSServiceErrorType err, const char *,
                                           const struct sockaddr *address, quint32, void *context);

    QZeroConfService zcs;                        // the record being filled
    QZeroConfPrivate *ref;                       // the engine
    DNSServiceRef DNSresolverRef = nullptr;      // resolve handle
    DNSServiceRef DNSaddressRef = nullptr;       // address handle
    QSocketNotifier *resolverNotifier = nullptr; // on DNSresolverRef
    QSocketNotifier *addressNotifier = nullptr;  // on DNSaddressRef

public Q_SLOTS:
    void resolverReady();
    void addressReady();

private:
    QSocketNotifier *watch(int socket, void (Resolver::*ready)());
    void start_addresses(quint32 interfaceIndex, const char *hostName);
    void release_handles();
};

// Adds the entries of a TXT record in wire format to entries. An entry with exactly one "=" is a key and its
// value; of any other the part before the first "=" becomes a key with an empty value. A string whose length
// is above 127 or reaches past the end of the record ends the parse.
void parse_txt_record(const unsigned char *record, quint16 size, QMap<QByteArray, QByteArray> &entries);
