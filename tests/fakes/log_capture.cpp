// SPDX-License-Identifier: MIT
#include "tests/fakes/log_capture.h"

#include <QMutex>
#include <QThread>

namespace
{
// Not a member: a thread may still be on its way through the handler when the capture ends.
QMutex mutex;
Log_Capture *current = nullptr;
} // namespace

Log_Capture::Log_Capture(Threads threads)
    : only_thread(threads == Own_Thread ? QThread::currentThread() : nullptr)
{
    {
        QMutexLocker locker(&mutex);
        current = this;
    }
    previous = qInstallMessageHandler(keep);
}

Log_Capture::~Log_Capture()
{
    qInstallMessageHandler(previous);
    QMutexLocker locker(&mutex);
    current = nullptr;
}

void Log_Capture::keep(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    std::function<void(const QString &)> call;
    {
        QMutexLocker locker(&mutex);
        if (!current || (current->only_thread && current->only_thread != QThread::currentThread()))
            return;
        current->messages.append({type, text});
        if (type == QtDebugMsg)
            call = current->on_debug_line;
    }
    if (call) // without the lock: it may ask the capture
        call(text);
}

QStringList Log_Capture::filtered(bool (*wanted)(QtMsgType)) const
{
    QMutexLocker locker(&mutex);
    QStringList found;
    for (const Message &message : messages)
        if (wanted(message.type))
            found.append(message.text);
    return found;
}

QStringList Log_Capture::texts() const
{
    return filtered([](QtMsgType) { return true; });
}

QStringList Log_Capture::debug_lines() const
{
    return filtered([](QtMsgType type) { return type == QtDebugMsg; });
}

QStringList Log_Capture::warnings() const
{
    return filtered([](QtMsgType type) { return type != QtDebugMsg; });
}

void Log_Capture::clear()
{
    QMutexLocker locker(&mutex);
    messages.clear();
}
