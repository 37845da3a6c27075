// SPDX-License-Identifier: MIT
#include "bench/tools/lab_daemon.h"

#include <QFile>
#include <QThread>

#include "bench/tools/child_process.h"
#include "simulator/monotonic.h"

namespace
{
constexpr unsigned long between_looks_ms = 100;
constexpr qint64 rest_us = 1200000; // the daemon says everything again after a second

QByteArray text_of(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        give_up("there is no daemon of a lab; this wants scripts/lab");
    return file.readAll();
}

// The time that the daemon's one thread has had a processor.
qint64 processor_ns()
{
    const QByteArray pid = text_of(qEnvironmentVariable("VIRELO_LAB_AVAHI_PID")).trimmed();
    return text_of("/proc/" + pid + "/schedstat").split(' ').first().toLongLong();
}
} // namespace

void await_daemon_at_rest()
{
    const qint64 begin = monotonic_us();
    qint64 used = processor_ns();
    for (qint64 since = begin; monotonic_us() - since < rest_us;) {
        QThread::msleep(between_looks_ms);
        const qint64 now_used = processor_ns();
        if (now_used != used)
            since = monotonic_us();
        used = now_used;
        if (monotonic_us() - begin > qint64(Child_Process::patience_ms) * 1000)
            give_up("the daemon does not come to rest");
    }
}
