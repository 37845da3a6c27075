// SPDX-License-Identifier: MIT
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_sub.h"
#include "settings/client_settings_sub.h"
#include "settings/client_settings_sub_eq.h"
#include "settings/rzslider.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"

// What the tab and the equaliser's tab bring to the wire of a running subwoofer.
class tst_client_settings_sub_wire : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void building_both_tabs_sends_nothing();
    void refreshing_both_tabs_within_the_fence_sends_nothing();
    void a_refresh_beyond_the_fence_sends_the_fenced_volume();
    void a_jump_of_the_slider_sends_the_fenced_volume();
    void every_control_sends_its_command();
    void unchecking_the_high_pass_sends_0_and_checking_it_the_frequency();
    void moving_a_high_pass_that_is_off_sends_the_frequency_twice();
    void every_control_of_the_equaliser_sends_its_command();
    void a_timed_mute_is_taken_back_after_its_second();

private:
    QList<QByteArray> sent();

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Virelo_Sub> sub;
    std::unique_ptr<Client_Settings_Sub> tab;
    std::unique_ptr<Client_Settings_Sub_EQ> eq;
};

void tst_client_settings_sub_wire::init()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.type = 18;
    config.values = {{"ai", "W"}, {"vo", "40"}, {"fg", "80"}, {"fs", "24"}, {"fh", "25"}, {"ph", "90"},
                     {"po", "0"}, {"eq", "1"},  {"ef", "45"}, {"eQ", "4"},  {"eg", "-6"}, {"MT", "1"}};
    speaker = std::make_unique<Virtual_Speaker>(config);
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));

    sub = std::make_unique<Virelo_Sub>(18, speaker->address(), "Cellar");
    sub->start();
    QTRY_COMPARE(sub->mt, 1); // the last value that the worker reads
    speaker->clear_record();
    tab = std::make_unique<Client_Settings_Sub>(nullptr, sub.get());
    eq = std::make_unique<Client_Settings_Sub_EQ>(nullptr, sub.get());
}

void tst_client_settings_sub_wire::cleanup()
{
    sub->terminate();
    QCOMPARE(speaker->host_complaints(), QStringList());
    eq.reset();
    tab.reset();
    sub.reset();
    speaker.reset();
}

// All commands of the test, once the worker has sent what was wanted.
QList<QByteArray> tst_client_settings_sub_wire::sent()
{
    sub->terminate();
    return speaker->host_lines();
}

void tst_client_settings_sub_wire::building_both_tabs_sends_nothing()
{
    QCOMPARE(sent(), QList<QByteArray>());
}

void tst_client_settings_sub_wire::refreshing_both_tabs_within_the_fence_sends_nothing()
{
    Client_Settings_Sub fixed(nullptr, nullptr);
    Client_Settings_Sub_EQ fixed_eq(nullptr, nullptr);
    fixed.slider_last = 31;
    fixed.refresh(sub.get());
    fixed_eq.refresh(sub.get());
    QCOMPARE(sent(), QList<QByteArray>());
}

void tst_client_settings_sub_wire::a_refresh_beyond_the_fence_sends_the_fenced_volume()
{
    Client_Settings_Sub fixed(nullptr, nullptr);
    fixed.refresh(sub.get());
    QCOMPARE(sent(), QList<QByteArray>{"RZ!vo010\n"});
}

void tst_client_settings_sub_wire::a_jump_of_the_slider_sends_the_fenced_volume()
{
    tab->vol_slider->setValue(90);
    QCOMPARE(sent(), QList<QByteArray>{"RZ!vo050\n"});
    QCOMPARE(speaker->value("vo"), QString("50"));
}

void tst_client_settings_sub_wire::every_control_sends_its_command()
{
    tab->input_combo->setCurrentIndex(4);
    QVERIFY(speaker->wait_for_host_line("RZ!INL\n"));
    tab->fg_slider->setValue(30);
    QVERIFY(speaker->wait_for_host_line("RZ!fg030\n"));
    tab->slope_combo->setCurrentIndex(0);
    QVERIFY(speaker->wait_for_host_line("RZ!fs00\n"));
    tab->hp_slider->setValue(40);
    QVERIFY(speaker->wait_for_host_line("RZ!fh40\n"));
    tab->phase_slider->setValue(5);
    QVERIFY(speaker->wait_for_host_line("RZ!ph005\n"));
    tab->polarity_combo->setCurrentIndex(1);
    QVERIFY(speaker->wait_for_host_line("RZ!po1\n"));
    QTest::mouseClick(tab->beep_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!BI1\n"));
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!LO\n"));
    QTest::mouseClick(tab->lock_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!LF\n"));
    QCOMPARE(sent().size(), 9);
    QCOMPARE(speaker->value("ai"), QString("L"));
}

void tst_client_settings_sub_wire::unchecking_the_high_pass_sends_0_and_checking_it_the_frequency()
{
    tab->hp_check->setChecked(false);
    QVERIFY(speaker->wait_for_host_line("RZ!fh00\n"));
    tab->hp_check->setChecked(true);
    QVERIFY(speaker->wait_for_host_line("RZ!fh25\n"));
    QCOMPARE(sent().size(), 2);
}

void tst_client_settings_sub_wire::moving_a_high_pass_that_is_off_sends_the_frequency_twice()
{
    tab->hp_check->setChecked(false);
    QVERIFY(speaker->wait_for_host_line("RZ!fh00\n"));
    tab->hp_slider->setValue(30);
    QCOMPARE(sent(), (QList<QByteArray>{"RZ!fh00\n", "RZ!fh30\n", "RZ!fh30\n"}));
    QCOMPARE(speaker->value("fh"), QString("30"));
}

void tst_client_settings_sub_wire::every_control_of_the_equaliser_sends_its_command()
{
    eq->freq_slider->setValue(20);
    QVERIFY(speaker->wait_for_host_line("RZ!ef020\n"));
    eq->gain_slider->setValue(-24);
    QVERIFY(speaker->wait_for_host_line("RZ!eg-24\n"));
    eq->gain_slider->setValue(-5);
    QVERIFY(speaker->wait_for_host_line("RZ!eg-5\n"));
    eq->gain_slider->setValue(6);
    QVERIFY(speaker->wait_for_host_line("RZ!eg06\n"));
    eq->q_slider->setValue(10);
    QVERIFY(speaker->wait_for_host_line("RZ!eQ10\n"));
    eq->q_slider->setValue(1);
    QVERIFY(speaker->wait_for_host_line("RZ!eQ1\n"));
    eq->eq_check->setChecked(false);
    QVERIFY(speaker->wait_for_host_line("RZ!eq0\n"));
    eq->eq_check->setChecked(true);
    QVERIFY(speaker->wait_for_host_line("RZ!eq1\n"));
    QCOMPARE(sent().size(), 8);
}

void tst_client_settings_sub_wire::a_timed_mute_is_taken_back_after_its_second()
{
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(speaker->wait_for_host_line("RZ!MO\n"));
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QCOMPARE(sent(), (QList<QByteArray>{"RZ!MO\n", "RZ!MF\n"}));
}

QTEST_MAIN(tst_client_settings_sub_wire)
#include "tst_client_settings_sub_wire.moc"
