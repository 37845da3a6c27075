// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QTest>
#include <memory>

#include "tests/control/link_fixture.h"

// The states of the host link, and the ways from one to the next: open, broken, dead, closed.
class tst_serial_wifi_recovery : public QObject, private Link_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void a_refused_at_channel_leaves_the_host_channel_untried();
    void a_refused_host_channel_drops_the_at_channel();
    void a_drop_in_idle_sends_the_command_on_a_fresh_link_data();
    void a_drop_in_idle_sends_the_command_on_a_fresh_link();
    void a_command_goes_out_again_as_long_as_links_drop();
    void a_command_that_drops_again_and_again_is_paced();
    void a_drop_before_a_query_costs_that_query_alone();
    void a_link_that_closes_within_a_reply_gives_minus_1();
    void a_reply_that_is_complete_counts_though_the_link_closes_behind_it();
    void a_write_on_a_lost_link_is_negative_and_the_next_command_reconnects();
    void a_drop_that_events_tell_of_asks_for_a_reconnect_too();
    void a_failed_reconnect_leaves_a_dead_link();
    void a_link_that_was_never_connected_refuses_everything();
    void a_refused_command_does_not_sleep();
    void only_the_unconnected_state_asks_for_a_reconnect_data();
    void only_the_unconnected_state_asks_for_a_reconnect();
    void closing_asks_for_no_reconnect();
    void the_at_channel_is_not_watched();
    void bytes_written_right_before_the_deletion_arrive();
    void a_deleted_link_closes_both_channels();
    void many_reconnects_leave_no_descriptor_behind();
};

void tst_serial_wifi_recovery::a_refused_at_channel_leaves_the_host_channel_untried()
{
    Speaker_Faults faults;
    faults.at_refused = true;
    speaker->set_faults(faults);
    const auto refused = open_link_to(own_loopback(1));
    QVERIFY(!refused->connected);
    QVERIFY(refused->at_socket && refused->host_socket);
    QCOMPARE(refused->at_socket->state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(refused->host_socket->state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(speaker->host_connections().accepted, 1); // that of init()
}

void tst_serial_wifi_recovery::a_refused_host_channel_drops_the_at_channel()
{
    Speaker_Faults faults;
    faults.host_refused = true;
    speaker->set_faults(faults);
    const auto refused = open_link_to(own_loopback(1));
    QVERIFY(!refused->connected);
    QVERIFY(refused->at_socket && refused->host_socket);
    QCOMPARE(refused->at_socket->state(), QAbstractSocket::UnconnectedState);
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().accepted == 2; }));
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().open == 1; }));
}

void tst_serial_wifi_recovery::a_drop_in_idle_sends_the_command_on_a_fresh_link_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("in order") << static_cast<int>(Cut_How::fin);
    QTest::newRow("by a reset") << static_cast<int>(Cut_How::rst);
}

void tst_serial_wifi_recovery::a_drop_in_idle_sends_the_command_on_a_fresh_link()
{
    QFETCH(int, how);
    speaker->cut_link(static_cast<Cut_How>(how));
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(link->host_command("vo", "037"), 0);
    QVERIFY(speaker->wait_for_host_lines(1));
    QCOMPARE(speaker->host_lines(), Lines{"RZ!vo037\n"});
    QCOMPARE(speaker->timed_host_lines().first().link, 2);
    QVERIFY(!link->reconnect);
    QVERIFY(link->connected);
    QCOMPARE(speaker->host_connections().accepted, 2);
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().open == 1; }));
}

void tst_serial_wifi_recovery::a_command_goes_out_again_as_long_as_links_drop()
{
    Speaker_Faults faults;
    faults.host_cut = Cut::on_connect;
    faults.host_cut_left = 3;
    speaker->set_faults(faults);
    speaker->cut_link(Cut_How::fin);
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(link->host_command("vo", "037"), 0);
    // A link that is cut right after a write has taken the frame already: then the next command is the one
    // that notices.
    for (int i = 0; i < 4 && !speaker->wait_for_host_line("RZ!vo038\n", 0); ++i)
        QCOMPARE(link->host_command("vo", "038"), 0);
    QVERIFY(speaker->wait_for_host_line("RZ!vo038\n"));
    QCOMPARE(speaker->host_connections().accepted, 5);
}

// The log line of a command comes between its write and the look at `reconnect`: what it sets there is a drop
// within the write.
void tst_serial_wifi_recovery::a_command_that_drops_again_and_again_is_paced()
{
    constexpr int drops = 4;
    QElapsedTimer timer;
    QList<qint64> sent;
    log->on_debug_line = [&](const QString &) {
        link->reconnect = sent.size() < drops;
        sent.append(timer.elapsed());
    };
    timer.start();
    QCOMPARE(link->host_command("vo", "037"), 0);
    QCOMPARE(sent.size(), drops + 1);
    for (int i = 2; i < sent.size(); ++i)
        QVERIFY(sent.at(i) - sent.at(i - 1) >= 150);
    QVERIFY(speaker->wait_for_host_lines(drops + 1));
    QCOMPARE(speaker->host_bytes(), QByteArray("RZ!vo037\n").repeated(drops + 1));
    QCOMPARE(speaker->host_connections().accepted, drops + 1);
}

void tst_serial_wifi_recovery::a_drop_before_a_query_costs_that_query_alone()
{
    speaker->set_value("vo", "37");
    speaker->cut_link(Cut_How::fin);
    QVERIFY(speaker->wait_for_host_open(0));
    char reply[serial_wifi::reply_size] = "untouched";
    QCOMPARE(link->host_query("vo", "", reply), 0);
    QCOMPARE(QByteArray(reply), QByteArray("untouched"));
    QVERIFY(link->reconnect);
    QCOMPARE(link->host_query_int("vo"), 37L);
    QVERIFY(!link->reconnect);
}

void tst_serial_wifi_recovery::a_link_that_closes_within_a_reply_gives_minus_1()
{
    speaker->set_value("vo", "37");
    Speaker_Faults faults;
    faults.host_cut = Cut::within;
    faults.host_cut_left = 1;
    speaker->set_faults(faults);
    char reply[serial_wifi::reply_size] = "untouched";
    QCOMPARE(link->host_query("vo", "", reply), -1);
    QCOMPARE(QByteArray(reply), QByteArray("untouched"));
    QVERIFY(link->reconnect);
    QCOMPARE(link->host_query_int("vo"), 37L);
}

void tst_serial_wifi_recovery::a_reply_that_is_complete_counts_though_the_link_closes_behind_it()
{
    speaker->set_value("vo", "37");
    Speaker_Faults faults;
    faults.host_cut = Cut::after;
    faults.host_cut_left = 1;
    speaker->set_faults(faults);
    QCOMPARE(link->host_query_int("vo"), 37L);
}

void tst_serial_wifi_recovery::a_write_on_a_lost_link_is_negative_and_the_next_command_reconnects()
{
    link->host_socket->abort();
    QVERIFY(link->reconnect);
    char frame[] = "RZ!MO\n";
    QVERIFY(link->send_frame(frame, 6) < 0);
    QVERIFY(link->reconnect);
    QCOMPARE(link->host_command("MF", nullptr), 0);
    QVERIFY(speaker->wait_for_host_lines(1));
    QCOMPARE(speaker->host_lines(), Lines{"RZ!MF\n"});
    QVERIFY(!link->reconnect);
}

void tst_serial_wifi_recovery::a_drop_that_events_tell_of_asks_for_a_reconnect_too()
{
    speaker->send_host("!");
    QTRY_COMPARE(link->host_socket->bytesAvailable(), 1);
    speaker->cut_link(Cut_How::rst);
    QTRY_VERIFY(link->reconnect);
    QCOMPARE(link->send_line("lost\n"), 0);
    link->clear_recv_socket();
    link->readReady();
    QVERIFY(link->reconnect);
    QCOMPARE(link->host_command("MF", nullptr), 0);
    QVERIFY(speaker->wait_for_host_lines(1));
    QCOMPARE(speaker->host_lines(), Lines{"RZ!MF\n"});
}

void tst_serial_wifi_recovery::a_failed_reconnect_leaves_a_dead_link()
{
    speaker->stop();
    QVERIFY(link->host_command("vo", "037") < 0);
    QVERIFY(link->connected);
    QVERIFY(!link->reconnect);

    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    char reply[serial_wifi::reply_size] = "untouched";
    QVERIFY(link->host_command("vo", "038") < 0);
    QVERIFY(link->host_query("vo", "", reply) < 0);
    QCOMPARE(QByteArray(reply), QByteArray("untouched"));
    QCOMPARE(link->host_query_int("vo"), 0L);
    QCOMPARE(link->read_reply(reply, 10), 0);
    QCOMPARE(link->send_line("text"), 0);
    QCOMPARE(link->query_uart(), 0);
    link->clear_recv_socket();
    link->readReady();
    QVERIFY(!link->reconnect);
    QCOMPARE(speaker->host_connections().open, 0);
    QCOMPARE(speaker->host_bytes(), QByteArray());
}

void tst_serial_wifi_recovery::a_link_that_was_never_connected_refuses_everything()
{
    const auto refused = open_link_to(own_loopback(2));
    QVERIFY(!refused->connected);
    char frame[] = "RZ!MO\nx";
    char reply[serial_wifi::reply_size] = "untouched";
    QCOMPARE(refused->send_frame(frame, 6), -1);
    QCOMPARE(QByteArray(frame), QByteArray("RZ!MO\nx"));
    QCOMPARE(refused->host_command("MO", nullptr), -1);
    QCOMPARE(refused->read_reply(reply, 10), -1);
    QCOMPARE(refused->host_query("vo", "", reply), -1);
    QCOMPARE(QByteArray(reply), QByteArray("untouched"));
    QCOMPARE(refused->host_query_int("vo"), 0L);
    QCOMPARE(refused->send_line("text"), 0);
    QCOMPARE(refused->query_uart(), 0);
    refused->clear_recv_socket();
    refused->readReady();
    QVERIFY(!refused->reconnect);
    QCOMPARE(refused->close_link(), 0);
    QCOMPARE(refused->host_command("MO", nullptr), -1);
}

void tst_serial_wifi_recovery::a_refused_command_does_not_sleep()
{
    const auto refused = open_link_to(own_loopback(2));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i)
        QCOMPARE(refused->host_command("MO", nullptr), -1);
    QVERIFY(timer.elapsed() < 100 * 150 / 2);
}

void tst_serial_wifi_recovery::only_the_unconnected_state_asks_for_a_reconnect_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("closing");
    QTest::addColumn<bool>("reconnect");
    QTest::newRow("unconnected") << int(QAbstractSocket::UnconnectedState) << false << true;
    QTest::newRow("unconnected, closing") << int(QAbstractSocket::UnconnectedState) << true << false;
    QTest::newRow("looking up") << int(QAbstractSocket::HostLookupState) << false << false;
    QTest::newRow("connecting") << int(QAbstractSocket::ConnectingState) << false << false;
    QTest::newRow("connected") << int(QAbstractSocket::ConnectedState) << false << false;
    QTest::newRow("bound") << int(QAbstractSocket::BoundState) << false << false;
    QTest::newRow("listening") << int(QAbstractSocket::ListeningState) << false << false;
    QTest::newRow("socket closing") << int(QAbstractSocket::ClosingState) << false << false;
}

void tst_serial_wifi_recovery::only_the_unconnected_state_asks_for_a_reconnect()
{
    QFETCH(int, state);
    QFETCH(bool, closing);
    QFETCH(bool, reconnect);
    link->closing = closing;
    link->stateChanged(static_cast<QAbstractSocket::SocketState>(state));
    QCOMPARE(link->reconnect, reconnect);
}

void tst_serial_wifi_recovery::closing_asks_for_no_reconnect()
{
    QCOMPARE(link->close_link(), 0);
    QVERIFY(!link->reconnect);
    QVERIFY(!link->host_socket);
    QVERIFY(!link->at_socket);
    QVERIFY(link->connected);
    QVERIFY(speaker->wait_for_host_open(0));
}

void tst_serial_wifi_recovery::the_at_channel_is_not_watched()
{
    link->at_socket->abort();
    QVERIFY(!link->reconnect);
    QCOMPARE(link->query_uart(), 0);
    QCOMPARE(link->host_command("MO", nullptr), 0);
    QCOMPARE(speaker->host_connections().accepted, 1);
}

void tst_serial_wifi_recovery::bytes_written_right_before_the_deletion_arrive()
{
    const QByteArray bytes(100000, 'b');
    link->host_socket->write(bytes);
    link.reset();
    QVERIFY(speaker->wait_for_host_bytes(bytes.size()));
    QCOMPARE(speaker->host_bytes(), bytes);
}

void tst_serial_wifi_recovery::a_deleted_link_closes_both_channels()
{
    link.reset();
    QVERIFY(speaker->wait_for_host_open(0));
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().open == 0; }));
}

void tst_serial_wifi_recovery::many_reconnects_leave_no_descriptor_behind()
{
    speaker->set_value("vo", "37");
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().open == 1; }));
    const int before = open_descriptors();
    for (int i = 0; i < 50; ++i) {
        speaker->cut_link(i % 2 ? Cut_How::fin : Cut_How::rst);
        QVERIFY(speaker->wait_for_host_open(0));
        link->host_query_int("vo"); // notices the drop
        QCOMPARE(link->host_query_int("vo"), 37L);
    }
    QCOMPARE(speaker->host_connections().accepted, 51);
    QTRY_COMPARE(open_descriptors(), before); // the speaker's ends are among them
}

QTEST_GUILESS_MAIN(tst_serial_wifi_recovery)
#include "tst_serial_wifi_recovery.moc"
