// SPDX-License-Identifier: MIT
#include <QComboBox>
#include <QDial>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "settings/client_settings_air.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/probe_air.h"

// What the tab does when it is pointed at another speaker.
class tst_client_settings_air_refresh : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void a_tab_built_without_speaker_shows_the_first();
    void control_keeps_what_the_tab_was_built_with();
    void labels_are_stacked_and_only_the_newest_shows();
    void the_read_out_has_the_form_of_refresh_data();
    void the_read_out_has_the_form_of_refresh();
    void a_volume_far_away_passes_the_fence();
    void an_equal_volume_runs_no_slot();
    void values_out_of_range_are_shown_at_the_end_of_the_range();
    void combos_store_back_what_was_read();
    void unknown_letters_leave_combos_blank_and_change_nothing();
    void a_bass_without_entry_leaves_the_combo_blank();
    void bluetooth_is_asked_for_when_the_index_becomes_that_of_bluetooth();
    void a_changed_mute_state_runs_its_slot_and_timer();
    void an_equal_mute_state_runs_no_slot();
    void a_running_timer_unmutes_whatever_speaker_is_shown_by_then();
    void the_speaker_before_hears_nothing_any_more();
    void states_are_set_in_order();

private:
    std::unique_ptr<Probe_Air> first, second;
    std::unique_ptr<Client_Settings_Air> tab;
    std::unique_ptr<Device_Desc> device;
};

void tst_client_settings_air_refresh::initTestCase()
{
    plattform = new rzplattform;
    device = std::make_unique<Device_Desc>(nullptr, false, "Bathroom");
    device->bluetooth_url = "http://" + own_loopback(250) + ":1/api/v20/bluetooth.action";
}

void tst_client_settings_air_refresh::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    first = std::make_unique<Probe_Air>("Kitchen", 13);
    first->volume = 20;
    second = std::make_unique<Probe_Air>("Bathroom", 14);
    second->volume = 80;
    second->pending = 0;
    tab = std::make_unique<Client_Settings_Air>(nullptr, first.get(), nullptr);
}

void tst_client_settings_air_refresh::a_tab_built_without_speaker_shows_the_first()
{
    tab = std::make_unique<Client_Settings_Air>(nullptr, nullptr, nullptr);
    second->lock = 1;
    second->position = 'C';
    tab->refresh(second.get(), device.get());
    QCOMPARE(tab->name_label->text(), QString("<b>Bathroom</b>"));
    QCOMPARE(tab->model_label->text(), "(" + model_name(14) + ")");
    QCOMPARE(tab->vol_slider->value(), 80);
    QCOMPARE(tab->position_combo->currentIndex(), 2);
    QVERIFY(tab->lock_button->isChecked());
    QVERIFY(!tab->mute_button->isChecked());
}

void tst_client_settings_air_refresh::control_keeps_what_the_tab_was_built_with()
{
    tab->refresh(second.get(), device.get());
    QCOMPARE(tab->control, first.get());
    QCOMPARE(tab->air, second.get());
    QCOMPARE(tab->device, device.get());
}

void tst_client_settings_air_refresh::labels_are_stacked_and_only_the_newest_shows()
{
    tab->show();
    const QList<QLabel *> old = {tab->name_label, tab->model_label};
    tab->refresh(second.get(), device.get());
    tab->refresh(first.get(), device.get());
    QCOMPARE(widgets_at(tab->grid, 1, 1).size(), 3);
    QCOMPARE(widgets_at(tab->grid, 1, 2).size(), 3);
    QCOMPARE(widgets_at(tab->grid, 1, 1).first(), old.at(0));
    QCOMPARE(widgets_at(tab->grid, 1, 1).last(), tab->name_label);
    QCOMPARE(widgets_at(tab->grid, 1, 2).last(), tab->model_label);
    QTRY_VERIFY(tab->name_label->isVisible() && tab->model_label->isVisible());
    for (QWidget *label : widgets_at(tab->grid, 1, 1) + widgets_at(tab->grid, 1, 2))
        QCOMPARE(label->isVisible(), label == tab->name_label || label == tab->model_label);
}

void tst_client_settings_air_refresh::the_read_out_has_the_form_of_refresh_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("text");
    QTest::newRow("unset") << 0 << "SPDIF Vol:80 / 100";
    QTest::newRow("phone") << DEVICE_PHONE << "80 / 100";
    QTest::newRow("tablet") << DEVICE_TABLET << "SPDIF Vol:80 / 100";
    QTest::newRow("desktop") << DEVICE_DESKTOP << "SPDIF Vol:80 / 100";
}

void tst_client_settings_air_refresh::the_read_out_has_the_form_of_refresh()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    tab = std::make_unique<Client_Settings_Air>(nullptr, first.get(), nullptr);
    tab->refresh(second.get(), device.get());
    QTEST(tab->vol_label->text(), "text");
}

void tst_client_settings_air_refresh::a_volume_far_away_passes_the_fence()
{
    tab->refresh(second.get(), device.get());
    QCOMPARE(tab->vol_slider->value(), 80);
    QCOMPARE(tab->vol_slider->sliderPosition(), 80);
    QCOMPARE(tab->slider_last, 80);
    QCOMPARE(second->volume, 80);
    QCOMPARE(second->volumes, QList<int>{80}); // the slot ran, and stored the same back
}

void tst_client_settings_air_refresh::an_equal_volume_runs_no_slot()
{
    second->volume = 20;
    tab->refresh(second.get(), device.get());
    QCOMPARE(second->volumes, QList<int>());
    QCOMPARE(second->pending, 0);
    QCOMPARE(tab->vol_label->text(), QString("SPDIF Vol:20 / 100"));
}

void tst_client_settings_air_refresh::values_out_of_range_are_shown_at_the_end_of_the_range()
{
    second->volume = std::numeric_limits<int>::max();
    tab->refresh(second.get(), device.get());
    QCOMPARE(tab->vol_slider->value(), 100);
    QCOMPARE(second->volume, 100);
    first->volume = std::numeric_limits<int>::min();
    tab->refresh(first.get(), device.get());
    QCOMPARE(tab->vol_slider->value(), 0);
    QCOMPARE(first->volume, 0);
}

void tst_client_settings_air_refresh::combos_store_back_what_was_read()
{
    second->volume = 20;
    second->input = 'd';
    second->position = 'C';
    second->bass = 3;
    second->room = 'D';
    tab->refresh(second.get(), device.get());
    QCOMPARE(tab->input_combo->currentIndex(), 2);
    QCOMPARE(tab->position_combo->currentIndex(), 2);
    QCOMPARE(tab->bass_combo->currentIndex(), 3);
    QCOMPARE(tab->room_combo->currentIndex(), 4);
    QCOMPARE(second->pending, 4);
    QCOMPARE(second->input, 'd');
    QCOMPARE(second->position, 'C');
    QCOMPARE(second->bass, 3);
    QCOMPARE(second->room, 'D');
}

void tst_client_settings_air_refresh::unknown_letters_leave_combos_blank_and_change_nothing()
{
    second->volume = 20;
    second->input = second->position = second->room = '?';
    tab->refresh(second.get(), device.get());
    QCOMPARE(tab->position_combo->currentIndex(), -1);
    QCOMPARE(tab->position_combo->currentText(), QString());
    QCOMPARE(tab->room_combo->currentIndex(), -1);
    QCOMPARE(second->position, '?');
    QCOMPARE(second->room, '?');

    // An unknown input counts as "Automatic", and its slot says so to the speaker.
    QCOMPARE(tab->input_combo->currentIndex(), 4);
    QCOMPARE(second->input, 'A');
    QCOMPARE(second->pending, 1);
}

void tst_client_settings_air_refresh::a_bass_without_entry_leaves_the_combo_blank()
{
    second->volume = 20;
    for (const int bass : {4, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        second->bass = bass;
        tab->refresh(second.get(), device.get());
        QCOMPARE(tab->bass_combo->currentIndex(), -1);
        QCOMPARE(second->bass, bass);
    }
    QCOMPARE(second->pending, 0);
}

void tst_client_settings_air_refresh::bluetooth_is_asked_for_when_the_index_becomes_that_of_bluetooth()
{
    const int requests = request_serial;
    second->input = 'B';
    tab->refresh(second.get(), device.get());
    QCOMPARE(request_serial, requests + 1);

    first->input = 'B';
    tab->refresh(first.get(), device.get()); // the index stays
    QCOMPARE(request_serial, requests + 1);
    QTRY_COMPARE(resolves_running, 0);
}

void tst_client_settings_air_refresh::a_changed_mute_state_runs_its_slot_and_timer()
{
    second->mute = 1;
    second->mt = 7;
    tab->refresh(second.get(), device.get());
    QCOMPARE(second->mutes, QStringList{"on"});
    QVERIFY(tab->mute_button->isChecked());
    QVERIFY(tab->mute_timer && tab->mute_timer->isActive());
    QCOMPARE(tab->mute_timer->interval(), 7000);

    tab->refresh(first.get(), device.get());
    QCOMPARE(first->mutes, QStringList{"off"});
    QVERIFY(!tab->mute_timer->isActive());
}

void tst_client_settings_air_refresh::an_equal_mute_state_runs_no_slot()
{
    tab->refresh(second.get(), device.get());
    QCOMPARE(second->mutes, QStringList());
    QVERIFY(!tab->mute_timer);
}

void tst_client_settings_air_refresh::a_running_timer_unmutes_whatever_speaker_is_shown_by_then()
{
    first->mt = 5;
    tab->mute_button->setChecked(true);
    second->mute = 1;
    tab->refresh(second.get(), device.get());
    QVERIFY(tab->mute_timer->isActive());
    QCOMPARE(second->mutes, QStringList());

    tab->mute_timer->setInterval(1); // counts anew
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QCOMPARE(second->mutes, QStringList{"off"});
    QCOMPARE(first->mutes, QStringList{"on"});
}

void tst_client_settings_air_refresh::the_speaker_before_hears_nothing_any_more()
{
    tab->refresh(second.get(), device.get());
    first->pending = 0;
    tab->vol_slider->setValue(75);
    tab->vol_dial->setValue(3);
    tab->room_combo->setCurrentIndex(2);
    QTest::mouseClick(tab->beep_button, Qt::LeftButton);
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QCOMPARE(first->pending, 0);
    QCOMPARE(second->volume, 78);
    QCOMPARE(second->room, 'n');
    QCOMPARE(second->beep, 1);
    QCOMPARE(second->lock, 1);
}

void tst_client_settings_air_refresh::states_are_set_in_order()
{
    QStringList order;
    connect(tab->vol_slider, &QSlider::valueChanged, this, [&] { order.append("volume"); });
    const QList<QPair<QComboBox *, QString>> combos = {{tab->input_combo, "input"},
                                                       {tab->position_combo, "position"},
                                                       {tab->bass_combo, "bass"},
                                                       {tab->room_combo, "room"}};
    for (const auto &combo : combos)
        connect(combo.first, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                [&order, name = combo.second] { order.append(name); });
    connect(tab->mute_button, &QPushButton::toggled, this, [&] { order.append("mute"); });
    connect(tab->lock_button, &QPushButton::toggled, this, [&] { order.append("lock"); });

    second->input = 'D';
    second->position = 'W';
    second->bass = 1;
    second->room = 'n';
    second->mute = second->lock = 1;
    tab->refresh(second.get(), device.get());
    QCOMPARE(order, (QStringList{"volume", "input", "position", "bass", "room", "mute", "lock"}));
    tab.reset();
}

QTEST_MAIN(tst_client_settings_air_refresh)
#include "tst_client_settings_air_refresh.moc"
