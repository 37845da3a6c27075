// SPDX-License-Identifier: MIT
#include "control/virelos.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QMutexLocker>
#include <climits>
#include <cstdio>
#include <utility>

#include "control/serial_wifi.h"

namespace
{
constexpr int direct_timeout = 5000; // ms that a caller waits for a busy worker
} // namespace

Virelos::Virelos(int type, QString host, QString name)
    : host(host)
    , type(type)
    , name(name)
{
}

void Virelos::run()
{
    open_link();
    read_shared_values();
    while (wait_for_wake()) {
        send_direct_commands();
        while (wake_pending())
            transmit_function();
    }
    close_link();
}

void Virelos::open_link()
{
    {
        QMutexLocker locker(&wake_mutex);
        // A terminate() between start() and here has interrupted the thread, and must not be forgotten.
        quit = isInterruptionRequested();
    }
    auto *opened = new serial_wifi(host, "Virelos::run() of" + name, 57600, 8, 0, 1);
    QMutexLocker locker(&wake_mutex);
    link = opened;
}

// Nothing else is sent between these reads: an answer to it would be taken for the next value.
void Virelos::read_shared_values()
{
    mute = mute_sent = static_cast<int>(link->host_query_int("MO"));
    lock = lock_sent = static_cast<int>(link->host_query_int("LO"));
    mt = mt_sent = static_cast<int>(link->host_query_int("MT"));
    beep = 0;
    ping = 0;
}

// Sleeps until there is a wake to serve. False when the worker is to end, which it does only with nothing
// left to serve: a change made together with quit still goes out.
bool Virelos::wait_for_wake()
{
    QMutexLocker locker(&wake_mutex);
    while (pending == 0 && direct_commands.isEmpty() && !quit)
        wake_condition.wait(&wake_mutex);
    return pending != 0 || !direct_commands.isEmpty();
}

bool Virelos::wake_pending()
{
    QMutexLocker locker(&wake_mutex);
    return pending != 0;
}

void Virelos::close_link()
{
    serial_wifi *closed = nullptr;
    {
        QMutexLocker locker(&wake_mutex);
        std::swap(closed, link);
        direct_commands.clear();
        direct_commands_served.wakeAll();
    }
    delete closed;
}

void Virelos::wake()
{
    QMutexLocker locker(&wake_mutex);
    ++pending;
    wake_condition.wakeAll();
}

void Virelos::wake_served()
{
    QMutexLocker locker(&wake_mutex);
    if (pending != 0)
        --pending;
}

void Virelos::all_wakes_served()
{
    QMutexLocker locker(&wake_mutex);
    pending = 0;
}

void Virelos::terminate()
{
    qDebug() << "Virelos::terminate() waiting for termination";
    {
        QMutexLocker locker(&wake_mutex);
        requestInterruption();
        quit = true;
    }
    wake();
    wait(ULONG_MAX);
    qDebug() << "Virelos::terminate() THREADs gone";
}

// Each value counts as sent before its command goes out, so that a change within the 150 ms of the command is
// a new one.
void Virelos::transmit_function()
{
    char argument[16];

    const int wanted_mute = mute;
    if (wanted_mute != mute_sent) {
        mute_sent = wanted_mute;
        send(wanted_mute ? "MO" : "MF", nullptr);
    }
    const int wanted_lock = lock;
    if (wanted_lock != lock_sent) {
        lock_sent = wanted_lock;
        send(wanted_lock ? "LO" : "LF", nullptr);
    }
    const int wanted_mt = mt;
    if (wanted_mt != mt_sent) {
        mt_sent = wanted_mt;
        std::snprintf(argument, sizeof argument, "%03d", wanted_mt);
        send("MT", argument);
    }
    const int wanted_beep = beep;
    if (wanted_beep) {
        std::snprintf(argument, sizeof argument, "%01d", wanted_beep);
        send("BI", argument);
        beep = 0;
    }
    if (ping) {
        send("PI", "");
        ping = 0;
    }
}

void Virelos::send(const char *letters, const char *args)
{
    send_direct_commands();
    if (link)
        link->host_command(letters, args);
}

// A socket belongs to the thread that made it: the worker sends for other threads, between two of its own
// commands, and they wait for it.
void Virelos::send_directly(const char *letters)
{
    QMutexLocker locker(&wake_mutex);
    if (!link)
        return;
    if (link->thread() != this || QThread::currentThread() == this) {
        locker.unlock();
        link->host_command(letters, nullptr);
        return;
    }
    direct_commands.append(letters);
    wake_condition.wakeAll();
    const QDeadlineTimer deadline(direct_timeout);
    while (!direct_commands.isEmpty() && direct_commands_served.wait(&wake_mutex, deadline)) {
    }
}

void Virelos::send_direct_commands()
{
    QMutexLocker locker(&wake_mutex);
    while (!direct_commands.isEmpty()) {
        const QByteArray letters = direct_commands.first();
        locker.unlock();
        link->host_command(letters.constData(), nullptr);
        locker.relock();
        direct_commands.removeFirst();
        direct_commands_served.wakeAll();
    }
}

void Virelos::flash_open()
{
    const QString label = "Virelos::flash() of" + name;
    qDebug() << label;
    if (!isRunning())
        delete link; // of an earlier flash; a worker's own link is gone by now
    link = new serial_wifi(host, label, 57600, 8, 0, 1);
    link->prepare_xon();
}

int Virelos::flash_line(const QString &line)
{
    if (link)
        link->send_line(line);
    return 0;
}

int Virelos::clamped_volume(qint64 vol)
{
    return static_cast<int>(qBound<qint64>(0, vol, 100));
}

void Virelos::MUTE_ON()
{
    qDebug() << "Virelos::MUTE_ON()";
    mute = 1;
    wake();
}

void Virelos::MUTE_OFF()
{
    qDebug() << "Virelos::MUTE_OFF()";
    mute = 0;
    wake();
}

void Virelos::muteOn()
{
    MUTE_ON();
}

void Virelos::muteOff()
{
    MUTE_OFF();
}

void Virelos::muteToggled(bool checked)
{
    if (checked)
        MUTE_ON();
    else
        MUTE_OFF();
}

void Virelos::lockOn()
{
    qDebug() << "LOCK()";
    lock = 1;
    wake();
}

void Virelos::lockOff()
{
    qDebug() << "UNLOCK()";
    lock = 0;
    wake();
}

void Virelos::lockToggled(bool checked)
{
    qDebug() << "Virelos::lockToggled()";
    if (checked)
        lockOn();
    else
        lockOff();
}

void Virelos::standby()
{
    send_directly("PF");
}

void Virelos::powerOn()
{
    send_directly("PO");
}

void Virelos::Beep()
{
    beep = 1;
    wake();
}

void Virelos::flash()
{
    send_directly("FL");
}

void Virelos::Ping()
{
    ping = 1;
    wake();
}
