// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <chrono>

// Microseconds of a clock that never goes back; only differences mean something. Any thread.
inline qint64 monotonic_us()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}
