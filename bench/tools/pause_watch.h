// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <condition_variable>
#include <mutex>
#include <thread>

// How long the event loop of the thread that makes it leaves an event waiting: what a user would feel as a
// window that does not answer. A thread of its own posts an event, waits until it has been taken, rests for a
// millisecond and posts the next one.
class Pause_Watch : public QObject
{
public:
    Pause_Watch();
    ~Pause_Watch() override;

    // Since it was made. The second is what the watched thread itself used of the processor between two of
    // these events: on a busy machine the first one counts the others' time as well.
    qint64 longest_us() const { return longest; }
    qint64 longest_cpu_us() const { return longest_cpu; }

private:
    void post_again_and_again();
    void take(qint64 posted_us);

    qint64 longest = 0;
    qint64 longest_cpu = 0;
    qint64 last_cpu;
    std::mutex mutex;
    std::condition_variable changed;
    bool taken = true;
    bool ending = false;
    std::thread poster;
};
