// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTimer>

// Measures how late the GUI thread runs a timer of 50 ms: what a user would feel as a window that does not
// answer. Off until started, so that a test of an idle program is not disturbed. GUI thread only.
class Lateness : public QObject
{
public:
    Lateness();

    void start();
    double latest() const; // ms; the time since the timer was due counts where that is longer
    double take_worst();   // ms since the last call

private:
    void tick();

    static constexpr int interval_ms = 50;
    QTimer timer;
    QElapsedTimer since_tick;
    double last = 0;
    double worst = 0;
};
