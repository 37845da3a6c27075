// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The n-th loopback address (1 to 254) of this process, as "127.a.b.n". a and b come from the process id, so
// test programs that run side by side have addresses of their own; never 127.0.x.y, where the machine's own
// services stand. Any thread.
QString own_loopback(int n);
