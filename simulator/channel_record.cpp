// SPDX-License-Identifier: MIT
#include "simulator/channel_record.h"

#include "simulator/bell.h"
#include "simulator/monotonic.h"

using Lock = std::lock_guard<std::mutex>;

Channel_Record::Channel_Record(Bell &bell)
    : bell(bell)
{
}

void Channel_Record::opened()
{
    {
        const Lock lock(mutex);
        count.accepted++;
        count.open++;
    }
    bell.ring();
}

void Channel_Record::closed()
{
    {
        const Lock lock(mutex);
        count.open--;
    }
    bell.ring();
}

void Channel_Record::moved(int link, bool incoming, const QByteArray &bytes)
{
    {
        const Lock lock(mutex);
        moved_pieces.append({monotonic_us(), link, incoming, bytes});
    }
    bell.ring();
}

void Channel_Record::line_came(int link, const QByteArray &line)
{
    {
        const Lock lock(mutex);
        came_lines.append({monotonic_us(), link, line});
    }
    bell.ring();
}

void Channel_Record::clear()
{
    const Lock lock(mutex);
    moved_pieces.clear();
    came_lines.clear();
}

Connection_Count Channel_Record::connections() const
{
    const Lock lock(mutex);
    return count;
}

QList<Recorded_Bytes> Channel_Record::pieces() const
{
    const Lock lock(mutex);
    return moved_pieces;
}

QList<Recorded_Line> Channel_Record::timed_lines() const
{
    const Lock lock(mutex);
    return came_lines;
}

QList<QByteArray> Channel_Record::lines() const
{
    const Lock lock(mutex);
    QList<QByteArray> all;
    for (const Recorded_Line &line : came_lines)
        all.append(line.line);
    return all;
}

QByteArray Channel_Record::incoming() const
{
    const Lock lock(mutex);
    QByteArray all;
    for (const Recorded_Bytes &piece : moved_pieces)
        if (piece.incoming)
            all += piece.bytes;
    return all;
}
