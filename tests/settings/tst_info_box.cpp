// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTest>

#include "settings/info_box.h"
#include "tests/overview/modal_user.h"
#include "tests/update/box_reader.h"

class tst_info_box : public QObject
{
    Q_OBJECT

private slots:
    void it_shows_what_it_is_given();
    void what_looks_like_markup_stands_as_it_is();
    void it_may_have_no_parent();
    void it_blocks_until_it_is_answered_while_events_go_on();
    void keys_and_frame_answer_it_too_data();
    void keys_and_frame_answer_it_too();
    void it_leaves_nothing_behind();
};

void tst_info_box::it_shows_what_it_is_given()
{
    QWidget parent;
    Box_Reader reader;
    show_info_box(&parent, "Title", "Text\n\n of lines", "Right");
    QVERIFY(reader.met());
    QCOMPARE(reader.seen(), (QStringList{"Title", "Text\n\n of lines", "Right"}));
    QCOMPARE(reader.icon, QMessageBox::Information);
    QCOMPARE(reader.parent, &parent);
}

void tst_info_box::what_looks_like_markup_stands_as_it_is()
{
    Qt::TextFormat format = Qt::AutoText;
    Modal_User<QMessageBox> user([&format](QMessageBox *box) {
        format = box->textFormat();
        box->close();
    });
    show_info_box(nullptr, "Title", "<b>Text</b>", "OK");
    QVERIFY(user.met);
    QCOMPARE(format, Qt::PlainText);
}

void tst_info_box::it_may_have_no_parent()
{
    Box_Reader reader;
    show_info_box(nullptr, "Title", "Text", "OK");
    QVERIFY(reader.met());
    QVERIFY(!reader.parent);
}

void tst_info_box::it_blocks_until_it_is_answered_while_events_go_on()
{
    QWidget parent;
    parent.show();
    bool returned = false, blocked = false, went_on = false;
    Box_Reader reader([&] {
        blocked = !returned && QApplication::activeModalWidget();
        QTimer::singleShot(0, this, [&went_on] { went_on = true; });
        QTRY_VERIFY(went_on);
    });
    show_info_box(&parent, "Title", "Text", "OK");
    returned = true;
    QVERIFY(reader.met() && blocked && went_on);
}

void tst_info_box::keys_and_frame_answer_it_too_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Enter") << int(Qt::Key_Return);
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("the frame") << 0;
}

void tst_info_box::keys_and_frame_answer_it_too()
{
    QFETCH(int, key);
    Modal_User<QMessageBox> user([key](QMessageBox *box) {
        if (key)
            QTest::keyClick(box, Qt::Key(key));
        else
            box->close();
    });
    show_info_box(nullptr, "Title", "Text", "OK");
    QVERIFY(user.met);
}

void tst_info_box::it_leaves_nothing_behind()
{
    QWidget parent;
    QPointer<QWidget> box;
    Box_Reader reader([&box] { box = QApplication::activeModalWidget(); });
    show_info_box(&parent, "Title", "Text", "OK");
    QVERIFY(reader.met());
    QVERIFY(!box);
    QVERIFY(parent.children().isEmpty());
}

QTEST_MAIN(tst_info_box)
#include "tst_info_box.moc"
