// SPDX-License-Identifier: MIT
//
// Part of every program that is built for ThreadSanitizer. The Qt library is not built for it, so its
// locks and waits stay unseen, and whatever they protect looks like a race. These definitions stand in front
// of the library's own: each does what the library does, and tells the sanitizer.
#include <QDeadlineTimer>
#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QWaitCondition>
#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace
{
// The library's own definition of a symbol.
template<class Function>
Function library(const char *symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

// A thread's end is not told apart: who has waited for a thread sees what any thread did before it last
// unlocked.
char some_unlock;

void release(void *lock)
{
    __tsan_release(lock);
    __tsan_release(&some_unlock);
}
} // namespace

void QMutex::lock() noexcept
{
    static const auto real = library<void (*)(QMutex *)>("_ZN6QMutex4lockEv");
    real(this);
    __tsan_acquire(this);
}

bool QMutex::tryLock(int timeout) noexcept
{
    static const auto real = library<bool (*)(QMutex *, int)>("_ZN6QMutex7tryLockEi");
    const bool locked = real(this, timeout);
    if (locked)
        __tsan_acquire(this);
    return locked;
}

void QMutex::unlock() noexcept
{
    static const auto real = library<void (*)(QMutex *)>("_ZN6QMutex6unlockEv");
    release(this);
    real(this);
}

bool QWaitCondition::wait(QMutex *mutex, unsigned long time)
{
    static const auto real =
        library<bool (*)(QWaitCondition *, QMutex *, unsigned long)>("_ZN14QWaitCondition4waitEP6QMutexm");
    release(mutex);
    const bool woken = real(this, mutex, time);
    __tsan_acquire(mutex);
    return woken;
}

bool QWaitCondition::wait(QMutex *mutex, QDeadlineTimer deadline)
{
    static const auto real = library<bool (*)(QWaitCondition *, QMutex *, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    release(mutex);
    const bool woken = real(this, mutex, deadline);
    __tsan_acquire(mutex);
    return woken;
}

void QSemaphore::acquire(int n)
{
    static const auto real = library<void (*)(QSemaphore *, int)>("_ZN10QSemaphore7acquireEi");
    real(this, n);
    __tsan_acquire(this);
}

bool QSemaphore::tryAcquire(int n, int timeout)
{
    static const auto real = library<bool (*)(QSemaphore *, int, int)>("_ZN10QSemaphore10tryAcquireEii");
    const bool acquired = real(this, n, timeout);
    if (acquired)
        __tsan_acquire(this);
    return acquired;
}

void QSemaphore::release(int n)
{
    static const auto real = library<void (*)(QSemaphore *, int)>("_ZN10QSemaphore7releaseEi");
    __tsan_release(this);
    real(this, n);
}

bool QThread::wait(unsigned long time)
{
    static const auto real = library<bool (*)(QThread *, unsigned long)>("_ZN7QThread4waitEm");
    const bool ended = real(this, time);
    if (ended)
        __tsan_acquire(&some_unlock);
    return ended;
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto real =
        library<bool (*)(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = real(this, deadline);
    if (ended)
        __tsan_acquire(&some_unlock);
    return ended;
}
