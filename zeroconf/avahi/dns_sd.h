// SPDX-License-Identifier: MIT
#pragma once

// The DNS-SD calls that this program makes, with the signatures usual for them, for systems whose own library
// lacks some of them. They are carried out by Avahi's daemon.
//
// Any thread may make any call, but one ref belongs to one thread at a time. No call waits for the daemon or
// for the bus: what needs them is done by one thread in the background, and whatever goes wrong there arrives
// as an error reply. A call that fails at once gives its code and leaves the ref null.

#include <stdint.h>

#define DNSSD_API

#ifdef __cplusplus
extern "C" {
#endif

struct sockaddr;

typedef struct _DNSServiceRef_t *DNSServiceRef; // NOLINT(bugprone-reserved-identifier): the usual name
typedef uint32_t DNSServiceFlags;
typedef uint32_t DNSServiceProtocol;
typedef int32_t DNSServiceErrorType;

enum {
    kDNSServiceErr_NoError = 0,
    kDNSServiceErr_Unknown = -65537,
    kDNSServiceErr_NoMemory = -65539,
    kDNSServiceErr_BadParam = -65540,
    kDNSServiceErr_NameConflict = -65548,
    kDNSServiceErr_ServiceNotRunning = -65563,
    kDNSServiceErr_Timeout = -65568
};

enum {
    kDNSServiceFlagsMoreComing = 0x1,       // in a reply: another one is waiting already
    kDNSServiceFlagsAdd = 0x2,              // in a reply: the service or address has come; clear: it has gone
    kDNSServiceFlagsForceMulticast = 0x400, // in an address query: ask the local link
    kDNSServiceFlagsTimeout = 0x10000       // in a resolve: give up after 5 s without an answer
};

enum { kDNSServiceProtocol_IPv4 = 0x1, kDNSServiceProtocol_IPv6 = 0x2 };

// The replies. On a non-zero errorCode every text and address is null, and nothing further arrives on the
// ref.

typedef void(DNSSD_API *DNSServiceBrowseReply)(DNSServiceRef sdRef, DNSServiceFlags flags,
                                               uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                               const char *serviceName, const char *regtype,
                                               const char *replyDomain, void *context);

// port is in network byte order, txtRecord in wire format: each string behind its length byte.
typedef void(DNSSD_API *DNSServiceResolveReply)(DNSServiceRef sdRef, DNSServiceFlags flags,
                                                uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                                const char *fullname, const char *hosttarget, uint16_t port,
                                                uint16_t txtLen, const unsigned char *txtRecord,
                                                void *context);

typedef void(DNSSD_API *DNSServiceGetAddrInfoReply)(DNSServiceRef sdRef, DNSServiceFlags flags,
                                                    uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                                    const char *hostname, const struct sockaddr *address,
                                                    uint32_t ttl, void *context);

typedef void(DNSSD_API *DNSServiceRegisterReply)(DNSServiceRef sdRef, DNSServiceFlags flags,
                                                 DNSServiceErrorType errorCode, const char *name,
                                                 const char *regtype, const char *domain, void *context);

// Reports every service of a type, once for each interface on which it is seen, until the ref is released.
DNSServiceErrorType DNSSD_API DNSServiceBrowse(DNSServiceRef *sdRef, DNSServiceFlags flags,
                                               uint32_t interfaceIndex, const char *regtype,
                                               const char *domain, DNSServiceBrowseReply callBack,
                                               void *context);

// Reports host, port and TXT record of a service, and again at every change.
DNSServiceErrorType DNSSD_API DNSServiceResolve(DNSServiceRef *sdRef, DNSServiceFlags flags,
                                                uint32_t interfaceIndex, const char *name,
                                                const char *regtype, const char *domain,
                                                DNSServiceResolveReply callBack, void *context);

// Reports each address of a host as it comes and goes. A host that nobody knows gives no reply: the query
// stays open, and an address that turns up late still arrives.
DNSServiceErrorType DNSSD_API DNSServiceGetAddrInfo(DNSServiceRef *sdRef, DNSServiceFlags flags,
                                                    uint32_t interfaceIndex, DNSServiceProtocol protocol,
                                                    const char *hostname, DNSServiceGetAddrInfoReply callBack,
                                                    void *context);

// Announces a service until the ref is released. port is in network byte order. A name that is taken gets a
// number.
DNSServiceErrorType DNSSD_API DNSServiceRegister(DNSServiceRef *sdRef, DNSServiceFlags flags,
                                                 uint32_t interfaceIndex, const char *name,
                                                 const char *regtype, const char *domain, const char *host,
                                                 uint16_t port, uint16_t txtLen, const void *txtRecord,
                                                 DNSServiceRegisterReply callBack, void *context);

// The descriptor that is readable while a reply waits, or -1. It belongs to the ref.
int DNSSD_API DNSServiceRefSockFD(DNSServiceRef sdRef);

// Delivers the oldest reply on the calling thread, or does nothing if none waits; never waits for one. The
// callback may make any call, and may release any ref, the one in hand too.
DNSServiceErrorType DNSSD_API DNSServiceProcessResult(DNSServiceRef sdRef);

// Ends what the ref stands for and closes its descriptor. No reply is delivered afterwards.
void DNSSD_API DNSServiceRefDeallocate(DNSServiceRef sdRef);

#ifdef __cplusplus
}
#endif
