// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QTest>
#include <atomic>
#include <memory>
#include <thread>

#include "simulator/black_hole.h"
#include "tests/control/control_fixture.h"

namespace
{
constexpr int timeout = 5000;         // ms, of a connection attempt and of a read
constexpr int timeout_at_most = 9900; // far below the next one
} // namespace

// What the host link does when its time limits of 5 s run out for real.
class tst_serial_wifi_slow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void a_silent_at_channel_costs_5_s_and_the_host_channel_is_not_tried();
    void a_silent_host_channel_costs_5_s_and_drops_the_at_channel();
    void a_query_without_answer_ends_after_5_s();
    void a_reply_that_pauses_for_6_s_is_joined();
    void a_line_to_a_silent_host_costs_5_s();
    void query_uart_without_answer_ends_after_5_s();
    void a_command_that_always_drops_is_given_up_5_s_after_the_thread_is_told_to_end();

private:
    void start_speaker();
    bool took_one_timeout() const
    {
        return timer.elapsed() >= timeout - 50 && timer.elapsed() <= timeout_at_most;
    }

    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Virtual_Speaker> speaker;
    Speaker_Faults faults;
    QElapsedTimer timer;
};

void tst_serial_wifi_slow::init()
{
    log = std::make_unique<Log_Capture>();
    speaker = std::make_unique<Virtual_Speaker>(speaker_at_home());
    faults = Speaker_Faults();
}

void tst_serial_wifi_slow::cleanup()
{
    speaker.reset();
    QCOMPARE(log->warnings(), QStringList());
    log.reset();
}

// With the faults that the test has set.
void tst_serial_wifi_slow::start_speaker()
{
    speaker->set_faults(faults);
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
}

void tst_serial_wifi_slow::a_silent_at_channel_costs_5_s_and_the_host_channel_is_not_tried()
{
    const Black_Hole hole(own_loopback(1), 8991);
    QVERIFY(hole.ok());
    faults.at_refused = true; // the hole stands in its place
    start_speaker();
    timer.start();
    const auto link = open_link_to(own_loopback(1));
    QVERIFY(took_one_timeout());
    QVERIFY(!link->connected);
    QCOMPARE(speaker->host_connections().accepted, 0);
    QCOMPARE(link->host_command("MO", nullptr), -1);
}

void tst_serial_wifi_slow::a_silent_host_channel_costs_5_s_and_drops_the_at_channel()
{
    const Black_Hole hole(own_loopback(1), 8990);
    QVERIFY(hole.ok());
    faults.host_refused = true;
    start_speaker();
    timer.start();
    const auto link = open_link_to(own_loopback(1));
    QVERIFY(took_one_timeout());
    QVERIFY(!link->connected);
    QVERIFY(wait_until([this] {
        const Connection_Count count = speaker->at_connections();
        return count.accepted == 1 && count.open == 0;
    }));
    QCOMPARE(link->host_command("MO", nullptr), -1);
}

void tst_serial_wifi_slow::a_query_without_answer_ends_after_5_s()
{
    faults.host_silent = true;
    start_speaker();
    const auto link = open_link_to(own_loopback(1));
    char reply[serial_wifi::reply_size] = "untouched";
    timer.start();
    QCOMPARE(link->host_query("vo", "", reply), 0);
    QVERIFY(took_one_timeout());
    QCOMPARE(QByteArray(reply), QByteArray("untouched"));
    QVERIFY(!link->reconnect);
}

void tst_serial_wifi_slow::a_reply_that_pauses_for_6_s_is_joined()
{
    start_speaker();
    const auto link = open_link_to(own_loopback(1));
    speaker->set_host_reply("vo", "RZ#00");
    std::thread peer([this] {
        speaker->wait_for_host_line("RZ?vo\n");
        QThread::msleep(timeout + 1000); // the pause is what is tested
        speaker->send_host("037\r");
    });
    const long volume = link->host_query_int("vo");
    peer.join();
    QCOMPARE(volume, 37L);
}

void tst_serial_wifi_slow::a_line_to_a_silent_host_costs_5_s()
{
    faults.host_silent = true;
    start_speaker();
    const auto link = open_link_to(own_loopback(1));
    timer.start();
    QCOMPARE(link->send_line(":00000001FF\r\n"), 0);
    QVERIFY(took_one_timeout());
    QVERIFY(speaker->wait_for_host_line(":00000001FF\r\n"));
}

void tst_serial_wifi_slow::query_uart_without_answer_ends_after_5_s()
{
    faults.at_silent = true;
    start_speaker();
    const auto link = open_link_to(own_loopback(1));
    timer.start();
    QCOMPARE(link->query_uart(), 0);
    QVERIFY(took_one_timeout());
    QCOMPARE(speaker->at_bytes(), QByteArray("AT+UART?\n\r"));
}

// The log line of a command comes between its write and the look at `reconnect`: what it sets there is a drop
// within the write.
void tst_serial_wifi_slow::a_command_that_always_drops_is_given_up_5_s_after_the_thread_is_told_to_end()
{
    start_speaker();
    std::atomic<serial_wifi *> link{nullptr};
    std::atomic<bool> dropping{true};
    log->on_debug_line = [&](const QString &) {
        if (dropping)
            link.load()->reconnect = true;
    };
    int result = 0;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        const auto own = open_link_to(own_loopback(1));
        link = own.get();
        result = own->host_command("MO", nullptr);
    }));
    thread->start();
    QVERIFY(speaker->wait_for_host_lines(5));
    timer.start();
    thread->requestInterruption();
    const bool ended = thread->wait(3 * timeout);
    dropping = false; // ends it in any case
    thread->wait();
    QVERIFY(ended);
    QVERIFY(took_one_timeout());
    QCOMPARE(result, -1);
}

QTEST_GUILESS_MAIN(tst_serial_wifi_slow)
#include "tst_serial_wifi_slow.moc"
