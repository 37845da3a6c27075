// SPDX-License-Identifier: MIT
#pragma once

#include <QTreeWidget>

// A tree whose rows the keyboard can choose as well as the mouse, and which tells under the mouse pointer
// what a column is too narrow for. Clicks are those of every QTreeWidget. GUI thread only.
class RZTreeWidget : public QTreeWidget
{
    Q_OBJECT

public:
    using QTreeWidget::QTreeWidget;

    // Return, Enter and the space bar open the current row, and go no further: no default button takes them.
    // Otherwise they do what they do in every tree.
    bool keys_open = false;

signals:
    void rowSelected(QTreeWidgetItem *item, int column); // a key selected another row; column is 0
    void rowOpened(QTreeWidgetItem *item, int column);   // by a key; the row is selected, column is 0

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    bool opens(const QKeyEvent *event) const;
    QString cut_text(const QModelIndex &index) const; // empty where the whole text shows
};
