// SPDX-License-Identifier: MIT
#include <QtTest>

#include "settings/rzpixmaplabel.h"
#include "tests/fakes/log_capture.h"

class tst_rzpixmaplabel : public QObject
{
    Q_OBJECT

private slots:
    void starts_small_unscaled_and_without_picture();
    void height_for_width_keeps_the_aspect_ratio_data();
    void height_for_width_keeps_the_aspect_ratio();
    void without_picture_the_height_is_the_current_one_for_any_width();
    void size_hint_is_the_current_width_and_the_height_for_it();
    void size_hint_asks_a_derived_class_for_its_height();
    void the_picture_is_scaled_to_the_label_by_its_aspect_ratio();
    void a_resize_scales_the_full_size_picture_anew();
    void labels_of_one_size_share_the_scaled_picture();
    void a_resize_without_picture_does_nothing_and_says_nothing();
    void a_null_picture_takes_the_picture_away_and_says_nothing();
    void the_slots_stand_in_order();
};

static QPixmap picture(int width, int height)
{
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::darkCyan);
    return pixmap;
}

void tst_rzpixmaplabel::starts_small_unscaled_and_without_picture()
{
    QWidget parent;
    RZPixmapLabel label(&parent);
    QCOMPARE(label.parentWidget(), &parent);
    QCOMPARE(label.minimumSize(), QSize(1, 1));
    QVERIFY(!label.hasScaledContents());
    QVERIFY(label.source_pixmap.isNull());
    QVERIFY(label.scaled_pixmap().isNull());
}

void tst_rzpixmaplabel::height_for_width_keeps_the_aspect_ratio_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("wide banner") << QSize(2048, 701) << 640 << 219; // 219.06
    QTest::newRow("narrow banner") << QSize(640, 219) << 640 << 219;
    QTest::newRow("cut, not rounded") << QSize(1000, 999) << 100 << 99; // 99.9
    QTest::newRow("enlarged") << QSize(3, 2) << 100 << 66;              // 66.67
    QTest::newRow("no width") << QSize(640, 219) << 0 << 0;
}

void tst_rzpixmaplabel::height_for_width_keeps_the_aspect_ratio()
{
    QFETCH(QSize, size);
    QFETCH(int, width);
    RZPixmapLabel label(nullptr);
    label.setPixmap(picture(size.width(), size.height()));
    QTEST(label.heightForWidth(width), "height");
}

void tst_rzpixmaplabel::without_picture_the_height_is_the_current_one_for_any_width()
{
    RZPixmapLabel label(nullptr);
    label.resize(50, 37);
    QCOMPARE(label.heightForWidth(1), 37);
    QCOMPARE(label.heightForWidth(5000), 37);
    QCOMPARE(label.sizeHint(), QSize(50, 37));
}

void tst_rzpixmaplabel::size_hint_is_the_current_width_and_the_height_for_it()
{
    RZPixmapLabel label(nullptr);
    label.setPixmap(picture(2048, 701));
    label.resize(640, 20);
    QCOMPARE(label.sizeHint(), QSize(640, 219));
}

void tst_rzpixmaplabel::size_hint_asks_a_derived_class_for_its_height()
{
    struct Square : RZPixmapLabel {
        using RZPixmapLabel::RZPixmapLabel;
        int heightForWidth(int width) const override { return width; }
    } label(nullptr);
    label.resize(50, 20);
    QCOMPARE(label.sizeHint(), QSize(50, 50));
}

void tst_rzpixmaplabel::the_picture_is_scaled_to_the_label_by_its_aspect_ratio()
{
    RZPixmapLabel label(nullptr);
    label.resize(100, 100);
    label.setPixmap(picture(400, 200));
    QCOMPARE(label.source_pixmap.size(), QSize(400, 200));
    QCOMPARE(label.scaled_pixmap().size(), QSize(100, 50));
    QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), QSize(100, 50));
}

void tst_rzpixmaplabel::a_resize_scales_the_full_size_picture_anew()
{
    RZPixmapLabel label(nullptr);
    label.resize(10, 10);
    label.setPixmap(picture(400, 200));
    QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), QSize(10, 5));

    label.show(); // resize events come to visible widgets
    label.resize(800, 300);
    QTRY_COMPARE(label.pixmap(Qt::ReturnByValue).size(), QSize(600, 300));
    QCOMPARE(label.source_pixmap.size(), QSize(400, 200));
}

void tst_rzpixmaplabel::labels_of_one_size_share_the_scaled_picture()
{
    const QPixmap source = picture(640, 219);
    RZPixmapLabel first(nullptr);
    RZPixmapLabel second(nullptr);
    for (RZPixmapLabel *label : {&first, &second}) {
        label->resize(320, 200);
        label->setPixmap(source);
    }
    QCOMPARE(first.scaled_pixmap().cacheKey(), second.scaled_pixmap().cacheKey());

    second.setPixmap(picture(640, 300)); // another one of the same size is not mistaken for it
    QVERIFY(first.scaled_pixmap().cacheKey() != second.scaled_pixmap().cacheKey());
    QCOMPARE(second.scaled_pixmap().size(), QSize(320, 150));
}

void tst_rzpixmaplabel::a_resize_without_picture_does_nothing_and_says_nothing()
{
    Log_Capture log;
    RZPixmapLabel label(nullptr);
    label.show();
    label.resize(200, 100);
    QTRY_COMPARE(label.size(), QSize(200, 100));
    QVERIFY(label.pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(log.warnings(), QStringList());
}

void tst_rzpixmaplabel::a_null_picture_takes_the_picture_away_and_says_nothing()
{
    Log_Capture log;
    RZPixmapLabel label(nullptr);
    label.setPixmap(picture(40, 20));
    label.setPixmap(QPixmap());
    QVERIFY(label.source_pixmap.isNull());
    QVERIFY(label.pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(log.warnings(), QStringList());
}

void tst_rzpixmaplabel::the_slots_stand_in_order()
{
    const QMetaObject &meta = RZPixmapLabel::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("setPixmap(QPixmap)"));
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodSignature(),
             QByteArray("resizeEvent(QResizeEvent*)"));
}

QTEST_MAIN(tst_rzpixmaplabel)
#include "tst_rzpixmaplabel.moc"
