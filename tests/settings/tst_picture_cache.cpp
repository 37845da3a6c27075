// SPDX-License-Identifier: MIT
#include <QPixmapCache>
#include <QTest>

#include "settings/picture_cache.h"

class tst_picture_cache : public QObject
{
    Q_OBJECT

private slots:
    void a_picture_is_made_once();
    void names_are_told_apart();
    void it_keeps_what_qt_forgets();
    void with_too_many_the_one_not_asked_for_longest_goes();
};

static QPixmap picture(Qt::GlobalColor color, QSize size = QSize(10, 10))
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

static QPixmap must_not_be_made()
{
    QTest::qFail("made again", __FILE__, __LINE__);
    return {};
}

void tst_picture_cache::a_picture_is_made_once()
{
    const QPixmap made = cached_picture("once", [] { return picture(Qt::red); });
    QCOMPARE(cached_picture("once", must_not_be_made).cacheKey(), made.cacheKey());
}

void tst_picture_cache::names_are_told_apart()
{
    const QPixmap red = cached_picture("red", [] { return picture(Qt::red); });
    const QPixmap blue = cached_picture("blue", [] { return picture(Qt::blue); });
    QCOMPARE(red.toImage().pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(blue.toImage().pixelColor(0, 0), QColor(Qt::blue));
}

void tst_picture_cache::it_keeps_what_qt_forgets()
{
    cached_picture("kept", [] { return picture(Qt::red); });
    QPixmapCache::clear();
    cached_picture("kept", must_not_be_made);
}

void tst_picture_cache::with_too_many_the_one_not_asked_for_longest_goes()
{
    const QSize six_mb(1536, 1024);
    cached_picture("old", [&] { return picture(Qt::red, six_mb); });
    cached_picture("older", [&] { return picture(Qt::red, six_mb); });
    cached_picture("old", must_not_be_made);
    cached_picture("new", [&] { return picture(Qt::red, six_mb); });
    cached_picture("old", must_not_be_made);
    bool again = false;
    cached_picture("older", [&] {
        again = true;
        return picture(Qt::red);
    });
    QVERIFY(again);
}

QTEST_MAIN(tst_picture_cache)
#include "tst_picture_cache.moc"
