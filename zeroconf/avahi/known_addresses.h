// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-common/address.h>
#include <map>
#include <optional>
#include <string>
#include <utility>

// Addresses that resolvers were told beside what they asked for, each kept for the address query that
// follows. Such a query answers with it at once: the daemon takes 10 ms before it tells a new browse what it
// knows. For the poll thread alone.
class KnownAddresses
{
public:
    struct Address {
        AvahiProtocol protocol; // over which it was told
        std::string bytes;      // of the address record
    };

    void put(AvahiIfIndex interface, const std::string &host, const Address &address)
    {
        addresses[{interface, host}] = address;
    }

    // Each is told once: from then on the browse of the query knows better.
    std::optional<Address> take(AvahiIfIndex interface, const std::string &host)
    {
        const auto entry = addresses.extract({interface, host});
        return entry ? std::optional(entry.mapped()) : std::nullopt;
    }

private:
    std::map<std::pair<AvahiIfIndex, std::string>, Address> addresses;
};
