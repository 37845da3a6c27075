// SPDX-License-Identifier: MIT
#include <QTest>

#include "tests/control/bare_control.h"

// The worker and the values of every speaker, against a virtual speaker.
class tst_Virelos : public QObject, private Bare_Control_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void the_constructor_stores_its_arguments();
    void slots_stand_in_their_order();
    void run_reads_mute_lock_and_mt_in_this_order();
    void run_takes_what_the_speaker_reports();
    void run_names_its_link();
    void wake_counts();
    void changes_made_before_the_reads_have_ended_are_overwritten();
    void a_speaker_that_cannot_be_reached_reads_as_0();

    void a_slot_sends_its_command_data();
    void a_slot_sends_its_command();
    void a_stored_value_sends_its_command_data();
    void a_stored_value_sends_its_command();
    void one_pass_sends_in_the_order_of_the_table();
    void requests_are_cleared_when_they_have_been_sent();
    void surplus_wakes_send_nothing();
    void a_value_set_back_in_time_is_not_sent();
    void two_beeps_before_the_worker_wakes_are_one();
    void a_change_within_the_pace_of_its_command_is_sent_too();
    void a_failed_command_is_not_sent_again();
    void a_dropped_link_is_recovered_without_the_worker();

    void log_lines_mark_what_was_asked_data();
    void log_lines_mark_what_was_asked();
};

void tst_Virelos::the_constructor_stores_its_arguments()
{
    QCOMPARE(control->type, 13);
    QCOMPARE(control->host, own_loopback(1));
    QCOMPARE(control->name, QString("Kitchen"));
    QCOMPARE(control->pending, 0);
    QVERIFY(!control->quit);
    QVERIFY(!control->link);
    QCOMPARE(speaker->host_connections().accepted, 0);
}

void tst_Virelos::slots_stand_in_their_order()
{
    const QStringList expected = {"terminate()",
                                  "set_volume(int)",
                                  "change_volume(int)",
                                  "get_volume()",
                                  "muteOn()",
                                  "muteOff()",
                                  "muteToggled(bool)",
                                  "lockOn()",
                                  "lockOff()",
                                  "lockToggled(bool)",
                                  "standby()",
                                  "powerOn()",
                                  "Beep()",
                                  "flash()",
                                  "Ping()"};
    QCOMPARE(own_slots(Virelos::staticMetaObject), expected);
}

void tst_Virelos::run_reads_mute_lock_and_mt_in_this_order()
{
    QVERIFY(start_worker(*control));
    QCOMPARE(speaker->host_lines(), start_up_reads);
    QCOMPARE(speaker->host_connections().accepted, 1);
}

void tst_Virelos::run_takes_what_the_speaker_reports()
{
    speaker->set_host_reply("MO", "RZ#001\r");
    speaker->set_host_reply("LO", "RZ#001\r");
    speaker->set_host_reply("MT", "RZ#00017\r");
    control->beep = 1;
    control->ping = 1;
    QVERIFY(start_worker(*control));
    end_worker();
    QCOMPARE(control->mute, 1);
    QCOMPARE(control->mute_sent, 1);
    QCOMPARE(control->lock, 1);
    QCOMPARE(control->lock_sent, 1);
    QCOMPARE(control->mt, 17);
    QCOMPARE(control->mt_sent, 17);
    QCOMPARE(control->beep, 0);
    QCOMPARE(control->ping, 0);
    QCOMPARE(speaker->host_lines(), start_up_reads);
}

void tst_Virelos::run_names_its_link()
{
    QVERIFY(start_worker(*control));
    QMutexLocker locker(&control->wake_mutex);
    QCOMPARE(control->link->name, QString("Virelos::run() ofKitchen"));
    QCOMPARE(control->link->host, own_loopback(1));
    QCOMPARE(control->link->baud, 57600);
    QCOMPARE(control->link->data_bits, 8);
    QCOMPARE(control->link->parity, 0);
    QCOMPARE(control->link->stop_bits, 1);
}

void tst_Virelos::wake_counts()
{
    control->wake();
    control->wake();
    QCOMPARE(control->pending, 2);
}

void tst_Virelos::changes_made_before_the_reads_have_ended_are_overwritten()
{
    Speaker_Faults faults;
    faults.host_slow_ms = 50;
    speaker->set_faults(faults);
    control->start();
    QVERIFY(speaker->wait_for_host_line("RZ?MO\n"));
    control->muteOn();
    control->lockOn();
    control->Beep();
    control->Ping();
    end_worker();
    QCOMPARE(control->mute, 0);
    QCOMPARE(control->lock, 0);
    QCOMPARE(speaker->host_lines(), start_up_reads);
}

void tst_Virelos::a_speaker_that_cannot_be_reached_reads_as_0()
{
    speaker->stop();
    control->mute = 7;
    control->lock_sent = 7;
    control->start();
    end_worker();
    QCOMPARE(control->mute, 0);
    QCOMPARE(control->mute_sent, 0);
    QCOMPARE(control->lock, 0);
    QCOMPARE(control->lock_sent, 0);
    QCOMPARE(control->mt, 0);
}

void tst_Virelos::a_slot_sends_its_command_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("muteOn") << QByteArray("muteOn") << QByteArray("RZ!MO\n");
    QTest::newRow("lockOn") << QByteArray("lockOn") << QByteArray("RZ!LO\n");
    QTest::newRow("Beep") << QByteArray("Beep") << QByteArray("RZ!BI1\n");
    QTest::newRow("Ping") << QByteArray("Ping") << QByteArray("RZ!PI\n");
}

void tst_Virelos::a_slot_sends_its_command()
{
    QFETCH(QByteArray, call);
    QFETCH(QByteArray, line);
    QVERIFY(start_worker(*control));
    QVERIFY(QMetaObject::invokeMethod(control.get(), call, Qt::DirectConnection));
    QVERIFY(speaker->wait_for_host_line(line));
    QCOMPARE(lines_after_start_up(), Lines{line});
}

void tst_Virelos::a_stored_value_sends_its_command_data()
{
    QTest::addColumn<int>("reported");
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("mute on") << 0 << "mute" << 1 << QByteArray("RZ!MO\n");
    QTest::newRow("mute other") << 0 << "mute" << 5 << QByteArray("RZ!MO\n");
    QTest::newRow("mute off") << 1 << "mute" << 0 << QByteArray("RZ!MF\n");
    QTest::newRow("lock on") << 0 << "lock" << 1 << QByteArray("RZ!LO\n");
    QTest::newRow("lock off") << 1 << "lock" << 0 << QByteArray("RZ!LF\n");
    QTest::newRow("mt") << 0 << "mt" << 7 << QByteArray("RZ!MT007\n");
    QTest::newRow("mt of four digits") << 0 << "mt" << 1234 << QByteArray("RZ!MT1234\n");
    QTest::newRow("mt negative") << 0 << "mt" << -5 << QByteArray("RZ!MT-05\n");
    QTest::newRow("beep") << 0 << "beep" << 3 << QByteArray("RZ!BI3\n");
    QTest::newRow("beep of two digits") << 0 << "beep" << 12 << QByteArray("RZ!BI12\n");
    QTest::newRow("ping") << 0 << "ping" << 9 << QByteArray("RZ!PI\n");
}

void tst_Virelos::a_stored_value_sends_its_command()
{
    QFETCH(int, reported);
    QFETCH(QString, field);
    QFETCH(int, value);
    QFETCH(QByteArray, line);
    const QMap<QString, int Virelos::*> fields = {{"mute", &Virelos::mute},
                                                  {"lock", &Virelos::lock},
                                                  {"mt", &Virelos::mt},
                                                  {"beep", &Virelos::beep},
                                                  {"ping", &Virelos::ping}};
    for (const char *letters : {"MO", "LO", "MT"})
        speaker->set_host_reply(letters, "RZ#00" + QByteArray::number(reported) + "\r");
    QVERIFY(start_worker(*control));
    (*control).*fields.value(field) = value;
    control->wake();
    QVERIFY(speaker->wait_for_host_line(line));
    QCOMPARE(lines_after_start_up(), Lines{line});
}

void tst_Virelos::one_pass_sends_in_the_order_of_the_table()
{
    QVERIFY(start_worker(*control));
    control->ping = 1;
    control->beep = 1;
    control->mt = 30;
    control->lock = 1;
    control->mute = 1;
    control->wake();
    end_worker();
    QCOMPARE(lines_after_start_up(), (Lines{"RZ!MO\n", "RZ!LO\n", "RZ!MT030\n", "RZ!BI1\n", "RZ!PI\n"}));
    QCOMPARE(control->mute_sent, 1);
    QCOMPARE(control->lock_sent, 1);
    QCOMPARE(control->mt_sent, 30);
}

void tst_Virelos::requests_are_cleared_when_they_have_been_sent()
{
    QVERIFY(start_worker(*control));
    control->Beep();
    control->Ping();
    end_worker();
    QCOMPARE(control->beep, 0);
    QCOMPARE(control->ping, 0);
    QCOMPARE(speaker->beeps(), 1);
    QCOMPARE(speaker->pings(), 1);
}

void tst_Virelos::surplus_wakes_send_nothing()
{
    QVERIFY(start_worker(*control));
    for (int i = 0; i < 100; ++i)
        control->wake();
    end_worker();
    QCOMPARE(speaker->host_lines(), start_up_reads);
    QCOMPARE(control->pending, 0);
}

void tst_Virelos::a_value_set_back_in_time_is_not_sent()
{
    QVERIFY(start_worker(*control));
    make_busy();
    control->lockOn();
    control->muteOn();
    control->lockOff();
    control->muteOff();
    end_worker();
    QCOMPARE(lines_after_start_up().mid(1), Lines());
}

void tst_Virelos::two_beeps_before_the_worker_wakes_are_one()
{
    QVERIFY(start_worker(*control));
    make_busy();
    control->Beep();
    control->Beep();
    end_worker();
    QCOMPARE(lines_after_start_up().mid(1), Lines{"RZ!BI1\n"});
}

void tst_Virelos::a_change_within_the_pace_of_its_command_is_sent_too()
{
    QVERIFY(start_worker(*control));
    control->muteOn();
    QVERIFY(speaker->wait_for_host_line("RZ!MO\n"));
    control->muteOff();
    QVERIFY(speaker->wait_for_host_line("RZ!MF\n"));
    QCOMPARE(lines_after_start_up(), (Lines{"RZ!MO\n", "RZ!MF\n"}));
}

void tst_Virelos::a_failed_command_is_not_sent_again()
{
    QVERIFY(start_worker(*control));
    speaker->stop();
    control->muteOn();
    QVERIFY(wait_until([this] { return log->debug_lines().filter("returned -1").size() == 1; }));
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    speaker->clear_record();
    control->wake();
    end_worker();
    QCOMPARE(control->mute_sent, 1);
    QCOMPARE(speaker->host_bytes(), QByteArray());
}

void tst_Virelos::a_dropped_link_is_recovered_without_the_worker()
{
    QVERIFY(start_worker(*control));
    speaker->cut_link(Cut_How::fin);
    QVERIFY(speaker->wait_for_host_open(0));
    control->muteOn();
    QVERIFY(speaker->wait_for_host_line("RZ!MO\n"));
    QCOMPARE(lines_after_start_up(), Lines{"RZ!MO\n"});
}

void tst_Virelos::log_lines_mark_what_was_asked_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("checked"); // -1: no argument
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("mute");
    QTest::addColumn<int>("lock");
    QTest::newRow("muteOn") << QByteArray("muteOn") << -1 << QStringList{"Virelos::MUTE_ON()"} << 1 << 7;
    QTest::newRow("muteOff") << QByteArray("muteOff") << -1 << QStringList{"Virelos::MUTE_OFF()"} << 0 << 7;
    QTest::newRow("muteToggled on") << QByteArray("muteToggled") << 1 << QStringList{"Virelos::MUTE_ON()"}
                                    << 1 << 7;
    QTest::newRow("muteToggled off") << QByteArray("muteToggled") << 0 << QStringList{"Virelos::MUTE_OFF()"}
                                     << 0 << 7;
    QTest::newRow("lockOn") << QByteArray("lockOn") << -1 << QStringList{"LOCK()"} << 7 << 1;
    QTest::newRow("lockOff") << QByteArray("lockOff") << -1 << QStringList{"UNLOCK()"} << 7 << 0;
    QTest::newRow("lockToggled on") << QByteArray("lockToggled") << 1
                                    << QStringList{"Virelos::lockToggled()", "LOCK()"} << 7 << 1;
    QTest::newRow("lockToggled off") << QByteArray("lockToggled") << 0
                                     << QStringList{"Virelos::lockToggled()", "UNLOCK()"} << 7 << 0;
}

void tst_Virelos::log_lines_mark_what_was_asked()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, checked);
    QFETCH(QStringList, lines);
    QFETCH(int, mute);
    QFETCH(int, lock);
    control->mute = 7;
    control->lock = 7;
    const bool called = checked < 0 ? QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection)
                                    : QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection,
                                                                Q_ARG(bool, checked == 1));
    QVERIFY(called);
    QCOMPARE(log->debug_lines(), lines);
    QCOMPARE(control->mute, mute);
    QCOMPARE(control->lock, lock);
    QCOMPARE(control->pending, 1);
}

QTEST_GUILESS_MAIN(tst_Virelos)
#include "tst_virelos.moc"
