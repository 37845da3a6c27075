// SPDX-License-Identifier: MIT
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QtTest>
#include <limits>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/speaker_types.h"
#include "settings/client_settings_sub_eq.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"
#include "tests/settings/probe_sub.h"

namespace
{
constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

struct Row {
    RZSlider *slider;
    QLabel *read_out;
};

// In the order of the rows: frequency, gain, Q.
QList<Row> rows_of(const Client_Settings_Sub_EQ &tab)
{
    return {
        {tab.freq_slider, tab.freq_label}, {tab.gain_slider, tab.gain_label}, {tab.q_slider, tab.q_label}};
}

QStringList read_outs(const Client_Settings_Sub_EQ &tab)
{
    return {tab.freq_label->text(), tab.gain_label->text(), tab.q_label->text()};
}

QList<int> band(const Virelo_Sub &sub)
{
    return {sub.eq_frequ, sub.eq_gain, sub.eq_q, sub.eq_enabled};
}
} // namespace

class tst_client_settings_sub_eq : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void only_the_device_caption_stands_right();
    void the_read_outs_of_gain_and_q_stand_left();
    void the_banner_is_the_subwoofers();
    void sliders_have_their_ranges_data();
    void sliders_have_their_ranges();
    void every_control_shows_the_value_of_the_subwoofer();
    void without_a_subwoofer_placeholders_stand();
    void without_a_subwoofer_nothing_happens();
    void only_device_and_freq_are_translated();
    void sliders_store_their_position_data();
    void sliders_store_their_position();
    void a_value_out_of_range_is_not_stored_data();
    void a_value_out_of_range_is_not_stored();
    void any_state_but_unchecked_turns_the_band_on();
    void unchecking_leaves_the_three_values();
    void construction_asks_nothing_of_the_subwoofer();
    void refresh_shows_another_subwoofer();
    void a_first_refresh_replaces_the_placeholders_where_no_slider_moves();
    void refresh_stores_back_what_was_read();
    void refresh_replaces_what_the_sliders_clamp_data();
    void refresh_replaces_what_the_sliders_clamp();
    void refresh_sets_the_values_in_order();
    void every_control_is_connected();
    void the_slots_stand_in_order();

private:
    std::unique_ptr<Probe_Sub> sub;
    std::unique_ptr<Client_Settings_Sub_EQ> tab;
};

void tst_client_settings_sub_eq::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    plattform->desktop_width = 1920;
    sub = std::make_unique<Probe_Sub>();
    tab = std::make_unique<Client_Settings_Sub_EQ>(nullptr, sub.get());
}

void tst_client_settings_sub_eq::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_settings_sub_eq::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Settings_Sub_EQ tab(nullptr, sub.get());
    QCOMPARE(tab.layout(), tab.grid);
    QLabel *banner = label_at(tab.grid, 0, 0);
    QVERIFY(qobject_cast<RZPixmapLabel *>(banner));
    QCOMPARE(place_of(tab.grid, banner), (QList<int>{0, 0, 1, 7}));
    QCOMPARE(text_at(tab.grid, 1, 0), QString("Device:"));
    QCOMPARE(place_of(tab.grid, tab.speaker_label), (QList<int>{1, 1, 1, 2}));
    const QStringList captions = {"Freq:", "Gain:", "Q:"};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(text_at(tab.grid, 2 + i, 0), captions.at(i));
        QCOMPARE(place_of(tab.grid, rows_of(tab).at(i).slider), (QList<int>{2 + i, 1, 1, 1}));
        QCOMPARE(place_of(tab.grid, rows_of(tab).at(i).read_out), (QList<int>{2 + i, 2, 1, 1}));
    }
    QCOMPARE(place_of(tab.grid, tab.eq_check), (QList<int>{5, 0, 1, 2}));
    QCOMPARE(tab.eq_check->text(), QString("EQ active"));
    QCOMPARE(tab.grid->count(), 13);
}

void tst_client_settings_sub_eq::only_the_device_caption_stands_right()
{
    QCOMPARE(alignment_of(tab->grid, label_at(tab->grid, 1, 0)), Qt::AlignRight);
    for (const int row : {2, 3, 4})
        QCOMPARE(alignment_of(tab->grid, label_at(tab->grid, row, 0)), Qt::Alignment());
}

void tst_client_settings_sub_eq::the_read_outs_of_gain_and_q_stand_left()
{
    QCOMPARE(alignment_of(tab->grid, tab->freq_label), Qt::Alignment());
    QCOMPARE(alignment_of(tab->grid, tab->gain_label), Qt::AlignLeft);
    QCOMPARE(alignment_of(tab->grid, tab->q_label), Qt::AlignLeft);
}

void tst_client_settings_sub_eq::the_banner_is_the_subwoofers()
{
    const auto picture = [](const Client_Settings_Sub_EQ &tab) {
        return qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage();
    };
    QCOMPARE(picture(*tab), QPixmap(":/GRAFX/Deko_Sub_640.png").toImage());
    plattform->desktop_width = 2001;
    const Client_Settings_Sub_EQ wide(nullptr, sub.get());
    QCOMPARE(picture(wide), QPixmap(":/GRAFX/Deko_Sub_2k.png").toImage());
}

void tst_client_settings_sub_eq::sliders_have_their_ranges_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("page");
    QTest::newRow("frequency") << 0 << 20 << 200 << 10 << 10;
    QTest::newRow("gain") << 1 << -24 << 6 << 3 << 10;
    QTest::newRow("Q") << 2 << 1 << 10 << 1 << 1;
}

void tst_client_settings_sub_eq::sliders_have_their_ranges()
{
    QFETCH(int, row);
    const RZSlider *slider = rows_of(*tab).at(row).slider;
    QTEST(slider->minimum(), "minimum");
    QTEST(slider->maximum(), "maximum");
    QTEST(slider->tickInterval(), "interval");
    QTEST(slider->pageStep(), "page");
    QCOMPARE(slider->orientation(), Qt::Horizontal);
    QCOMPARE(slider->singleStep(), 1);
    QVERIFY(slider->hasTracking());
}

void tst_client_settings_sub_eq::every_control_shows_the_value_of_the_subwoofer()
{
    QCOMPARE(tab->sub, sub.get());
    QCOMPARE(tab->control, sub.get());
    QCOMPARE(tab->speaker_label->text(), "<b>Cellar</b> (" + model_name(18) + ")");
    QCOMPARE(tab->freq_slider->value(), 45);
    QCOMPARE(tab->gain_slider->value(), -6);
    QCOMPARE(tab->q_slider->value(), 4);
    QCOMPARE(read_outs(*tab), (QStringList{"45 Hz", "-6 dB", "4"}));
    QVERIFY(tab->eq_check->isChecked());

    sub->eq_gain = -24;
    sub->eq_q = 1;
    sub->eq_enabled = 0;
    const Client_Settings_Sub_EQ other(nullptr, sub.get());
    QCOMPARE(read_outs(other), (QStringList{"45 Hz", "-24 dB", "1"}));
    QVERIFY(!other.eq_check->isChecked());
}

void tst_client_settings_sub_eq::without_a_subwoofer_placeholders_stand()
{
    const Client_Settings_Sub_EQ none(nullptr, nullptr);
    QVERIFY(!none.control && !none.sub);
    QCOMPARE(none.speaker_label->text(), QString("<b>Name</b> (Model)"));
    QCOMPARE(read_outs(none), (QStringList{"Hz", "dB", "Q / 1"}));
    QVERIFY(!none.eq_check->isChecked());
}

void tst_client_settings_sub_eq::without_a_subwoofer_nothing_happens()
{
    const Client_Settings_Sub_EQ none(nullptr, nullptr);
    const QSignalSpy moved(none.gain_slider, &QSlider::valueChanged);
    none.freq_slider->setValue(100);
    none.gain_slider->setValue(-6);
    none.q_slider->setValue(5);
    none.eq_check->setChecked(true);
    QCOMPARE(moved.size(), 1);
    QCOMPARE(read_outs(none), (QStringList{"Hz", "dB", "Q / 1"}));
}

void tst_client_settings_sub_eq::only_device_and_freq_are_translated()
{
    Marking_Translator translator("Client_Settings_Sub_EQ");
    QCoreApplication::installTranslator(&translator);
    const Client_Settings_Sub_EQ marked(nullptr, sub.get());
    QStringList texts;
    for (const int row : {1, 2, 3, 4})
        texts.append(text_at(marked.grid, row, 0));
    QCOMPARE(texts, (QStringList{"#Device:", "#Freq:", "Gain:", "Q:"}));
    QCOMPARE(marked.eq_check->text(), QString("EQ active"));
    QCOMPARE(read_outs(marked), (QStringList{"45 Hz", "-6 dB", "4"}));
}

void tst_client_settings_sub_eq::sliders_store_their_position_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QList<int>>("stored"); // frequency, gain, Q
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("lowest") << -1000 << QList<int>{20, -24, 1} << QStringList{"20 Hz", "-24 dB", "1"};
    QTest::newRow("between") << 5 << QList<int>{20, 5, 5} << QStringList{"20 Hz", "5 dB", "5"};
    QTest::newRow("highest") << 1000 << QList<int>{200, 6, 10} << QStringList{"200 Hz", "6 dB", "10"};
}

void tst_client_settings_sub_eq::sliders_store_their_position()
{
    QFETCH(int, position);
    for (const Row &row : rows_of(*tab)) {
        sub->pending = 0;
        row.slider->setValue(position);
        QCOMPARE(sub->pending, 1);
    }
    QTEST(band(*sub).mid(0, 3), "stored");
    QTEST(read_outs(*tab), "texts");
    QCOMPARE(sub->eq_enabled, 1);
}

void tst_client_settings_sub_eq::a_value_out_of_range_is_not_stored_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("value");
    for (const int value : {lowest, 19, 201, highest})
        QTest::addRow("frequency %d", value) << QByteArray("frequSliderValueChanged") << value;
    for (const int value : {lowest, -25, 7, highest})
        QTest::addRow("gain %d", value) << QByteArray("gainSliderValueChanged") << value;
    for (const int value : {lowest, 0, 11, highest})
        QTest::addRow("Q %d", value) << QByteArray("QSliderValueChanged") << value;
}

void tst_client_settings_sub_eq::a_value_out_of_range_is_not_stored()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, value);
    for (const Row &row : rows_of(*tab))
        row.read_out->clear();
    QVERIFY(QMetaObject::invokeMethod(tab.get(), slot, Q_ARG(int, value)));
    QCOMPARE(band(*sub), (QList<int>{45, -6, 4, 1}));
    QCOMPARE(sub->pending, 0);
    // The read-out is written all the same, from what is stored.
    const QStringList texts = read_outs(*tab);
    QCOMPARE(texts.join(""), texts.at(slot.startsWith("f") ? 0 : slot.startsWith("g") ? 1 : 2));
    QVERIFY(!texts.join("").isEmpty());
}

void tst_client_settings_sub_eq::any_state_but_unchecked_turns_the_band_on()
{
    const QList<QPair<int, int>> states = {{0, 0}, {1, 1}, {2, 1}, {0, 0}};
    for (const auto &state : states) {
        Log_Capture log;
        sub->pending = 0;
        QVERIFY(QMetaObject::invokeMethod(tab.get(), "checkChanged", Q_ARG(int, state.first)));
        QCOMPARE(sub->eq_enabled, state.second);
        QCOMPARE(sub->pending, 1);
        QCOMPARE(log.debug_lines(),
                 QStringList("void Client_Settings_Sub_EQ::checkChanged() " + QString::number(state.first)));
    }
}

void tst_client_settings_sub_eq::unchecking_leaves_the_three_values()
{
    tab->eq_check->setChecked(false);
    QCOMPARE(band(*sub), (QList<int>{45, -6, 4, 0}));
    QCOMPARE(read_outs(*tab), (QStringList{"45 Hz", "-6 dB", "4"}));
    tab->eq_check->setChecked(true);
    QCOMPARE(band(*sub), (QList<int>{45, -6, 4, 1}));
}

void tst_client_settings_sub_eq::construction_asks_nothing_of_the_subwoofer()
{
    sub->eq_frequ = sub->eq_gain = sub->eq_q = highest;
    const Client_Settings_Sub_EQ other(nullptr, sub.get());
    QCOMPARE(sub->pending, 0);
    QCOMPARE(band(*sub), (QList<int>{highest, highest, highest, 1}));
    QCOMPARE(other.freq_slider->value(), 200);
    QCOMPARE(other.gain_slider->value(), 6);
    QCOMPARE(other.q_slider->value(), 10);
}

void tst_client_settings_sub_eq::refresh_shows_another_subwoofer()
{
    Client_Settings_Sub_EQ fixed(nullptr, nullptr);
    fixed.refresh(sub.get());
    QCOMPARE(fixed.sub, sub.get());
    QVERIFY(!fixed.control);
    QCOMPARE(fixed.speaker_label->text(), "<b>Cellar</b> (" + model_name(18) + ")");
    QCOMPARE(read_outs(fixed), (QStringList{"45 Hz", "-6 dB", "4"}));
    QVERIFY(fixed.eq_check->isChecked());

    Probe_Sub attic("Attic");
    fixed.refresh(&attic);
    sub->pending = 0;
    fixed.freq_slider->setValue(150);
    QCOMPARE(attic.eq_frequ, 150);
    QCOMPARE(sub->eq_frequ, 45);
    QCOMPARE(sub->pending, 0);
}

void tst_client_settings_sub_eq::a_first_refresh_replaces_the_placeholders_where_no_slider_moves()
{
    Client_Settings_Sub_EQ fixed(nullptr, nullptr);
    sub->eq_frequ = fixed.freq_slider->value();
    sub->eq_gain = fixed.gain_slider->value();
    sub->eq_q = fixed.q_slider->value();
    sub->eq_enabled = 0;
    fixed.refresh(sub.get());
    QCOMPARE(sub->pending, 0);
    QCOMPARE(read_outs(fixed), (QStringList{"20 Hz", "0 dB", "1"}));
}

void tst_client_settings_sub_eq::refresh_stores_back_what_was_read()
{
    Probe_Sub attic("Attic");
    attic.eq_frequ = 199;
    attic.eq_gain = 3;
    attic.eq_q = 9;
    attic.eq_enabled = 0;
    tab->refresh(&attic);
    QCOMPARE(band(attic), (QList<int>{199, 3, 9, 0}));
    QCOMPARE(attic.pending, 4); // the slots ran
    QCOMPARE(band(*sub), (QList<int>{45, -6, 4, 1}));
}

void tst_client_settings_sub_eq::refresh_replaces_what_the_sliders_clamp_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QList<int>>("stored");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("highest") << highest << QList<int>{200, 6, 10} << QStringList{"200 Hz", "6 dB", "10"};
    QTest::newRow("lowest") << lowest << QList<int>{20, -24, 1} << QStringList{"20 Hz", "-24 dB", "1"};
}

void tst_client_settings_sub_eq::refresh_replaces_what_the_sliders_clamp()
{
    QFETCH(int, number);
    Probe_Sub attic("Attic");
    attic.eq_frequ = attic.eq_gain = attic.eq_q = number;
    tab->refresh(&attic);
    QCOMPARE(attic.pending, 3); // they will be sent
    QTEST(band(attic).mid(0, 3), "stored");
    QTEST(read_outs(*tab), "texts");
}

void tst_client_settings_sub_eq::refresh_sets_the_values_in_order()
{
    QStringList order;
    const auto note = [&order](const QString &what) { return [&order, what] { order.append(what); }; };
    connect(tab->freq_slider, &QSlider::valueChanged, this, note("frequency"));
    connect(tab->gain_slider, &QSlider::valueChanged, this, note("gain"));
    connect(tab->q_slider, &QSlider::valueChanged, this, note("Q"));
    connect(tab->eq_check, &QCheckBox::stateChanged, this, note("active"));
    Probe_Sub attic("Attic");
    attic.eq_frequ = 20;
    attic.eq_gain = 0;
    attic.eq_q = 1;
    attic.eq_enabled = 0;
    tab->refresh(&attic);
    QCOMPARE(order, (QStringList{"frequency", "gain", "Q", "active"}));
    tab.reset();
}

void tst_client_settings_sub_eq::every_control_is_connected()
{
    Client_Settings_Sub_EQ *t = tab.get();
    QVERIFY(disconnect(t->gain_slider, SIGNAL(valueChanged(int)), t, SLOT(gainSliderValueChanged(int))));
    QVERIFY(disconnect(t->freq_slider, SIGNAL(valueChanged(int)), t, SLOT(frequSliderValueChanged(int))));
    QVERIFY(disconnect(t->q_slider, SIGNAL(valueChanged(int)), t, SLOT(QSliderValueChanged(int))));
    QVERIFY(disconnect(t->eq_check, SIGNAL(stateChanged(int)), t, SLOT(checkChanged(int))));
}

void tst_client_settings_sub_eq::the_slots_stand_in_order()
{
    const QMetaObject &meta = Client_Settings_Sub_EQ::staticMetaObject;
    QStringList slot_names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(index).access(), QMetaMethod::Private);
        slot_names.append(meta.method(index).methodSignature());
    }
    QCOMPARE(slot_names, (QStringList{"frequSliderValueChanged(int)", "gainSliderValueChanged(int)",
                                      "QSliderValueChanged(int)", "checkChanged(int)"}));
}

QTEST_MAIN(tst_client_settings_sub_eq)
#include "tst_client_settings_sub_eq.moc"
