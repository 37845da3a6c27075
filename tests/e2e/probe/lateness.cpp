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
    last = 0;
    worst = 0;
    since_tick.start();
    timer.start();
}

double Lateness::latest() const
{
    if (!timer.isActive())
        return 0;
    return std::max(last, static_cast<double>(since_tick.elapsed()) - interval_ms);
}

double Lateness::take_worst()
{
    const double result = std::max(worst, latest());
    worst = 0;
    return result;
}

void Lateness::tick()
{
    last = std::max(0.0, static_cast<double>(since_tick.nsecsElapsed()) / 1e6 - interval_ms);
    worst = std::max(worst, last);
    since_tick.start();
}
