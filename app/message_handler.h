// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QMessageLogContext;
class QString;

// Writes a log message to standard error and appends the bare message to debug_console. Installed in debug
// mode only. Any thread may log: the text reaches the console on the GUI thread, at once where that thread
// logs, else by a queued call; while the application object goes, standard error alone gets it. Info is
// dropped on purpose; Fatal aborts the process.
void message_handler(QtMsgType type, const QMessageLogContext &context, const QString &text);
