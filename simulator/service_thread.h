// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QThread>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

// A thread with an event loop on which other threads have work done. It runs from the constructor to the
// destructor. The hand-over has a lock of its own, beside the event that wakes the loop, so that what the
// caller wrote before is seen by the work and by a sanitizer.
class Service_Thread
{
public:
    explicit Service_Thread(const QString &name);
    ~Service_Thread(); // ends the loop and waits; not to be called on the thread itself
    Service_Thread(const Service_Thread &) = delete;
    Service_Thread &operator=(const Service_Thread &) = delete;

    // Does the work on the thread and returns when it is done; at once where the caller is that thread.
    void call(const std::function<void()> &work);

    // The same with a result.
    template<class Result>
    Result ask(const std::function<Result()> &work)
    {
        Result result{};
        call([&] { result = work(); });
        return result;
    }

private:
    struct Task {
        const std::function<void()> *work;
        bool done;
    };
    void drain();

    QThread thread;
    QObject *context; // lives on the thread, receives the wake-ups
    std::mutex mutex;
    std::condition_variable finished;
    std::deque<Task *> tasks;
};
