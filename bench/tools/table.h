// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <vector>

// What a benchmark prints: one table in Markdown, with its columns aligned, so that a terminal shows it as
// well as a page.
class Table
{
public:
    explicit Table(const QStringList &header);

    void add_row(const QStringList &cells); // as many as the header has
    void print() const;                     // on standard output

private:
    QList<QStringList> rows; // the header first
};

using Samples = std::vector<qint64>;

// The value below which so many percent of the samples lie; there must be one.
qint64 percentile(Samples samples, size_t percent);
qint64 median(const Samples &samples);

QString in_ms(qint64 us); // "3.41", with less behind the point the longer it lasts
QString in_mb(qint64 kb);
QString ratio(qint64 ours, qint64 peers); // "1.37 x"; "-" where the peer's is 0
QString whole(qint64 number);
