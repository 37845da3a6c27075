// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include "zeroconf/avahi/dns_sd.h"

// The replies of one ref on their way from the poll thread, which puts them in, to the ref's owner, who takes
// them out on his own thread. Its descriptor is readable while there is something to take. Any thread may
// call; nothing here waits for longer than it takes to move a reply.
//
// The descriptor is a timer, so that one descriptor serves for the replies and for the time limit alike, and
// the limit holds even while the poll thread waits for a daemon that hangs.
class Mailbox
{
public:
    // Calls the owner's callback. more is kDNSServiceFlagsMoreComing or 0, to be put among its flags.
    using Reply = std::function<void(DNSServiceFlags more)>;
    // Calls the owner's callback with an error and null texts.
    using ErrorReply = std::function<void(DNSServiceErrorType code)>;

    // After failure to get a descriptor, descriptor() is -1 and the mailbox is of no use.
    explicit Mailbox(ErrorReply error_reply);
    ~Mailbox();
    Mailbox(const Mailbox &) = delete;
    Mailbox &operator=(const Mailbox &) = delete;

    // Lets the ref fail with kDNSServiceErr_Timeout unless a reply is put in within 5 s from now.
    void limit_time();
    // Queues a reply. Dropped once the ref has failed or the mailbox is closed.
    void put(Reply reply);
    // Queues the error reply as the last of all. Only the first failure counts.
    void fail(DNSServiceErrorType code);

    int descriptor() const;
    bool closed() const;
    // Delivers the oldest reply, if there is one. The callback may close the mailbox and let go of it.
    void deliver();
    // Closes the descriptor and drops what is queued.
    void close();

private:
    Reply take();
    void show_state();

    mutable std::mutex mutex;
    int fd;
    ErrorReply error_reply;
    std::deque<Reply> replies;
    timespec deadline = {}; // by the monotonic clock; only while limited
    bool limited = false;
    bool failed = false;
};
