// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// Empty if text is one JSON value by the letter of RFC 8259, else what is wrong and at which byte. Stricter
// than QJsonDocument, which lets control characters in strings, unknown escapes and a byte order mark pass.
// Any thread.
QString json_complaint(const QByteArray &text);
