// SPDX-License-Identifier: MIT
#include <QStandardItemModel>
#include <QTreeWidget>
#include <QtTest>

#include "settings/itemdelegate.h"

class tst_itemdelegate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { model.setItem(0, new QStandardItem("Kitchen")); }
    void starts_with_the_height_of_the_base_class();
    void row_height_replaces_the_height_alone_data();
    void row_height_replaces_the_height_alone();
    void rows_of_a_tree_get_the_height();

private:
    QStandardItemModel model;
};

void tst_itemdelegate::starts_with_the_height_of_the_base_class()
{
    const ItemDelegate delegate;
    const QItemDelegate plain;
    const QStyleOptionViewItem option;
    QCOMPARE(delegate.row_height, -1);
    QCOMPARE(delegate.sizeHint(option, model.index(0, 0)), plain.sizeHint(option, model.index(0, 0)));
}

void tst_itemdelegate::row_height_replaces_the_height_alone_data()
{
    QTest::addColumn<int>("height");
    QTest::newRow("the overview's") << 100;
    QTest::newRow("none") << 0;
    QTest::newRow("any but -1") << -2;
}

void tst_itemdelegate::row_height_replaces_the_height_alone()
{
    QFETCH(int, height);
    ItemDelegate delegate;
    delegate.row_height = height;
    const QItemDelegate plain;
    const QStyleOptionViewItem option;
    const QSize hint = delegate.sizeHint(option, model.index(0, 0));
    QCOMPARE(hint.height(), height);
    QCOMPARE(hint.width(), plain.sizeHint(option, model.index(0, 0)).width());
}

void tst_itemdelegate::rows_of_a_tree_get_the_height()
{
    QTreeWidget tree;
    ItemDelegate delegate;
    delegate.row_height = 100;
    tree.setItemDelegate(&delegate);
    auto *item = new QTreeWidgetItem(&tree, {"Kitchen"});
    tree.show();
    QTRY_COMPARE(tree.visualItemRect(item).height(), 100);
}

QTEST_MAIN(tst_itemdelegate)
#include "tst_itemdelegate.moc"
