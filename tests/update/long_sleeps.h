// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <functional>

// A test program that links long_sleeps.cpp does not sleep for a second or more: such a sleep is noted and
// over at once. Shorter ones are slept.
namespace long_sleeps
{
QList<qint64> taken(); // ms, in order, since the last forget()
void forget();
// Called instead of sleeping, on the thread that would have slept. Set while nobody sleeps.
extern std::function<void()> on_sleep;
} // namespace long_sleeps
