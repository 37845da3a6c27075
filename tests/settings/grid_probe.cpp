// SPDX-License-Identifier: MIT
#include "tests/settings/grid_probe.h"

#include <QGridLayout>
#include <QLabel>

QList<int> place_of(QGridLayout *grid, QWidget *widget)
{
    const int index = grid->indexOf(widget);
    if (index < 0)
        return {};
    int row = 0, column = 0, row_span = 0, column_span = 0;
    grid->getItemPosition(index, &row, &column, &row_span, &column_span);
    return {row, column, row_span, column_span};
}

Qt::Alignment alignment_of(QGridLayout *grid, QWidget *widget)
{
    return grid->itemAt(grid->indexOf(widget))->alignment();
}

QList<QWidget *> widgets_at(QGridLayout *grid, int row, int column)
{
    QList<QWidget *> found;
    for (int index = 0; index < grid->count(); ++index) {
        QWidget *widget = grid->itemAt(index)->widget();
        if (place_of(grid, widget).mid(0, 2) == QList<int>{row, column})
            found.append(widget);
    }
    return found;
}

QLabel *label_at(QGridLayout *grid, int row, int column)
{
    const QList<QWidget *> found = widgets_at(grid, row, column);
    return found.isEmpty() ? nullptr : qobject_cast<QLabel *>(found.first());
}

QString text_at(QGridLayout *grid, int row, int column)
{
    const QLabel *label = label_at(grid, row, column);
    return label ? label->text() : QString();
}
