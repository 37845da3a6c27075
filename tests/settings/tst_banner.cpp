// SPDX-License-Identifier: MIT
#include <QFile>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "tests/fakes/log_capture.h"

class tst_banner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void the_picture_follows_the_width_of_the_screen_data();
    void the_picture_follows_the_width_of_the_screen();
    void every_banner_has_a_picture_of_its_size_data();
    void every_banner_has_a_picture_of_its_size();
    void a_missing_picture_leaves_an_empty_label_and_says_nothing();
};

void tst_banner::the_picture_follows_the_width_of_the_screen_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("path");
    QTest::newRow("no screen") << 0 << ":/GRAFX/Deko_Air_640.png";
    QTest::newRow("exactly 2000") << 2000 << ":/GRAFX/Deko_Air_640.png";
    QTest::newRow("above 2000") << 2001 << ":/GRAFX/Deko_Air_2k.png";
}

void tst_banner::the_picture_follows_the_width_of_the_screen()
{
    QFETCH(int, width);
    plattform->desktop_width = width;
    QTEST(banner_path("Deko_Air"), "path");
}

void tst_banner::every_banner_has_a_picture_of_its_size_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Deko_Air", "Deko_Sub", "Deko_Palette", "Deko_WLAN"})
        QTest::newRow(name) << QString(name);
}

void tst_banner::every_banner_has_a_picture_of_its_size()
{
    QFETCH(QString, name);
    plattform->desktop_width = 1920;
    const std::unique_ptr<RZPixmapLabel> narrow(make_banner(name));
    QCOMPARE(narrow->source_pixmap.size(), QSize(640, 219));
    QVERIFY(!narrow->parent());

    plattform->desktop_width = 2560;
    const std::unique_ptr<RZPixmapLabel> wide(make_banner(name));
    QCOMPARE(wide->source_pixmap.size(), QSize(2048, 701));
}

void tst_banner::a_missing_picture_leaves_an_empty_label_and_says_nothing()
{
    Log_Capture log;
    const std::unique_ptr<RZPixmapLabel> banner(make_banner("Deko_None"));
    banner->resize(300, 100);
    banner->grab();
    QVERIFY(banner->source_pixmap.isNull());
    QCOMPARE(log.warnings(), QStringList());
}

QTEST_MAIN(tst_banner)
#include "tst_banner.moc"
