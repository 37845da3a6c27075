// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "settings/tab_order.h"

class tst_tab_order : public QObject
{
    Q_OBJECT

private slots:
    void goes_by_rows_and_in_a_row_from_left_to_right();
    void a_widget_over_several_rows_belongs_to_the_first();
    void what_a_box_holds_stands_in_its_place();
    void nothing_to_order_is_no_trouble();
};

// The names of what Tab reaches in the window, from the first on, in order.
static QStringList order(QWidget *window, const QWidget *first)
{
    QStringList names;
    QWidget *widget = const_cast<QWidget *>(first);
    do {
        if (widget->focusPolicy() & Qt::TabFocus)
            names += widget->objectName();
        widget = widget->nextInFocusChain();
    } while (widget != first && names.size() < 100);
    return names;
}

static QLineEdit *edit(const char *name)
{
    auto *widget = new QLineEdit;
    widget->setObjectName(name);
    return widget;
}

void tst_tab_order::goes_by_rows_and_in_a_row_from_left_to_right()
{
    QWidget window;
    auto *grid = new QGridLayout(&window);
    auto *first = edit("0,1");
    grid->addWidget(edit("2,0"), 2, 0);
    grid->addWidget(edit("1,2"), 1, 2);
    grid->addWidget(edit("1,0"), 1, 0);
    grid->addWidget(new QLabel("in between"), 1, 1);
    grid->addWidget(first, 0, 1);
    order_tabs(grid);
    QCOMPARE(order(&window, first), QStringList({"0,1", "1,0", "1,2", "2,0"}));
}

void tst_tab_order::a_widget_over_several_rows_belongs_to_the_first()
{
    QWidget window;
    auto *grid = new QGridLayout(&window);
    auto *first = edit("0,0");
    grid->addWidget(edit("3,0"), 3, 0);
    grid->addWidget(edit("2,0"), 2, 0);
    grid->addWidget(edit("1,5"), 1, 5, 4, 1);
    grid->addWidget(first, 0, 0);
    order_tabs(grid);
    QCOMPARE(order(&window, first), QStringList({"0,0", "1,5", "2,0", "3,0"}));
}

void tst_tab_order::what_a_box_holds_stands_in_its_place()
{
    QWidget window;
    auto *grid = new QGridLayout(&window);
    auto *first = edit("0,0");
    grid->addWidget(edit("2,0"), 2, 0);
    auto *box = new QGroupBox;
    auto *row = new QHBoxLayout;
    row->addWidget(edit("left"));
    row->addWidget(edit("right"));
    row->addStretch(1);
    box->setLayout(row);
    grid->addWidget(box, 1, 0);
    grid->addWidget(first, 0, 0);
    order_tabs(grid);
    QCOMPARE(order(&window, first), QStringList({"0,0", "left", "right", "2,0"}));
}

void tst_tab_order::nothing_to_order_is_no_trouble()
{
    QWidget window;
    auto *grid = new QGridLayout(&window);
    order_tabs(grid);
    auto *only = edit("only");
    grid->addWidget(only, 0, 0);
    order_tabs(grid);
    QCOMPARE(order(&window, only), QStringList("only"));
}

QTEST_MAIN(tst_tab_order)
#include "tst_tab_order.moc"
