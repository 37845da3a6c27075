// SPDX-License-Identifier: MIT
#include <QComboBox>
#include <QDial>
#include <QLabel>
#include <QPushButton>
#include <QStyleOptionSlider>
#include <QTimer>
#include <QtTest>
#include <limits>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "settings/client_settings_air.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/marking_translator.h"
#include "tests/settings/probe_air.h"

// What the controls of the tab do.
class tst_client_settings_air_slots : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void every_control_is_connected();
    void a_phone_has_no_dial_to_connect();
    void a_drag_from_20_to_90_ends_at_30_with_the_knob_there();
    void the_end_key_moves_by_10_and_an_arrow_by_1();
    void up_to_10_passes_the_fence_data();
    void up_to_10_passes_the_fence();
    void each_accepted_value_opens_the_fence_further();
    void a_slider_change_writes_the_read_out_data();
    void a_slider_change_writes_the_read_out();
    void the_read_out_shows_what_the_speaker_took();
    void a_dial_step_moves_volume_and_slider();
    void the_dial_passes_its_seam_both_ways();
    void a_jump_of_the_dial_from_0_to_20_lowers_the_volume();
    void a_dial_step_above_10_is_pulled_back_by_the_fence();
    void at_the_end_of_the_range_the_dial_form_of_the_read_out_stays_data();
    void at_the_end_of_the_range_the_dial_form_of_the_read_out_stays();
    void the_dial_form_is_not_translated_and_the_slider_form_is();
    void the_slider_leaves_the_dial_alone();
    void combos_store_their_letters_and_numbers();
    void an_empty_selection_is_dropped();
    void bass_is_logged();
    void beep_asks_for_one_beep();
    void lock_follows_its_button();
    void bluetooth_is_asked_for_before_the_input_changes();
    void no_other_input_asks_for_bluetooth();
    void mute_without_time_lasts();
    void a_timed_mute_takes_its_seconds_from_the_speaker();
    void a_timed_mute_ends_by_itself();
    void unmuting_by_hand_stops_the_timer();
    void each_timed_mute_has_a_timer_of_its_own();
    void a_strange_time_is_safe_data();
    void a_strange_time_is_safe();
    void a_press_of_the_slider_does_nothing();

private:
    std::unique_ptr<Probe_Air> air;
    std::unique_ptr<Client_Settings_Air> tab;
    void make_tab(int volume);
};

void tst_client_settings_air_slots::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    air = std::make_unique<Probe_Air>();
    make_tab(50);
}

void tst_client_settings_air_slots::make_tab(int volume)
{
    air->volume = volume;
    tab = std::make_unique<Client_Settings_Air>(nullptr, air.get(), nullptr);
}

void tst_client_settings_air_slots::every_control_is_connected()
{
    // Each call takes one connection away, and tells whether there was one.
    Client_Settings_Air *t = tab.get();
    QVERIFY(disconnect(t->vol_slider, SIGNAL(valueChanged(int)), t, SLOT(sliderValueChanged(int))));
    QVERIFY(disconnect(t->vol_slider, SIGNAL(sliderPressed()), t, SLOT(sliderPressed())));
    QVERIFY(disconnect(t->vol_dial, SIGNAL(valueChanged(int)), t, SLOT(dialValueChanged(int))));
    QVERIFY(disconnect(t->input_combo, nullptr, t, SLOT(inputChanged(int))));
    QVERIFY(disconnect(t->position_combo, nullptr, t, SLOT(positionClicked(int))));
    QVERIFY(disconnect(t->bass_combo, nullptr, t, SLOT(bassClicked(int))));
    QVERIFY(disconnect(t->room_combo, nullptr, t, SLOT(roomClicked(int))));
    QVERIFY(disconnect(t->beep_button, SIGNAL(clicked()), t, SLOT(beepClicked())));
    QVERIFY(disconnect(t->mute_button, SIGNAL(toggled(bool)), t, SLOT(muteToggled(bool))));
    QVERIFY(disconnect(t->lock_button, SIGNAL(toggled(bool)), t, SLOT(lockToggled(bool))));
}

void tst_client_settings_air_slots::a_phone_has_no_dial_to_connect()
{
    Log_Capture log;
    plattform->device_class = DEVICE_PHONE;
    make_tab(50);
    QVERIFY(!tab->vol_dial);
    QCOMPARE(log.warnings(), QStringList());
}

static QPoint handle_middle(RZSlider *slider)
{
    struct Open : RZSlider {
        using RZSlider::initStyleOption;
    };
    QStyleOptionSlider option;
    (slider->*static_cast<void (RZSlider::*)(QStyleOptionSlider *) const>(&Open::initStyleOption))(&option);
    return slider->style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
        .center();
}

void tst_client_settings_air_slots::a_drag_from_20_to_90_ends_at_30_with_the_knob_there()
{
    make_tab(20);
    tab->resize(800, 600);
    tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(tab.get()));

    RZSlider *slider = tab->vol_slider;
    const QPoint from = handle_middle(slider);
    const QPoint to(slider->width() * 9 / 10, from.y());
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(slider, &move); // QTest's own would come without the button
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, to);
    QCOMPARE(slider->value(), 30);
    QCOMPARE(slider->sliderPosition(), 30);
    QCOMPARE(air->volume, 30);
    QCOMPARE(tab->slider_last, 30);
    QCOMPARE(air->volumes, (QList<int>{30, 30})); // within the fence, and by the call that met it
}

void tst_client_settings_air_slots::the_end_key_moves_by_10_and_an_arrow_by_1()
{
    QTest::keyClick(tab->vol_slider, Qt::Key_End);
    QCOMPARE(air->volume, 60);
    QCOMPARE(tab->vol_slider->sliderPosition(), 60);
    QTest::keyClick(tab->vol_slider, Qt::Key_Home);
    QCOMPARE(air->volume, 50);
    QTest::keyClick(tab->vol_slider, Qt::Key_Right);
    QCOMPARE(air->volume, 51);
    QTest::keyClick(tab->vol_slider, Qt::Key_PageDown);
    QCOMPARE(air->volume, 41);
}

void tst_client_settings_air_slots::up_to_10_passes_the_fence_data()
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

void tst_client_settings_air_slots::up_to_10_passes_the_fence()
{
    QFETCH(int, value);
    tab->vol_slider->setValue(value);
    QTEST(air->volume, "volume");
    QTEST(tab->vol_slider->value(), "volume");
    QTEST(tab->vol_slider->sliderPosition(), "volume");
    QTEST(tab->slider_last, "volume");
    QTEST(air->volumes, "sent");
}

void tst_client_settings_air_slots::each_accepted_value_opens_the_fence_further()
{
    for (const int expected : {60, 70, 80, 90, 100, 100}) {
        tab->vol_slider->setValue(100);
        QCOMPARE(air->volume, expected);
    }
}

void tst_client_settings_air_slots::a_slider_change_writes_the_read_out_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("text");
    QTest::newRow("unset") << 0 << "SPDIF Vol: 55 / 100";
    QTest::newRow("phone") << DEVICE_PHONE << "55 / 100";
    QTest::newRow("tablet") << DEVICE_TABLET << "SPDIF Vol: 55 / 100";
    QTest::newRow("desktop") << DEVICE_DESKTOP << "SPDIF Vol: 55 / 100";
}

void tst_client_settings_air_slots::a_slider_change_writes_the_read_out()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    make_tab(50);
    tab->vol_slider->setValue(55);
    QTEST(tab->vol_label->text(), "text");
}

void tst_client_settings_air_slots::the_read_out_shows_what_the_speaker_took()
{
    // A speaker may have reported any number; the control object clamps what is set.
    air->volume = 50;
    tab->slider_last = -100;
    QMetaObject::invokeMethod(tab.get(), "sliderValueChanged", Q_ARG(int, 50));
    QCOMPARE(air->volumes.last(), -90);
    QCOMPARE(tab->vol_label->text(), QString("SPDIF Vol: 0 / 100"));
}

void tst_client_settings_air_slots::a_dial_step_moves_volume_and_slider()
{
    tab->vol_dial->setValue(5);
    QCOMPARE(air->steps, QList<int>{5});
    QCOMPARE(air->volume, 55);
    QCOMPARE(tab->dial_last, 5);
    QCOMPARE(tab->vol_slider->value(), 55);
    QCOMPARE(air->volumes, QList<int>{55}); // the slider's slot stores the same volume again
    QCOMPARE(tab->vol_label->text(), QString("SPDIF Vol: 55 / 100"));

    tab->vol_dial->setValue(2);
    QCOMPARE(air->steps.last(), -3);
    QCOMPARE(air->volume, 52);
}

void tst_client_settings_air_slots::the_dial_passes_its_seam_both_ways()
{
    tab->vol_dial->setValue(48);
    QCOMPARE(air->steps, QList<int>{-2});
    tab->vol_dial->setValue(2);
    QCOMPARE(air->steps.last(), 4);
    QCOMPARE(air->volume, 52);
    tab->vol_dial->setValue(48);
    QCOMPARE(air->steps.last(), -4);
    QCOMPARE(air->volume, 48);
}

void tst_client_settings_air_slots::a_jump_of_the_dial_from_0_to_20_lowers_the_volume()
{
    tab->vol_dial->setValue(20);
    QCOMPARE(air->steps, QList<int>{-15});
    QCOMPARE(air->volume, 40); // by the fence of the slider
}

void tst_client_settings_air_slots::a_dial_step_above_10_is_pulled_back_by_the_fence()
{
    tab->vol_dial->setValue(14);
    QCOMPARE(air->steps, QList<int>{14}); // stored first: this one may travel, too
    QCOMPARE(air->volumes, (QList<int>{60, 60}));
    QCOMPARE(air->volume, 60);
    QCOMPARE(tab->vol_slider->value(), 60);
    QCOMPARE(tab->vol_slider->sliderPosition(), 60);
    QCOMPARE(tab->dial_last, 14);
}

void tst_client_settings_air_slots::at_the_end_of_the_range_the_dial_form_of_the_read_out_stays_data()
{
    QTest::addColumn<int>("volume");
    QTest::addColumn<int>("dial");
    QTest::addColumn<QString>("text");
    QTest::newRow("top") << 100 << 5 << "Volume: 100 / 100";
    QTest::newRow("bottom") << 0 << 45 << "Volume: 0 / 100";
}

void tst_client_settings_air_slots::at_the_end_of_the_range_the_dial_form_of_the_read_out_stays()
{
    QFETCH(int, volume);
    QFETCH(int, dial);
    make_tab(volume);
    tab->vol_dial->setValue(dial);
    QCOMPARE(air->volume, volume);
    QCOMPARE(air->volumes, QList<int>());
    QTEST(tab->vol_label->text(), "text");
}

void tst_client_settings_air_slots::the_dial_form_is_not_translated_and_the_slider_form_is()
{
    Marking_Translator translator("Client_Settings_Air");
    QCoreApplication::installTranslator(&translator);
    make_tab(100);
    tab->vol_dial->setValue(5);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 100 / 100"));
    tab->vol_dial->setValue(4);
    QCOMPARE(tab->vol_label->text(), QString("#SPDIF Vol: 99 / 100"));
}

void tst_client_settings_air_slots::the_slider_leaves_the_dial_alone()
{
    tab->vol_slider->setValue(58);
    QCOMPARE(tab->vol_dial->value(), 0);
    QCOMPARE(tab->dial_last, 0);
    QCOMPARE(air->steps, QList<int>());
}

void tst_client_settings_air_slots::combos_store_their_letters_and_numbers()
{
    const auto letters = [](QComboBox *combo, const char &field) {
        QByteArray found;
        for (int index = combo->count() - 1; index >= 0; --index) {
            combo->setCurrentIndex(index);
            found.prepend(field);
        }
        return found;
    };
    QCOMPARE(letters(tab->position_combo, air->position), QByteArray("FWC"));
    QCOMPARE(letters(tab->room_combo, air->room), QByteArray("RrndD"));
    QByteArray inputs;
    for (const int index : {4, 2, 1, 0}) { // Bluetooth is told below
        tab->input_combo->setCurrentIndex(index);
        inputs.append(air->input);
    }
    QCOMPARE(inputs, QByteArray("AdDW"));
    for (const int bass : {3, 2, 1, 0}) {
        tab->bass_combo->setCurrentIndex(bass);
        QCOMPARE(air->bass, bass);
    }
}

void tst_client_settings_air_slots::an_empty_selection_is_dropped()
{
    air->pending = 0;
    for (QComboBox *combo : {tab->input_combo, tab->position_combo, tab->room_combo, tab->bass_combo})
        combo->setCurrentIndex(-1);
    QCOMPARE(air->pending, 0);
    QCOMPARE(air->input, 'W');
    QCOMPARE(air->position, 'F');
    QCOMPARE(air->room, 'R');
    QCOMPARE(air->bass, 0);
}

void tst_client_settings_air_slots::bass_is_logged()
{
    Log_Capture log;
    tab->bass_combo->setCurrentIndex(2);
    QCOMPARE(log.debug_lines(), QStringList{"BASS"});
}

void tst_client_settings_air_slots::beep_asks_for_one_beep()
{
    air->pending = 0;
    QTest::mouseClick(tab->beep_button, Qt::LeftButton);
    QCOMPARE(air->beep, 1);
    QCOMPARE(air->pending, 1);
}

void tst_client_settings_air_slots::lock_follows_its_button()
{
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QCOMPARE(air->lock, 1);
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QCOMPARE(air->lock, 0);
}

void tst_client_settings_air_slots::bluetooth_is_asked_for_before_the_input_changes()
{
    Device_Desc device(nullptr, false, "Kitchen");
    device.bluetooth_url = "http://" + own_loopback(250) + ":1/api/v20/bluetooth.action";
    tab->device = &device;

    const int requests = request_serial;
    {
        Log_Capture log;
        QByteArray inputs_when_asked;
        log.on_debug_line = [&](const QString &) {
            if (request_serial > requests)
                inputs_when_asked.append(air->input);
        };
        tab->input_combo->setCurrentIndex(3);
        QVERIFY(log.debug_lines().contains(
            "******* Client_Settings_Air::inputChanged( 3 ) => BLUETOOTH ENABLE!"));
        QVERIFY(!inputs_when_asked.isEmpty());
        QCOMPARE(inputs_when_asked, QByteArray(inputs_when_asked.size(), 'W'));
    }
    QCOMPARE(request_serial, requests + 1);
    QCOMPARE(air->input, 'B');
    QTRY_COMPARE(resolves_running, 0);
}

void tst_client_settings_air_slots::no_other_input_asks_for_bluetooth()
{
    const int requests = request_serial;
    for (const int index : {1, 2, 4, 0, -1})
        tab->input_combo->setCurrentIndex(index); // without a record a request would crash
    QCOMPARE(request_serial, requests);
}

void tst_client_settings_air_slots::mute_without_time_lasts()
{
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(air->mutes, QStringList{"on"});
    QCOMPARE(air->mute, 1);
    QVERIFY(!tab->mute_timer);
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(air->mutes, (QStringList{"on", "off"}));
    QCOMPARE(air->mute, 0);
}

void tst_client_settings_air_slots::a_timed_mute_takes_its_seconds_from_the_speaker()
{
    air->mt = 5;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(air->mutes, QStringList{"on"});
    QVERIFY(tab->mute_timer);
    QVERIFY(tab->mute_timer->isActive());
    QVERIFY(tab->mute_timer->isSingleShot());
    QCOMPARE(tab->mute_timer->interval(), 5000);
    QCOMPARE(tab->mute_timer->parent(), tab.get());
}

void tst_client_settings_air_slots::a_timed_mute_ends_by_itself()
{
    air->mt = 5;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    const QTimer *timer = tab->mute_timer;
    tab->mute_timer->setInterval(1); // counts anew
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QCOMPARE(air->mutes, (QStringList{"on", "off"}));
    QVERIFY(!tab->mute_timer);
    QVERIFY(!timer->isActive());
}

void tst_client_settings_air_slots::unmuting_by_hand_stops_the_timer()
{
    air->mt = 5;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QTimer *timer = tab->mute_timer;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(!timer->isActive());
    QCOMPARE(tab->mute_timer, timer);
    QCOMPARE(air->mutes, (QStringList{"on", "off"}));
}

void tst_client_settings_air_slots::each_timed_mute_has_a_timer_of_its_own()
{
    air->mt = 5;
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

void tst_client_settings_air_slots::a_strange_time_is_safe_data()
{
    QTest::addColumn<int>("mt");
    QTest::addColumn<bool>("active");
    QTest::addColumn<int>("interval");
    QTest::newRow("longest in ms") << 2147483 << true << 2147483000;
    QTest::newRow("too long") << 2147484 << true << std::numeric_limits<int>::max();
    QTest::newRow("highest") << std::numeric_limits<int>::max() << true << std::numeric_limits<int>::max();
    QTest::newRow("negative") << -1 << false << 0;
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << false << 0;
}

void tst_client_settings_air_slots::a_strange_time_is_safe()
{
    QFETCH(int, mt);
    Log_Capture log;
    air->mt = mt;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(tab->mute_timer);
    QTEST(tab->mute_timer->isActive(), "active");
    QTEST(tab->mute_timer->interval(), "interval");
    QVERIFY(tab->mute_button->isChecked());
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(!tab->mute_timer->isActive());
    QCOMPARE(log.warnings(), QStringList());
}

void tst_client_settings_air_slots::a_press_of_the_slider_does_nothing()
{
    air->pending = 0;
    const QString text = tab->vol_label->text();
    QTest::mousePress(tab->vol_slider, Qt::LeftButton, Qt::NoModifier, handle_middle(tab->vol_slider));
    QVERIFY(tab->vol_slider->isSliderDown());
    QCOMPARE(air->pending, 0);
    QCOMPARE(tab->vol_label->text(), text);
}

QTEST_MAIN(tst_client_settings_air_slots)
#include "tst_client_settings_air_slots.moc"
