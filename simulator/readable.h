// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// Wire bytes as one printable line: without the line end, control characters as "\x01", long ones cut with
// their size behind. Any thread.
QString readable(const QByteArray &bytes);
