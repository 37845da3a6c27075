// SPDX-License-Identifier: MIT
#include "app/message_handler.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QMetaObject>
#include <QString>
#include <QTextEdit>
#include <cstdio>
#include <cstdlib>

#include "app/globals.h"

namespace
{
// The word in front of a line, or null for a type that is dropped.
const char *type_word(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "Debug";
    case QtWarningMsg:
        return "Warning";
    case QtCriticalMsg:
        return "Critical";
    case QtFatalMsg:
        return "Fatal";
    case QtInfoMsg:
        break;
    }
    return nullptr;
}

const char *or_empty(const char *text)
{
    return text ? text : "";
}
} // namespace

void message_handler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const char *word = type_word(type);
    if (!word)
        return;

    const QByteArray local = text.toLocal8Bit();
    std::fprintf(stderr, "%s: %s (%s:%u, %s)\n", word, local.constData(), or_empty(context.file),
                 static_cast<unsigned>(context.line), or_empty(context.function));
    if (type == QtFatalMsg)
        std::abort();

    // The application's own end is logged too, when no widget can be laid out any more.
    QMetaObject::invokeMethod(debug_console, [text] {
        if (!QCoreApplication::closingDown())
            debug_console->append(text);
    });
}
