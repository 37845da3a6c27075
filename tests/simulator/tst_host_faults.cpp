// SPDX-License-Identifier: MIT
#include <QtTest>
#include <memory>

#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/raw_client.h"

namespace
{
constexpr quint16 host_port = 8990;
constexpr quint16 at_port = 8991;
constexpr int a_while_ms = 50; // for what must not come; nothing depends on its length
} // namespace

// What each fault of the host and AT channels looks like from the other side.
class tst_Host_Faults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_at_channel_tells_the_line_settings();
    void a_refused_port_lets_open_links_live_data();
    void a_refused_port_lets_open_links_live();
    void a_silent_host_obeys_and_does_not_answer();
    void a_deaf_host_takes_the_link_and_reads_nothing();
    void a_bytewise_answer_comes_whole_and_in_many_pieces();
    void an_answer_is_spoilt_as_asked_data();
    void an_answer_is_spoilt_as_asked();
    void an_answer_set_by_hand_goes_out_as_it_is();
    void a_late_answer_is_late();
    void late_answers_keep_their_order();
    void commands_may_be_answered();
    void a_link_may_be_cut_on_connect();
    void a_query_may_be_cut_data();
    void a_query_may_be_cut();
    void a_command_may_be_cut_data();
    void a_command_may_be_cut();
    void cuts_are_counted_down();
    void a_cut_may_be_a_reset();
    void a_cut_within_a_command_is_a_reset();
    void links_can_be_cut_at_once_data();
    void links_can_be_cut_at_once();
    void unasked_bytes_go_to_every_link();
    void a_silent_at_channel_does_not_answer();
    void a_move_takes_the_speaker_to_another_address();
    void a_move_that_fails_brings_the_speaker_back_data();
    void a_move_that_fails_brings_the_speaker_back();

private:
    void give(const char *key, const QString &text);

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Raw_Client> client;
};

void tst_Host_Faults::init()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.values = {{"vo", "37"}};
    speaker = std::make_unique<Virtual_Speaker>(config);
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    client = std::make_unique<Raw_Client>();
    QVERIFY(client->open(speaker->address(), host_port));
    QVERIFY(speaker->wait_for_host_open(1));
}

void tst_Host_Faults::cleanup()
{
    client.reset();
    speaker.reset();
}

void tst_Host_Faults::give(const char *key, const QString &text)
{
    Speaker_Faults faults = speaker->faults();
    QString error;
    QVERIFY2(set_fault(faults, key, text, &error), qPrintable(error));
    speaker->set_faults(faults);
}

void tst_Host_Faults::the_at_channel_tells_the_line_settings()
{
    Raw_Client at;
    QVERIFY(at.open(speaker->address(), at_port));
    at.send("AT+UART?\n\r"); // the ends of line stand this way round
    QCOMPARE(at.read_to("OK\r\n"), QByteArray("+UART=57600,8,0,1\r\nOK\r\n"));
    at.send("AT+GMR\n\r");
    QCOMPARE(at.read_to("\r\n"), QByteArray("ERROR\r\n"));
    QVERIFY(speaker->wait_until([this] { return speaker->at_bytes() == "AT+UART?\n\rAT+GMR\n\r"; }));
    QCOMPARE(speaker->at_connections().accepted, 1);
    QCOMPARE(speaker->at_record().first().bytes, QByteArray("AT+UART?\n\r"));
    QVERIFY(speaker->at_record().first().incoming);
}

void tst_Host_Faults::a_refused_port_lets_open_links_live_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("port");
    QTest::newRow("host") << QByteArray("host-refused") << int(host_port);
    QTest::newRow("AT") << QByteArray("at-refused") << int(at_port);
    QTest::newRow("HTTP") << QByteArray("http-refused") << 0; // any free one
}

void tst_Host_Faults::a_refused_port_lets_open_links_live()
{
    QFETCH(QByteArray, key);
    QFETCH(int, port);
    if (port == 0)
        port = speaker->http_port();
    Raw_Client open_before;
    QVERIFY(open_before.open(speaker->address(), quint16(port)));
    give(key.constData(), "on");
    Raw_Client refused;
    QVERIFY(!refused.open(speaker->address(), quint16(port)));
    QCOMPARE(refused.socket.error(), QAbstractSocket::ConnectionRefusedError);
    QCOMPARE(open_before.socket.state(), QAbstractSocket::ConnectedState);
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0037\r"));
    QVERIFY(speaker->running());
    give(key.constData(), "off");
    Raw_Client again;
    QVERIFY(again.open(speaker->address(), quint16(port)));
}

void tst_Host_Faults::a_silent_host_obeys_and_does_not_answer()
{
    give("host-silent", "on");
    client->send("RZ!vo041\nRZ?vo\n");
    QVERIFY(speaker->wait_for_host_lines(2));
    QVERIFY(speaker->wait_for_value("vo", "41"));
    QCOMPARE(client->read_to("\r", a_while_ms), QByteArray());
    give("host-silent", "off");
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0041\r"));
}

void tst_Host_Faults::a_deaf_host_takes_the_link_and_reads_nothing()
{
    give("host-deaf", "on");
    Raw_Client other;
    QVERIFY(other.open(speaker->address(), host_port));
    QVERIFY(speaker->wait_for_host_open(2));
    client->send("RZ!vo041\n");
    other.send("RZ!ba3\n");
    QVERIFY(!speaker->wait_for_host_bytes(1, a_while_ms));
    // It hears what was said meanwhile once it listens again.
    give("host-deaf", "off");
    QVERIFY(speaker->wait_for_value("vo", "41"));
    QVERIFY(speaker->wait_for_value("ba", "3"));
}

void tst_Host_Faults::a_bytewise_answer_comes_whole_and_in_many_pieces()
{
    give("host-bytewise", "on");
    give("host-byte-gap", "2");
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0037\r"));
    QByteArrayList pieces;
    for (const Recorded_Bytes &piece : speaker->host_record())
        if (!piece.incoming)
            pieces += piece.bytes;
    QCOMPARE(pieces, (QByteArrayList{"R", "Z", "#", "0", "0", "3", "7", "\r"}));
}

void tst_Host_Faults::an_answer_is_spoilt_as_asked_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("no CR") << QByteArray("host-no-cr") << "on" << QByteArray("RZ#0037");
    QTest::newRow("no #") << QByteArray("host-no-hash") << "on" << QByteArray("RZ0037\r");
    for (const int size : {8, 100, 101, 150, 1500, 1000000})
        QTest::addRow("%d bytes", size) << QByteArray("host-size") << QString::number(size)
                                        << "RZ#0037" + QByteArray(size - 8, ' ') + '\r';
}

void tst_Host_Faults::an_answer_is_spoilt_as_asked()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, text);
    QFETCH(QByteArray, answer);
    give(key.constData(), text);
    client->send("RZ?vo\n");
    QVERIFY(client->read_size(answer.size()) == answer);
    QCOMPARE(client->read_to("\r", answer.size() > 1000 ? 1 : a_while_ms), QByteArray());
}

void tst_Host_Faults::an_answer_set_by_hand_goes_out_as_it_is()
{
    give("host-no-cr", "on");
    speaker->set_host_reply("vo", "XX#9912abc\rmore");
    speaker->set_host_reply("STm", "RZ#0018\r");
    client->send("RZ?vo\n");
    QCOMPARE(client->read_to("more"), QByteArray("XX#9912abc\rmore"));
    QCOMPARE(client->ask("RZ?STm\n"), QByteArray("RZ#0018\r"));
    speaker->clear_host_reply("vo");
    client->send("RZ?vo\n");
    QCOMPARE(client->read_size(7), QByteArray("RZ#0037"));
}

void tst_Host_Faults::a_late_answer_is_late()
{
    give("host-slow", "60");
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0037\r"));
    const QList<Recorded_Bytes> record = speaker->host_record();
    QCOMPARE(record.size(), 2);
    QVERIFY(record.at(1).us - record.at(0).us >= 60000);
}

void tst_Host_Faults::late_answers_keep_their_order()
{
    give("host-slow", "60");
    client->send("RZ?vo\n");
    QVERIFY(speaker->wait_for_host_lines(1));
    give("host-slow", "0");
    client->send("RZ?ba\n");
    QCOMPARE(client->read_size(15), QByteArray("RZ#0037\rRZ#001\r"));
}

void tst_Host_Faults::commands_may_be_answered()
{
    give("host-answers-commands", "on");
    QCOMPARE(client->ask("RZ!vo041\n"), QByteArray("RZ#00\r"));
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0041\r"));
}

void tst_Host_Faults::a_link_may_be_cut_on_connect()
{
    give("host-cut", "on-connect");
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0037\r")); // a link that is open stays
    Raw_Client cut;
    QVERIFY(cut.open(speaker->address(), host_port));
    QVERIFY(cut.wait_closed());
}

void tst_Host_Faults::a_query_may_be_cut_data()
{
    QTest::addColumn<QString>("when");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("before") << "before" << QByteArray();
    QTest::newRow("within") << "within" << QByteArray("RZ#0");
    QTest::newRow("after") << "after" << QByteArray("RZ#0037\r");
}

void tst_Host_Faults::a_query_may_be_cut()
{
    QFETCH(QString, when);
    give("host-cut", when);
    client->send("RZ?vo\n");
    QTEST(client->read_to_end(), "answer");
    QVERIFY(client->wait_closed());
}

void tst_Host_Faults::a_command_may_be_cut_data()
{
    QTest::addColumn<QString>("when");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QByteArray>("read");
    QTest::newRow("before") << "before"
                            << "37" << QByteArray("RZ!vo041\n");
    QTest::newRow("within") << "within"
                            << "37" << QByteArray("RZ!");
    QTest::newRow("after") << "after"
                           << "41" << QByteArray("RZ!vo041\n");
}

void tst_Host_Faults::a_command_may_be_cut()
{
    QFETCH(QString, when);
    QFETCH(QByteArray, read);
    give("host-cut", when);
    client->send("RZ!vo041\nRZ!vo050\n");
    QVERIFY(client->wait_closed());
    QVERIFY(speaker->wait_for_host_open(0));
    QTEST(speaker->value("vo"), "volume"); // and the second command is lost with the link
    QVERIFY(speaker->host_bytes().startsWith(read));
    QCOMPARE(speaker->host_lines(), read.endsWith('\n') ? QList<QByteArray>{read} : QList<QByteArray>());
}

void tst_Host_Faults::cuts_are_counted_down()
{
    give("host-cut-left", "2");
    give("host-cut", "before");
    for (const int left : {1, 0}) {
        client->send("RZ?vo\n");
        QVERIFY(client->wait_closed());
        QCOMPARE(speaker->faults().host_cut_left, left);
        client = std::make_unique<Raw_Client>();
        QVERIFY(client->open(speaker->address(), host_port));
    }
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0037\r"));
}

void tst_Host_Faults::a_cut_may_be_a_reset()
{
    give("host-cut", "before");
    QCOMPARE(error_at_end(speaker->address(), host_port, "RZ?vo\n"), 0);
    give("host-cut-how", "rst");
    QCOMPARE(error_at_end(speaker->address(), host_port, "RZ?vo\n"), ECONNRESET);
}

// What the speaker leaves unread makes its system say so.
void tst_Host_Faults::a_cut_within_a_command_is_a_reset()
{
    give("host-cut", "within");
    QCOMPARE(error_at_end(speaker->address(), host_port, "RZ!vo041\n"), ECONNRESET);
}

void tst_Host_Faults::links_can_be_cut_at_once_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("in order") << int(Cut_How::fin);
    QTest::newRow("by a reset") << int(Cut_How::rst);
}

void tst_Host_Faults::links_can_be_cut_at_once()
{
    QFETCH(int, how);
    Raw_Client other;
    QVERIFY(other.open(speaker->address(), host_port));
    QVERIFY(speaker->wait_for_host_open(2));
    speaker->cut_link(Cut_How(how));
    QVERIFY(client->wait_closed());
    QVERIFY(other.wait_closed());
    QVERIFY(speaker->wait_for_host_open(0));
    Raw_Client again;
    QVERIFY(again.open(speaker->address(), host_port));
}

void tst_Host_Faults::unasked_bytes_go_to_every_link()
{
    Raw_Client other;
    QVERIFY(other.open(speaker->address(), host_port));
    QVERIFY(speaker->wait_for_host_open(2));
    speaker->send_host("RZ#0099\r");
    QCOMPARE(client->read_to("\r"), QByteArray("RZ#0099\r"));
    QCOMPARE(other.read_to("\r"), QByteArray("RZ#0099\r"));
}

void tst_Host_Faults::a_silent_at_channel_does_not_answer()
{
    give("at-silent", "on");
    Raw_Client at;
    QVERIFY(at.open(speaker->address(), at_port));
    at.send("AT+UART?\n\r");
    QVERIFY(speaker->wait_until([this] { return !speaker->at_bytes().isEmpty(); }));
    QCOMPARE(at.read_to("\n", a_while_ms), QByteArray());
}

void tst_Host_Faults::a_move_takes_the_speaker_to_another_address()
{
    QStringList presence;
    speaker->set_presence_sink([&presence](bool there) { presence += there ? "there" : "away"; });
    const QString before = speaker->address();
    const quint16 http_port = speaker->http_port();
    QVERIFY2(speaker->set_address(own_loopback(2)), qPrintable(speaker->error()));
    QVERIFY(client->wait_closed());
    QCOMPARE(speaker->address(), own_loopback(2));
    QCOMPARE(speaker->http_port(), http_port);
    QCOMPARE(presence, (QStringList{"away", "there"}));
    Raw_Client refused;
    QVERIFY(!refused.open(before, host_port));
    Raw_Client there;
    QVERIFY(there.open(own_loopback(2), host_port));
    QCOMPARE(there.ask("RZ?vo\n"), QByteArray("RZ#0037\r"));
    Raw_Client http;
    QVERIFY(http.open(own_loopback(2), http_port));
}

void tst_Host_Faults::a_move_that_fails_brings_the_speaker_back_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("reason");
    QTest::newRow("taken") << own_loopback(2)
                           << own_loopback(2) + ":8991: The bound address is already in use";
    QTest::newRow("no address") << "nowhere"
                                << "\"nowhere\" is no address";
    QTest::newRow("empty") << ""
                           << "\"\" is no address";
    QTest::newRow("IPv6") << "::1"
                          << "\"::1\" is no address";
}

void tst_Host_Faults::a_move_that_fails_brings_the_speaker_back()
{
    QFETCH(QString, address);
    Speaker_Config config;
    config.address = own_loopback(2);
    Virtual_Speaker other(config);
    QVERIFY(other.start());
    const quint16 http_port = speaker->http_port();
    QVERIFY(!speaker->set_address(address));
    QTEST(speaker->error(), "reason");
    QVERIFY(speaker->running());
    QCOMPARE(speaker->address(), own_loopback(1));
    QCOMPARE(speaker->http_port(), http_port);
    Raw_Client again;
    QVERIFY(again.open(own_loopback(1), host_port));
    QCOMPARE(again.ask("RZ?vo\n"), QByteArray("RZ#0037\r"));
}

QTEST_GUILESS_MAIN(tst_Host_Faults)
#include "tst_host_faults.moc"
