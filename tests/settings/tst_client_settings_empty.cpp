// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QtTest>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_group.h"
#include "settings/client_settings_empty.h"
#include "settings/rzpixmaplabel.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"

class tst_client_settings_empty : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init() { plattform->desktop_width = 1920; }
    void shows_a_banner_and_below_it_that_the_type_is_unknown();
    void the_banner_is_the_wide_one_above_2000_pixels();
    void the_text_is_translated_in_the_context_of_the_class();
    void keeps_the_control_object_and_takes_null();
    void has_no_signals_or_slots_of_its_own();
};

void tst_client_settings_empty::shows_a_banner_and_below_it_that_the_type_is_unknown()
{
    const Client_Settings_Empty tab(nullptr, nullptr);
    QCOMPARE(tab.layout(), tab.grid);
    QCOMPARE(tab.grid->count(), 2);

    QLabel *banner = label_at(tab.grid, 0, 0);
    QCOMPARE(qobject_cast<RZPixmapLabel *>(banner)->source_pixmap.toImage(),
             QPixmap(":/GRAFX/Deko_Sub_640.png").toImage());
    QCOMPARE(place_of(tab.grid, banner), (QList<int>{0, 0, 1, 1}));

    QLabel *text = label_at(tab.grid, 1, 0);
    QCOMPARE(text->text(), QString("<center>Unknow Speaker type... :-(</center>"));
    QCOMPARE(place_of(tab.grid, text), (QList<int>{1, 0, 1, 1}));
    QCOMPARE(alignment_of(tab.grid, text), Qt::AlignCenter);
}

void tst_client_settings_empty::the_banner_is_the_wide_one_above_2000_pixels()
{
    plattform->desktop_width = 2001;
    const Client_Settings_Empty tab(nullptr, nullptr);
    QCOMPARE(qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage(),
             QPixmap(":/GRAFX/Deko_Sub_2k.png").toImage());
}

void tst_client_settings_empty::the_text_is_translated_in_the_context_of_the_class()
{
    Marking_Translator translator("Client_Settings_Empty");
    QCoreApplication::installTranslator(&translator);
    const Client_Settings_Empty tab(nullptr, nullptr);
    QCOMPARE(text_at(tab.grid, 1, 0), QString("<center>#Unknow Speaker type... :-(</center>"));
}

void tst_client_settings_empty::keeps_the_control_object_and_takes_null()
{
    Virelo_Group group("Group");
    QCOMPARE(Client_Settings_Empty(nullptr, &group).control, &group);
    QVERIFY(!Client_Settings_Empty(nullptr, nullptr).control);
}

void tst_client_settings_empty::has_no_signals_or_slots_of_its_own()
{
    const QMetaObject &meta = Client_Settings_Empty::staticMetaObject;
    QCOMPARE(meta.className(), "Client_Settings_Empty");
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

QTEST_MAIN(tst_client_settings_empty)
#include "tst_client_settings_empty.moc"
