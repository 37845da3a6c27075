// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QtGlobal>
#include <functional>

class QThread;

// Keeps the log messages while it lives, in order, and prints none of them; then the handler from before is
// back. One at a time. Any thread may log meanwhile, and any thread may ask.
class Log_Capture
{
public:
    enum Threads { All_Threads, Own_Thread }; // whose messages are kept: of all, or of who makes the capture

    explicit Log_Capture(Threads threads = All_Threads);
    ~Log_Capture();
    Log_Capture(const Log_Capture &) = delete;
    Log_Capture &operator=(const Log_Capture &) = delete;

    QStringList texts() const;       // of every level
    QStringList debug_lines() const; // of debug level
    QStringList warnings() const;    // of every level above
    void clear();

    // Called with each debug line, on the thread that logs it. Set while nobody logs.
    std::function<void(const QString &)> on_debug_line;

private:
    struct Message {
        QtMsgType type;
        QString text;
    };

    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &text);
    QStringList filtered(bool (*wanted)(QtMsgType)) const;

    QList<Message> messages;
    QThread *only_thread; // null: of all threads
    QtMessageHandler previous;
};
