// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QTest>
#include <thread>

#include "control/virelo_sub.h"
#include "tests/control/control_fixture.h"
#include "tests/fakes/log_capture.h"

// What the worker does when time limits of 5 s run out for real.
class tst_Virelos_slow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void a_direct_command_leaves_a_busy_worker_after_5_s_and_is_sent_later();
    void terminate_ends_a_worker_whose_replies_never_end();
};

// The speaker answers none of the worker's three reads, so the worker is busy for 15 s.
void tst_Virelos_slow::a_direct_command_leaves_a_busy_worker_after_5_s_and_is_sent_later()
{
    Log_Capture log;
    Virelo_Sub control(18, own_loopback(1), "Cellar");
    Virtual_Speaker speaker(speaker_at_home(18));
    Speaker_Faults faults;
    faults.host_silent = true;
    speaker.set_faults(faults);
    QVERIFY2(speaker.start(), qPrintable(speaker.error()));

    control.start();
    QVERIFY(speaker.wait_for_host_line("RZ?MO\n"));
    QVERIFY(wait_until([&control] {
        QMutexLocker locker(&control.wake_mutex);
        return control.link != nullptr;
    }));
    QElapsedTimer timer;
    timer.start();
    control.standby();
    QVERIFY(timer.elapsed() >= 4950);
    QVERIFY(!speaker.host_lines().contains("RZ!PF\n"));
    QVERIFY(speaker.wait_for_host_line("RZ!PF\n", 20000));
    QCOMPARE(speaker.host_lines(), (Lines{"RZ?MO\n", "RZ?LO\n", "RZ?MT\n", "RZ!PF\n"}));
    control.terminate();
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Virelos_slow::terminate_ends_a_worker_whose_replies_never_end()
{
    Log_Capture log;
    Virelo_Sub control(18, own_loopback(1), "Cellar");
    Virtual_Speaker speaker(speaker_at_home(18));
    Speaker_Faults faults;
    faults.host_no_cr = true;
    speaker.set_faults(faults);
    QVERIFY2(speaker.start(), qPrintable(speaker.error()));

    control.start();
    QVERIFY(speaker.wait_for_host_line("RZ?MO\n"));
    control.lockOn();
    std::thread waiting([&control] { control.terminate(); });
    const bool ended = control.wait(20000);
    if (!ended)
        speaker.stop(); // ends it in any case
    waiting.join();
    QVERIFY(ended);
    QCOMPARE(control.lock, 0);
    QCOMPARE(speaker.host_lines(), (Lines{"RZ?MO\n", "RZ?LO\n", "RZ?MT\n"}));
    QCOMPARE(log.warnings(), QStringList());
}

QTEST_GUILESS_MAIN(tst_Virelos_slow)
#include "tst_virelos_slow.moc"
