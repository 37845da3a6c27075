// SPDX-License-Identifier: MIT
#include "bench/tools/proc_figures.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <unistd.h>

namespace
{
QString text_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The sum of all lines that begin with that word.
qint64 sum(const QString &text, const QString &word)
{
    qint64 result = 0;
    QRegularExpressionMatchIterator found =
        QRegularExpression("^" + word + ":\\s*(\\d+)", QRegularExpression::MultilineOption).globalMatch(text);
    while (found.hasNext())
        result += found.next().captured(1).toLongLong();
    return result;
}

qint64 cpu_us(const QString &stat)
{
    const QStringList fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    const qint64 ticks = fields.value(11).toLongLong() + fields.value(12).toLongLong();
    return ticks * 1000000 / sysconf(_SC_CLK_TCK);
}
} // namespace

Proc_Figures Proc_Figures::of(pid_t pid)
{
    const QString base = QString("/proc/%1/").arg(pid);
    Proc_Figures figures;
    for (const QString &thread : QDir(base + "task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString folder = base + "task/" + thread;
        const QString name = text_of(folder + "/comm").trimmed();
        ++figures.threads;
        figures.sleeps[name] += sum(text_of(folder + "/status"), "voluntary_ctxt_switches");
    }
    figures.descriptors = static_cast<int>(QDir(base + "fd").count()) - 2; // without "." and ".."
    const QString memory = text_of(base + "smaps_rollup");
    figures.private_kb = sum(memory, "Private_Clean") + sum(memory, "Private_Dirty");
    figures.cpu_us = ::cpu_us(text_of(base + "stat"));
    return figures;
}
