// SPDX-License-Identifier: MIT
#pragma once

#include <QItemDelegate>

// A tree delegate with a fixed row height. GUI thread only.
class ItemDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    using QItemDelegate::QItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    int row_height = -1; // pixels; -1 leaves the base class's height; the owner writes it
};
