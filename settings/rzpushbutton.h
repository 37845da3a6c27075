// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>
#include <QVariant>

// A push button that reports a hold from the platform's input method. It has no timer. GUI thread only.
class RZPushButton : public QPushButton
{
    Q_OBJECT

public:
    RZPushButton(const QString &text, QWidget *parent);

    bool held = false; // a hold was reported; never cleared

signals:
    void Hold();

public slots:
    // Reached by name through QInputMethod::queryFocusObject, hence the two arguments and the place among the
    // slots.
    virtual QVariant inputMethodQuery(Qt::InputMethodQuery query, QVariant var);
};
