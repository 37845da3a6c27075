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
#include "settings/client_settings_sub.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/probe_sub.h"

// What the controls of the tab do.
class tst_client_settings_sub_slots : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void every_control_is_connected();
    void up_to_10_passes_the_fence_data();
    void up_to_10_passes_the_fence();
    void the_end_key_moves_by_10_and_an_arrow_by_1();
    void the_read_out_shows_what_the_subwoofer_took();
    void sliders_store_their_position_data();
    void sliders_store_their_position();
    void a_refused_value_leaves_the_stored_one_in_the_read_out();
    void combos_store_their_letters_and_numbers();
    void filter_off_leaves_the_frequency_slider_usable();
    void an_empty_selection_is_dropped();
    void moving_the_high_pass_turns_it_on();
    void a_partly_checked_high_pass_stays_so();
    void unchecking_the_high_pass_does_not_move_the_slider();
    void beep_asks_for_one_beep();
    void lock_follows_its_button();
    void mute_without_time_lasts();
    void a_timed_mute_takes_its_seconds_from_the_subwoofer();
    void a_timed_mute_ends_by_itself();
    void unmuting_by_hand_stops_the_timer();
    void each_timed_mute_has_a_timer_of_its_own();
    void a_strange_time_is_safe_data();
    void a_strange_time_is_safe();
    void without_a_subwoofer_nothing_happens();

private:
    std::unique_ptr<Probe_Sub> sub;
    std::unique_ptr<Client_Settings_Sub> tab;
};

void tst_client_settings_sub_slots::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    sub = std::make_unique<Probe_Sub>();
    sub->volume = 50;
    tab = std::make_unique<Client_Settings_Sub>(nullptr, sub.get());
}

void tst_client_settings_sub_slots::every_control_is_connected()
{
    // Each call takes one connection away, and tells whether there was one.
    Client_Settings_Sub *t = tab.get();
    QVERIFY(disconnect(t->input_combo, SIGNAL(currentIndexChanged(int)), t, SLOT(inputChanged(int))));
    QVERIFY(disconnect(t->vol_slider, SIGNAL(valueChanged(int)), t, SLOT(volSliderValueChanged(int))));
    QVERIFY(disconnect(t->fg_slider, SIGNAL(valueChanged(int)), t, SLOT(fgSliderValueChanged(int))));
    QVERIFY(disconnect(t->slope_combo, SIGNAL(currentIndexChanged(int)), t, SLOT(steilheitChanged(int))));
    QVERIFY(disconnect(t->hp_slider, SIGNAL(valueChanged(int)), t, SLOT(hpSliderValueChanged(int))));
    QVERIFY(disconnect(t->hp_check, SIGNAL(stateChanged(int)), t, SLOT(hpChanged(int))));
    QVERIFY(disconnect(t->phase_slider, SIGNAL(valueChanged(int)), t, SLOT(phaseSliderValueChanged(int))));
    QVERIFY(disconnect(t->polarity_combo, SIGNAL(currentIndexChanged(int)), t, SLOT(polarityChanged(int))));
    QVERIFY(disconnect(t->lock_button, SIGNAL(toggled(bool)), t, SLOT(lockToggled(bool))));
    QVERIFY(disconnect(t->mute_button, SIGNAL(toggled(bool)), t, SLOT(muteToggled(bool))));
    QVERIFY(disconnect(t->eq_button, SIGNAL(clicked()), t, SLOT(eqPressed())));
    QVERIFY(disconnect(t->beep_button, SIGNAL(clicked()), t, SLOT(beepPressed())));
}

void tst_client_settings_sub_slots::up_to_10_passes_the_fence_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("volume");
    QTest::addColumn<QList<int>>("sent");
    QTest::newRow("10 up") << 60 << 60 << QList<int>{60};
    QTest::newRow("10 down") << 40 << 40 << QList<int>{40};
    QTest::newRow("11 up") << 61 << 60 << QList<int>{60, 60};
    QTest::newRow("11 down") << 39 << 40 << QList<int>{40, 40};
    QTest::newRow("to the top") << 100 << 60 << QList<int>{60, 60};
    QTest::newRow("to the bottom") << 0 << 40 << QList<int>{40, 40};
}

void tst_client_settings_sub_slots::up_to_10_passes_the_fence()
{
    QFETCH(int, value);
    QFETCH(int, volume);
    tab->vol_slider->setValue(value);
    QCOMPARE(sub->volume, volume);
    QCOMPARE(tab->vol_slider->value(), volume);
    QCOMPARE(tab->vol_slider->sliderPosition(), volume);
    QCOMPARE(tab->slider_last, volume);
    QCOMPARE(tab->vol_label->text(), QString::number(volume) + " %");
    QTEST(sub->volumes, "sent");
}

void tst_client_settings_sub_slots::the_end_key_moves_by_10_and_an_arrow_by_1()
{
    QTest::keyClick(tab->vol_slider, Qt::Key_End);
    QCOMPARE(sub->volume, 60);
    QTest::keyClick(tab->vol_slider, Qt::Key_End);
    QCOMPARE(sub->volume, 70);
    QTest::keyClick(tab->vol_slider, Qt::Key_Left);
    QCOMPARE(sub->volume, 69);
    QTest::keyClick(tab->vol_slider, Qt::Key_Home);
    QCOMPARE(sub->volume, 59);
}

void tst_client_settings_sub_slots::the_read_out_shows_what_the_subwoofer_took()
{
    tab->slider_last = -100; // a speaker may have reported any number
    QMetaObject::invokeMethod(tab.get(), "volSliderValueChanged", Q_ARG(int, 50));
    QCOMPARE(sub->volumes.last(), -90);
    QCOMPARE(tab->vol_label->text(), QString("0 %"));
}

void tst_client_settings_sub_slots::sliders_store_their_position_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QList<int>>("stored"); // crossover, high-pass, phase
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("lowest") << -1000 << QList<int>{30, 20, 0} << QStringList{"30 Hz", "20 Hz", "0\u00b0"};
    QTest::newRow("between") << 33 << QList<int>{33, 33, 33} << QStringList{"33 Hz", "33 Hz", "33\u00b0"};
    QTest::newRow("highest") << 1000 << QList<int>{180, 40, 180}
                             << QStringList{"180 Hz", "40 Hz", "180\u00b0"};
}

void tst_client_settings_sub_slots::sliders_store_their_position()
{
    QFETCH(int, position);
    for (RZSlider *slider : {tab->fg_slider, tab->hp_slider, tab->phase_slider}) {
        sub->pending = 0;
        slider->setValue(position);
        QCOMPARE(sub->pending, 1);
    }
    QTEST((QList<int>{sub->frequ_fg, sub->frequ_hp, sub->phase}), "stored");
    QTEST((QStringList{tab->fg_label->text(), tab->hp_label->text(), tab->phase_label->text()}), "texts");
}

void tst_client_settings_sub_slots::a_refused_value_leaves_the_stored_one_in_the_read_out()
{
    tab->fg_slider->setMaximum(500);
    tab->fg_slider->setValue(181);
    QCOMPARE(sub->frequ_fg, 80);
    QCOMPARE(tab->fg_label->text(), QString("80 Hz"));
    tab->hp_slider->setMaximum(500);
    tab->hp_slider->setValue(41);
    QCOMPARE(sub->frequ_hp, 25);
    QCOMPARE(tab->hp_label->text(), QString("25 Hz"));
    QCOMPARE(sub->pending, 0);
}

void tst_client_settings_sub_slots::combos_store_their_letters_and_numbers()
{
    QByteArray letters;
    for (const int index : {4, 3, 2, 1, 0}) {
        tab->input_combo->setCurrentIndex(index);
        letters.append(sub->input);
    }
    QCOMPARE(letters, QByteArray("LXCDW"));
    for (const int index : {0, 1, 2, 3, 4}) {
        tab->slope_combo->setCurrentIndex(index);
        QCOMPARE(sub->steilh_fg, 6 * index);
    }
    for (const int index : {0, 1}) {
        tab->polarity_combo->setCurrentIndex(index);
        QCOMPARE(sub->polarity, index);
    }
}

void tst_client_settings_sub_slots::filter_off_leaves_the_frequency_slider_usable()
{
    tab->slope_combo->setCurrentIndex(0);
    QCOMPARE(tab->slope_combo->currentText(), QString("Filter Off"));
    QCOMPARE(sub->steilh_fg, 0);
    QVERIFY(tab->fg_slider->isEnabled());
    QTest::keyClick(tab->fg_slider, Qt::Key_Right);
    QCOMPARE(sub->frequ_fg, 81);
}

void tst_client_settings_sub_slots::an_empty_selection_is_dropped()
{
    for (QComboBox *combo : {tab->input_combo, tab->slope_combo, tab->polarity_combo})
        combo->setCurrentIndex(-1);
    QCOMPARE(sub->pending, 0);
    QCOMPARE(sub->input, 'W');
    QCOMPARE(sub->steilh_fg, 24);
    QCOMPARE(sub->polarity, 1);
}

void tst_client_settings_sub_slots::moving_the_high_pass_turns_it_on()
{
    QTest::mouseClick(tab->hp_check, Qt::LeftButton, Qt::NoModifier, QPoint(5, tab->hp_check->height() / 2));
    QVERIFY(!tab->hp_check->isChecked());
    QCOMPARE(sub->hp_enabled, 0);

    QTest::keyClick(tab->hp_slider, Qt::Key_Right);
    QVERIFY(tab->hp_check->isChecked());
    QCOMPARE(sub->hp_enabled, 1);
    QCOMPARE(sub->frequ_hp, 26);
    QCOMPARE(tab->hp_label->text(), QString("26 Hz"));
}

void tst_client_settings_sub_slots::a_partly_checked_high_pass_stays_so()
{
    tab->hp_check->setTristate(true);
    tab->hp_check->setCheckState(Qt::PartiallyChecked);
    QCOMPARE(sub->hp_enabled, 1); // any state but unchecked
    tab->hp_slider->setValue(30);
    QCOMPARE(tab->hp_check->checkState(), Qt::PartiallyChecked);
    QCOMPARE(sub->frequ_hp, 30);
}

void tst_client_settings_sub_slots::unchecking_the_high_pass_does_not_move_the_slider()
{
    tab->hp_check->setChecked(false);
    QCOMPARE(sub->hp_enabled, 0);
    QCOMPARE(tab->hp_slider->value(), 25);
    QCOMPARE(sub->frequ_hp, 25);
    QCOMPARE(tab->hp_label->text(), QString("25 Hz"));
    tab->hp_check->setChecked(true);
    QCOMPARE(sub->hp_enabled, 1);
}

void tst_client_settings_sub_slots::beep_asks_for_one_beep()
{
    QTest::mouseClick(tab->beep_button, Qt::LeftButton);
    QCOMPARE(sub->beep, 1);
    QCOMPARE(sub->pending, 1);
}

void tst_client_settings_sub_slots::lock_follows_its_button()
{
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QCOMPARE(sub->lock, 1);
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QCOMPARE(sub->lock, 0);
}

void tst_client_settings_sub_slots::mute_without_time_lasts()
{
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(sub->mutes, QStringList{"on"});
    QCOMPARE(sub->mute, 1);
    QVERIFY(!tab->mute_timer);
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(sub->mutes, (QStringList{"on", "off"}));
    QCOMPARE(sub->mute, 0);
}

void tst_client_settings_sub_slots::a_timed_mute_takes_its_seconds_from_the_subwoofer()
{
    sub->mt = 5;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(tab->mute_timer);
    QVERIFY(tab->mute_timer->isActive());
    QVERIFY(tab->mute_timer->isSingleShot());
    QCOMPARE(tab->mute_timer->interval(), 5000);
    QCOMPARE(tab->mute_timer->parent(), tab.get());
}

void tst_client_settings_sub_slots::a_timed_mute_ends_by_itself()
{
    sub->mt = 5;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    tab->mute_timer->setInterval(1); // counts anew
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QCOMPARE(sub->mutes, (QStringList{"on", "off"}));
    QVERIFY(!tab->mute_timer);
}

void tst_client_settings_sub_slots::unmuting_by_hand_stops_the_timer()
{
    sub->mt = 5;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    const QTimer *timer = tab->mute_timer;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(!timer->isActive());
    QCOMPARE(tab->mute_timer, timer);
    QCOMPARE(sub->mutes, (QStringList{"on", "off"}));
}

void tst_client_settings_sub_slots::each_timed_mute_has_a_timer_of_its_own()
{
    sub->mt = 5;
    for (int click = 0; click < 5; ++click)
        QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    const QList<QTimer *> timers = tab->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(timers.size(), 3);
    int active = 0;
    for (const QTimer *timer : timers)
        active += timer->isActive();
    QCOMPARE(active, 1);
    QVERIFY(tab->mute_timer->isActive());
}

void tst_client_settings_sub_slots::a_strange_time_is_safe_data()
{
    QTest::addColumn<int>("mt");
    QTest::addColumn<bool>("active");
    QTest::newRow("highest") << std::numeric_limits<int>::max() << true;
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << false;
}

void tst_client_settings_sub_slots::a_strange_time_is_safe()
{
    QFETCH(int, mt);
    Log_Capture log;
    sub->mt = mt;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(tab->mute_timer);
    QTEST(tab->mute_timer->isActive(), "active");
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(!tab->mute_timer->isActive());
    QCOMPARE(log.warnings(), QStringList());
}

void tst_client_settings_sub_slots::without_a_subwoofer_nothing_happens()
{
    tab = std::make_unique<Client_Settings_Sub>(nullptr, nullptr);
    for (RZSlider *slider : {tab->vol_slider, tab->fg_slider, tab->hp_slider, tab->phase_slider})
        slider->setValue(35);
    for (QComboBox *combo : {tab->input_combo, tab->slope_combo, tab->polarity_combo})
        combo->setCurrentIndex(1);
    tab->hp_check->setChecked(true);
    for (QPushButton *button : {tab->mute_button, tab->lock_button, tab->beep_button, tab->eq_button})
        QTest::mouseClick(button, Qt::LeftButton);
    QMetaObject::invokeMethod(tab.get(), "muteTimer");
    QVERIFY(!tab->mute_timer);
    QVERIFY(!tab->mute_button->isChecked());
    QCOMPARE(tab->vol_slider->sliderPosition(), 10); // the fence stands all the same
    QCOMPARE(tab->slider_last, 10);
    QCOMPARE(tab->vol_label->text(), QString("0 %"));
    QCOMPARE(tab->fg_label->text(), QString("- Hz"));
    QCOMPARE(tab->hp_label->text(), QString("- Hz"));
    QCOMPARE(tab->phase_label->text(), QString("- \u00b0"));
}

QTEST_MAIN(tst_client_settings_sub_slots)
#include "tst_client_settings_sub_slots.moc"
