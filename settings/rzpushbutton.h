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

    using QPushButton::inputMethodQuery; // the slot below would hide it

    bool held = false; // a hold was reported; never cleared

signals:
    void Hold();

public slots:
    // Reached by name through QInputMethod::queryFocusObject, hence the two arguments and the place among the
    // slots. Also sets the global input_query_seen. Always true.
    virtual QVariant inputMethodQuery(Qt::InputMethodQuery query, QVariant var);
};
