// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/address_operation.h"

#include <arpa/inet.h>
#include <avahi-common/defs.h>
#include <cstring>
#include <netinet/in.h>

#include "zeroconf/avahi/known_addresses.h"
#include "zeroconf/avahi/names.h"

namespace
{
// Avahi does not tell the remaining life of a record; this is the usual one of a host's address.
constexpr uint32_t usual_ttl_s = 120;

bool is_link_local(const in6_addr &address)
{
    return address.s6_addr[0] == 0xfe && (address.s6_addr[1] & 0xc0) == 0x80;
}

// The record's bytes as a socket address; their number tells the family.
sockaddr_storage socket_address(AvahiIfIndex interface, const std::string &bytes)
{
    sockaddr_storage storage = {};
    if (bytes.size() == sizeof(in_addr)) {
        auto &ipv4 = reinterpret_cast<sockaddr_in &>(storage);
        ipv4.sin_family = AF_INET;
        std::memcpy(&ipv4.sin_addr, bytes.data(), bytes.size());
    } else {
        auto &ipv6 = reinterpret_cast<sockaddr_in6 &>(storage);
        ipv6.sin6_family = AF_INET6;
        std::memcpy(&ipv6.sin6_addr, bytes.data(), bytes.size());
        if (is_link_local(ipv6.sin6_addr))
            ipv6.sin6_scope_id = static_cast<uint32_t>(interface);
    }
    return storage;
}
} // namespace

AddressOperation::AddressOperation(DNSServiceRef ref, bool multicast, uint32_t interfaceIndex,
                                   DNSServiceProtocol protocol, const char *host,
                                   DNSServiceGetAddrInfoReply callback, void *context)
    : Operation([=](DNSServiceErrorType code) { callback(ref, 0, 0, code, nullptr, nullptr, 0, context); })
    , ref(ref)
    , lookup_flags(multicast ? AVAHI_LOOKUP_USE_MULTICAST : AvahiLookupFlags(0))
    , interface_index(interfaceIndex)
    , protocol(protocol != 0 ? protocol : kDNSServiceProtocol_IPv4 | kDNSServiceProtocol_IPv6)
    , host(host)
    , callback(callback)
    , context(context)
{
}

AddressOperation::~AddressOperation()
{
    for (AvahiRecordBrowser *browser : browsers)
        avahi_record_browser_free(browser);
}

bool AddressOperation::answer_early(KnownAddresses &addresses)
{
    if (!(protocol & kDNSServiceProtocol_IPv4))
        return false;
    const AvahiIfIndex interface = avahi_interface(interface_index);
    const auto known = addresses.take(interface, with_dot(host));
    if (known)
        event(AVAHI_BROWSER_NEW, known->protocol, {interface, known->bytes});
    return known.has_value();
}

bool AddressOperation::start(const Daemon &daemon)
{
    return (!(protocol & kDNSServiceProtocol_IPv4) || browse(daemon.client, AVAHI_DNS_TYPE_A)) &&
           (!(protocol & kDNSServiceProtocol_IPv6) || browse(daemon.client, AVAHI_DNS_TYPE_AAAA));
}

bool AddressOperation::browse(AvahiClient *client, uint16_t record_type)
{
    const auto on_event = [](AvahiRecordBrowser *browser, AvahiIfIndex interface, AvahiProtocol protocol,
                             AvahiBrowserEvent event, const char *, uint16_t, uint16_t type, const void *data,
                             size_t size, AvahiLookupResultFlags, void *self) {
        auto *operation = static_cast<AddressOperation *>(self);
        const bool whole = size == (type == AVAHI_DNS_TYPE_A ? sizeof(in_addr) : sizeof(in6_addr));
        if (event == AVAHI_BROWSER_FAILURE)
            operation->fail(avahi_record_browser_get_client(browser));
        else if (whole && (event == AVAHI_BROWSER_NEW || event == AVAHI_BROWSER_REMOVE))
            operation->event(event, protocol, {interface, {static_cast<const char *>(data), size}});
    };
    AvahiRecordBrowser *browser =
        avahi_record_browser_new(client, avahi_interface(interface_index), AVAHI_PROTO_UNSPEC, host.c_str(),
                                 AVAHI_DNS_CLASS_IN, record_type, lookup_flags, on_event, this);
    if (browser)
        browsers.push_back(browser);
    return browser;
}

void AddressOperation::event(AvahiBrowserEvent event, AvahiProtocol protocol, const Address &address)
{
    if (event == AVAHI_BROWSER_NEW && seen.add(address, protocol))
        report(kDNSServiceFlagsAdd, address);
    else if (event == AVAHI_BROWSER_REMOVE && seen.remove(address, protocol))
        report(0, address);
}

void AddressOperation::report(DNSServiceFlags flags, const Address &address)
{
    mailbox->put(
        [=, ref = ref, host = with_dot(host), callback = callback, context = context](DNSServiceFlags more) {
            const sockaddr_storage storage = socket_address(address.first, address.second);
            callback(ref, flags | more, static_cast<uint32_t>(address.first), kDNSServiceErr_NoError,
                     host.c_str(), reinterpret_cast<const sockaddr *>(&storage),
                     flags & kDNSServiceFlagsAdd ? usual_ttl_s : 0, context);
        });
}
