// SPDX-License-Identifier: MIT
#include "simulator/event_log.h"

#include <cstdio>
#include <unistd.h>

namespace
{
constexpr char plain[] = "\033[0m";

// By the two characters with which a text begins: what a speaker hears, what it says, what is wrong with what
// it heard, and what else happens to it.
constexpr struct {
    const char *start;
    const char *colour;
} colours[] = {
    {"<-", "\033[36m"},                    // cyan
    {"->", "\033[32m"},                    // green
    {"!!", "\033[31m"},                    // red
    {"? ", "\033[31m"}, {"--", "\033[2m"}, // faint
};

const char *colour_of(const QString &text)
{
    for (const auto &row : colours)
        if (text.startsWith(QLatin1String(row.start)))
            return row.colour;
    return nullptr;
}
} // namespace

Event_Log::Event_Log()
    : colourful(isatty(STDOUT_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR"))
{
    clock.start();
}

bool Event_Log::open_file(const QString &path)
{
    file.setFileName(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

QString Event_Log::error() const
{
    return file.fileName() + ": " + file.errorString();
}

void Event_Log::event(const QString &who, const QString &what)
{
    const double seconds = static_cast<double>(clock.elapsed()) / 1000;
    write(QString("%1 %2  %3")
              .arg(QString::number(seconds, 'f', 3).rightJustified(8), who.leftJustified(20), what),
          colour_of(what));
}

void Event_Log::line(const QString &text)
{
    write(text, colour_of(text));
}

void Event_Log::write(const QString &text, const char *colour)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    const QByteArray shown = colourful && colour ? colour + text.toUtf8() + plain + '\n' : bytes;
    const std::lock_guard<std::mutex> lock(mutex);
    std::fwrite(shown.constData(), 1, static_cast<size_t>(shown.size()), stdout);
    std::fflush(stdout);
    if (file.isOpen()) {
        file.write(bytes);
        file.flush();
    }
}
