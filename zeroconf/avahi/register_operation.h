// SPDX-License-Identifier: MIT
#pragma once

#include <avahi-client/publish.h>
#include <string>

#include "zeroconf/avahi/operation.h"

// Announces one service. A name that is taken, here or elsewhere on the link, is counted up until one is
// free.
class RegisterOperation : public Operation
{
public:
    // port in network byte order; txt in wire format.
    RegisterOperation(DNSServiceRef ref, uint32_t interfaceIndex, const char *name, const char *type,
                      const char *domain, const char *host, uint16_t port, std::string txt,
                      DNSServiceRegisterReply callback, void *context);
    ~RegisterOperation() override;
    bool start(const Daemon &daemon) override;

private:
    void state_changed(AvahiClient *client, AvahiEntryGroupState state);
    void announce(); // a failure arrives in the mailbox
    int add_service();
    void take_other_name();
    void report();

    const DNSServiceRef ref;
    const uint32_t interface_index;
    std::string name;
    const std::string type;
    const std::string domain;
    const std::string host;
    const uint16_t port;
    const std::string txt;
    const DNSServiceRegisterReply callback;
    void *const context;
    AvahiEntryGroup *group = nullptr;
};
