// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QtTest>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "settings/client_settings_sub_profiles.h"
#include "settings/rzpixmaplabel.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"
#include "tests/settings/probe_sub.h"

namespace
{
const QMap<int, QString> buttons_by_column = {
    {0, "Profile 1"}, {1, "Profile 2"}, {2, "Profile 3"}, {4, "SAVE"}};

QPushButton *button_at(QGridLayout *grid, int column)
{
    const QList<QWidget *> found = widgets_at(grid, 1, column);
    return found.isEmpty() ? nullptr : qobject_cast<QPushButton *>(found.last());
}
} // namespace

class tst_client_settings_sub_profiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void the_first_button_stands_on_top_of_the_caption();
    void the_banner_is_the_subwoofers();
    void the_subwoofer_is_kept_and_may_be_null();
    void clicking_any_button_changes_nothing();
    void all_texts_are_translated();
    void there_are_no_signals_and_no_slots();
};

void tst_client_settings_sub_profiles::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_settings_sub_profiles::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Settings_Sub_Profiles tab(nullptr, nullptr);
    QCOMPARE(tab.layout(), tab.grid);
    QLabel *banner = label_at(tab.grid, 0, 0);
    QVERIFY(qobject_cast<RZPixmapLabel *>(banner));
    QCOMPARE(place_of(tab.grid, banner), (QList<int>{0, 0, 1, 7}));
    QCOMPARE(text_at(tab.grid, 1, 0), QString("Device:"));
    QCOMPARE(alignment_of(tab.grid, label_at(tab.grid, 1, 0)), Qt::AlignRight);
    for (const int column : buttons_by_column.keys()) {
        QPushButton *button = button_at(tab.grid, column);
        QVERIFY(button);
        QCOMPARE(button->text(), buttons_by_column[column]);
        QCOMPARE(place_of(tab.grid, button), (QList<int>{1, column, 1, 1}));
        QCOMPARE(alignment_of(tab.grid, button), Qt::Alignment());
    }
    QVERIFY(widgets_at(tab.grid, 1, 3).isEmpty());
    QCOMPARE(tab.grid->count(), 6);
}

void tst_client_settings_sub_profiles::the_first_button_stands_on_top_of_the_caption()
{
    Client_Settings_Sub_Profiles tab(nullptr, nullptr);
    tab.resize(700, 500);
    tab.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab));
    QPushButton *button = button_at(tab.grid, 0);
    const QLabel *caption = label_at(tab.grid, 1, 0);
    QVERIFY(button->geometry().intersects(caption->geometry()));
    QCOMPARE(tab.childAt((button->geometry() & caption->geometry()).center()), button);
}

void tst_client_settings_sub_profiles::the_banner_is_the_subwoofers()
{
    const auto picture = [] {
        const Client_Settings_Sub_Profiles tab(nullptr, nullptr);
        return qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage();
    };
    plattform->desktop_width = 1920;
    QCOMPARE(picture(), QPixmap(":/GRAFX/Deko_Sub_640.png").toImage());
    plattform->desktop_width = 2001;
    QCOMPARE(picture(), QPixmap(":/GRAFX/Deko_Sub_2k.png").toImage());
}

void tst_client_settings_sub_profiles::the_subwoofer_is_kept_and_may_be_null()
{
    Probe_Sub sub;
    const Client_Settings_Sub_Profiles tab(nullptr, &sub);
    QCOMPARE(tab.sub, &sub);
    QCOMPARE(tab.control, &sub);
    const Client_Settings_Sub_Profiles none(nullptr, nullptr);
    QVERIFY(!none.sub && !none.control);
}

void tst_client_settings_sub_profiles::clicking_any_button_changes_nothing()
{
    Probe_Sub sub;
    const Client_Settings_Sub_Profiles tab(nullptr, &sub);
    for (const int column : buttons_by_column.keys()) {
        QPushButton *button = button_at(tab.grid, column);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(button->text(), buttons_by_column[column]);
        QVERIFY(!button->isCheckable());
    }
    QCOMPARE(sub.pending, 0);
    QCOMPARE(sub.profile_load, 0);
    QCOMPARE(sub.profile_save, 0);
    QCOMPARE(tab.grid->count(), 6);
}

void tst_client_settings_sub_profiles::all_texts_are_translated()
{
    Marking_Translator translator("Client_Settings_Sub_Profiles");
    QCoreApplication::installTranslator(&translator);
    const Client_Settings_Sub_Profiles tab(nullptr, nullptr);
    QCOMPARE(text_at(tab.grid, 1, 0), QString("#Device:"));
    for (const int column : buttons_by_column.keys())
        QCOMPARE(button_at(tab.grid, column)->text(), "#" + buttons_by_column[column]);
}

void tst_client_settings_sub_profiles::there_are_no_signals_and_no_slots()
{
    const QMetaObject &meta = Client_Settings_Sub_Profiles::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("Client_Settings_Sub_Profiles"));
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

QTEST_MAIN(tst_client_settings_sub_profiles)
#include "tst_client_settings_sub_profiles.moc"
