// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "simulator/speaker_config.h"

class Avahi_Session;

// Announces virtual speakers by DNS-SD, as Wi-Fi modules do: each under its own host name with its own
// address. All share one connection to the daemon. A daemon that goes away is waited for, and everything is
// announced anew when it is back; without a daemon nothing is announced until there is one. Without a bus to
// reach it by, nothing ever is.
//
// All functions may be called from any thread but from the sink's. What fails is told to the sink.
class Announcer
{
public:
    static constexpr int default_wait_ms = 10000;

    // sink takes one readable text for each event, on a thread of the announcer's or the caller's.
    explicit Announcer(const std::function<void(const QString &)> &sink = {});
    ~Announcer(); // withdraws everything
    Announcer(const Announcer &) = delete;
    Announcer &operator=(const Announcer &) = delete;

    // Announces the speaker by its name, host name, address, service type and TXT entries, with the HTTP port
    // that it is bound to. The key is the caller's, since a speaker may change all of these: what was
    // announced under it before is replaced.
    void announce(const QString &key, const Speaker_Config &speaker, quint16 http_port);
    void withdraw(const QString &key); // does nothing if nothing is announced under it

    // Until all that is announced stands on the network; false after the time limit.
    bool wait_until_established(int timeout_ms = default_wait_ms) const;

private:
    std::unique_ptr<Avahi_Session> session;
};
