// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/resolve_operation.h"

#include <arpa/inet.h>
#include <avahi-common/domain.h>
#include <avahi-common/error.h>
#include <avahi-common/timeval.h>
#include <avahi-common/watch.h>
#include <tuple>

#include "zeroconf/avahi/known_addresses.h"
#include "zeroconf/avahi/names.h"

namespace
{
constexpr unsigned wait_for_address_ms = 1000;

// Avahi's own function is of no use here: it takes a list for reversed, and lists from the daemon are not.
std::vector<unsigned char> wire_format(AvahiStringList *txt)
{
    std::vector<unsigned char> bytes;
    for (; txt; txt = avahi_string_list_get_next(txt)) {
        const uint8_t *text = avahi_string_list_get_text(txt);
        const size_t size = avahi_string_list_get_size(txt);
        bytes.push_back(static_cast<unsigned char>(size));
        bytes.insert(bytes.end(), text, text + size);
    }
    // A TXT record without entries is one empty string.
    if (bytes.empty())
        bytes.push_back(0);
    return bytes;
}

std::string full_name(const char *name, const char *type, const char *domain)
{
    char buffer[AVAHI_DOMAIN_NAME_MAX];
    if (avahi_service_name_join(buffer, sizeof buffer, name, type, domain) != AVAHI_OK)
        return {};
    return with_dot(buffer);
}

std::string bytes_of(const AvahiIPv4Address &address)
{
    return {reinterpret_cast<const char *>(&address.address), sizeof address.address};
}
} // namespace

bool ResolveOperation::Answer::operator==(const Answer &other) const
{
    return std::tie(full_name, host, port, txt) ==
           std::tie(other.full_name, other.host, other.port, other.txt);
}

ResolveOperation::ResolveOperation(DNSServiceRef ref, bool limited, uint32_t interfaceIndex, const char *name,
                                   const char *type, const char *domain, DNSServiceResolveReply callback,
                                   void *context)
    : Operation([=](DNSServiceErrorType code) {
        callback(ref, 0, 0, code, nullptr, nullptr, 0, 0, nullptr, context);
    })
    , ref(ref)
    , interface_index(interfaceIndex)
    , name(name)
    , type(type)
    , domain(domain)
    , callback(callback)
    , context(context)
{
    if (limited)
        mailbox->limit_time();
}

ResolveOperation::~ResolveOperation()
{
    wait_no_longer();
    if (resolver)
        avahi_service_resolver_free(resolver);
    // Nobody may ask for it any more, and by the time that somebody else does it may be wrong.
    if (told_address)
        daemon.addresses->take(told_address->first, told_address->second);
}

bool ResolveOperation::start(const Daemon &at)
{
    daemon = at;
    const auto on_timeout = [](AvahiTimeout *, void *self) {
        static_cast<ResolveOperation *>(self)->ask_without_address();
    };
    timeval moment;
    waiting = daemon.poll->timeout_new(daemon.poll, avahi_elapse_time(&moment, wait_for_address_ms, 0),
                                       on_timeout, this);
    resolver = waiting ? resolve(AVAHI_PROTO_INET, AvahiLookupFlags(0))
                       : resolve(AVAHI_PROTO_UNSPEC, AVAHI_LOOKUP_NO_ADDRESS);
    return resolver;
}

void ResolveOperation::ask_without_address()
{
    wait_no_longer();
    if (mailbox->closed()) // a call to a daemon that hangs takes long
        return;
    if (resolver)
        avahi_service_resolver_free(resolver);
    resolver = resolve(AVAHI_PROTO_UNSPEC, AVAHI_LOOKUP_NO_ADDRESS);
    if (!resolver)
        fail(daemon.client);
}

void ResolveOperation::wait_no_longer()
{
    if (waiting)
        daemon.poll->timeout_free(waiting);
    waiting = nullptr;
}

AvahiServiceResolver *ResolveOperation::resolve(AvahiProtocol address, AvahiLookupFlags flags)
{
    const auto on_event = [](AvahiServiceResolver *, AvahiIfIndex interface, AvahiProtocol protocol,
                             AvahiResolverEvent event, const char *name, const char *type, const char *domain,
                             const char *host, const AvahiAddress *address, uint16_t port,
                             AvahiStringList *txt, AvahiLookupResultFlags, void *self) {
        auto *operation = static_cast<ResolveOperation *>(self);
        if (event == AVAHI_RESOLVER_FOUND)
            operation->found(interface, protocol,
                             {full_name(name, type, domain), with_dot(host), htons(port), wire_format(txt)},
                             address);
        // The daemon's own time-out says nothing new: it goes on listening, and the mailbox keeps the time
        // limit.
        else if (avahi_client_errno(operation->daemon.client) != AVAHI_ERR_TIMEOUT)
            operation->failed();
    };
    return avahi_service_resolver_new(daemon.client, avahi_interface(interface_index), AVAHI_PROTO_UNSPEC,
                                      name.c_str(), type.c_str(), domain.c_str(), address, flags, on_event,
                                      this);
}

// A service is resolved also where its host's address is refused.
void ResolveOperation::failed()
{
    if (waiting)
        ask_without_address();
    else
        fail(daemon.client);
}

void ResolveOperation::found(AvahiIfIndex interface, AvahiProtocol protocol, const Answer &answer,
                             const AvahiAddress *address)
{
    wait_no_longer();
    // The same answer over IPv4 and over IPv6 is one answer.
    if (answer == reported)
        return;
    reported = answer;
    if (address && address->proto == AVAHI_PROTO_INET && !mailbox->closed()) {
        told_address = {interface, answer.host};
        daemon.addresses->put(interface, answer.host, {protocol, bytes_of(address->data.ipv4)});
    }
    mailbox->put([=, ref = ref, callback = callback, context = context](DNSServiceFlags more) {
        callback(ref, more, static_cast<uint32_t>(interface), kDNSServiceErr_NoError,
                 answer.full_name.c_str(), answer.host.c_str(), answer.port,
                 static_cast<uint16_t>(answer.txt.size()), answer.txt.data(), context);
    });
}
