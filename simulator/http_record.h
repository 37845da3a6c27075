// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <mutex>

#include "simulator/channel_record.h"
#include "simulator/http_message.h"

class Bell;

// The requests that an HTTP server took, and its connections. The server's thread writes, any thread reads;
// each write rings the bell.
class Http_Record
{
public:
    explicit Http_Record(Bell &bell);

    void opened();
    void closed();
    void add(const Http_Request &request);
    void clear(); // forgets the requests

    QList<Http_Request> requests() const;
    Connection_Count connections() const;

private:
    Bell &bell;
    mutable std::mutex mutex;
    QList<Http_Request> taken;
    Connection_Count count;
};
