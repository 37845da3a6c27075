// SPDX-License-Identifier: MIT
#pragma once

#include <poll.h>

// Whether a descriptor is or becomes readable within a time; 0 only looks.
inline bool is_readable(int fd, int wait_ms)
{
    pollfd entry = {fd, POLLIN, 0};
    return ::poll(&entry, 1, wait_ms) == 1 && (entry.revents & POLLIN);
}

// How long a test waits for what must come.
constexpr int patience_ms = 10000;
