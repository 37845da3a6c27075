// SPDX-License-Identifier: MIT
#include <QThread>
#include <QtTest>
#include <thread>
#include <vector>

#include "simulator/bell.h"
#include "simulator/service_thread.h"

// The thread that a virtual peer runs on, and the bell that its callers wait for.
class tst_Service_Thread : public QObject
{
    Q_OBJECT

private slots:
    void work_runs_on_the_thread_and_is_done_on_return();
    void a_call_from_the_thread_itself_runs_at_once();
    void results_come_back();
    void callers_are_served_one_by_one_and_none_is_lost();
    void its_event_loop_serves_timers();
    void a_bell_that_never_rings_ends_at_the_time_limit();
    void a_condition_that_holds_needs_no_ring();
    void a_ring_makes_the_condition_be_looked_at_again();
    void a_condition_may_call_the_thread_that_rings();
};

void tst_Service_Thread::work_runs_on_the_thread_and_is_done_on_return()
{
    Service_Thread thread("test");
    QThread *seen = nullptr;
    QString name;
    thread.call([&] {
        seen = QThread::currentThread();
        name = seen->objectName();
    });
    QVERIFY(seen && seen != QThread::currentThread());
    QCOMPARE(name, QString("test"));
}

void tst_Service_Thread::a_call_from_the_thread_itself_runs_at_once()
{
    Service_Thread thread("test");
    bool inner = false;
    bool done_before_return = false;
    thread.call([&] {
        thread.call([&] { inner = true; });
        done_before_return = inner;
    });
    QVERIFY(done_before_return);
}

void tst_Service_Thread::results_come_back()
{
    Service_Thread thread("test");
    QCOMPARE(thread.ask<QString>([] { return QString("answer"); }), QString("answer"));
    QCOMPARE(thread.ask<int>([] { return 42; }), 42);
}

void tst_Service_Thread::callers_are_served_one_by_one_and_none_is_lost()
{
    constexpr int callers = 8;
    constexpr int calls = 200;
    Service_Thread thread("test");
    int count = 0; // without lock: that is what the thread is for
    std::vector<std::thread> all;
    for (int i = 0; i < callers; i++)
        all.emplace_back([&] {
            for (int call = 0; call < calls; call++)
                thread.call([&] { count++; });
        });
    for (std::thread &caller : all)
        caller.join();
    QCOMPARE(thread.ask<int>([&] { return count; }), callers * calls);
}

void tst_Service_Thread::its_event_loop_serves_timers()
{
    Service_Thread thread("test");
    Bell bell;
    int fired = 0;
    QTimer *timer = nullptr;
    thread.call([&] {
        timer = new QTimer;
        QObject::connect(timer, &QTimer::timeout, timer, [&] {
            fired++;
            bell.ring();
        });
        timer->start(1);
    });
    QVERIFY(bell.wait(5000, [&] { return thread.ask<int>([&] { return fired; }) >= 3; }));
    thread.call([&] { delete timer; });
}

void tst_Service_Thread::a_bell_that_never_rings_ends_at_the_time_limit()
{
    Bell bell;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!bell.wait(60, [] { return false; }));
    QVERIFY(clock.elapsed() >= 60);
}

void tst_Service_Thread::a_condition_that_holds_needs_no_ring()
{
    Bell bell;
    QVERIFY(bell.wait(0, [] { return true; }));
    QVERIFY(!bell.wait(0, [] { return false; }));
}

void tst_Service_Thread::a_ring_makes_the_condition_be_looked_at_again()
{
    Bell bell;
    int looks = 0;
    bool held = false;
    std::thread ringer;
    // The condition itself starts the ringer, so the ring cannot come before the first look.
    const bool found = bell.wait(5000, [&] {
        if (++looks == 1)
            ringer = std::thread([&] { bell.ring(); });
        held = looks == 2;
        return held;
    });
    ringer.join();
    QVERIFY(found && held);
    QCOMPARE(looks, 2);
}

void tst_Service_Thread::a_condition_may_call_the_thread_that_rings()
{
    Service_Thread thread("test");
    Bell bell;
    int value = 0;
    std::thread ringer([&] {
        for (int i = 0; i < 100; i++)
            thread.call([&] {
                value++;
                bell.ring();
            });
    });
    const bool found = bell.wait(5000, [&] { return thread.ask<int>([&] { return value; }) == 100; });
    ringer.join();
    QVERIFY(found);
}

QTEST_GUILESS_MAIN(tst_Service_Thread)
#include "tst_service_thread.moc"
