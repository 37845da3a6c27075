// SPDX-License-Identifier: MIT
#include <QComboBox>
#include <QDial>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/speaker_types.h"
#include "settings/client_settings_air.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"
#include "tests/settings/probe_air.h"

static QStringList entries(const QComboBox *combo)
{
    QStringList texts;
    for (int index = 0; index < combo->count(); ++index)
        texts.append(combo->itemText(index));
    return texts;
}

// How the tab is built; what it does is told in tst_client_settings_air_slots and _refresh.
class tst_client_settings_air : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void the_grid_is_filled_in_order_data();
    void the_grid_is_filled_in_order();
    void no_widget_has_a_style_sheet();
    void the_banner_is_the_wide_one_above_2000_pixels();
    void the_slider_is_set_up_for_a_volume();
    void the_dial_wraps_and_shows_no_volume();
    void combos_have_their_entries_in_order();
    void buttons_have_their_texts();
    void speaker_labels_show_name_and_model_data();
    void speaker_labels_show_name_and_model();
    void what_looks_like_markup_stands_as_it_is();
    void letters_select_their_entries_data();
    void letters_select_their_entries();
    void the_bass_value_is_the_index_data();
    void the_bass_value_is_the_index();
    void mute_and_lock_are_checked_by_any_value_but_0();
    void the_read_out_has_the_form_of_the_constructor_data();
    void the_read_out_has_the_form_of_the_constructor();
    void the_fence_starts_at_the_volume();
    void construction_asks_nothing_of_the_speaker_data();
    void construction_asks_nothing_of_the_speaker();
    void without_a_speaker_the_controls_keep_their_defaults_data();
    void without_a_speaker_the_controls_keep_their_defaults();
    void texts_are_translated_in_the_context_of_the_class();
    void the_slots_stand_in_order();

private:
    void add_device_classes();
    Probe_Air air;
};

void tst_client_settings_air::init()
{
    plattform->device_class = 0;
    plattform->desktop_width = 1920;
    air.input = 'W';
    air.position = 'F';
    air.room = 'R';
    air.bass = 0;
    air.volume = 42;
    air.mute = air.lock = 0;
    air.pending = 0;
}

void tst_client_settings_air::add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

// One line for each item of the grid, in order of adding: what it is, a label by its text; row, column, row
// span and column span; and the alignment, where it has one.
static QStringList described_grid(const Client_Settings_Air &tab)
{
    const QMap<QWidget *, QString> names = {
        {tab.name_label, "name"},         {tab.model_label, "model"},  {tab.vol_dial, "dial"},
        {tab.vol_slider, "slider"},       {tab.vol_label, "read-out"}, {tab.input_combo, "input"},
        {tab.position_combo, "position"}, {tab.bass_combo, "bass"},    {tab.room_combo, "room"},
        {tab.beep_button, "beep"},        {tab.mute_button, "mute"},   {tab.lock_button, "lock"},
    };
    const QMap<Qt::Alignment::Int, QString> alignments = {{Qt::AlignRight, " right"},
                                                          {Qt::AlignCenter, " centre"}};
    QStringList lines;
    for (int index = 0; index < tab.grid->count(); ++index) {
        QWidget *widget = tab.grid->itemAt(index)->widget();
        const auto *label = qobject_cast<QLabel *>(widget);
        QString line = names.value(widget);
        if (qobject_cast<RZPixmapLabel *>(widget))
            line = "banner";
        else if (line.isEmpty() && label)
            line = '"' + label->text() + '"';
        for (const int number : place_of(tab.grid, widget))
            line += ' ' + QString::number(number);
        const Qt::Alignment alignment = alignment_of(tab.grid, widget);
        if (alignment)
            line += alignments.value(alignment, " otherwise");
        lines.append(line);
    }
    return lines;
}

void tst_client_settings_air::the_grid_is_filled_in_order_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QStringList>("grid");
    const QStringList desktop = {
        "banner 0 0 1 6",
        "\"Speaker:\" 1 0 1 1 right",
        "name 1 1 1 1",
        "model 1 2 1 1",
        "dial 1 3 6 3",
        "\"SPDIF Vol:\" 2 0 1 1 right",
        "slider 2 1 1 2",
        "read-out 7 3 1 3 centre",
        "\"Active Input:\" 4 0 1 1 right",
        "input 4 1 1 1",
        "\"Speaker Position:\" 5 0 1 1 right",
        "position 5 1 1 1",
        "\"Bass Level:\" 6 0 1 1 right",
        "bass 6 1 1 1",
        "\"Room Type:\" 7 0 1 1 right",
        "room 7 1 1 1",
        "beep 8 3 1 1",
        "mute 8 4 1 1",
        "lock 8 5 1 1",
    };
    const QStringList tablet = {
        "banner 0 0 1 6",
        "\"Speaker:\" 1 0 1 1 right",
        "name 1 1 1 1",
        "model 1 2 1 1",
        "dial 1 3 9 3",
        "\"SPDIF Vol:\" 2 0 1 1 right",
        "slider 2 1 1 2",
        "read-out 10 3 1 3 centre",
        "\"Active Input:\" 4 0 1 1 right",
        "input 4 1 1 1",
        "\" \" 5 0 1 1",
        "\"Speaker Position:\" 6 0 1 1 right",
        "position 6 1 1 1",
        "\" \" 7 0 1 1",
        "\"Bass Level:\" 8 0 1 1 right",
        "bass 8 1 1 1",
        "\" \" 9 0 1 1",
        "\"Room Type:\" 10 0 1 1 right",
        "room 10 1 1 1",
        "\" \" 11 0 1 1",
        "beep 12 3 1 1",
        "mute 12 4 1 1",
        "lock 12 5 1 1",
    };
    const QStringList phone = {
        "banner 0 0 1 3",
        "\"Speaker:\" 1 0 1 1 right",
        "name 1 1 1 1",
        "model 1 2 1 1",
        "\"SPDIF Vol:\" 2 0 1 1 right",
        "slider 2 1 1 2",
        "read-out 3 1 1 1 centre",
        "\"Active Input:\" 4 0 1 1 right",
        "input 4 1 1 1",
        "\" \" 5 0 1 1",
        "\"Speaker Position:\" 6 0 1 1 right",
        "position 6 1 1 1",
        "\"Bass Level:\" 7 0 1 1 right",
        "bass 7 1 1 1",
        "\"Room Type:\" 8 0 1 1 right",
        "room 8 1 1 1",
        "\" \" 9 0 1 1",
        "beep 10 0 1 1",
        "mute 10 1 1 1",
        "lock 10 2 1 1",
    };
    QTest::newRow("unset") << 0 << desktop;
    QTest::newRow("phone") << DEVICE_PHONE << phone;
    QTest::newRow("tablet") << DEVICE_TABLET << tablet;
    QTest::newRow("desktop") << DEVICE_DESKTOP << desktop;
}

void tst_client_settings_air::the_grid_is_filled_in_order()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(tab.layout(), tab.grid);
    QTEST(described_grid(tab), "grid");
}

void tst_client_settings_air::no_widget_has_a_style_sheet()
{
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(tab.styleSheet(), QString());
    for (const QWidget *widget : tab.findChildren<QWidget *>())
        QCOMPARE(widget->styleSheet(), QString());
}

void tst_client_settings_air::the_banner_is_the_wide_one_above_2000_pixels()
{
    plattform->desktop_width = 2000;
    const Client_Settings_Air narrow(nullptr, &air, nullptr);
    plattform->desktop_width = 2001;
    const Client_Settings_Air wide(nullptr, &air, nullptr);
    const auto picture = [](const Client_Settings_Air &tab) {
        return qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage();
    };
    QCOMPARE(picture(narrow), QPixmap(":/GRAFX/Deko_Air_640.png").toImage());
    QCOMPARE(picture(wide), QPixmap(":/GRAFX/Deko_Air_2k.png").toImage());
}

void tst_client_settings_air::the_slider_is_set_up_for_a_volume()
{
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(tab.vol_slider->orientation(), Qt::Horizontal);
    QCOMPARE(tab.vol_slider->minimum(), 0);
    QCOMPARE(tab.vol_slider->maximum(), 100);
    QCOMPARE(tab.vol_slider->singleStep(), 1);
    QCOMPARE(tab.vol_slider->pageStep(), 10);
    QVERIFY(tab.vol_slider->hasTracking());
    QCOMPARE(tab.vol_slider->tickPosition(), QSlider::TicksBothSides);
    QCOMPARE(tab.vol_slider->tickInterval(), 10);
    QCOMPARE(tab.vol_slider->value(), 42);
}

void tst_client_settings_air::the_dial_wraps_and_shows_no_volume()
{
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(tab.vol_dial->minimum(), 0);
    QCOMPARE(tab.vol_dial->maximum(), 50);
    QVERIFY(tab.vol_dial->wrapping());
    QVERIFY(tab.vol_dial->hasTracking());
    QCOMPARE(tab.vol_dial->value(), 0);
    QCOMPARE(tab.dial_last, 0);
    QCOMPARE(tab.dial_spare, 0);
}

void tst_client_settings_air::combos_have_their_entries_in_order()
{
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(entries(tab.input_combo),
             (QStringList{"WiFi", "Coaxial (1)", "Optical (2)", "Bluetooth", "Automatic"}));
    QCOMPARE(entries(tab.position_combo), (QStringList{"Free", "Wall", "Corner"}));
    QCOMPARE(entries(tab.bass_combo), (QStringList{"Bass -1", "Bass Normal", "Bass +1", "Bass +2"}));
    QCOMPARE(entries(tab.room_combo),
             (QStringList{"Strong Reverb", "Reverb", "Normal Room", "Dampened", "Strongly Dampened"}));
}

void tst_client_settings_air::buttons_have_their_texts()
{
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(tab.beep_button->text(), QString("Beep!"));
    QCOMPARE(tab.mute_button->text(), QString("Mute"));
    QCOMPARE(tab.lock_button->text(), QString("Lock"));
    QVERIFY(!tab.beep_button->isCheckable());
    QVERIFY(tab.mute_button->isCheckable());
    QVERIFY(tab.lock_button->isCheckable());
}

void tst_client_settings_air::speaker_labels_show_name_and_model_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("model");
    QTest::newRow("known") << 13 << "(" + model_name(13) + ")";
    QTest::newRow("outside the table") << 99 << "(Unknown Speaker :-()";
}

void tst_client_settings_air::speaker_labels_show_name_and_model()
{
    QFETCH(int, type);
    Probe_Air speaker("Living Room", type);
    const Client_Settings_Air tab(nullptr, &speaker, nullptr);
    QCOMPARE(tab.name_label->text(), QString("<b>Living Room</b>"));
    QTEST(tab.model_label->text(), "model");
    QCOMPARE(tab.air, &speaker);
    QCOMPARE(tab.control, &speaker);
}

void tst_client_settings_air::what_looks_like_markup_stands_as_it_is()
{
    Probe_Air speaker("<i>Bath</i> & Spa", 13);
    const Client_Settings_Air tab(nullptr, &speaker, nullptr);
    QCOMPARE(tab.name_label->text(), QString("<b>&lt;i&gt;Bath&lt;/i&gt; &amp; Spa</b>"));
}

void tst_client_settings_air::letters_select_their_entries_data()
{
    QTest::addColumn<char>("letter");
    QTest::addColumn<int>("input");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("room");
    QTest::newRow("W") << 'W' << 0 << 1 << -1;
    QTest::newRow("D") << 'D' << 1 << -1 << 4;
    QTest::newRow("d") << 'd' << 2 << -1 << 3;
    QTest::newRow("B") << 'B' << 3 << -1 << -1;
    QTest::newRow("A") << 'A' << 4 << -1 << -1;
    QTest::newRow("F") << 'F' << 4 << 0 << -1;
    QTest::newRow("C") << 'C' << 4 << 2 << -1;
    QTest::newRow("R") << 'R' << 4 << -1 << 0;
    QTest::newRow("r") << 'r' << 4 << -1 << 1;
    QTest::newRow("n") << 'n' << 4 << -1 << 2;
    QTest::newRow("unknown") << '-' << 4 << -1 << -1;
    QTest::newRow("never answered") << '\0' << 4 << -1 << -1;
    QTest::newRow("above ASCII") << '\xff' << 4 << -1 << -1;
}

void tst_client_settings_air::letters_select_their_entries()
{
    QFETCH(char, letter);
    air.input = air.position = air.room = letter;
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QTEST(tab.input_combo->currentIndex(), "input");
    QTEST(tab.position_combo->currentIndex(), "position");
    QTEST(tab.room_combo->currentIndex(), "room");
}

void tst_client_settings_air::the_bass_value_is_the_index_data()
{
    QTest::addColumn<int>("bass");
    QTest::addColumn<int>("index");
    for (int bass = 0; bass < 4; ++bass)
        QTest::addRow("%d", bass) << bass << bass;
    QTest::newRow("4") << 4 << -1;
    QTest::newRow("below 0") << -7 << -1;
    QTest::newRow("highest") << std::numeric_limits<int>::max() << -1;
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << -1;
}

void tst_client_settings_air::the_bass_value_is_the_index()
{
    QFETCH(int, bass);
    air.bass = bass;
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QTEST(tab.bass_combo->currentIndex(), "index");
}

void tst_client_settings_air::mute_and_lock_are_checked_by_any_value_but_0()
{
    air.mute = 1;
    air.lock = 0;
    const Client_Settings_Air muted(nullptr, &air, nullptr);
    QVERIFY(muted.mute_button->isChecked());
    QVERIFY(!muted.lock_button->isChecked());

    air.mute = 0;
    air.lock = -1;
    const Client_Settings_Air locked(nullptr, &air, nullptr);
    QVERIFY(!locked.mute_button->isChecked());
    QVERIFY(locked.lock_button->isChecked());
}

void tst_client_settings_air::the_read_out_has_the_form_of_the_constructor_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("text");
    QTest::newRow("unset") << 0 << "SPDIF Vol:42  / 100";
    QTest::newRow("phone") << DEVICE_PHONE << "42  / 100";
    QTest::newRow("tablet") << DEVICE_TABLET << "SPDIF Vol:42  / 100";
    QTest::newRow("desktop") << DEVICE_DESKTOP << "SPDIF Vol:42  / 100";
}

void tst_client_settings_air::the_read_out_has_the_form_of_the_constructor()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QTEST(tab.vol_label->text(), "text");
}

void tst_client_settings_air::the_fence_starts_at_the_volume()
{
    const Client_Settings_Air tab(nullptr, &air, nullptr);
    QCOMPARE(tab.slider_last, 42);
    QVERIFY(!tab.mute_timer);
}

void tst_client_settings_air::construction_asks_nothing_of_the_speaker_data()
{
    add_device_classes();
}

void tst_client_settings_air::construction_asks_nothing_of_the_speaker()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Probe_Air speaker;
    speaker.input = 'B'; // without a record, a Bluetooth request would crash
    speaker.position = 'C';
    speaker.room = 'D';
    speaker.bass = 3;
    speaker.volume = 77;
    speaker.mute = speaker.lock = 1;
    speaker.mt = 5;
    speaker.pending = 0;
    const Client_Settings_Air tab(nullptr, &speaker, nullptr);
    QCOMPARE(speaker.pending, 0);
    QCOMPARE(speaker.volumes, QList<int>());
    QCOMPARE(speaker.mutes, QStringList());
    QVERIFY(!tab.mute_timer);
}

void tst_client_settings_air::without_a_speaker_the_controls_keep_their_defaults_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("text");
    QTest::newRow("unset") << 0 << "SPDIF Vol:0  / 100";
    QTest::newRow("phone") << DEVICE_PHONE << "0  / 100";
    QTest::newRow("tablet") << DEVICE_TABLET << "SPDIF Vol:0  / 100";
    QTest::newRow("desktop") << DEVICE_DESKTOP << "SPDIF Vol:0  / 100";
}

void tst_client_settings_air::without_a_speaker_the_controls_keep_their_defaults()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Settings_Air tab(nullptr, nullptr, nullptr);
    QVERIFY(!tab.control && !tab.air && !tab.device);
    QVERIFY(!tab.name_label && !tab.model_label);
    QCOMPARE(text_at(tab.grid, 1, 0), QString("Speaker:"));
    QVERIFY(widgets_at(tab.grid, 1, 1).isEmpty());
    QVERIFY(widgets_at(tab.grid, 1, 2).isEmpty());
    QCOMPARE(tab.vol_slider->value(), 0);
    QCOMPARE(tab.slider_last, 0);
    QTEST(tab.vol_label->text(), "text");
    for (const QComboBox *combo : {tab.input_combo, tab.position_combo, tab.bass_combo, tab.room_combo})
        QCOMPARE(combo->currentIndex(), 0);
    QVERIFY(!tab.mute_button->isChecked());
    QVERIFY(!tab.lock_button->isChecked());
}

void tst_client_settings_air::texts_are_translated_in_the_context_of_the_class()
{
    Marking_Translator translator("Client_Settings_Air");
    QCoreApplication::installTranslator(&translator);
    plattform->device_class = DEVICE_TABLET;
    Client_Settings_Air tab(nullptr, &air, nullptr);
    for (int row = 1; row <= 11; ++row)
        if (const QLabel *label = label_at(tab.grid, row, 0))
            QVERIFY2(label->text().startsWith('#'), qPrintable(label->text()));
    for (const QComboBox *combo : {tab.input_combo, tab.position_combo, tab.bass_combo, tab.room_combo})
        for (const QString &entry : entries(combo))
            QVERIFY2(entry.startsWith('#'), qPrintable(entry));
    for (const QPushButton *button : {tab.beep_button, tab.mute_button, tab.lock_button})
        QVERIFY2(button->text().startsWith('#'), qPrintable(button->text()));
    QCOMPARE(tab.vol_label->text(), QString("#SPDIF Vol:42  / 100"));
    QCOMPARE(tab.name_label->text(), QString("<b>Kitchen</b>"));
    tab.refresh(&air, nullptr);
    QCOMPARE(tab.vol_label->text(), QString("#SPDIF Vol:42 / 100"));
}

void tst_client_settings_air::the_slots_stand_in_order()
{
    const QMetaObject &meta = Client_Settings_Air::staticMetaObject;
    QStringList slot_names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(index).access(), QMetaMethod::Private);
        slot_names.append(meta.method(index).methodSignature());
    }
    QCOMPARE(slot_names,
             (QStringList{"inputChanged(int)", "dialValueChanged(int)", "sliderValueChanged(int)",
                          "sliderPressed()", "beepClicked()", "lockToggled(bool)", "muteToggled(bool)",
                          "muteTimer()", "bassClicked(int)", "positionClicked(int)", "roomClicked(int)"}));
}

QTEST_MAIN(tst_client_settings_air)
#include "tst_client_settings_air.moc"
