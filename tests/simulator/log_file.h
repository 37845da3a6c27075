// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "simulator/event_log.h"

// An Event_Log whose lines can be read back. One thread reads; any may write.
class Log_File
{
public:
    Log_File() { log.open_file(path()); }

    QString path() const { return folder.filePath("log"); }

    QStringList lines() const
    {
        QFile file(path());
        file.open(QIODevice::ReadOnly);
        return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }

    // The lines of events without their times.
    QStringList events() const
    {
        QStringList found;
        for (const QString &line : lines().filter(QRegularExpression("^ *\\d+\\.\\d{3} ")))
            found += line.mid(9).simplified();
        return found;
    }

    QTemporaryDir folder;
    Event_Log log;
};
