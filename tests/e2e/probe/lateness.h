// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTimer>

// Measures how late the GUI thread runs a timer of 50 ms: what a user would feel as a window that does not
// answer. Time that the thread was ready to run while the machine had no processor for it is left out: that
// is other programs' doing. Off until started, so that a test of an idle program is not disturbed. GUI thread
// only.
class Lateness : public QObject
{
public:
    Lateness();

    void start();
    double latest();     // ms; the time since the timer was due counts where that is longer
    double take_worst(); // ms since the last call

private:
    void tick();
    double overdue(); // ms since the timer was due
    double
    queued(); // ms that this thread has waited for a processor in its life; 0 where the kernel does not count

    static constexpr int interval_ms = 50;
    QTimer timer;
    QElapsedTimer since_tick;
    QFile scheduling{"/proc/thread-self/schedstat"};
    double queued_at_tick = 0;
    double last = 0;
    double worst = 0;
};
