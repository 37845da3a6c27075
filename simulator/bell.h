// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

// Rung whenever something changed that somebody may wait for. A condition is looked at again after each ring
// and without any lock held, so it may call back into the thread that rings. Any thread.
class Bell
{
public:
    void ring();

    // True as soon as condition() is; false when it still is not after timeout_ms.
    bool wait(int timeout_ms, const std::function<bool()> &condition);

private:
    std::mutex mutex;
    std::condition_variable rung;
    unsigned long rings = 0;
};
