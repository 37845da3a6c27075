// SPDX-License-Identifier: MIT
#include "simulator/http_record.h"

#include "simulator/bell.h"

using Lock = std::lock_guard<std::mutex>;

Http_Record::Http_Record(Bell &bell)
    : bell(bell)
{
}

void Http_Record::opened()
{
    {
        const Lock lock(mutex);
        count.accepted++;
        count.open++;
    }
    bell.ring();
}

void Http_Record::closed()
{
    {
        const Lock lock(mutex);
        count.open--;
    }
    bell.ring();
}

void Http_Record::add(const Http_Request &request)
{
    {
        const Lock lock(mutex);
        taken.append(request);
    }
    bell.ring();
}

void Http_Record::clear()
{
    const Lock lock(mutex);
    taken.clear();
}

QList<Http_Request> Http_Record::requests() const
{
    const Lock lock(mutex);
    return taken;
}

Connection_Count Http_Record::connections() const
{
    const Lock lock(mutex);
    return count;
}
