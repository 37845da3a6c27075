// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QList>
#include <QObject>
#include <QWidget>

// Notes which of the watched widgets painted, in order. It must live no longer than they do.
class Paint_Log : public QObject
{
public:
    explicit Paint_Log(const QList<QWidget *> &widgets)
    {
        for (QWidget *widget : widgets)
            widget->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted << watched;
        return false;
    }

    QList<QObject *> painted;
};
