// SPDX-License-Identifier: MIT
#include "fuzz/box_answerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <utility>

Box_Answerer::Box_Answerer()
{
    qApp->installEventFilter(this);
}

int Box_Answerer::take_count()
{
    return std::exchange(count, 0);
}

bool Box_Answerer::eventFilter(QObject *watched, QEvent *event)
{
    auto *box = event->type() == QEvent::Show ? qobject_cast<QMessageBox *>(watched) : nullptr;
    if (box) {
        ++count;
        // Queued, since the box opens its event loop only after it has shown.
        QMetaObject::invokeMethod(box->buttons().first(), "click", Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
