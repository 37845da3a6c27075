// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "zeroconf/avahi/mailbox.h"

struct AvahiClient;
struct AvahiPoll;
class KnownAddresses;

// What operations work with, all of the poll thread.
struct Daemon {
    AvahiClient *client;
    const AvahiPoll *poll;
    KnownAddresses *addresses;
};

// What one ref stands for: a question to the daemon, or an announcement. Made by the caller's thread with the
// arguments of the call; from then on the poll thread alone touches it, since Avahi's calls wait for the
// daemon. It reports to its mailbox.
class Operation
{
public:
    explicit Operation(Mailbox::ErrorReply error_reply);
    // Frees the Avahi object.
    virtual ~Operation() = default;
    Operation(const Operation &) = delete;
    Operation &operator=(const Operation &) = delete;

    // Makes the Avahi object. False on failure, with the reason in the client.
    virtual bool start(const Daemon &daemon) = 0;

    // Before it starts, and without a question to the daemon: reports what is known already. True if there
    // was something: then the start has time until nothing else waits.
    virtual bool answer_early(KnownAddresses &) { return false; }

    // Whether it goes ahead of what waits: the last step of a service that is found already, before the first
    // one of others.
    virtual bool goes_first() const { return false; }

    const std::shared_ptr<Mailbox> mailbox;

protected:
    // Reports the client's last error as the end of the ref.
    void fail(AvahiClient *client);
};

// The dns_sd code for one of Avahi's error codes.
DNSServiceErrorType dns_sd_error(int avahi_error);

// Avahi's word for an interface: dns_sd says 0 where it means all.
int avahi_interface(uint32_t interfaceIndex);
