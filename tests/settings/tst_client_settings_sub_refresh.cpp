// SPDX-License-Identifier: MIT
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <limits>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/speaker_types.h"
#include "settings/client_settings_sub.h"
#include "settings/rzslider.h"
#include "tests/settings/probe_sub.h"

// What the tab does when it is pointed at another subwoofer.
class tst_client_settings_sub_refresh : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void a_tab_built_without_subwoofer_shows_the_first();
    void placeholders_go_also_where_no_slider_moves();
    void control_keeps_what_the_tab_was_built_with();
    void a_volume_far_away_is_pulled_to_within_10_data();
    void a_volume_far_away_is_pulled_to_within_10();
    void from_20_to_a_subwoofer_at_50_ends_at_30();
    void an_equal_subwoofer_is_asked_nothing();
    void values_are_stored_back_as_they_were_read();
    void letters_and_numbers_without_entry_leave_combos_blank();
    void numbers_without_place_are_stored_as_the_end_of_the_slider_data();
    void numbers_without_place_are_stored_as_the_end_of_the_slider();
    void a_high_pass_that_moves_is_turned_on();
    void a_high_pass_that_was_on_before_is_turned_off_though_it_moves();
    void a_high_pass_that_does_not_move_stays_off();
    void a_high_pass_of_0_lands_on_20();
    void a_changed_mute_state_runs_its_slot_and_timer();
    void a_running_timer_unmutes_whatever_subwoofer_is_shown_by_then();
    void the_subwoofer_before_hears_nothing_any_more();
    void values_are_set_in_order();

private:
    std::unique_ptr<Probe_Sub> first, second;
    std::unique_ptr<Client_Settings_Sub> tab;
};

void tst_client_settings_sub_refresh::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    first = std::make_unique<Probe_Sub>("Cellar");
    second = std::make_unique<Probe_Sub>("Attic");
    tab = std::make_unique<Client_Settings_Sub>(nullptr, first.get());
}

void tst_client_settings_sub_refresh::a_tab_built_without_subwoofer_shows_the_first()
{
    tab = std::make_unique<Client_Settings_Sub>(nullptr, nullptr);
    second->volume = 8;
    second->lock = 1;
    second->input = 'L';
    tab->refresh(second.get());
    QCOMPARE(tab->speaker_label->text(), "<b>Attic</b> (" + model_name(18) + ")");
    QCOMPARE(tab->vol_label->text(), QString("8 %"));
    QCOMPARE(tab->fg_label->text(), QString("80 Hz"));
    QCOMPARE(tab->hp_label->text(), QString("25 Hz"));
    QCOMPARE(tab->phase_label->text(), QString("90\u00b0"));
    QCOMPARE(tab->input_combo->currentText(), QString("Speaker"));
    QCOMPARE(tab->slope_combo->currentText(), QString("24 dB/oct"));
    QCOMPARE(tab->polarity_combo->currentText(), QString("Inverse"));
    QVERIFY(tab->hp_check->isChecked());
    QVERIFY(tab->lock_button->isChecked());
    QVERIFY(!tab->mute_button->isChecked());
}

void tst_client_settings_sub_refresh::placeholders_go_also_where_no_slider_moves()
{
    tab = std::make_unique<Client_Settings_Sub>(nullptr, nullptr);
    second->volume = 0;
    second->frequ_fg = 30;
    second->steilh_fg = 0;
    second->frequ_hp = 20;
    second->hp_enabled = 0;
    second->phase = 0;
    second->polarity = 0;
    tab->refresh(second.get());
    QCOMPARE(second->pending, 0);
    QCOMPARE(tab->vol_label->text(), QString("0 %"));
    QCOMPARE(tab->fg_label->text(), QString("30 Hz"));
    QCOMPARE(tab->hp_label->text(), QString("20 Hz"));
    QCOMPARE(tab->phase_label->text(), QString("0\u00b0"));
}

void tst_client_settings_sub_refresh::control_keeps_what_the_tab_was_built_with()
{
    tab->refresh(second.get());
    QCOMPARE(tab->control, first.get());
    QCOMPARE(tab->sub, second.get());
}

void tst_client_settings_sub_refresh::a_volume_far_away_is_pulled_to_within_10_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("volume");
    QTest::addColumn<int>("after");
    QTest::newRow("10 up") << 20 << 30 << 30;
    QTest::newRow("11 up") << 20 << 31 << 30;
    QTest::newRow("10 down") << 20 << 10 << 10;
    QTest::newRow("11 down") << 20 << 9 << 10;
    QTest::newRow("fixed tab never used") << 0 << 90 << 10;
    QTest::newRow("above the range") << 20 << std::numeric_limits<int>::max() << 30;
    QTest::newRow("below the range") << 20 << std::numeric_limits<int>::min() << 10;
}

void tst_client_settings_sub_refresh::a_volume_far_away_is_pulled_to_within_10()
{
    QFETCH(int, before);
    QFETCH(int, volume);
    QFETCH(int, after);
    first->volume = before;
    tab = std::make_unique<Client_Settings_Sub>(nullptr, first.get());
    second->volume = volume;
    tab->refresh(second.get());
    QCOMPARE(tab->vol_slider->value(), after);
    QCOMPARE(tab->vol_slider->sliderPosition(), after);
    QCOMPARE(tab->slider_last, after);
    QCOMPARE(second->volume, after);
    QVERIFY(second->pending > 0); // it will be sent
    QCOMPARE(tab->vol_label->text(), QString::number(after) + " %");
    QCOMPARE(first->volume, before);
}

void tst_client_settings_sub_refresh::from_20_to_a_subwoofer_at_50_ends_at_30()
{
    tab->slider_last = 20;
    tab->vol_slider->setValue(20);
    second->volume = 50;
    tab->refresh(second.get());
    QCOMPARE(tab->vol_slider->value(), 30);
    QCOMPARE(second->volume, 30);
    // A second opening is one step nearer: the memory of the fence is not reset.
    second->volume = 50;
    tab->refresh(second.get());
    QCOMPARE(second->volume, 40);
}

void tst_client_settings_sub_refresh::an_equal_subwoofer_is_asked_nothing()
{
    tab->refresh(second.get());
    QCOMPARE(second->pending, 0);
    QCOMPARE(second->volumes, QList<int>());
    QCOMPARE(second->mutes, QStringList());
}

void tst_client_settings_sub_refresh::values_are_stored_back_as_they_were_read()
{
    second->input = 'C';
    second->volume = 45;
    second->frequ_fg = 120;
    second->steilh_fg = 6;
    second->frequ_hp = 33;
    second->phase = 30;
    second->polarity = 0;
    tab->refresh(second.get());
    QCOMPARE(second->input, 'C');
    QCOMPARE(second->volume, 45);
    QCOMPARE(second->frequ_fg, 120);
    QCOMPARE(second->steilh_fg, 6);
    QCOMPARE(second->frequ_hp, 33);
    QCOMPARE(second->hp_enabled, 1);
    QCOMPARE(second->phase, 30);
    QCOMPARE(second->polarity, 0);
    QCOMPARE(second->pending, 7); // the slots ran
}

void tst_client_settings_sub_refresh::letters_and_numbers_without_entry_leave_combos_blank()
{
    second->input = 'S';
    second->steilh_fg = 36;
    second->polarity = 9;
    tab->refresh(second.get());
    for (const QComboBox *combo : {tab->input_combo, tab->slope_combo, tab->polarity_combo}) {
        QCOMPARE(combo->currentIndex(), -1);
        QCOMPARE(combo->currentText(), QString());
    }
    QCOMPARE(second->input, 'S');
    QCOMPARE(second->steilh_fg, 36);
    QCOMPARE(second->polarity, 9);
    QCOMPARE(second->pending, 0);
}

void tst_client_settings_sub_refresh::numbers_without_place_are_stored_as_the_end_of_the_slider_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QList<int>>("stored"); // crossover, high-pass, phase
    QTest::newRow("highest") << std::numeric_limits<int>::max() << QList<int>{180, 40, 180};
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << QList<int>{30, 20, 0};
}

void tst_client_settings_sub_refresh::numbers_without_place_are_stored_as_the_end_of_the_slider()
{
    QFETCH(int, number);
    second->frequ_fg = second->frequ_hp = second->phase = number;
    tab->refresh(second.get());
    QTEST((QList<int>{tab->fg_slider->value(), tab->hp_slider->value(), tab->phase_slider->value()}),
          "stored");
    QTEST((QList<int>{second->frequ_fg, second->frequ_hp, second->phase}), "stored");
    QCOMPARE(tab->fg_label->text(), QString::number(second->frequ_fg) + " Hz");
    QCOMPARE(tab->hp_label->text(), QString::number(second->frequ_hp) + " Hz");
    QCOMPARE(tab->phase_label->text(), QString::number(second->phase) + "\u00b0");
}

void tst_client_settings_sub_refresh::a_high_pass_that_moves_is_turned_on()
{
    first->hp_enabled = 0;
    tab = std::make_unique<Client_Settings_Sub>(nullptr, first.get());
    second->hp_enabled = 0;
    second->frequ_hp = 30;
    tab->refresh(second.get());
    QVERIFY(tab->hp_check->isChecked());
    QCOMPARE(second->hp_enabled, 1);
}

void tst_client_settings_sub_refresh::a_high_pass_that_was_on_before_is_turned_off_though_it_moves()
{
    QVERIFY(tab->hp_check->isChecked()); // so the moved slider has nothing to check
    second->hp_enabled = 0;
    second->frequ_hp = 30;
    tab->refresh(second.get());
    QVERIFY(!tab->hp_check->isChecked());
    QCOMPARE(second->hp_enabled, 0);
    QCOMPARE(second->frequ_hp, 30);
    QCOMPARE(tab->hp_label->text(), QString("30 Hz"));
}

void tst_client_settings_sub_refresh::a_high_pass_that_does_not_move_stays_off()
{
    second->hp_enabled = 0;
    tab->refresh(second.get());
    QVERIFY(!tab->hp_check->isChecked());
    QCOMPARE(second->hp_enabled, 0);
    QCOMPARE(tab->hp_label->text(), QString("25 Hz"));
}

void tst_client_settings_sub_refresh::a_high_pass_of_0_lands_on_20()
{
    second->frequ_hp = 0;
    tab->refresh(second.get());
    QCOMPARE(tab->hp_slider->value(), 20);
    QCOMPARE(second->frequ_hp, 20);
    QCOMPARE(tab->hp_label->text(), QString("20 Hz"));
}

void tst_client_settings_sub_refresh::a_changed_mute_state_runs_its_slot_and_timer()
{
    second->mute = 1;
    second->mt = 7;
    tab->refresh(second.get());
    QCOMPARE(second->mutes, QStringList{"on"});
    QVERIFY(tab->mute_timer && tab->mute_timer->isActive());
    QCOMPARE(tab->mute_timer->interval(), 7000);
    tab->refresh(first.get());
    QCOMPARE(first->mutes, QStringList{"off"});
    QVERIFY(!tab->mute_timer->isActive());
}

void tst_client_settings_sub_refresh::a_running_timer_unmutes_whatever_subwoofer_is_shown_by_then()
{
    first->mt = 5;
    tab->mute_button->setChecked(true);
    second->mute = 1;
    tab->refresh(second.get());
    QVERIFY(tab->mute_timer->isActive());
    tab->mute_timer->setInterval(1); // counts anew
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QCOMPARE(second->mutes, QStringList{"off"});
    QCOMPARE(first->mutes, QStringList{"on"});
}

void tst_client_settings_sub_refresh::the_subwoofer_before_hears_nothing_any_more()
{
    tab->refresh(second.get());
    first->pending = 0;
    tab->vol_slider->setValue(47);
    tab->fg_slider->setValue(99);
    tab->slope_combo->setCurrentIndex(1);
    QTest::mouseClick(tab->beep_button, Qt::LeftButton);
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QCOMPARE(first->pending, 0);
    QCOMPARE(second->volume, 47);
    QCOMPARE(second->frequ_fg, 99);
    QCOMPARE(second->steilh_fg, 6);
    QCOMPARE(second->beep, 1);
    QCOMPARE(second->lock, 1);
}

void tst_client_settings_sub_refresh::values_are_set_in_order()
{
    QStringList order;
    const auto note = [&order](const QString &what) { return [&order, what] { order.append(what); }; };
    const auto index_changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(tab->input_combo, index_changed, this, note("input"));
    connect(tab->vol_slider, &QSlider::valueChanged, this, note("volume"));
    connect(tab->fg_slider, &QSlider::valueChanged, this, note("frequency"));
    connect(tab->slope_combo, index_changed, this, note("slope"));
    connect(tab->hp_slider, &QSlider::valueChanged, this, note("high-pass"));
    connect(tab->hp_check, &QCheckBox::stateChanged, this, note("enabled"));
    connect(tab->phase_slider, &QSlider::valueChanged, this, note("phase"));
    connect(tab->polarity_combo, index_changed, this, note("polarity"));
    connect(tab->mute_button, &QPushButton::toggled, this, note("mute"));
    connect(tab->lock_button, &QPushButton::toggled, this, note("lock"));

    second->input = 'X';
    second->volume = 50;
    second->frequ_fg = 31;
    second->steilh_fg = 0;
    second->frequ_hp = 21;
    second->hp_enabled = 0;
    second->phase = 1;
    second->polarity = 0;
    second->mute = second->lock = 1;
    tab->refresh(second.get());
    QCOMPARE(order, (QStringList{"input", "volume", "frequency", "slope", "high-pass", "enabled", "phase",
                                 "polarity", "mute", "lock"}));
    tab.reset();
}

QTEST_MAIN(tst_client_settings_sub_refresh)
#include "tst_client_settings_sub_refresh.moc"
