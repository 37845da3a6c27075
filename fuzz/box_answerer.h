// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

// Answers every message box as soon as it shows, by its first button, and counts them. GUI thread only; one
// for the whole run.
class Box_Answerer : public QObject
{
    Q_OBJECT

public:
    Box_Answerer(); // the application object must be there

    int take_count(); // boxes since the last call

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int count = 0;
};
