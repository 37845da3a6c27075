// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-client/lookup.h>
#include <string>
#include <utility>
#include <vector>

#include "zeroconf/avahi/operation.h"
#include "zeroconf/avahi/sightings.h"

// Reports the addresses of a host as they come and go, by a browse for its address records: unlike a host
// name lookup it brings every address, and their loss. It has no end of its own; a host that is not there yet
// may come.
class AddressOperation : public Operation
{
public:
    // multicast: ask the local link, whatever the domain. protocol: kDNSServiceProtocol_..., 0 for both.
    AddressOperation(DNSServiceRef ref, bool multicast, uint32_t interfaceIndex, DNSServiceProtocol protocol,
                     const char *host, DNSServiceGetAddrInfoReply callback, void *context);
    ~AddressOperation() override;
    bool start(const Daemon &daemon) override;
    bool answer_early(KnownAddresses &addresses) override;
    bool goes_first() const override { return true; }

private:
    using Address = std::pair<AvahiIfIndex, std::string>; // with the bytes of the record

    bool browse(AvahiClient *client, uint16_t record_type);
    void event(AvahiBrowserEvent event, AvahiProtocol protocol, const Address &address);
    void report(DNSServiceFlags flags, const Address &address);

    const DNSServiceRef ref;
    const AvahiLookupFlags lookup_flags;
    const uint32_t interface_index;
    const DNSServiceProtocol protocol;
    const std::string host;
    const DNSServiceGetAddrInfoReply callback;
    void *const context;
    std::vector<AvahiRecordBrowser *> browsers;
    Sightings<Address> seen;
};
