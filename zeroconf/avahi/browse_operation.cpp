// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/browse_operation.h"

#include "zeroconf/avahi/names.h"

BrowseOperation::BrowseOperation(DNSServiceRef ref, uint32_t interfaceIndex, const char *type,
                                 const char *domain, DNSServiceBrowseReply callback, void *context)
    : Operation(
          [=](DNSServiceErrorType code) { callback(ref, 0, 0, code, nullptr, nullptr, nullptr, context); })
    , ref(ref)
    , interface_index(interfaceIndex)
    , type(type)
    , domain(or_empty(domain))
    , callback(callback)
    , context(context)
{
}

BrowseOperation::~BrowseOperation()
{
    if (browser)
        avahi_service_browser_free(browser);
}

bool BrowseOperation::start(const Daemon &daemon)
{
    const auto on_event = [](AvahiServiceBrowser *browser, AvahiIfIndex interface, AvahiProtocol protocol,
                             AvahiBrowserEvent event, const char *name, const char *type, const char *domain,
                             AvahiLookupResultFlags, void *self) {
        auto *operation = static_cast<BrowseOperation *>(self);
        if (event == AVAHI_BROWSER_FAILURE)
            operation->fail(avahi_service_browser_get_client(browser));
        else if (event == AVAHI_BROWSER_NEW || event == AVAHI_BROWSER_REMOVE)
            operation->event(event, protocol, {interface, name, with_dot(type), with_dot(domain)});
    };
    browser = avahi_service_browser_new(daemon.client, avahi_interface(interface_index), AVAHI_PROTO_UNSPEC,
                                        type.c_str(), or_null(domain), AvahiLookupFlags(0), on_event, this);
    return browser;
}

void BrowseOperation::event(AvahiBrowserEvent event, AvahiProtocol protocol, const Service &service)
{
    if (event == AVAHI_BROWSER_NEW && seen.add(service, protocol))
        report(kDNSServiceFlagsAdd, service);
    else if (event == AVAHI_BROWSER_REMOVE && seen.remove(service, protocol))
        report(0, service);
}

void BrowseOperation::report(DNSServiceFlags flags, const Service &service)
{
    mailbox->put([=, ref = ref, callback = callback, context = context](DNSServiceFlags more) {
        const auto &[interface, name, type, domain] = service;
        callback(ref, flags | more, static_cast<uint32_t>(interface), kDNSServiceErr_NoError, name.c_str(),
                 type.c_str(), domain.c_str(), context);
    });
}
