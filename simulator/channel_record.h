// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <mutex>

class Bell;

// A piece of bytes as one read or write moved it.
struct Recorded_Bytes {
    qint64 us = 0; // monotonic_us() when it was read, or handed to the socket
    int link = 0;  // running number of the connection, from 1
    bool incoming = true;
    QByteArray bytes;
};

// A complete incoming line with its line feed.
struct Recorded_Line {
    qint64 us = 0;
    int link = 0;
    QByteArray line;
};

struct Connection_Count {
    int accepted = 0; // since the start; clear() does not touch the counts
    int open = 0;
};

// What went over one channel of a speaker, with the times. The speaker's thread writes, any thread reads;
// each write rings the bell, so that waits look again.
class Channel_Record
{
public:
    explicit Channel_Record(Bell &bell);

    void opened();
    void closed();
    void moved(int link, bool incoming, const QByteArray &bytes);
    void line_came(int link, const QByteArray &line);
    void clear(); // forgets bytes and lines

    Connection_Count connections() const;
    QList<Recorded_Bytes> pieces() const;
    QList<Recorded_Line> timed_lines() const;
    QList<QByteArray> lines() const;
    QByteArray incoming() const; // all bytes that came in, joined

private:
    Bell &bell;
    mutable std::mutex mutex;
    Connection_Count count;
    QList<Recorded_Bytes> moved_pieces;
    QList<Recorded_Line> came_lines;
};
