// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-client/lookup.h>
#include <string>
#include <vector>

#include "zeroconf/avahi/operation.h"

// Reports host, port and TXT record of one service, and again when they change. Addresses are another
// operation's business.
class ResolveOperation : public Operation
{
public:
    // limited: fails with kDNSServiceErr_Timeout if 5 s bring no answer.
    ResolveOperation(DNSServiceRef ref, bool limited, uint32_t interfaceIndex, const char *name,
                     const char *type, const char *domain, DNSServiceResolveReply callback, void *context);
    ~ResolveOperation() override;
    bool start(AvahiClient *client) override;

private:
    struct Answer {
        std::string full_name;
        std::string host;
        uint16_t port = 0;
        std::vector<unsigned char> txt; // wire format
        bool operator==(const Answer &other) const;
    };

    void found(AvahiIfIndex interface, const Answer &answer);

    const DNSServiceRef ref;
    const uint32_t interface_index;
    const std::string name;
    const std::string type;
    const std::string domain;
    const DNSServiceResolveReply callback;
    void *const context;
    AvahiServiceResolver *resolver = nullptr;
    Answer reported;
};
