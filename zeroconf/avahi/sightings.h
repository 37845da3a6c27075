// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-common/address.h>
#include <map>
#include <set>

// Avahi sees everything once for each protocol, IPv4 and IPv6, that leads to it on an interface. dns_sd knows
// interfaces only: there a thing comes with the first sighting and goes with the last.
template<typename Thing>
class Sightings
{
public:
    // True if the thing was not seen before.
    bool add(const Thing &thing, AvahiProtocol protocol)
    {
        std::set<AvahiProtocol> &protocols = seen[thing];
        return protocols.insert(protocol).second && protocols.size() == 1;
    }

    // True if this was the last that was seen of the thing.
    bool remove(const Thing &thing, AvahiProtocol protocol)
    {
        const auto found = seen.find(thing);
        if (found == seen.end() || found->second.erase(protocol) == 0 || !found->second.empty())
            return false;
        seen.erase(found);
        return true;
    }

private:
    std::map<Thing, std::set<AvahiProtocol>> seen;
};
