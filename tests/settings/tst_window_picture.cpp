// SPDX-License-Identifier: MIT
#include <QBackingStore>
#include <QDialog>
#include <QLabel>
#include <QTest>
#include <QVBoxLayout>

#include "settings/window_picture.h"

class tst_window_picture : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_window_in_sight_has_its_picture();
    void a_window_that_closes_gives_it_back();
    void shown_again_it_looks_as_before();
    void made_small_it_keeps_it();
    void never_shown_there_is_none_to_give_back();

private:
    QSize picture() const { return dialog->backingStore()->size(); }

    QDialog *dialog = nullptr;
};

static constexpr QSize window_size(300, 200);

void tst_window_picture::init()
{
    dialog = new QDialog;
    dialog->resize(window_size);
    (new QVBoxLayout(dialog))->addWidget(new QLabel("text"));
    free_picture_when_hidden(dialog);
}

void tst_window_picture::cleanup()
{
    delete dialog;
}

void tst_window_picture::a_window_in_sight_has_its_picture()
{
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    QTRY_COMPARE(picture(), window_size);
}

void tst_window_picture::a_window_that_closes_gives_it_back()
{
    dialog->show();
    QTRY_COMPARE(picture(), window_size);
    dialog->close();
    QCOMPARE(picture(), QSize(1, 1));
}

void tst_window_picture::shown_again_it_looks_as_before()
{
    dialog->show();
    QTRY_COMPARE(picture(), window_size);
    const QImage before = dialog->grab().toImage();
    dialog->hide();
    dialog->show();
    QTRY_COMPARE(picture(), window_size);
    QCOMPARE(dialog->grab().toImage(), before);
}

void tst_window_picture::made_small_it_keeps_it()
{
    dialog->show();
    QTRY_COMPARE(picture(), window_size);
    dialog->setWindowState(Qt::WindowMinimized);
    QCOMPARE(picture(), window_size);
}

void tst_window_picture::never_shown_there_is_none_to_give_back()
{
    dialog->hide();
    QVERIFY(!dialog->backingStore());
    dialog->show();
    QTRY_COMPARE(picture(), window_size);
}

QTEST_MAIN(tst_window_picture)
#include "tst_window_picture.moc"
