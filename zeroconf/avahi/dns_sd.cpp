// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/dns_sd.h"

#include <memory>
#include <string>
#include <utility>

#include "zeroconf/avahi/address_operation.h"
#include "zeroconf/avahi/browse_operation.h"
#include "zeroconf/avahi/poll_thread.h"
#include "zeroconf/avahi/register_operation.h"
#include "zeroconf/avahi/resolve_operation.h"

// The owner's end of an operation; the operation itself belongs to the poll thread.
struct _DNSServiceRef_t // NOLINT(bugprone-reserved-identifier): the usual name
{
    std::shared_ptr<Mailbox> mailbox;
};

namespace
{
using Handle = std::unique_ptr<_DNSServiceRef_t>;

DNSServiceErrorType open(DNSServiceRef *ref, Handle handle, std::unique_ptr<Operation> operation)
{
    handle->mailbox = operation->mailbox;
    PollThread *thread = PollThread::instance();
    if (!thread || handle->mailbox->descriptor() == -1)
        return kDNSServiceErr_NoMemory;
    thread->begin(std::move(operation));
    *ref = handle.release();
    return kDNSServiceErr_NoError;
}

bool is_empty(const char *text)
{
    return !text || !*text;
}
} // namespace

DNSServiceErrorType DNSServiceBrowse(DNSServiceRef *sdRef, DNSServiceFlags, uint32_t interfaceIndex,
                                     const char *regtype, const char *domain, DNSServiceBrowseReply callBack,
                                     void *context)
{
    if (!sdRef)
        return kDNSServiceErr_BadParam;
    *sdRef = nullptr;
    if (is_empty(regtype) || !callBack)
        return kDNSServiceErr_BadParam;
    auto handle = std::make_unique<_DNSServiceRef_t>();
    auto operation =
        std::make_unique<BrowseOperation>(handle.get(), interfaceIndex, regtype, domain, callBack, context);
    return open(sdRef, std::move(handle), std::move(operation));
}

DNSServiceErrorType DNSServiceResolve(DNSServiceRef *sdRef, DNSServiceFlags flags, uint32_t interfaceIndex,
                                      const char *name, const char *regtype, const char *domain,
                                      DNSServiceResolveReply callBack, void *context)
{
    if (!sdRef)
        return kDNSServiceErr_BadParam;
    *sdRef = nullptr;
    if (is_empty(name) || is_empty(regtype) || is_empty(domain) || !callBack)
        return kDNSServiceErr_BadParam;
    auto handle = std::make_unique<_DNSServiceRef_t>();
    auto operation =
        std::make_unique<ResolveOperation>(handle.get(), flags & kDNSServiceFlagsTimeout, interfaceIndex,
                                           name, regtype, domain, callBack, context);
    return open(sdRef, std::move(handle), std::move(operation));
}

DNSServiceErrorType DNSServiceGetAddrInfo(DNSServiceRef *sdRef, DNSServiceFlags flags,
                                          uint32_t interfaceIndex, DNSServiceProtocol protocol,
                                          const char *hostname, DNSServiceGetAddrInfoReply callBack,
                                          void *context)
{
    if (!sdRef)
        return kDNSServiceErr_BadParam;
    *sdRef = nullptr;
    constexpr DNSServiceProtocol known = kDNSServiceProtocol_IPv4 | kDNSServiceProtocol_IPv6;
    if ((protocol & ~known) != 0 || is_empty(hostname) || !callBack)
        return kDNSServiceErr_BadParam;
    auto handle = std::make_unique<_DNSServiceRef_t>();
    auto operation =
        std::make_unique<AddressOperation>(handle.get(), flags & kDNSServiceFlagsForceMulticast,
                                           interfaceIndex, protocol, hostname, callBack, context);
    return open(sdRef, std::move(handle), std::move(operation));
}

DNSServiceErrorType DNSServiceRegister(DNSServiceRef *sdRef, DNSServiceFlags, uint32_t interfaceIndex,
                                       const char *name, const char *regtype, const char *domain,
                                       const char *host, uint16_t port, uint16_t txtLen,
                                       const void *txtRecord, DNSServiceRegisterReply callBack, void *context)
{
    if (!sdRef)
        return kDNSServiceErr_BadParam;
    *sdRef = nullptr;
    if (is_empty(regtype) || !callBack || (txtLen > 0 && !txtRecord))
        return kDNSServiceErr_BadParam;
    std::string txt(static_cast<const char *>(txtRecord), txtLen);
    auto handle = std::make_unique<_DNSServiceRef_t>();
    auto operation = std::make_unique<RegisterOperation>(handle.get(), interfaceIndex, name, regtype, domain,
                                                         host, port, std::move(txt), callBack, context);
    return open(sdRef, std::move(handle), std::move(operation));
}

int DNSServiceRefSockFD(DNSServiceRef sdRef)
{
    return sdRef ? sdRef->mailbox->descriptor() : -1;
}

DNSServiceErrorType DNSServiceProcessResult(DNSServiceRef sdRef)
{
    if (!sdRef)
        return kDNSServiceErr_BadParam;
    // Held on to: the callback may release the ref.
    const std::shared_ptr<Mailbox> mailbox = sdRef->mailbox;
    mailbox->deliver();
    return kDNSServiceErr_NoError;
}

void DNSServiceRefDeallocate(DNSServiceRef sdRef)
{
    if (!sdRef)
        return;
    sdRef->mailbox->close();
    PollThread::instance()->end(sdRef->mailbox);
    delete sdRef;
}
