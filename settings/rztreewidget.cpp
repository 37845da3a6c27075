// SPDX-License-Identifier: MIT
#include "settings/rztreewidget.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>

bool RZTreeWidget::opens(const QKeyEvent *event) const
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    return keys_open && modifiers == Qt::NoModifier &&
           (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space);
}

void RZTreeWidget::keyPressEvent(QKeyEvent *event)
{
    if (opens(event)) {
        QTreeWidgetItem *row = currentItem();
        if (row && !event->isAutoRepeat()) {
            setCurrentItem(row); // current it may be without being selected
            emit rowOpened(row, 0);
        }
        return;
    }

    const QList<QTreeWidgetItem *> before = selectedItems();
    QTreeWidget::keyPressEvent(event);
    const QList<QTreeWidgetItem *> now = selectedItems();
    if (now != before && !now.isEmpty())
        emit rowSelected(now.first(), 0);
}

QString RZTreeWidget::cut_text(const QModelIndex &index) const
{
    const bool cut = index.isValid() && sizeHintForIndex(index).width() > visualRect(index).width();
    return cut ? index.data().toString() : QString();
}

bool RZTreeWidget::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QTreeWidget::viewportEvent(event);

    const auto *help = static_cast<QHelpEvent *>(event);
    const QModelIndex index = indexAt(help->pos());
    QString text = cut_text(index);
    if (!text.isEmpty()) // a speaker tells it: it stands as it is, also where it looks like markup
        text = "<p style='white-space:pre'>" + text.toHtmlEscaped() + "</p>";
    QToolTip::showText(help->globalPos(), text, viewport(), visualRect(index));
    return true;
}
