// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/resolve_operation.h"

#include <arpa/inet.h>
#include <avahi-common/domain.h>
#include <avahi-common/error.h>
#include <tuple>

#include "zeroconf/avahi/names.h"

namespace
{
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
    if (resolver)
        avahi_service_resolver_free(resolver);
}

bool ResolveOperation::start(AvahiClient *client)
{
    const auto on_event = [](AvahiServiceResolver *resolver, AvahiIfIndex interface, AvahiProtocol,
                             AvahiResolverEvent event, const char *name, const char *type, const char *domain,
                             const char *host, const AvahiAddress *, uint16_t port, AvahiStringList *txt,
                             AvahiLookupResultFlags, void *self) {
        auto *operation = static_cast<ResolveOperation *>(self);
        AvahiClient *client = avahi_service_resolver_get_client(resolver);
        if (event == AVAHI_RESOLVER_FOUND)
            operation->found(interface,
                             {full_name(name, type, domain), with_dot(host), htons(port), wire_format(txt)});
        // The daemon's own time-out says nothing new: it goes on listening, and the mailbox keeps the time
        // limit.
        else if (avahi_client_errno(client) != AVAHI_ERR_TIMEOUT)
            operation->fail(client);
    };
    resolver = avahi_service_resolver_new(client, avahi_interface(interface_index), AVAHI_PROTO_UNSPEC,
                                          name.c_str(), type.c_str(), domain.c_str(), AVAHI_PROTO_UNSPEC,
                                          AVAHI_LOOKUP_NO_ADDRESS, on_event, this);
    return resolver;
}

void ResolveOperation::found(AvahiIfIndex interface, const Answer &answer)
{
    // The same answer over IPv4 and over IPv6 is one answer.
    if (answer == reported)
        return;
    reported = answer;
    mailbox->put([=, ref = ref, callback = callback, context = context](DNSServiceFlags more) {
        callback(ref, more, static_cast<uint32_t>(interface), kDNSServiceErr_NoError,
                 answer.full_name.c_str(), answer.host.c_str(), answer.port,
                 static_cast<uint16_t>(answer.txt.size()), answer.txt.data(), context);
    });
}
