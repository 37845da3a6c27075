// SPDX-License-Identifier: MIT
#include "simulator/event_log.h"

#include <cstdio>

Event_Log::Event_Log()
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
    line(QString("%1 %2  %3")
             .arg(QString::number(seconds, 'f', 3).rightJustified(8), who.leftJustified(20), what));
}

void Event_Log::line(const QString &text)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    const std::lock_guard<std::mutex> lock(mutex);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
    if (file.isOpen()) {
        file.write(bytes);
        file.flush();
    }
}
