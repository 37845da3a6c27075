// SPDX-License-Identifier: MIT
#include <QtTest>
#include <memory>
#include <mutex>

#include "simulator/hex_image.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/raw_client.h"

// Flash mode of the host as bytes on a socket: lines in, answers at their pace, and the image that is left.
class tst_Flash_Mode : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void a_whole_file_leaves_a_whole_image();
    void fl_is_not_answered_and_raw_lines_are();
    void the_end_record_ends_flash_mode();
    void a_bad_checksum_spoils_the_image_and_is_answered_all_the_same();
    void lines_that_are_no_records_are_counted_as_bad_data();
    void lines_that_are_no_records_are_counted_as_bad();
    void without_the_end_record_the_image_is_not_whole();
    void a_line_without_a_carriage_return_is_taken_and_told();
    void answers_keep_their_pace();
    void a_silent_host_takes_every_line();
    void the_answer_can_be_another_one();
    void the_mode_is_the_hosts_and_not_a_links();
    void a_power_cycle_leaves_flash_mode();
    void a_second_flash_starts_with_an_empty_image();
    void what_came_is_told_at_the_end();
    void a_transfer_that_breaks_off_is_told();

private:
    void begin(const Speaker_Config &config);
    QStringList told();
    static Speaker_Config config()
    {
        Speaker_Config config;
        config.address = own_loopback(1);
        return config;
    }

    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Raw_Client> client;
    std::mutex mutex;
    QStringList events; // under the mutex
};

void tst_Flash_Mode::init()
{
    begin(config());
}

void tst_Flash_Mode::begin(const Speaker_Config &config)
{
    client.reset();
    speaker.reset();
    events.clear();
    speaker = std::make_unique<Virtual_Speaker>(config);
    speaker->set_event_sink([this](const QString &text) {
        const std::lock_guard<std::mutex> lock(mutex);
        events += text;
    });
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    client = std::make_unique<Raw_Client>();
    QVERIFY(client->open(own_loopback(1), 8990));
    client->send("RZ!FL\n");
    QVERIFY(speaker->wait_until([&] { return speaker->in_flash_mode(); }));
}

// What a reader of the log learns of the flash, the lines themselves left out.
QStringList tst_Flash_Mode::told()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return events.filter(QRegularExpression("^(-- flash|!!)"));
}

void tst_Flash_Mode::a_whole_file_leaves_a_whole_image()
{
    const QByteArray text = make_hex_text(50, 3);
    Hex_Image expected;
    int answers = 0;
    for (const QByteArray &line : text.chopped(2).split('\n')) {
        expected.take(line.trimmed());
        client->send(line.trimmed() + "\r\n");
        QCOMPARE(client->read_to("!"), QByteArray("!"));
        answers++;
    }
    QCOMPARE(answers, 50);
    const Hex_Image image = speaker->flash_image();
    QVERIFY2(image.whole(), qPrintable(image.complaints().join("; ")));
    QCOMPARE(image.lines(), 50);
    QCOMPARE(image.data(), expected.data());
    QCOMPARE(image.data().size(), 49 * 16);
    QCOMPARE(speaker->host_bytes(), "RZ!FL\n" + text);
    QCOMPARE(speaker->host_complaints(), QStringList());
}

void tst_Flash_Mode::fl_is_not_answered_and_raw_lines_are()
{
    // What looks like a query is a line of the file as any other.
    client->send("RZ?vo\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    QCOMPARE(speaker->flash_image().bad(), 1);
}

void tst_Flash_Mode::the_end_record_ends_flash_mode()
{
    client->send(":00000001FF\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    QVERIFY(!speaker->in_flash_mode());
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0030\r"));
    QVERIFY(speaker->flash_image().whole());
}

void tst_Flash_Mode::a_bad_checksum_spoils_the_image_and_is_answered_all_the_same()
{
    client->send(":0100000041BE\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    client->send(":0100010042BD\r\n"); // BC would be right
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    client->send(":00000001FF\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    const Hex_Image image = speaker->flash_image();
    QVERIFY(image.ended());
    QVERIFY(!image.whole());
    QCOMPARE(image.bad(), 1);
    QCOMPARE(image.data(), QByteArray("A"));
    QCOMPARE(speaker->host_complaints(), QStringList(":0100010042BD: " + image.complaints().first()));
    QVERIFY(image.complaints().first().contains("0xbd, expected 0xbc"));
}

void tst_Flash_Mode::lines_that_are_no_records_are_counted_as_bad_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addRow("empty") << QByteArray("");
    QTest::addRow("an error page") << QByteArray("<html><body>Error</body></html>");
    QTest::addRow("no colon") << QByteArray("00000001FF");
    QTest::addRow("odd digits") << QByteArray(":00000001F");
    QTest::addRow("no digits") << QByteArray(":0000000xFF");
    QTest::addRow("too short") << QByteArray(":00");
    QTest::addRow("length that lies") << QByteArray(":0200000041BD");
    QTest::addRow("cut") << QByteArray(":0200000041");
    QTest::addRow("blank in front") << QByteArray(" :00000001FF");
}

void tst_Flash_Mode::lines_that_are_no_records_are_counted_as_bad()
{
    QFETCH(QByteArray, line);
    client->send(line + "\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    QCOMPARE(speaker->flash_image().lines(), 1);
    QCOMPARE(speaker->flash_image().bad(), 1);
    QVERIFY(speaker->in_flash_mode());
}

void tst_Flash_Mode::without_the_end_record_the_image_is_not_whole()
{
    client->send(":0100000041BE\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    QVERIFY(!speaker->flash_image().whole());
    QVERIFY(!speaker->flash_image().ended());
    QCOMPARE(speaker->flash_image().bad(), 0);
}

void tst_Flash_Mode::a_line_without_a_carriage_return_is_taken_and_told()
{
    client->send(":0100000041BE\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    QCOMPARE(speaker->flash_image().data(), QByteArray("A"));
    QCOMPARE(speaker->host_complaints(), QStringList(":0100000041BE: flash line without a carriage return"));
}

void tst_Flash_Mode::answers_keep_their_pace()
{
    Speaker_Config slow = config();
    slow.flash_answer_ms = 30;
    begin(slow);
    client->send(":0100000041BE\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    const QList<Recorded_Bytes> record = speaker->host_record();
    QCOMPARE(record.size(), 3);
    QVERIFY(!record.at(2).incoming);
    QVERIFY(record.at(2).us - record.at(1).us >= 30000);
}

void tst_Flash_Mode::a_silent_host_takes_every_line()
{
    Speaker_Config silent = config();
    silent.flash_answer_ms = -1;
    begin(silent);
    client->send(":0100000041BE\r\n:00000001FF\r\n");
    QVERIFY(speaker->wait_until([&] { return speaker->flash_image().whole(); }));
    // All that has come back by the answer to a query behind it is that answer.
    QCOMPARE(client->ask("RZ?vo\n"), QByteArray("RZ#0030\r"));
}

void tst_Flash_Mode::the_answer_can_be_another_one()
{
    Speaker_Config other = config();
    other.flash_answer = "OK?";
    begin(other);
    client->send(":0100000041BE\r\n");
    QCOMPARE(client->read_to("?"), QByteArray("OK?"));
}

void tst_Flash_Mode::the_mode_is_the_hosts_and_not_a_links()
{
    Raw_Client second;
    QVERIFY(second.open(own_loopback(1), 8990));
    client->socket.disconnectFromHost();
    QVERIFY(speaker->wait_for_host_open(1));
    second.send(":00000001FF\r\n");
    QCOMPARE(second.read_to("!"), QByteArray("!"));
    QVERIFY(speaker->flash_image().whole());
}

void tst_Flash_Mode::a_power_cycle_leaves_flash_mode()
{
    client->send(":0100000041BE\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    speaker->stop();
    QVERIFY(speaker->start());
    QVERIFY(!speaker->in_flash_mode());
    Raw_Client again;
    QVERIFY(again.open(own_loopback(1), 8990));
    QCOMPARE(again.ask("RZ?vo\n"), QByteArray("RZ#0030\r"));
}

void tst_Flash_Mode::a_second_flash_starts_with_an_empty_image()
{
    client->send("nonsense\r\n:00000001FF\r\n");
    QCOMPARE(client->read_to("!!"), QByteArray("!!"));
    QVERIFY(!speaker->flash_image().whole());
    client->send("RZ!FL\n:00000001FF\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    QVERIFY(speaker->flash_image().whole());
    QCOMPARE(speaker->flash_image().lines(), 1);
}

void tst_Flash_Mode::what_came_is_told_at_the_end()
{
    client->send(":0100000041BE\r\n:0100010042BD\r\n:00000001FF\r\n");
    QCOMPARE(client->read_to("!!!"), QByteArray("!!!"));
    QCOMPARE(told(), (QStringList{
                         "-- flash mode",
                         "!! :0100010042BD: line 2: checksum 0xbd, expected 0xbc",
                         "-- flash ended: 3 lines, 1 bad, 1 bytes: the image is not whole",
                     }));
    client->send("RZ!FL\n:0100000041BE\r\n:00000001FF\r\n");
    QCOMPARE(client->read_to("!!"), QByteArray("!!"));
    QCOMPARE(told().last(), QString("-- flash ended: 2 lines, 0 bad, 1 bytes: the image is whole"));
}

void tst_Flash_Mode::a_transfer_that_breaks_off_is_told()
{
    client->send(":0100000041BE\r\n");
    QCOMPARE(client->read_to("!"), QByteArray("!"));
    client->socket.disconnectFromHost();
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(
        told().last(),
        QString("-- flash still open: 1 lines, 0 bad, 1 bytes: the image is not whole, its end is missing"));
}

QTEST_GUILESS_MAIN(tst_Flash_Mode)
#include "tst_flash_mode.moc"
