// SPDX-License-Identifier: MIT
#include "simulator/readable.h"

namespace
{
constexpr int longest = 400;
} // namespace

QString readable(const QByteArray &bytes)
{
    QByteArray kept = bytes;
    while (kept.endsWith('\n') || kept.endsWith('\r'))
        kept.chop(1);
    const bool cut = kept.size() > longest;
    QString text;
    for (const QChar c : QString::fromUtf8(kept.left(longest)))
        if (c.category() == QChar::Other_Control)
            text += QString("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            text += c;
    return cut ? text + QString("... (%1 bytes)").arg(bytes.size()) : text;
}
