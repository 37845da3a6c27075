// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QtGlobal>

// Collects the texts of all log messages while it lives, in order, and keeps them from being printed. One at
// a time; only messages of the thread that made it are kept, so that no lock is needed.
class Log_Capture
{
public:
    Log_Capture();
    ~Log_Capture();
    Log_Capture(const Log_Capture &) = delete;
    Log_Capture &operator=(const Log_Capture &) = delete;

    QStringList texts;

private:
    QtMessageHandler previous;
};
