// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QDir>
#include <QList>
#include <QMetaMethod>
#include <QMutexLocker>
#include <QSet>
#include <QStringList>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <QTimer>
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
#include "tests/fakes/log_capture.h"

// What the tests of the control objects share.

using Lines = QList<QByteArray>;

// What a worker asks for first.
inline const Lines start_up_reads = {"RZ?MO\n", "RZ?LO\n", "RZ?MT\n"};

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

// What a test program of a control object holds: for each test function a log, and once made a speaker and
// the object under test on it.
template<class Control>
class Control_Holder
{
protected:
    void begin() { log = std::make_unique<Log_Capture>(); }

    void make(int type, const QString &name, const QMap<QString, QString> &values = {})
    {
        speaker = std::make_unique<Virtual_Speaker>(speaker_at_home(type, values));
        QVERIFY2(speaker->start(), qPrintable(speaker->error()));
        control = std::make_unique<Control>(type, own_loopback(1), name);
    }

    // Ends the worker; when its link is closed on the other side too, the speaker has read all that was sent.
    void end_worker()
    {
        control->terminate();
        QVERIFY(speaker->wait_for_host_open(0));
    }

    void end()
    {
        if (control) {
            control->terminate();
            delete control->link; // of a flash
        }
        control.reset();
        speaker.reset();
        QCOMPARE(log->warnings(), QStringList());
        log.reset();
    }

    // Runs an action that makes the control object. Gives the counts of the queries that had been sent each
    // time events were processed: each time a timer of 0 ms fires once.
    QSet<int> queries_sent_at_events(const std::function<void()> &action) const
    {
        QSet<int> counts;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] { counts.insert(speaker->host_lines().size()); });
        timer.start(0);
        action();
        return counts;
    }

    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Control> control;
};
