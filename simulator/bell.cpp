// SPDX-License-Identifier: MIT
#include "simulator/bell.h"

#include <chrono>

void Bell::ring()
{
    const std::lock_guard<std::mutex> lock(mutex);
    rings++;
    rung.notify_all();
}

bool Bell::wait(int timeout_ms, const std::function<bool()> &condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    for (;;) {
        unsigned long seen = 0;
        {
            const std::lock_guard<std::mutex> lock(mutex);
            seen = rings;
        }
        if (condition())
            return true;
        std::unique_lock<std::mutex> lock(mutex);
        if (!rung.wait_until(lock, end, [&] { return rings != seen; }))
            return false;
    }
}
