// SPDX-License-Identifier: MIT
#include "tests/e2e/probe/lateness.h"

#include <algorithm>

Lateness::Lateness()
{
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(interval_ms);
    connect(&timer, &QTimer::timeout, this, &Lateness::tick);
}

void Lateness::start()
{
    if (!scheduling.isOpen())
        scheduling.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    last = 0;
    worst = 0;
    queued_at_tick = queued();
    since_tick.start();
    timer.start();
}

double Lateness::latest()
{
    if (!timer.isActive())
        return 0;
    return std::max(last, overdue());
}

double Lateness::take_worst()
{
    if (timer.isActive() && overdue() > 0)
        tick(); // else what is told now would be told again, as that of a tick to come
    const double result = worst;
    worst = 0;
    return result;
}

void Lateness::tick()
{
    last = overdue();
    worst = std::max(worst, last);
    queued_at_tick = queued();
    since_tick.start();
}

double Lateness::overdue()
{
    const double elapsed = static_cast<double>(since_tick.nsecsElapsed()) / 1e6;
    return std::max(0.0, elapsed - (queued() - queued_at_tick) - interval_ms);
}

// The second of the numbers, in ns.
double Lateness::queued()
{
    if (!scheduling.isOpen() || !scheduling.seek(0))
        return 0;
    return scheduling.read(100).split(' ').value(1).toDouble() / 1e6;
}
