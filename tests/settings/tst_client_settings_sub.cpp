// SPDX-License-Identifier: MIT
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QtTest>
#include <limits>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/speaker_types.h"
#include "settings/client_settings_sub.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"
#include "tests/settings/probe_sub.h"

namespace
{
using Places = QMap<QString, QList<int>>; // row, column, row span, column span

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

QStringList entries(const QComboBox *combo)
{
    QStringList texts;
    for (int index = 0; index < combo->count(); ++index)
        texts.append(combo->itemText(index));
    return texts;
}

const Places desktop_places = {
    {"banner", {0, 0, 1, 7}},   {"speaker", {1, 1, 1, 2}},    {"eq", {1, 6, 1, 1}},
    {"input", {2, 1, 1, 1}},    {"volume", {3, 1, 1, 5}},     {"volume text", {3, 6, 1, 1}},
    {"fg", {4, 1, 1, 5}},       {"fg text", {4, 6, 1, 1}},    {"slope", {5, 1, 1, 1}},
    {"hp check", {6, 1, 1, 1}}, {"hp", {6, 2, 1, 4}},         {"hp text", {6, 6, 1, 1}},
    {"phase", {7, 1, 1, 5}},    {"phase text", {7, 6, 1, 1}}, {"polarity", {8, 1, 1, 1}},
    {"beep", {8, 4, 1, 1}},     {"mute", {8, 5, 1, 1}},       {"lock", {8, 6, 1, 1}},
};
const Places tablet_places = {
    {"banner", {0, 0, 1, 7}},    {"speaker", {2, 1, 1, 2}},     {"eq", {2, 6, 1, 1}},
    {"input", {4, 1, 1, 1}},     {"volume", {6, 1, 1, 5}},      {"volume text", {6, 6, 1, 1}},
    {"fg", {8, 1, 1, 5}},        {"fg text", {8, 6, 1, 1}},     {"slope", {10, 1, 1, 1}},
    {"hp check", {12, 1, 1, 1}}, {"hp", {12, 2, 1, 4}},         {"hp text", {12, 6, 1, 1}},
    {"phase", {14, 1, 1, 5}},    {"phase text", {14, 6, 1, 1}}, {"polarity", {16, 1, 1, 1}},
    {"beep", {16, 4, 1, 1}},     {"mute", {16, 5, 1, 1}},       {"lock", {16, 6, 1, 1}},
};
const Places phone_places = {
    {"banner", {0, 0, 1, 4}},    {"speaker", {2, 1, 1, 2}},     {"eq", {2, 3, 1, 1}},
    {"input", {4, 1, 1, 1}},     {"volume", {6, 1, 1, 2}},      {"volume text", {6, 3, 1, 1}},
    {"fg", {8, 1, 1, 2}},        {"fg text", {8, 3, 1, 1}},     {"slope", {10, 1, 1, 1}},
    {"hp check", {12, 1, 1, 1}}, {"hp", {12, 2, 1, 1}},         {"hp text", {12, 3, 1, 1}},
    {"phase", {14, 1, 1, 2}},    {"phase text", {14, 3, 1, 1}}, {"polarity", {16, 1, 1, 1}},
    {"beep", {17, 0, 1, 1}},     {"mute", {17, 1, 1, 1}},       {"lock", {17, 2, 1, 1}},
};
const QStringList captions = {
    "Speaker:", "Input:", "Volume:", "Frequency:", "Slope:", "HighPass:", "Phase:", "Polarity:"};

QMap<QString, QWidget *> widgets_of(const Client_Settings_Sub &tab)
{
    return {
        {"banner", label_at(tab.grid, 0, 0)},
        {"speaker", tab.speaker_label},
        {"eq", tab.eq_button},
        {"input", tab.input_combo},
        {"volume", tab.vol_slider},
        {"volume text", tab.vol_label},
        {"fg", tab.fg_slider},
        {"fg text", tab.fg_label},
        {"slope", tab.slope_combo},
        {"hp check", tab.hp_check},
        {"hp", tab.hp_slider},
        {"hp text", tab.hp_label},
        {"phase", tab.phase_slider},
        {"phase text", tab.phase_label},
        {"polarity", tab.polarity_combo},
        {"beep", tab.beep_button},
        {"mute", tab.mute_button},
        {"lock", tab.lock_button},
    };
}
} // namespace

// How the tab is built; what it does is told in tst_client_settings_sub_slots and _refresh.
class tst_client_settings_sub : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void nothing_else_stands_in_the_grid_data();
    void nothing_else_stands_in_the_grid();
    void captions_stand_right_data();
    void captions_stand_right();
    void the_banner_is_the_wide_one_above_2000_pixels();
    void sliders_have_their_ranges_data();
    void sliders_have_their_ranges();
    void combos_have_their_entries_in_order();
    void buttons_have_their_texts();
    void the_speaker_label_shows_name_and_model_data();
    void the_speaker_label_shows_name_and_model();
    void every_control_shows_the_value_of_the_subwoofer();
    void letters_select_their_input_data();
    void letters_select_their_input();
    void a_slope_selects_its_entry_data();
    void a_slope_selects_its_entry();
    void a_polarity_selects_its_entry_data();
    void a_polarity_selects_its_entry();
    void values_without_place_stop_at_the_end_of_the_slider_data();
    void values_without_place_stop_at_the_end_of_the_slider();
    void flags_are_checked_by_any_value_but_0();
    void construction_asks_nothing_of_the_subwoofer_data();
    void construction_asks_nothing_of_the_subwoofer();
    void without_a_subwoofer_the_controls_keep_their_defaults();
    void texts_are_translated_in_the_context_of_the_class();
    void the_slots_stand_in_order();

private:
    void add_device_classes();
};

void tst_client_settings_sub::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    plattform->desktop_width = 1920;
}

void tst_client_settings_sub::add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_settings_sub::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<Places>("places");
    QTest::newRow("unset") << 0 << desktop_places;
    QTest::newRow("phone") << DEVICE_PHONE << phone_places;
    QTest::newRow("tablet") << DEVICE_TABLET << tablet_places;
    QTest::newRow("desktop") << DEVICE_DESKTOP << desktop_places;
}

void tst_client_settings_sub::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    QFETCH(Places, places);
    plattform->device_class = device_class;
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    QCOMPARE(tab.layout(), tab.grid);
    const QMap<QString, QWidget *> widgets = widgets_of(tab);
    QVERIFY(qobject_cast<RZPixmapLabel *>(widgets["banner"]));
    QCOMPARE(places.keys(), widgets.keys());
    for (const QString &item : places.keys())
        QVERIFY2(place_of(tab.grid, widgets[item]) == places[item], qPrintable(item));
}

void tst_client_settings_sub::nothing_else_stands_in_the_grid_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<int>("rows_per_item"); // two where a spacer stands before each
    QTest::newRow("unset") << 0 << 1;
    QTest::newRow("phone") << DEVICE_PHONE << 2;
    QTest::newRow("tablet") << DEVICE_TABLET << 2;
    QTest::newRow("desktop") << DEVICE_DESKTOP << 1;
}

void tst_client_settings_sub::nothing_else_stands_in_the_grid()
{
    QFETCH(int, device_class);
    QFETCH(int, rows_per_item);
    plattform->device_class = device_class;
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    for (int item = 1; item <= captions.size(); ++item) {
        const int row = item * rows_per_item;
        QCOMPARE(text_at(tab.grid, row, 0), captions.at(item - 1));
        if (rows_per_item == 2)
            QCOMPARE(text_at(tab.grid, row - 1, 0), QString(" "));
    }
    QCOMPARE(tab.grid->count(), captions.size() * rows_per_item + widgets_of(tab).size());
}

void tst_client_settings_sub::captions_stand_right_data()
{
    add_device_classes();
}

void tst_client_settings_sub::captions_stand_right()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    int found = 0;
    for (int row = 1; row < tab.grid->rowCount(); ++row) {
        QLabel *caption = label_at(tab.grid, row, 0);
        if (!caption || !captions.contains(caption->text()))
            continue;
        QCOMPARE(alignment_of(tab.grid, caption), Qt::AlignRight);
        ++found;
    }
    QCOMPARE(found, captions.size());
}

void tst_client_settings_sub::the_banner_is_the_wide_one_above_2000_pixels()
{
    Probe_Sub sub;
    plattform->desktop_width = 2000;
    const Client_Settings_Sub narrow(nullptr, &sub);
    plattform->desktop_width = 2001;
    const Client_Settings_Sub wide(nullptr, &sub);
    const auto picture = [](const Client_Settings_Sub &tab) {
        return qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage();
    };
    QCOMPARE(picture(narrow), QPixmap(":/GRAFX/Deko_Sub_640.png").toImage());
    QCOMPARE(picture(wide), QPixmap(":/GRAFX/Deko_Sub_2k.png").toImage());
}

void tst_client_settings_sub::sliders_have_their_ranges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("interval");
    QTest::newRow("volume") << "volume" << 0 << 100 << 10;
    QTest::newRow("crossover") << "fg" << 30 << 180 << 10;
    QTest::newRow("high-pass") << "hp" << 20 << 40 << 10;
    QTest::newRow("phase") << "phase" << 0 << 180 << 30;
}

void tst_client_settings_sub::sliders_have_their_ranges()
{
    QFETCH(QString, name);
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    const auto *slider = qobject_cast<RZSlider *>(widgets_of(tab)[name]);
    QVERIFY(slider);
    QTEST(slider->minimum(), "minimum");
    QTEST(slider->maximum(), "maximum");
    QTEST(slider->tickInterval(), "interval");
    QCOMPARE(slider->orientation(), Qt::Horizontal);
    QCOMPARE(slider->singleStep(), 1);
    QCOMPARE(slider->pageStep(), 10);
    QVERIFY(slider->hasTracking());
    QCOMPARE(slider->tickPosition(), QSlider::TicksBothSides);
}

void tst_client_settings_sub::combos_have_their_entries_in_order()
{
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    QCOMPARE(entries(tab.input_combo), (QStringList{"WiFi/LAN", "Coax", "LFE/Line", "XLR", "Speaker"}));
    QCOMPARE(entries(tab.slope_combo),
             (QStringList{"Filter Off", "6 dB/oct", "12 dB/oct", "18 dB/oct", "24 dB/oct"}));
    QCOMPARE(entries(tab.polarity_combo), (QStringList{"Normal", "Inverse"}));
}

void tst_client_settings_sub::buttons_have_their_texts()
{
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    QCOMPARE(tab.beep_button->text(), QString("Beep!"));
    QCOMPARE(tab.mute_button->text(), QString("Mute"));
    QCOMPARE(tab.lock_button->text(), QString("Lock"));
    QCOMPARE(tab.eq_button->text(), QString("EQ"));
    QCOMPARE(tab.hp_check->text(), QString("Enabled"));
    QVERIFY(!tab.beep_button->isCheckable());
    QVERIFY(!tab.eq_button->isCheckable());
    QVERIFY(tab.mute_button->isCheckable());
    QVERIFY(tab.lock_button->isCheckable());
    QVERIFY(!tab.hp_check->isTristate());
}

void tst_client_settings_sub::the_speaker_label_shows_name_and_model_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("known") << 18 << "<b>Cellar</b> (" + model_name(18) + ")";
    QTest::newRow("outside the table") << 99 << "<b>Cellar</b> (Unknown Speaker :-()";
}

void tst_client_settings_sub::the_speaker_label_shows_name_and_model()
{
    QFETCH(int, type);
    Probe_Sub sub("Cellar", type);
    const Client_Settings_Sub tab(nullptr, &sub);
    QTEST(tab.speaker_label->text(), "text");
    QCOMPARE(tab.sub, &sub);
    QCOMPARE(tab.control, &sub);
    QCOMPARE(tab.spare_index, -1);
}

void tst_client_settings_sub::every_control_shows_the_value_of_the_subwoofer()
{
    Probe_Sub sub;
    sub.input = 'X';
    const Client_Settings_Sub tab(nullptr, &sub);
    QCOMPARE(tab.input_combo->currentText(), QString("XLR"));
    QCOMPARE(tab.vol_slider->value(), 42);
    QCOMPARE(tab.vol_label->text(), QString("42 %"));
    QCOMPARE(tab.slider_last, 42);
    QCOMPARE(tab.fg_slider->value(), 80);
    QCOMPARE(tab.fg_label->text(), QString("80 Hz"));
    QCOMPARE(tab.slope_combo->currentText(), QString("24 dB/oct"));
    QVERIFY(tab.hp_check->isChecked());
    QCOMPARE(tab.hp_slider->value(), 25);
    QCOMPARE(tab.hp_label->text(), QString("25 Hz"));
    QCOMPARE(tab.phase_slider->value(), 90);
    QCOMPARE(tab.phase_label->text(), QString("90\u00b0"));
    QCOMPARE(tab.polarity_combo->currentText(), QString("Inverse"));
    QVERIFY(!tab.mute_button->isChecked());
    QVERIFY(!tab.lock_button->isChecked());
    QVERIFY(!tab.mute_timer);
}

void tst_client_settings_sub::letters_select_their_input_data()
{
    QTest::addColumn<char>("letter");
    QTest::addColumn<int>("index");
    QTest::newRow("W") << 'W' << 0;
    QTest::newRow("D") << 'D' << 1;
    QTest::newRow("C") << 'C' << 2;
    QTest::newRow("X") << 'X' << 3;
    QTest::newRow("L") << 'L' << 4;
    QTest::newRow("S") << 'S' << -1; // "Speaker" has another letter
    QTest::newRow("lower case") << 'w' << -1;
    QTest::newRow("unknown") << '-' << -1;
    QTest::newRow("never answered") << '\0' << -1;
    QTest::newRow("above ASCII") << '\xff' << -1;
}

void tst_client_settings_sub::letters_select_their_input()
{
    QFETCH(char, letter);
    Probe_Sub sub;
    sub.input = letter;
    const Client_Settings_Sub tab(nullptr, &sub);
    QTEST(tab.input_combo->currentIndex(), "index");
}

void tst_client_settings_sub::a_slope_selects_its_entry_data()
{
    QTest::addColumn<int>("slope");
    QTest::addColumn<int>("index");
    for (int index = 0; index < 5; ++index)
        QTest::addRow("%d", 6 * index) << 6 * index << index;
    QTest::newRow("5") << 5 << 0; // divided as whole numbers
    QTest::newRow("29") << 29 << 4;
    QTest::newRow("30") << 30 << -1;
    QTest::newRow("below 0") << -6 << -1;
    QTest::newRow("highest") << highest << -1;
    QTest::newRow("lowest") << lowest << -1;
}

void tst_client_settings_sub::a_slope_selects_its_entry()
{
    QFETCH(int, slope);
    Probe_Sub sub;
    sub.steilh_fg = slope;
    const Client_Settings_Sub tab(nullptr, &sub);
    QTEST(tab.slope_combo->currentIndex(), "index");
}

void tst_client_settings_sub::a_polarity_selects_its_entry_data()
{
    QTest::addColumn<int>("polarity");
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0 << 0;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("2") << 2 << -1;
    QTest::newRow("below 0") << -3 << -1;
    QTest::newRow("highest") << highest << -1;
}

void tst_client_settings_sub::a_polarity_selects_its_entry()
{
    QFETCH(int, polarity);
    Probe_Sub sub;
    sub.polarity = polarity;
    const Client_Settings_Sub tab(nullptr, &sub);
    QTEST(tab.polarity_combo->currentIndex(), "index");
}

void tst_client_settings_sub::values_without_place_stop_at_the_end_of_the_slider_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QList<int>>("positions"); // volume, crossover, high-pass, phase
    QTest::newRow("highest") << highest << QList<int>{100, 180, 40, 180};
    QTest::newRow("lowest") << lowest << QList<int>{0, 30, 20, 0};
}

void tst_client_settings_sub::values_without_place_stop_at_the_end_of_the_slider()
{
    QFETCH(int, number);
    QFETCH(QList<int>, positions);
    Probe_Sub sub;
    sub.volume = sub.frequ_fg = sub.frequ_hp = sub.phase = number;
    const Client_Settings_Sub tab(nullptr, &sub);
    QCOMPARE((QList<int>{tab.vol_slider->value(), tab.fg_slider->value(), tab.hp_slider->value(),
                         tab.phase_slider->value()}),
             positions);
    // The read-outs tell what is stored.
    QCOMPARE(tab.vol_label->text(), QString::number(number) + " %");
    QCOMPARE(tab.fg_label->text(), QString::number(number) + " Hz");
    QCOMPARE(tab.hp_label->text(), QString::number(number) + " Hz");
    QCOMPARE(tab.phase_label->text(), QString::number(number) + "\u00b0");
    QCOMPARE(sub.pending, 0);
}

void tst_client_settings_sub::flags_are_checked_by_any_value_but_0()
{
    Probe_Sub sub;
    sub.mute = 7;
    sub.lock = 0;
    sub.hp_enabled = 0;
    const Client_Settings_Sub muted(nullptr, &sub);
    QVERIFY(muted.mute_button->isChecked());
    QVERIFY(!muted.lock_button->isChecked());
    QVERIFY(!muted.hp_check->isChecked());

    sub.mute = 0;
    sub.lock = -1;
    sub.hp_enabled = 2;
    const Client_Settings_Sub locked(nullptr, &sub);
    QVERIFY(!locked.mute_button->isChecked());
    QVERIFY(locked.lock_button->isChecked());
    QCOMPARE(locked.hp_check->checkState(), Qt::Checked);
}

void tst_client_settings_sub::construction_asks_nothing_of_the_subwoofer_data()
{
    add_device_classes();
}

void tst_client_settings_sub::construction_asks_nothing_of_the_subwoofer()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Probe_Sub sub;
    sub.input = 'L';
    sub.mute = sub.lock = 1;
    sub.mt = 5;
    sub.frequ_hp = 0;
    sub.hp_enabled = 0;
    const Client_Settings_Sub tab(nullptr, &sub);
    QCOMPARE(sub.pending, 0);
    QCOMPARE(sub.volumes, QList<int>());
    QCOMPARE(sub.mutes, QStringList());
    QCOMPARE(sub.frequ_hp, 0);
    QCOMPARE(sub.hp_enabled, 0);
    QVERIFY(!tab.mute_timer);
}

void tst_client_settings_sub::without_a_subwoofer_the_controls_keep_their_defaults()
{
    const Client_Settings_Sub tab(nullptr, nullptr);
    QVERIFY(!tab.control && !tab.sub && !tab.mute_timer);
    QCOMPARE(tab.speaker_label->text(), QString("<b>Name</b> (Model)"));
    QCOMPARE(tab.vol_label->text(), QString("0 %"));
    QCOMPARE(tab.fg_label->text(), QString("- Hz"));
    QCOMPARE(tab.hp_label->text(), QString("- Hz"));
    QCOMPARE(tab.phase_label->text(), QString("- \u00b0"));
    QCOMPARE(tab.vol_slider->value(), 0);
    QCOMPARE(tab.slider_last, 0);
    QCOMPARE(tab.fg_slider->value(), 30);
    QCOMPARE(tab.hp_slider->value(), 20);
    QCOMPARE(tab.phase_slider->value(), 0);
    for (const QComboBox *combo : {tab.input_combo, tab.slope_combo, tab.polarity_combo})
        QCOMPARE(combo->currentIndex(), 0);
    QVERIFY(!tab.hp_check->isChecked());
    QVERIFY(!tab.mute_button->isChecked());
    QVERIFY(!tab.lock_button->isChecked());
}

void tst_client_settings_sub::texts_are_translated_in_the_context_of_the_class()
{
    Marking_Translator translator("Client_Settings_Sub");
    QCoreApplication::installTranslator(&translator);
    plattform->device_class = DEVICE_TABLET;
    Probe_Sub sub;
    const Client_Settings_Sub tab(nullptr, &sub);
    for (int row = 1; row <= 16; ++row)
        QVERIFY2(text_at(tab.grid, row, 0).startsWith('#'), qPrintable(text_at(tab.grid, row, 0)));
    for (const QComboBox *combo : {tab.input_combo, tab.slope_combo, tab.polarity_combo})
        for (const QString &entry : entries(combo))
            QVERIFY2(entry.startsWith('#'), qPrintable(entry));
    for (const QPushButton *button : {tab.beep_button, tab.mute_button, tab.lock_button})
        QVERIFY2(button->text().startsWith('#'), qPrintable(button->text()));
    QCOMPARE(tab.eq_button->text(), QString("EQ"));
    QCOMPARE(tab.hp_check->text(), QString("Enabled"));
    QCOMPARE(tab.vol_label->text(), QString("42 %"));
}

void tst_client_settings_sub::the_slots_stand_in_order()
{
    const QMetaObject &meta = Client_Settings_Sub::staticMetaObject;
    QStringList slot_names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(index).access(), QMetaMethod::Private);
        slot_names.append(meta.method(index).methodSignature());
    }
    QCOMPARE(slot_names,
             (QStringList{"inputChanged(int)", "volSliderValueChanged(int)", "fgSliderValueChanged(int)",
                          "steilheitChanged(int)", "hpSliderValueChanged(int)", "hpChanged(int)",
                          "phaseSliderValueChanged(int)", "polarityChanged(int)", "lockToggled(bool)",
                          "muteToggled(bool)", "muteTimer()", "eqPressed()", "beepPressed()"}));
}

QTEST_MAIN(tst_client_settings_sub)
#include "tst_client_settings_sub.moc"
