// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QStringList>
#include <QtGlobal>
#include <functional>

// Keeps the log messages of all threads while it lives, debug lines and warnings apart, and prints none of
// them. One at a time.
class Log_Capture
{
public:
    Log_Capture()
    {
        current() = this;
        previous = qInstallMessageHandler(&Log_Capture::keep);
    }

    ~Log_Capture()
    {
        qInstallMessageHandler(previous);
        current() = nullptr;
    }

    Log_Capture(const Log_Capture &) = delete;
    Log_Capture &operator=(const Log_Capture &) = delete;

    QStringList debug_lines() const
    {
        QMutexLocker locker(&mutex);
        return lines;
    }

    // Called with each debug line, on the thread that logs it. Set while nobody logs.
    std::function<void(const QString &)> on_debug_line;

    QStringList warnings() const
    {
        QMutexLocker locker(&mutex);
        return others;
    }

private:
    static Log_Capture *&current()
    {
        static Log_Capture *capture = nullptr;
        return capture;
    }

    static void keep(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        {
            QMutexLocker locker(&current()->mutex);
            (type == QtDebugMsg ? current()->lines : current()->others).append(text);
        }
        if (type == QtDebugMsg && current()->on_debug_line)
            current()->on_debug_line(text);
    }

    mutable QMutex mutex;
    QStringList lines;
    QStringList others;
    QtMessageHandler previous = nullptr;
};
