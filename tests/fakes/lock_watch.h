// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QFile>
#include <QString>
#include <QThread>
#include <sys/syscall.h>
#include <unistd.h>

// Tells, for tests of what a lock protects, when another thread has come to that lock and cannot go on. Asked
// by whoever holds the lock; any thread may ask.

// Does a thread of this process wait for a lock, as the system sees it?
inline bool waits_for_lock(pid_t thread)
{
    QFile file(QString("/proc/self/task/%1/syscall").arg(thread));
    return file.open(QIODevice::ReadOnly) && file.readAll().startsWith(QByteArray::number(SYS_futex) + ' ');
}

// Waits until that thread does. Given up after 1 s, for a thread that passes the lock by never will.
inline void let_run_into_lock(pid_t thread)
{
    for (const QDeadlineTimer deadline(1000); !waits_for_lock(thread) && !deadline.hasExpired();)
        QThread::usleep(200);
}
