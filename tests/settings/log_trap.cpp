// SPDX-License-Identifier: MIT
#include "tests/settings/log_trap.h"

Log_Trap *Log_Trap::current = nullptr;

Log_Trap::Log_Trap()
{
    current = this;
    before = qInstallMessageHandler(take);
}

Log_Trap::~Log_Trap()
{
    qInstallMessageHandler(before);
    current = nullptr;
}

void Log_Trap::take(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    (type == QtDebugMsg ? current->lines : current->warnings).append(text);
    if (current->on_any_line)
        current->on_any_line(text);
}
