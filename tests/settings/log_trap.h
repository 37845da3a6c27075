// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <functional>

// Collects what is logged while it lives, in place of the handler that was installed before. One at a time,
// GUI thread only.
class Log_Trap
{
public:
    Log_Trap();
    ~Log_Trap();
    Log_Trap(const Log_Trap &) = delete;
    Log_Trap &operator=(const Log_Trap &) = delete;

    QStringList lines;                                // of debug level
    QStringList warnings;                             // of every level above
    std::function<void(const QString &)> on_any_line; // called with each line as it comes

private:
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &text);

    static Log_Trap *current;
    QtMessageHandler before;
};
