// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-client/lookup.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "zeroconf/avahi/operation.h"

// Reports host, port and TXT record of one service, and again when they change. Addresses are another
// operation's business, but its question follows: so the daemon is asked for an IPv4 address as well, which
// is kept for it. The daemon answers nothing then until there is one, so after a while it is asked without.
class ResolveOperation : public Operation
{
public:
    // limited: fails with kDNSServiceErr_Timeout if 5 s bring no answer.
    ResolveOperation(DNSServiceRef ref, bool limited, uint32_t interfaceIndex, const char *name,
                     const char *type, const char *domain, DNSServiceResolveReply callback, void *context);
    ~ResolveOperation() override;
    bool start(const Daemon &daemon) override;

private:
    struct Answer {
        std::string full_name;
        std::string host;
        uint16_t port = 0;
        std::vector<unsigned char> txt; // wire format
        bool operator==(const Answer &other) const;
    };

    AvahiServiceResolver *resolve(AvahiProtocol address, AvahiLookupFlags flags);
    void ask_without_address();
    void wait_no_longer();
    void failed();
    void found(AvahiIfIndex interface, AvahiProtocol protocol, const Answer &answer,
               const AvahiAddress *address);

    const DNSServiceRef ref;
    const uint32_t interface_index;
    const std::string name;
    const std::string type;
    const std::string domain;
    const DNSServiceResolveReply callback;
    void *const context;
    Daemon daemon = {};
    AvahiServiceResolver *resolver = nullptr;
    AvahiTimeout *waiting = nullptr;                                  // for an answer with an address
    std::optional<std::pair<AvahiIfIndex, std::string>> told_address; // interface and host of it
    Answer reported;
};
