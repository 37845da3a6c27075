// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QTest>

#include "tests/control/bare_control.h"

// How the worker ends, what is sent beside it, and flashing behind it.
class tst_Virelos_end : public QObject, private Bare_Control_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void terminate_ends_the_worker_and_its_link();
    void terminate_sends_what_waits();
    void terminate_sends_a_change_made_together_with_quit();
    void terminate_right_after_start_ends();
    void terminate_without_start_ends_and_forgets();
    void terminate_twice_ends();
    void direct_commands_are_sent_before_they_return_data();
    void direct_commands_are_sent_before_they_return();
    void a_direct_command_goes_ahead_of_queued_changes();
    void a_direct_command_without_link_does_nothing();
    void flash_open_makes_a_link_of_its_own();
    void a_second_flash_closes_the_link_of_the_first();
    void flash_line_without_link_does_nothing();
};

void tst_Virelos_end::terminate_ends_the_worker_and_its_link()
{
    QVERIFY(start_worker(*control));
    QVERIFY(control->link);
    control->terminate();
    QVERIFY(control->isFinished());
    QVERIFY(!control->link);
    QVERIFY(speaker->wait_for_host_open(0));
    QVERIFY(log->debug_lines().contains("Virelos::terminate() waiting for termination"));
    QCOMPARE(log->debug_lines().last(), QString("Virelos::terminate() THREADs gone"));
}

void tst_Virelos_end::terminate_sends_what_waits()
{
    QVERIFY(start_worker(*control));
    make_busy();
    control->muteOn();
    control->lockOn();
    control->Ping();
    end_worker();
    // The pass that keeps the worker busy has gone by mute and lock: they are the next one's.
    QCOMPARE(lines_after_start_up().mid(1), (Lines{"RZ!PI\n", "RZ!MO\n", "RZ!LO\n"}));
}

// The worker looks at quit when it wakes: what was stored before must not be left behind.
void tst_Virelos_end::terminate_sends_a_change_made_together_with_quit()
{
    QVERIFY(start_worker(*control));
    {
        QMutexLocker locker(&control->wake_mutex);
        control->quit = true;
        control->mute = 1;
        ++control->pending;
        control->wake_condition.wakeAll();
    }
    QVERIFY(control->wait(Virtual_Speaker::default_wait_ms));
    QVERIFY(speaker->wait_for_host_lines(start_up_reads.size() + 1));
    QCOMPARE(lines_after_start_up(), Lines{"RZ!MO\n"});
}

void tst_Virelos_end::terminate_right_after_start_ends()
{
    for (int i = 0; i < 20; ++i) {
        control->start();
        control->terminate();
        QVERIFY(control->isFinished());
        QVERIFY(!control->link);
    }
}

void tst_Virelos_end::terminate_without_start_ends_and_forgets()
{
    control->terminate();
    QVERIFY(!control->isRunning());
    QVERIFY(start_worker(*control));
    control->muteOn();
    QVERIFY(speaker->wait_for_host_line("RZ!MO\n"));
    QVERIFY(control->isRunning());
}

void tst_Virelos_end::terminate_twice_ends()
{
    QVERIFY(start_worker(*control));
    control->terminate();
    control->terminate();
    QVERIFY(control->isFinished());
}

void tst_Virelos_end::direct_commands_are_sent_before_they_return_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("standby") << QByteArray("standby") << QByteArray("RZ!PF\n");
    QTest::newRow("powerOn") << QByteArray("powerOn") << QByteArray("RZ!PO\n");
    QTest::newRow("flash") << QByteArray("flash") << QByteArray("RZ!FL\n");
}

void tst_Virelos_end::direct_commands_are_sent_before_they_return()
{
    QFETCH(QByteArray, call);
    QFETCH(QByteArray, line);
    QVERIFY(start_worker(*control));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(QMetaObject::invokeMethod(control.get(), call.constData(), Qt::DirectConnection));
    QVERIFY(timer.elapsed() >= 150);
    QVERIFY(speaker->wait_for_host_line(line));
    QCOMPARE(lines_after_start_up(), Lines{line});
    QCOMPARE(speaker->host_connections().accepted, 1);
}

void tst_Virelos_end::a_direct_command_goes_ahead_of_queued_changes()
{
    QVERIFY(start_worker(*control));
    make_busy();
    control->lockOn();
    control->Ping();
    control->standby();
    end_worker();
    QCOMPARE(lines_after_start_up().mid(1), (Lines{"RZ!PF\n", "RZ!PI\n", "RZ!LO\n"}));
}

void tst_Virelos_end::a_direct_command_without_link_does_nothing()
{
    control->standby();
    control->powerOn();
    control->flash();
    QCOMPARE(speaker->host_connections().accepted, 0);
    QVERIFY(start_worker(*control));
    end_worker();
    control->standby();
    control->powerOn();
    control->flash();
    QCOMPARE(speaker->host_lines(), start_up_reads);
}

void tst_Virelos_end::flash_open_makes_a_link_of_its_own()
{
    QVERIFY(start_worker(*control));
    end_worker();
    control->flash_open();
    QVERIFY(log->debug_lines().contains("\"Virelos::flash() ofKitchen\""));
    QVERIFY(control->link);
    QCOMPARE(control->link->name, QString("Virelos::flash() ofKitchen"));
    QCOMPARE(control->link->baud, 57600);
    QVERIFY(control->link->connected);
    QVERIFY(control->link->xon);
    control->flash();
    QCOMPARE(control->flash_line(":00000001FF\r\n"), 0);
    QVERIFY(speaker->wait_for_host_lines(start_up_reads.size() + 2));
    QCOMPARE(lines_after_start_up(), (Lines{"RZ!FL\n", ":00000001FF\r\n"}));
}

void tst_Virelos_end::a_second_flash_closes_the_link_of_the_first()
{
    control->flash_open();
    control->flash_open();
    QVERIFY(speaker->wait_until([this] { return speaker->host_connections().accepted == 2; }));
    QVERIFY(speaker->wait_for_host_open(1));
}

void tst_Virelos_end::flash_line_without_link_does_nothing()
{
    QCOMPARE(control->flash_line(":00000001FF\r\n"), 0);
    QCOMPARE(speaker->host_connections().accepted, 0);
}

QTEST_GUILESS_MAIN(tst_Virelos_end)
#include "tst_virelos_end.moc"
