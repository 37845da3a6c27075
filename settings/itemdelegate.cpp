// SPDX-License-Identifier: MIT
#include "settings/itemdelegate.h"

QSize ItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QItemDelegate::sizeHint(option, index);
    if (row_height != -1)
        size.setHeight(row_height);
    return size;
}
