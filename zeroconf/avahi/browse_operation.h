// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-client/lookup.h>
#include <string>
#include <tuple>

#include "zeroconf/avahi/operation.h"
#include "zeroconf/avahi/sightings.h"

// Reports the services of a type as they come and go.
class BrowseOperation : public Operation
{
public:
    BrowseOperation(DNSServiceRef ref, uint32_t interfaceIndex, const char *type, const char *domain,
                    DNSServiceBrowseReply callback, void *context);
    ~BrowseOperation() override;
    bool start(const Daemon &daemon) override;

private:
    using Service = std::tuple<AvahiIfIndex, std::string, std::string, std::string>; // name, type, domain

    void event(AvahiBrowserEvent event, AvahiProtocol protocol, const Service &service);
    void report(DNSServiceFlags flags, const Service &service);

    const DNSServiceRef ref;
    const uint32_t interface_index;
    const std::string type;
    const std::string domain;
    const DNSServiceBrowseReply callback;
    void *const context;
    AvahiServiceBrowser *browser = nullptr;
    Sightings<Service> seen;
};
