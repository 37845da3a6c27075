// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QtTest>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "settings/client_settings_empty2.h"
#include "settings/rzpixmaplabel.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"

class tst_client_settings_empty2 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init() { plattform->desktop_width = 1920; }
    void shows_its_fixed_texts_below_a_banner();
    void is_at_least_400_by_1600();
    void the_banner_is_the_wide_one_above_2000_pixels();
    void logs_the_size_of_the_screen_under_the_name_of_the_other_class();
    void only_two_texts_are_translated();
    void has_no_signals_or_slots_of_its_own();
};

void tst_client_settings_empty2::shows_its_fixed_texts_below_a_banner()
{
    const Client_Settings_Empty2 tab(nullptr, nullptr);
    QCOMPARE(tab.layout(), tab.grid);
    QCOMPARE(tab.grid->count(), 5);

    QLabel *banner = label_at(tab.grid, 0, 0);
    QCOMPARE(qobject_cast<RZPixmapLabel *>(banner)->source_pixmap.toImage(),
             QPixmap(":/GRAFX/Deko_Sub_640.png").toImage());
    QCOMPARE(place_of(tab.grid, banner), (QList<int>{0, 0, 1, 3}));

    QCOMPARE(text_at(tab.grid, 1, 0), QString("<center>TEST!... :-(</center>"));
    QCOMPARE(place_of(tab.grid, label_at(tab.grid, 1, 0)), (QList<int>{1, 0, 1, 1}));
    QCOMPARE(alignment_of(tab.grid, label_at(tab.grid, 1, 0)), Qt::AlignCenter);

    QCOMPARE(text_at(tab.grid, 2, 0), QString("Speaker:"));
    QCOMPARE(alignment_of(tab.grid, label_at(tab.grid, 2, 0)), Qt::AlignRight);
    QCOMPARE(text_at(tab.grid, 2, 1), QString("<b>speaker name</b>"));
    QCOMPARE(text_at(tab.grid, 2, 2), QString("(speaker model)"));
}

void tst_client_settings_empty2::is_at_least_400_by_1600()
{
    QCOMPARE(Client_Settings_Empty2(nullptr, nullptr).minimumSize(), QSize(400, 1600));
}

void tst_client_settings_empty2::the_banner_is_the_wide_one_above_2000_pixels()
{
    plattform->desktop_width = 2001;
    const Client_Settings_Empty2 tab(nullptr, nullptr);
    QCOMPARE(qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage(),
             QPixmap(":/GRAFX/Deko_Sub_2k.png").toImage());
}

void tst_client_settings_empty2::logs_the_size_of_the_screen_under_the_name_of_the_other_class()
{
    plattform->desktop_height = 1080;
    Log_Capture log;
    const Client_Settings_Empty2 tab(nullptr, nullptr);
    QCOMPARE(log.debug_lines(), QStringList{"Client_Settings_Empty wx= 1920  wy= 1080"});
}

void tst_client_settings_empty2::only_two_texts_are_translated()
{
    Marking_Translator translator("Client_Settings_Empty2");
    QCoreApplication::installTranslator(&translator);
    const Client_Settings_Empty2 tab(nullptr, nullptr);
    QCOMPARE(text_at(tab.grid, 1, 0), QString("<center>#TEST!... :-(</center>"));
    QCOMPARE(text_at(tab.grid, 2, 0), QString("#Speaker:"));
    QCOMPARE(text_at(tab.grid, 2, 1), QString("<b>speaker name</b>"));
    QCOMPARE(text_at(tab.grid, 2, 2), QString("(speaker model)"));
}

void tst_client_settings_empty2::has_no_signals_or_slots_of_its_own()
{
    const QMetaObject &meta = Client_Settings_Empty2::staticMetaObject;
    QCOMPARE(meta.className(), "Client_Settings_Empty2");
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

QTEST_MAIN(tst_client_settings_empty2)
#include "tst_client_settings_empty2.moc"
