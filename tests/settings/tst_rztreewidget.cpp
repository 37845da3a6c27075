// SPDX-License-Identifier: MIT
#include <QHelpEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <memory>

#include "settings/rztreewidget.h"

Q_DECLARE_METATYPE(QTreeWidgetItem *)

// With three rows, none of them current or selected.
class tst_rztreewidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<QTreeWidgetItem *>("QTreeWidgetItem*"); }
    void init();
    void cleanup() { tree.reset(); }

    void keys_open_the_current_row_data();
    void keys_open_the_current_row();
    void a_key_that_opens_selects_the_row();
    void a_key_that_opens_goes_no_further();
    void a_held_key_opens_once();
    void without_a_current_row_nothing_opens();
    void with_another_modifier_nothing_opens();
    void unless_asked_for_keys_open_nothing_data() { keys_open_the_current_row_data(); }
    void unless_asked_for_keys_open_nothing();
    void a_selection_by_a_key_is_told();
    void a_key_that_selects_nothing_new_tells_nothing();
    void a_click_tells_what_it_tells_in_every_tree();
    void a_cut_text_shows_under_the_pointer_data();
    void a_cut_text_shows_under_the_pointer();

private:
    QTreeWidgetItem *row(int position) { return tree->topLevelItem(position); }

    std::unique_ptr<RZTreeWidget> tree;
    QList<QTreeWidgetItem *> opened, selected;
};

void tst_rztreewidget::init()
{
    tree = std::make_unique<RZTreeWidget>();
    tree->keys_open = true;
    for (const char *name : {"first", "second", "third"})
        tree->addTopLevelItem(new QTreeWidgetItem({name}));
    opened.clear();
    selected.clear();
    connect(tree.get(), &RZTreeWidget::rowOpened, this, [this](QTreeWidgetItem *item, int column) {
        QCOMPARE(column, 0);
        opened.append(item);
    });
    connect(tree.get(), &RZTreeWidget::rowSelected, this, [this](QTreeWidgetItem *item, int column) {
        QCOMPARE(column, 0);
        selected.append(item);
    });
    tree->show();
    QVERIFY(QTest::qWaitForWindowExposed(tree.get()));
}

void tst_rztreewidget::keys_open_the_current_row_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("modifier");
    QTest::newRow("Return") << Qt::Key_Return << int(Qt::NoModifier);
    QTest::newRow("Enter") << Qt::Key_Enter << int(Qt::KeypadModifier);
    QTest::newRow("space bar") << Qt::Key_Space << int(Qt::NoModifier);
}

void tst_rztreewidget::keys_open_the_current_row()
{
    QFETCH(Qt::Key, key);
    QFETCH(int, modifier);
    tree->setCurrentItem(row(1));
    QTest::keyClick(tree.get(), key, Qt::KeyboardModifiers(modifier));
    QCOMPARE(opened, QList<QTreeWidgetItem *>{row(1)});
}

void tst_rztreewidget::a_key_that_opens_selects_the_row()
{
    tree->setCurrentItem(row(1), 0, QItemSelectionModel::NoUpdate);
    QVERIFY(tree->selectedItems().isEmpty());
    QTest::keyClick(tree.get(), Qt::Key_Return);
    QCOMPARE(tree->selectedItems(), QList<QTreeWidgetItem *>{row(1)});
}

void tst_rztreewidget::a_key_that_opens_goes_no_further()
{
    const QSignalSpy activated(tree.get(), &QTreeWidget::itemActivated);
    tree->setCurrentItem(row(1));
    QTest::keyClick(tree.get(), Qt::Key_Return);
    QCOMPARE(activated.size(), 0);

    QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(tree.get(), &event);
    QVERIFY(event.isAccepted()); // else it would go on to the dialog around
}

void tst_rztreewidget::a_held_key_opens_once()
{
    tree->setCurrentItem(row(1));
    QTest::keyPress(tree.get(), Qt::Key_Return);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(tree.get(), &repeated);
    QCOMPARE(opened.size(), 1);
}

void tst_rztreewidget::without_a_current_row_nothing_opens()
{
    tree->setCurrentItem(nullptr);
    QTest::keyClick(tree.get(), Qt::Key_Return);
    QCOMPARE(opened.size(), 0);
}

void tst_rztreewidget::with_another_modifier_nothing_opens()
{
    tree->setCurrentItem(row(1));
    QTest::keyClick(tree.get(), Qt::Key_Space, Qt::ControlModifier);
    QTest::keyClick(tree.get(), Qt::Key_Return, Qt::AltModifier);
    QCOMPARE(opened.size(), 0);
}

void tst_rztreewidget::unless_asked_for_keys_open_nothing()
{
    QFETCH(Qt::Key, key);
    tree->keys_open = false;
    tree->setCurrentItem(row(1));
    const QSignalSpy activated(tree.get(), &QTreeWidget::itemActivated);
    QTest::keyClick(tree.get(), key);
    QCOMPARE(opened.size(), 0);
    QCOMPARE(activated.size(), key == Qt::Key_Space ? 0 : 1); // as in every tree
}

void tst_rztreewidget::a_selection_by_a_key_is_told()
{
    tree->setCurrentItem(row(0));
    QTest::keyClick(tree.get(), Qt::Key_Down);
    QTest::keyClick(tree.get(), Qt::Key_End);
    QCOMPARE(selected, QList<QTreeWidgetItem *>({row(1), row(2)}));
    QCOMPARE(opened.size(), 0);
}

void tst_rztreewidget::a_key_that_selects_nothing_new_tells_nothing()
{
    tree->setCurrentItem(row(2));
    QTest::keyClick(tree.get(), Qt::Key_Down);
    QTest::keyClick(tree.get(), Qt::Key_Shift);
    QCOMPARE(selected.size(), 0);
}

void tst_rztreewidget::a_click_tells_what_it_tells_in_every_tree()
{
    const QSignalSpy clicked(tree.get(), &QTreeWidget::itemClicked);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualItemRect(row(1)).center());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(opened.size(), 0);
    QCOMPARE(selected.size(), 0);
}

void tst_rztreewidget::a_cut_text_shows_under_the_pointer_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("cut") << 50 << "Wohnzimmer"
                         << "<p style='white-space:pre'>Wohnzimmer</p>";
    QTest::newRow("cut, and like markup")
        << 50 << "<b>Wohn & Bad</b>"
        << "<p style='white-space:pre'>&lt;b&gt;Wohn &amp; Bad&lt;/b&gt;</p>";
    QTest::newRow("whole") << 400 << "Wohnzimmer"
                           << "";
}

void tst_rztreewidget::a_cut_text_shows_under_the_pointer()
{
    QFETCH(int, width);
    QFETCH(QString, text);
    QFETCH(QString, shown);
    tree->setColumnCount(2);
    tree->setColumnWidth(0, width);
    row(1)->setText(0, text);
    const QPoint place = tree->visualItemRect(row(1)).topLeft() + QPoint(2, 2);
    QHelpEvent event(QEvent::ToolTip, place, tree->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(tree->viewport(), &event);
    QCOMPARE(QToolTip::text(), shown);
    QToolTip::hideText();
    QTRY_VERIFY(!QToolTip::isVisible());
}

QTEST_MAIN(tst_rztreewidget)
#include "tst_rztreewidget.moc"
