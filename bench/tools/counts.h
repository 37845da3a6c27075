// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

// The numbers that stand on the command line, or the usual ones where there are none.
inline QList<int> counts_asked_for(const QStringList &arguments, const QList<int> &usual)
{
    QList<int> counts;
    for (const QString &argument : arguments.mid(1))
        counts.append(argument.toInt());
    return counts.isEmpty() ? usual : counts;
}
