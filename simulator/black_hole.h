// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <vector>

// An address and port on which a connection attempt neither succeeds nor fails: it listens with the shortest
// queue, fills that queue itself and never accepts. Needs no privilege and no filter rule. Made and destroyed
// on any thread; from the constructor's return to the destructor every further attempt hangs. Where the port
// is taken, ok() is false and nothing is open.
class Black_Hole
{
public:
    explicit Black_Hole(const QString &address, quint16 port = 0); // 0: any free one
    ~Black_Hole();
    Black_Hole(const Black_Hole &) = delete;
    Black_Hole &operator=(const Black_Hole &) = delete;

    bool ok() const { return listener >= 0; }
    quint16 port() const { return bound_port; }

private:
    bool open(const QString &address, quint16 port);
    void close_all();

    int listener = -1;
    quint16 bound_port = 0;
    std::vector<int> fillers;
};
