// SPDX-License-Identifier: MIT
#include <QComboBox>
#include <QDial>
#include <QPushButton>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_air.h"
#include "device/device_desc.h"
#include "settings/client_settings_air.h"
#include "settings/rzslider.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"

// What the tab brings to the wire of a running speaker.
class tst_client_settings_air_wire : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void building_and_refreshing_send_nothing();
    void a_jump_of_the_slider_sends_the_fenced_volume();
    void a_long_dial_step_may_send_two_volumes_the_fenced_one_last();
    void every_control_sends_its_command();
    void a_timed_mute_is_taken_back_after_its_second();
    void bluetooth_reaches_the_speaker_on_both_ways();

private:
    QList<QByteArray> sent();

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Virelo_Air> air;
    std::unique_ptr<Device_Desc> device;
    std::unique_ptr<Client_Settings_Air> tab;
};

void tst_client_settings_air_wire::init()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.values = {{"IN", "W"}, {"vo", "20"}, {"ba", "1"}, {"pl", "F"}, {"ro", "n"}, {"MT", "1"}};
    speaker = std::make_unique<Virtual_Speaker>(config);
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));

    air = std::make_unique<Virelo_Air>(13, speaker->address(), "Kitchen");
    air->start();
    QTRY_COMPARE(air->mt, 1); // the last value that the worker reads
    speaker->clear_record();

    device = std::make_unique<Device_Desc>(nullptr, false, QString());
    device->set_ip(speaker->address());
    device->set_port(speaker->http_port());
    device->make_urls();
    tab = std::make_unique<Client_Settings_Air>(nullptr, air.get(), device.get());
}

void tst_client_settings_air_wire::cleanup()
{
    air->terminate();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(speaker->host_complaints(), QStringList());
    tab.reset();
    device.reset();
    air.reset();
    speaker.reset();
}

// All commands of the test, once the worker has sent what was wanted.
QList<QByteArray> tst_client_settings_air_wire::sent()
{
    air->terminate();
    return speaker->host_lines();
}

void tst_client_settings_air_wire::building_and_refreshing_send_nothing()
{
    Client_Settings_Air fixed(nullptr, nullptr, nullptr);
    fixed.refresh(air.get(), device.get());
    QCOMPARE(sent(), QList<QByteArray>());
    QCOMPARE(speaker->http_requests().size(), 0);
}

void tst_client_settings_air_wire::a_jump_of_the_slider_sends_the_fenced_volume()
{
    tab->vol_slider->setValue(90);
    QCOMPARE(sent(), QList<QByteArray>{"RZ!vo030\n"});
    QCOMPARE(speaker->value("vo"), QString("30"));
}

void tst_client_settings_air_wire::a_long_dial_step_may_send_two_volumes_the_fenced_one_last()
{
    tab->vol_dial->setValue(14);
    QList<QByteArray> lines = sent();
    QCOMPARE(lines.takeLast(), QByteArray("RZ!vo030\n"));
    QVERIFY(lines.isEmpty() || lines == QList<QByteArray>{"RZ!vo034\n"});
}

void tst_client_settings_air_wire::every_control_sends_its_command()
{
    tab->input_combo->setCurrentIndex(2);
    QVERIFY(speaker->wait_for_host_line("RZ!INd\n"));
    tab->position_combo->setCurrentIndex(2);
    QVERIFY(speaker->wait_for_host_line("RZ!plC\n"));
    tab->bass_combo->setCurrentIndex(3);
    QVERIFY(speaker->wait_for_host_line("RZ!ba3\n"));
    tab->room_combo->setCurrentIndex(4);
    QVERIFY(speaker->wait_for_host_line("RZ!roD\n"));
    QTest::mouseClick(tab->beep_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!BI1\n"));
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!LO\n"));
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!LF\n"));
    QCOMPARE(sent().size(), 7);
}

void tst_client_settings_air_wire::a_timed_mute_is_taken_back_after_its_second()
{
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!MO\n"));
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QCOMPARE(sent(), (QList<QByteArray>{"RZ!MO\n", "RZ!MF\n"}));
}

void tst_client_settings_air_wire::bluetooth_reaches_the_speaker_on_both_ways()
{
    tab->input_combo->setCurrentIndex(3);
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(speaker->http_requests().size(), 1);
    QVERIFY(speaker->config().discoverable && speaker->config().pairable);
    QCOMPARE(sent(), QList<QByteArray>{"RZ!INB\n"});
}

QTEST_MAIN(tst_client_settings_air_wire)
#include "tst_client_settings_air_wire.moc"
