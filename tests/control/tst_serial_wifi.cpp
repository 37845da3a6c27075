// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <array>
#include <memory>
#include <thread>

#include "tests/control/link_fixture.h"

// The host link against a virtual speaker: frames, replies and what flashing needs.
class tst_serial_wifi : public QObject, private Link_Holder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void the_constructor_stores_its_arguments_and_connects();

    void a_command_is_framed_data();
    void a_command_is_framed();
    void a_query_is_framed_data();
    void a_query_is_framed();
    void an_argument_of_any_length_is_sent_whole();
    void each_command_takes_at_least_150_ms();
    void a_command_is_logged_with_the_count_of_its_bytes();
    void send_frame_sends_its_size_and_stores_a_line_feed_behind_it();

    void a_reply_gives_status_and_payload_data();
    void a_reply_gives_status_and_payload();
    void a_reply_without_hash_is_refused_data();
    void a_reply_without_hash_is_refused();
    void a_number_is_taken_from_the_payload_data();
    void a_number_is_taken_from_the_payload();
    void a_reply_in_single_bytes_is_joined();
    void a_reply_in_single_bytes_is_joined_though_the_thread_is_told_to_end();
    void a_reply_is_complete_only_with_its_carriage_return();
    void a_read_of_more_than_100_bytes_keeps_the_first_100();
    void a_reply_beyond_the_buffer_is_cut_at_999_bytes();
    void a_reply_of_exactly_999_bytes_is_whole();
    void a_flood_without_carriage_return_writes_nothing_past_the_buffer();
    void a_waiting_reply_is_taken_for_the_next_one();
    void read_reply_copies_what_came_and_zeroes_the_rest();

    void prepare_xon_sets_the_flow_state();
    void flow_marks_are_read_by_readReady_data();
    void flow_marks_are_read_by_readReady();
    void arriving_flow_marks_change_nothing_by_themselves();
    void clear_recv_socket_discards_what_waits();
    void a_line_is_sent_as_it_stands_data();
    void a_line_is_sent_as_it_stands();
    void the_answer_to_a_line_is_discarded();
    void query_uart_asks_on_the_at_channel();

private:
    void answer_with(const QByteArray &raw) { speaker->set_host_reply("vo", raw); }
    qintptr descriptor() const { return link->host_socket->socketDescriptor(); }
    bool wait_until_read(quint64 total);
    int query_in_pieces(const QByteArray &first, const Lines &more, char *reply);

    // A reply buffer with a fence behind it.
    struct Fenced_Reply {
        char reply[serial_wifi::reply_size] = {};
        std::array<char, 64> fence;

        Fenced_Reply() { fence.fill('F'); }
        bool fence_stands() const { return fence == Fenced_Reply().fence; }
    };

    qintptr socket_of_link = -1;
};

// Has another thread's read taken the `total` bytes that the speaker has sent so far?
bool tst_serial_wifi::wait_until_read(quint64 total)
{
    const qintptr socket = socket_of_link;
    return wait_until([=] { return bytes_arrived(socket) == total && bytes_in_system(socket) == 0; });
}

// Runs a query while the speaker sends `first` as its answer and each of `more` when all before has been
// read.
int tst_serial_wifi::query_in_pieces(const QByteArray &first, const Lines &more, char *reply)
{
    answer_with(first);
    socket_of_link = descriptor();
    std::thread peer([&] {
        quint64 total = static_cast<quint64>(first.size());
        bool ok = wait_until_read(total);
        for (const QByteArray &piece : more) {
            speaker->send_host(piece);
            total += static_cast<quint64>(piece.size());
            ok = ok && wait_until_read(total);
        }
        if (!ok)
            speaker->cut_link(Cut_How::fin); // fails the query, which would wait for ever
    });
    const int status = link->host_query("vo", "", reply);
    peer.join();
    return status;
}

void tst_serial_wifi::the_constructor_stores_its_arguments_and_connects()
{
    const serial_wifi other(own_loopback(1), "Kitchen initial values", 57600, 8, 0, 1);
    QCOMPARE(other.host, own_loopback(1));
    QCOMPARE(other.name, QString("Kitchen initial values"));
    QCOMPARE(other.baud, 57600);
    QCOMPARE(other.data_bits, 8);
    QCOMPARE(other.parity, 0);
    QCOMPARE(other.stop_bits, 1);
    QCOMPARE(other.host_port, quint16(8990));
    QCOMPARE(other.at_port, quint16(8991));
    QCOMPARE(other.connect_timeout, 5000);
    QVERIFY(other.connected);
    QVERIFY(!other.reconnect);
    QVERIFY(!other.closing);
    QVERIFY(!other.xon);
    QCOMPARE(other.host_socket->peerPort(), quint16(8990));
    QCOMPARE(other.at_socket->peerPort(), quint16(8991));
}

void tst_serial_wifi::a_command_is_framed_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("args");
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("argument") << QByteArray("vo") << QByteArray("037") << QByteArray("RZ!vo037\n");
    QTest::newRow("null") << QByteArray("MO") << QByteArray() << QByteArray("RZ!MO\n");
    QTest::newRow("empty") << QByteArray("MO") << QByteArray("") << QByteArray("RZ!MO\n");
    QTest::newRow("letters") << QByteArray("volume") << QByteArray("5") << QByteArray("RZ!vo5\n");
    QTest::newRow("blank") << QByteArray("Pl") << QByteArray(" 1") << QByteArray("RZ!Pl 1\n");
}

void tst_serial_wifi::a_command_is_framed()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, args);
    QFETCH(QByteArray, frame);
    QCOMPARE(link->host_command(command, args.isNull() ? nullptr : args.constData()), 0);
    QVERIFY(speaker->wait_for_host_lines(1));
    QCOMPARE(speaker->host_bytes(), frame);
}

void tst_serial_wifi::a_query_is_framed_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("args");
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("argument") << QByteArray("ST") << QByteArray("m") << QByteArray("RZ?STm\n");
    QTest::newRow("null") << QByteArray("vo") << QByteArray() << QByteArray("RZ?vo\n");
    QTest::newRow("empty") << QByteArray("vo") << QByteArray("") << QByteArray("RZ?vo\n");
}

void tst_serial_wifi::a_query_is_framed()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, args);
    QFETCH(QByteArray, frame);
    Fenced_Reply buffer;
    QCOMPARE(link->host_query(command, args.isNull() ? nullptr : args.constData(), buffer.reply), 0);
    QCOMPARE(speaker->host_bytes(), frame);
    QCOMPARE(log->debug_lines(), QStringList()); // only commands are logged
}

void tst_serial_wifi::an_argument_of_any_length_is_sent_whole()
{
    const QByteArray args(5000, 'a');
    QCOMPARE(link->host_command("zz", args), 0);
    QVERIFY(speaker->wait_for_host_bytes(5006));
    QCOMPARE(speaker->host_bytes(), "RZ!zz" + args + "\n");
}

void tst_serial_wifi::each_command_takes_at_least_150_ms()
{
    QElapsedTimer timer;
    timer.start();
    for (const char *args : {"001", "002", "003"})
        QCOMPARE(link->host_command("vo", args), 0);
    QVERIFY(timer.elapsed() >= 3 * 150);
    QVERIFY(speaker->wait_for_host_lines(3));
    QCOMPARE(speaker->host_bytes(), QByteArray("RZ!vo001\nRZ!vo002\nRZ!vo003\n"));
}

void tst_serial_wifi::a_command_is_logged_with_the_count_of_its_bytes()
{
    link->host_command("vo", "037");
    QCOMPARE(log->debug_lines(),
             QStringList("serial_wifi::host_command() sending \"RZ!vo037\\n\"  returned 9"));
}

void tst_serial_wifi::send_frame_sends_its_size_and_stores_a_line_feed_behind_it()
{
    char frame[] = "RZ!MF\nxy";
    QCOMPARE(link->send_frame(frame, 6), 6);
    QVERIFY(speaker->wait_for_host_lines(1));
    QCOMPARE(speaker->host_bytes(), QByteArray("RZ!MF\n"));
    QCOMPARE(QByteArray(frame), QByteArray("RZ!MF\n\ny"));
}

void tst_serial_wifi::a_reply_gives_status_and_payload_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("number") << QByteArray("RZ#00037\r") << 0 << QByteArray("037\r");
    QTest::newRow("letter") << QByteArray("RZ#00W\r") << 0 << QByteArray("W\r");
    QTest::newRow("status") << QByteArray("RZ#42037\r") << 42 << QByteArray("037\r");
    QTest::newRow("leading 0") << QByteArray("RZ#07\r") << 7 << QByteArray("\r");
    QTest::newRow("no digits") << QByteArray("RZ#ab1\r") << 0 << QByteArray("1\r");
    QTest::newRow("other magic") << QByteArray("xy#11037\r") << 11 << QByteArray("037\r");
    QTest::newRow("line feed behind") << QByteArray("RZ#00037\r\n") << 0 << QByteArray("037\r\n");
    QTest::newRow("bytes behind") << QByteArray("RZ#00037\rRZ#0") << 0 << QByteArray("037\rRZ#0");
    QTest::newRow("no payload") << QByteArray("RZ#0\r") << 0 << QByteArray();
    QTest::newRow("no status") << QByteArray("RZ#\r") << 0 << QByteArray();
}

void tst_serial_wifi::a_reply_gives_status_and_payload()
{
    QFETCH(QByteArray, raw);
    QFETCH(int, status);
    QFETCH(QByteArray, payload);
    answer_with(raw);
    Fenced_Reply buffer;
    QCOMPARE(link->host_query("vo", "", buffer.reply), status);
    QCOMPARE(QByteArray(buffer.reply), payload);
    QVERIFY(buffer.fence_stands());
}

void tst_serial_wifi::a_reply_without_hash_is_refused_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::newRow("missing") << QByteArray("RZ00037\r");
    QTest::newRow("later") << QByteArray("RZ00#037\r");
    QTest::newRow("earlier") << QByteArray("R#00037\r");
    QTest::newRow("two bytes") << QByteArray("R\r");
    QTest::newRow("one byte") << QByteArray("\r");
}

void tst_serial_wifi::a_reply_without_hash_is_refused()
{
    QFETCH(QByteArray, raw);
    answer_with(raw);
    char reply[serial_wifi::reply_size] = "untouched";
    QCOMPARE(link->host_query("vo", "", reply), -1);
    QCOMPARE(QByteArray(reply, sizeof reply), QByteArray("untouched").leftJustified(sizeof reply, '\0'));
    QCOMPARE(link->host_query_int("vo"), 0L);
}

void tst_serial_wifi::a_number_is_taken_from_the_payload_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<long>("number");
    QTest::newRow("plain") << QByteArray("RZ#0037\r") << 37L;
    QTest::newRow("zeroes are no octal mark") << QByteArray("RZ#00037\r") << 37L;
    QTest::newRow("negative") << QByteArray("RZ#00-05\r") << -5L;
    QTest::newRow("blank") << QByteArray("RZ#00 12\r") << 12L;
    QTest::newRow("other status") << QByteArray("RZ#9937\r") << 37L;
    QTest::newRow("text") << QByteArray("RZ#00abc\r") << 0L;
    QTest::newRow("empty") << QByteArray("RZ#00\r") << 0L;
}

void tst_serial_wifi::a_number_is_taken_from_the_payload()
{
    QFETCH(QByteArray, raw);
    QFETCH(long, number);
    answer_with(raw);
    QCOMPARE(link->host_query_int("vo"), number);
    QCOMPARE(speaker->host_bytes(), QByteArray("RZ?vo\n"));
}

void tst_serial_wifi::a_reply_in_single_bytes_is_joined()
{
    Speaker_Faults faults;
    faults.host_bytewise = true;
    speaker->set_faults(faults);
    answer_with("RZ#12 a payload in many pieces\r");
    Fenced_Reply buffer;
    QCOMPARE(link->host_query("vo", "", buffer.reply), 12);
    QCOMPARE(QByteArray(buffer.reply), QByteArray(" a payload in many pieces\r"));
}

void tst_serial_wifi::a_reply_in_single_bytes_is_joined_though_the_thread_is_told_to_end()
{
    Speaker_Faults faults;
    faults.host_bytewise = true;
    faults.host_byte_gap_ms = 30;
    speaker->set_faults(faults);
    answer_with("RZ#00 37\r");
    long volume = 0;
    const std::unique_ptr<QThread> thread(
        QThread::create([&] { volume = open_link_to(own_loopback(1))->host_query_int("vo"); }));
    thread->start();
    QVERIFY(speaker->wait_for_host_line("RZ?vo\n"));
    thread->requestInterruption();
    thread->wait();
    QCOMPARE(volume, 37L);
}

void tst_serial_wifi::a_reply_is_complete_only_with_its_carriage_return()
{
    Fenced_Reply buffer;
    QCOMPARE(query_in_pieces("RZ#00", {"03", "7\n", "\r"}, buffer.reply), 0);
    QCOMPARE(QByteArray(buffer.reply), QByteArray("037\n\r"));
}

void tst_serial_wifi::a_read_of_more_than_100_bytes_keeps_the_first_100()
{
    // The carriage return lies in what is dropped, and so does not end the reply.
    const QByteArray kept = "RZ#00" + QByteArray(95, 'k');
    const QByteArray dropped = QByteArray(20, 'd') + '\r' + QByteArray(29, 'd');
    Fenced_Reply buffer;
    QCOMPARE(query_in_pieces(kept + dropped, {"end\r"}, buffer.reply), 0);
    QCOMPARE(QByteArray(buffer.reply), QByteArray(95, 'k') + "end\r");
}

void tst_serial_wifi::a_reply_beyond_the_buffer_is_cut_at_999_bytes()
{
    Lines pieces;
    for (int i = 0; i < 30; ++i)
        pieces.append(QByteArray(100, 'p'));
    pieces.append("\r");
    Fenced_Reply buffer;
    QCOMPARE(query_in_pieces("RZ#33", pieces, buffer.reply), 33);
    QCOMPARE(QByteArray(buffer.reply, sizeof buffer.reply), QByteArray(999, 'p') + '\0');
    QVERIFY(buffer.fence_stands());
}

void tst_serial_wifi::a_reply_of_exactly_999_bytes_is_whole()
{
    Lines pieces;
    for (int i = 0; i < 10; ++i)
        pieces.append(QByteArray(98, 'p'));
    pieces.append(QByteArray(18, 'q') + '\r');
    Fenced_Reply buffer;
    QCOMPARE(query_in_pieces("RZ#00", pieces, buffer.reply), 0);
    QCOMPARE(QByteArray(buffer.reply), QByteArray(980, 'p') + QByteArray(18, 'q') + '\r');
    QVERIFY(buffer.fence_stands());
}

void tst_serial_wifi::a_flood_without_carriage_return_writes_nothing_past_the_buffer()
{
    constexpr int flood = 1 << 20;
    answer_with(QByteArray("RZ#00") + QByteArray(flood, 'f'));
    const qintptr socket = descriptor();
    std::thread peer([this, socket] {
        wait_until([socket] { return bytes_arrived(socket) >= flood && bytes_in_system(socket) == 0; });
        speaker->cut_link(Cut_How::fin);
    });
    Fenced_Reply buffer;
    const int result = link->host_query("vo", "", buffer.reply);
    peer.join();
    QCOMPARE(result, -1);
    QCOMPARE(QByteArray(buffer.reply, sizeof buffer.reply), QByteArray(sizeof buffer.reply, '\0'));
    QVERIFY(buffer.fence_stands());
}

void tst_serial_wifi::a_waiting_reply_is_taken_for_the_next_one()
{
    Speaker_Faults faults;
    faults.host_answers_commands = true;
    speaker->set_faults(faults);
    speaker->set_value("vo", "37");
    QCOMPARE(link->host_command("ba", "2"), 0);
    QTRY_COMPARE(bytes_in_system(descriptor()), 6); // "RZ#00" and a carriage return, which nobody has read
    QCOMPARE(link->host_query_int("vo"), 0L);
}

void tst_serial_wifi::read_reply_copies_what_came_and_zeroes_the_rest()
{
    speaker->send_host("abc");
    char buffer[8] = "xxxxxxx";
    QCOMPARE(link->read_reply(buffer, 7), 3);
    QCOMPARE(QByteArray(buffer, 8), QByteArray("abc\0\0\0\0\0", 8));
    speaker->send_host("abcdefgh");
    QCOMPARE(link->read_reply(buffer, 2), 2);
    QCOMPARE(QByteArray(buffer, 3), QByteArray("abc")); // the third byte is that of the read before
    QCOMPARE(link->host_socket->bytesAvailable(), 0);
}

// A link of the GUI thread, as it is used in flash mode.
void tst_serial_wifi::prepare_xon_sets_the_flow_state()
{
    link->prepare_xon();
    QVERIFY(link->xon);
    QCOMPARE(log->debug_lines(), QStringList("=== serial_wifi::prepare_xon()"));
}

void tst_serial_wifi::flow_marks_are_read_by_readReady_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");
    QTest::addColumn<QStringList>("logged");
    const QStringList nothing;
    QTest::newRow("on") << QByteArray("!") << false << true << nothing;
    QTest::newRow("off") << QByteArray("?") << true << false << nothing;
    QTest::newRow("the last decides, on") << QByteArray("?!?!") << false << true << nothing;
    QTest::newRow("the last decides, off") << QByteArray("!?!?") << true << false << nothing;
    QTest::newRow("others") << QByteArray("a!\r") << false << true
                            << QStringList{"[ 0 a = 97 ]", "[ 2 \r = 13 ]"};
    QTest::newRow("others alone") << QByteArray("5") << true << true << QStringList{"[ 0 5 = 53 ]"};
}

void tst_serial_wifi::flow_marks_are_read_by_readReady()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, before);
    QFETCH(bool, after);
    QFETCH(QStringList, logged);
    link->xon = before;
    speaker->send_host(bytes);
    QTRY_COMPARE(bytes_in_system(descriptor()) + link->host_socket->bytesAvailable(), bytes.size());
    link->readReady();
    QCOMPARE(link->xon, after);
    QCOMPARE(log->debug_lines(), logged);
    QCOMPARE(link->host_socket->bytesAvailable(), 0);
}

void tst_serial_wifi::arriving_flow_marks_change_nothing_by_themselves()
{
    link->prepare_xon();
    speaker->send_host("?");
    QTRY_COMPARE(link->host_socket->bytesAvailable(), 1);
    QVERIFY(link->xon);
}

void tst_serial_wifi::clear_recv_socket_discards_what_waits()
{
    speaker->set_value("vo", "37");
    speaker->send_host("RZ#00099\r");
    QTRY_COMPARE(bytes_in_system(descriptor()) + link->host_socket->bytesAvailable(), 9);
    link->clear_recv_socket();
    QCOMPARE(log->debug_lines(), QStringList("CLEAR RECV SOCKET  9 Bytes in socket"));
    QCOMPARE(link->host_query_int("vo"), 37L);
}

void tst_serial_wifi::a_line_is_sent_as_it_stands_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("record") << ":00000001FF\r\n" << QByteArray(":00000001FF\r\n");
    QTest::newRow("empty") << "\r\n" << QByteArray("\r\n");
    QTest::newRow("up to the first NUL") << QString(QLatin1String("ab\n\0cd\n", 7)) << QByteArray("ab\n");
    QTest::newRow("local 8-bit") << QString::fromUtf8("\u00fc\n")
                                 << QString::fromUtf8("\u00fc\n").toLocal8Bit();
}

void tst_serial_wifi::a_line_is_sent_as_it_stands()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, bytes);
    link->host_command("FL", nullptr);
    QVERIFY(speaker->wait_for_host_lines(1));
    speaker->clear_record();
    QCOMPARE(link->send_line(line), 0);
    QVERIFY(speaker->wait_for_host_bytes(bytes.size()));
    QCOMPARE(speaker->host_bytes(), bytes);
}

void tst_serial_wifi::the_answer_to_a_line_is_discarded()
{
    link->host_command("FL", nullptr);
    link->prepare_xon();
    speaker->change([](Speaker_Config &config) { config.flash_answer = "?"; });
    link->send_line(":00000001FF\r\n");
    QVERIFY(link->xon);
    QCOMPARE(link->host_socket->bytesAvailable(), 0);
    QCOMPARE(bytes_in_system(descriptor()), 0);
}

void tst_serial_wifi::query_uart_asks_on_the_at_channel()
{
    QCOMPARE(link->query_uart(), 0);
    QCOMPARE(speaker->at_bytes(), QByteArray("AT+UART?\n\r"));
    QCOMPARE(speaker->host_bytes(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_serial_wifi)
#include "tst_serial_wifi.moc"
