// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QDir>
#include <QList>
#include <QMetaMethod>
#include <QMutexLocker>
#include <QStringList>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <functional>
#include <linux/tcp.h>
#include <memory>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "control/serial_wifi.h"
#include "control/virelos.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"

// What the tests of the control objects share.

using Lines = QList<QByteArray>;

// A configuration on the first address of this process, answering queries with `values`.
inline Speaker_Config speaker_at_home(int type = 13, const QMap<QString, QString> &values = {})
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.type = type;
    config.values = values;
    return config;
}

// A link as the program opens it.
inline std::unique_ptr<serial_wifi> open_link_to(const QString &address)
{
    return std::make_unique<serial_wifi>(address, "test", 57600, 8, 0, 1);
}

// Waits in any thread, also in one that has no events.
inline bool wait_until(const std::function<bool()> &condition)
{
    for (QDeadlineTimer deadline(Virtual_Speaker::default_wait_ms); !condition(); QThread::usleep(200)) {
        if (deadline.hasExpired())
            return false;
    }
    return true;
}

// Bytes that wait in the system's buffer of a socket; any thread may ask.
inline int bytes_in_system(qintptr descriptor)
{
    int count = -1;
    ioctl(static_cast<int>(descriptor), FIONREAD, &count);
    return count;
}

// Bytes that have reached a socket since it was opened; any thread may ask.
inline quint64 bytes_arrived(qintptr descriptor)
{
    tcp_info info = {};
    socklen_t size = sizeof info;
    getsockopt(static_cast<int>(descriptor), IPPROTO_TCP, TCP_INFO, &info, &size);
    return info.tcpi_bytes_received;
}

inline int open_descriptors()
{
    return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

inline quint64 bytes_sent(const Virtual_Speaker &speaker)
{
    quint64 count = 0;
    for (const Recorded_Bytes &piece : speaker.host_record())
        count += piece.incoming ? 0 : static_cast<quint64>(piece.bytes.size());
    return count;
}

// Starts the worker and waits until its start-up reads have ended, which is when it serves a wake.
inline bool start_worker(Virelos &control)
{
    control.start();
    control.wake();
    return wait_until([&control] {
        QMutexLocker locker(&control.wake_mutex);
        return control.pending == 0;
    });
}

// The slots that a class adds, as the meta-object lists them.
inline QStringList own_slots(const QMetaObject &meta)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            signatures.append(meta.method(i).methodSignature());
    }
    return signatures;
}
