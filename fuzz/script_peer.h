// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QString>
#include <mutex>
#include <thread>
#include <vector>

// A speaker's host for the blocking links of the program: it takes both channels on a loopback address and
// gives each query the next reply of the script, whatever it asks. A reply that a link might wait behind for
// more is followed by the end of the connection; behind the script every reply is whole and empty. A thread
// of its own, to the end of the process.
class Script_Peer
{
public:
    explicit Script_Peer(const QString &address);

    void set_script(const QByteArrayList &replies); // any thread

private:
    struct Connection {
        int socket;
        bool host;
    };

    void serve();
    void take_connection(int listener, bool host);
    bool serve_connection(const Connection &connection); // false once it is over
    QByteArray next_reply();

    int at_listener;
    int host_listener;
    std::vector<Connection> connections;
    std::mutex mutex;
    QByteArrayList script; // by the mutex
    std::thread thread;
};
