// SPDX-License-Identifier: MIT
#include "bench/tools/pause_watch.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "simulator/monotonic.h"

namespace
{
constexpr std::chrono::milliseconds rest(1);

qint64 own_cpu_us()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000000LL + time.tv_nsec / 1000;
}
} // namespace

Pause_Watch::Pause_Watch()
    : last_cpu(own_cpu_us())
    , poster([this] { post_again_and_again(); })
{
}

Pause_Watch::~Pause_Watch()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ending = true;
    }
    changed.notify_all();
    poster.join();
}

void Pause_Watch::post_again_and_again()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (!ending) {
        taken = false;
        const qint64 now = monotonic_us();
        QMetaObject::invokeMethod(
            this, [this, now] { take(now); }, Qt::QueuedConnection);
        changed.wait(lock, [this] { return taken || ending; });
        changed.wait_for(lock, rest, [this] { return ending; });
    }
}

void Pause_Watch::take(qint64 posted_us)
{
    longest = std::max(longest, monotonic_us() - posted_us);
    const qint64 cpu = own_cpu_us();
    longest_cpu = std::max(longest_cpu, cpu - last_cpu);
    last_cpu = cpu;
    const std::lock_guard<std::mutex> lock(mutex);
    taken = true;
    changed.notify_all();
}
