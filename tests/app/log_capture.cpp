// SPDX-License-Identifier: MIT
#include "tests/app/log_capture.h"

#include <QThread>

namespace
{
Log_Capture *current = nullptr;
QThread *thread = nullptr;

void keep(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (current && QThread::currentThread() == thread)
        current->texts.append(text);
}
} // namespace

Log_Capture::Log_Capture()
{
    thread = QThread::currentThread();
    current = this;
    previous = qInstallMessageHandler(keep);
}

Log_Capture::~Log_Capture()
{
    qInstallMessageHandler(previous);
    current = nullptr;
}
