// SPDX-License-Identifier: MIT
#include "bench/tools/table.h"

#include <algorithm>
#include <cstdio>

Table::Table(const QStringList &header)
    : rows{header}
{
}

void Table::add_row(const QStringList &cells)
{
    rows.append(cells);
}

// The first column holds names and stands left, the others hold figures and stand right.
void Table::print() const
{
    std::vector<int> widths(static_cast<size_t>(rows.first().size()), 3);
    for (const QStringList &row : rows)
        for (size_t column = 0; column < widths.size(); ++column)
            widths[column] = std::max(widths[column], row.at(static_cast<int>(column)).size());

    QStringList lines;
    for (const QStringList &row : rows) {
        QString line = "|";
        for (size_t column = 0; column < widths.size(); ++column) {
            const QString cell = row.at(static_cast<int>(column));
            const int width = widths[column];
            line += ' ' + (column == 0 ? cell.leftJustified(width) : cell.rightJustified(width)) + " |";
        }
        lines.append(line);
    }
    QString rule = "|";
    for (size_t column = 0; column < widths.size(); ++column)
        rule += (column == 0 ? ' ' : '-') + QString(widths[column], '-') + (column == 0 ? " |" : ":|");
    lines.insert(1, rule);
    std::printf("%s\n", lines.join('\n').toUtf8().constData());
}

qint64 percentile(Samples samples, size_t percent)
{
    std::sort(samples.begin(), samples.end());
    return samples.at((samples.size() - 1) * percent / 100);
}

qint64 median(const Samples &samples)
{
    return percentile(samples, 50);
}

QString in_ms(qint64 us)
{
    const double ms = static_cast<double>(us) / 1000;
    return QString::number(ms, 'f', ms < 10 ? 2 : ms < 100 ? 1 : 0);
}

QString in_mb(qint64 kb)
{
    return QString::number(static_cast<double>(kb) / 1024, 'f', 1);
}

QString ratio(qint64 ours, qint64 peers)
{
    return peers == 0
               ? "-"
               : QString::number(static_cast<double>(ours) / static_cast<double>(peers), 'f', 2) + " x";
}

QString whole(qint64 number)
{
    return QString::number(number);
}
