// SPDX-License-Identifier: MIT
#include "tests/update/long_sleeps.h"

#include <QMutex>
#include <ctime>

namespace
{
QMutex mutex;
QList<qint64> noted;
} // namespace

std::function<void()> long_sleeps::on_sleep;

QList<qint64> long_sleeps::taken()
{
    QMutexLocker locker(&mutex);
    return noted;
}

void long_sleeps::forget()
{
    QMutexLocker locker(&mutex);
    noted.clear();
    on_sleep = nullptr;
}

// In the place of the system's.
extern "C" int nanosleep(const timespec *wanted, timespec *left)
{
    if (wanted->tv_sec < 1)
        return clock_nanosleep(CLOCK_REALTIME, 0, wanted, left);
    {
        QMutexLocker locker(&mutex);
        noted += wanted->tv_sec * 1000 + wanted->tv_nsec / 1000000;
    }
    if (long_sleeps::on_sleep)
        long_sleeps::on_sleep();
    return 0;
}
