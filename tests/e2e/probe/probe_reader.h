// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QJsonArray>
#include <QPointer>
#include <QWidget>

// Reads all widgets of the program as JSON. A widget keeps its number for as long as it lives, and a number
// is never given twice. GUI thread only.
//
// Every widget has: widget (number), parent, window (numbers, 0 for none), class, is (its class and all it
// derives from), name (objectName), visible, enabled, focus, active (its window has the focus), modal, x, y,
// w, h (on the screen). By kind it also has text, checked, checkable, value, minimum, maximum, entries and
// current (combo), tabs and current (tab widget), rows (item view), header.
class Probe_Reader
{
public:
    QJsonArray widgets(const QString &kind, bool hidden_too); // of that class or derived from it
    QWidget *widget(int number) const;                        // null if it is gone or never was

private:
    int number(QWidget *widget);

    QHash<int, QPointer<QWidget>> by_number;
    int last_number = 0;
};
