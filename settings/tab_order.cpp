// SPDX-License-Identifier: MIT
#include "settings/tab_order.h"

#include <QGridLayout>
#include <QList>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace
{
using Place = std::pair<int, int>; // row, column

Place place_in(const QGridLayout *grid, int index)
{
    int row = 0, column = 0, row_span = 0, column_span = 0;
    grid->getItemPosition(index, &row, &column, &row_span, &column_span);
    return {row, column};
}

QList<int> indexes_of(const QLayout *layout)
{
    QList<int> indexes;
    for (int index = 0; index < layout->count(); ++index)
        indexes.append(index);
    return indexes;
}

// What the keyboard can reach among those items of the layout, in their order.
QList<QWidget *> reachable(const QLayout *layout, const QList<int> &indexes)
{
    QList<QWidget *> found;
    for (const int index : indexes) {
        QWidget *widget = layout->itemAt(index)->widget();
        if (!widget)
            continue;
        if (const QLayout *inner = widget->layout())
            found += reachable(inner, indexes_of(inner));
        else if (widget->focusPolicy() != Qt::NoFocus)
            found.append(widget);
    }
    return found;
}
} // namespace

void order_tabs(const QGridLayout *grid)
{
    QList<int> by_place = indexes_of(grid);
    std::stable_sort(by_place.begin(), by_place.end(),
                     [grid](int left, int right) { return place_in(grid, left) < place_in(grid, right); });

    QWidget *last = nullptr;
    for (QWidget *widget : reachable(grid, by_place)) {
        if (last)
            QWidget::setTabOrder(last, widget);
        last = widget;
    }
}
