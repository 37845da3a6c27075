// SPDX-License-Identifier: MIT
#include <QtTest>

#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/raw_client.h"

// The host protocol of both kinds of speaker, row by row, as bytes on a socket.
class tst_Host_Protocol : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void a_query_is_answered_with_the_initial_value_data();
    void a_query_is_answered_with_the_initial_value();
    void a_command_sets_its_value_data();
    void a_command_sets_its_value();
    void a_bad_command_is_refused_data();
    void a_bad_command_is_refused();
    void a_command_is_not_answered();
    void the_type_code_needs_its_argument();
    void the_cell_letter_is_told();
    void an_unknown_query_has_status_01();
    void beeps_and_pings_are_counted();
    void frames_split_and_joined_are_the_same();
    void links_share_one_host();
    void the_record_holds_bytes_lines_and_times();
    void clearing_the_record_keeps_the_values();
    void values_can_be_scripted_and_awaited();
    void a_taken_port_is_an_error();
    void stopping_closes_links_and_starting_brings_the_speaker_back();

private:
    static Speaker_Config config_of(int type)
    {
        Speaker_Config config;
        config.address = own_loopback(1);
        config.type = type;
        return config;
    }
    static constexpr int air = 13;
    static constexpr int sub = 18;
};

void tst_Host_Protocol::initTestCase()
{
    QVERIFY(!own_loopback(1).startsWith("127.0."));
    QVERIFY(own_loopback(1) != own_loopback(2));
}

void tst_Host_Protocol::a_query_is_answered_with_the_initial_value_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](int type, const char *query, const char *answer) {
        QTest::addRow("%d %s", type, QByteArray(query).trimmed().constData())
            << type << QByteArray(query) << QByteArray(answer);
    };
    for (const int type : {air, sub}) {
        row(type, "RZ?MO\n", "RZ#000\r");
        row(type, "RZ?LO\n", "RZ#000\r");
        row(type, "RZ?MT\n", "RZ#000\r");
        row(type, "RZ?vo\n", "RZ#0030\r");
        row(type, "RZ?QO\n", "RZ#00N\r");
    }
    row(air, "RZ?STm\n", "RZ#0013\r");
    row(air, "RZ?IN\n", "RZ#00W\r");
    row(air, "RZ?ba\n", "RZ#001\r");
    row(air, "RZ?pl\n", "RZ#00F\r");
    row(air, "RZ?ro\n", "RZ#00n\r");
    row(air, "RZ?ga\n", "RZ#000\r");
    row(air, "RZ?gw\n", "RZ#000\r");
    row(air, "RZ?g1\n", "RZ#000\r");
    row(air, "RZ?g2\n", "RZ#000\r");
    row(air, "RZ?td\n", "RZ#000\r");
    row(sub, "RZ?STm\n", "RZ#0018\r");
    row(sub, "RZ?ai\n", "RZ#00W\r");
    row(sub, "RZ?fg\n", "RZ#0080\r");
    row(sub, "RZ?fs\n", "RZ#0024\r");
    row(sub, "RZ?fh\n", "RZ#0020\r");
    row(sub, "RZ?ph\n", "RZ#000\r");
    row(sub, "RZ?po\n", "RZ#000\r");
    row(sub, "RZ?eq\n", "RZ#000\r");
    row(sub, "RZ?ef\n", "RZ#0050\r");
    row(sub, "RZ?eQ\n", "RZ#001\r");
    row(sub, "RZ?eg\n", "RZ#000\r");
}

void tst_Host_Protocol::a_query_is_answered_with_the_initial_value()
{
    QFETCH(int, type);
    QFETCH(QByteArray, query);
    Virtual_Speaker speaker(config_of(type));
    QVERIFY2(speaker.start(), qPrintable(speaker.error()));
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    QTEST(client.ask(query), "answer");
    QCOMPARE(speaker.host_complaints(), QStringList());
}

void tst_Host_Protocol::a_command_sets_its_value_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("letters");
    QTest::addColumn<QString>("value");
    const auto row = [](int type, const char *command, const char *letters, const char *value) {
        QTest::addRow("%d %s", type, QByteArray(command).trimmed().constData())
            << type << QByteArray(command) << letters << value;
    };
    for (const int type : {air, sub}) {
        row(type, "RZ!MO\n", "MO", "1");
        row(type, "RZ!MF\n", "MO", "0");
        row(type, "RZ!LO\n", "LO", "1");
        row(type, "RZ!LF\n", "LO", "0");
        row(type, "RZ!MT007\n", "MT", "7");
        row(type, "RZ!PF\n", "PO", "0");
        row(type, "RZ!PO\n", "PO", "1");
        row(type, "RZ!vo037\n", "vo", "37");
        row(type, "RZ!vo000\n", "vo", "0");
        row(type, "RZ!vo100\n", "vo", "100");
    }
    row(air, "RZ!IND\n", "IN", "D");
    row(air, "RZ!INd\n", "IN", "d");
    row(air, "RZ!INB\n", "IN", "B");
    row(air, "RZ!INA\n", "IN", "A");
    row(air, "RZ!ba3\n", "ba", "3");
    row(air, "RZ!plC\n", "pl", "C");
    row(air, "RZ!roD\n", "ro", "D");
    row(air, "RZ!ror\n", "ro", "r");
    row(air, "RZ!ga-05\n", "ga", "-5");
    row(air, "RZ!ga-12\n", "ga", "-12");
    row(air, "RZ!gw012\n", "gw", "12");
    row(air, "RZ!td8191\n", "td", "8191");
    row(air, "RZ!td-05\n", "td", "-5");
    row(sub, "RZ!INX\n", "ai", "X");
    row(sub, "RZ!INC\n", "ai", "C");
    row(sub, "RZ!fg030\n", "fg", "30");
    row(sub, "RZ!fs00\n", "fs", "0");
    row(sub, "RZ!fs06\n", "fs", "6");
    row(sub, "RZ!fh00\n", "fh", "0");
    row(sub, "RZ!fh25\n", "fh", "25");
    row(sub, "RZ!ph180\n", "ph", "180");
    row(sub, "RZ!po1\n", "po", "1");
    row(sub, "RZ!eq1\n", "eq", "1");
    row(sub, "RZ!ef200\n", "ef", "200");
    row(sub, "RZ!eQ10\n", "eQ", "10");
    row(sub, "RZ!eg-5\n", "eg", "-5");
    row(sub, "RZ!eg-24\n", "eg", "-24");
    row(sub, "RZ!eg06\n", "eg", "6");
    row(sub, "RZ!Pl 1\n", "Pl", "1");
    row(sub, "RZ!Ps 3\n", "Ps", "3");
}

void tst_Host_Protocol::a_command_sets_its_value()
{
    QFETCH(int, type);
    QFETCH(QByteArray, command);
    QFETCH(QString, letters);
    QFETCH(QString, value);
    Speaker_Config config = config_of(type);
    config.values.insert(letters, QString("?"));
    Virtual_Speaker speaker(config);
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    client.send(command);
    QVERIFY(speaker.wait_for_value(letters, value));
    QCOMPARE(speaker.host_lines(), QList<QByteArray>{command});
    QCOMPARE(speaker.host_complaints(), QStringList());
}

void tst_Host_Protocol::a_bad_command_is_refused_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("reason");
    const auto row = [](int type, const char *command, const char *reason) {
        QTest::addRow("%d %s", type, QByteArray(command).trimmed().constData())
            << type << QByteArray(command) << reason;
    };
    row(air, "RZ!vo37\n", "not written as %03d");
    row(air, "RZ!vo101\n", "out of range");
    row(air, "RZ!vo\n", "not written as %03d");
    row(air, "RZ!vo+37\n", "not written as %03d");
    row(air, "RZ!ba4\n", "out of range");
    row(air, "RZ!ba01\n", "not written as %1d");
    row(air, "RZ!INX\n", "no letter of this value");
    row(air, "RZ!INWW\n", "no letter of this value");
    row(air, "RZ!IN\n", "no letter of this value");
    row(air, "RZ!ga-13\n", "out of range");
    row(air, "RZ!ga-5\n", "not written as %03d");
    row(air, "RZ!g1005\n", "unknown command");
    row(air, "RZ!g2005\n", "unknown command");
    row(air, "RZ!td8192\n", "out of range");
    row(air, "RZ!fg080\n", "unknown command");
    row(air, "RZ!MO1\n", "takes no argument");
    row(sub, "RZ!aiX\n", "unknown command");
    row(sub, "RZ!INB\n", "no letter of this value");
    row(sub, "RZ!fs07\n", "out of range");
    row(sub, "RZ!fh19\n", "out of range");
    row(sub, "RZ!fg181\n", "out of range");
    row(sub, "RZ!Pl1\n", "not written as %2d");
    row(sub, "RZ!ga005\n", "unknown command");
    row(air, "RZ.vo037\n", "no frame");
    row(air, "hello\n", "no frame");
    row(air, "RZ!v\n", "no frame");
    row(air, "\n", "no frame");
    row(air, "RZ!MO\r\n", "takes no argument");
}

void tst_Host_Protocol::a_bad_command_is_refused()
{
    QFETCH(int, type);
    QFETCH(QByteArray, command);
    QFETCH(QString, reason);
    Virtual_Speaker speaker(config_of(type));
    QVERIFY(speaker.start());
    const QMap<QString, QString> before = speaker.config().values;
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    client.send(command);
    QVERIFY(speaker.wait_until([&] { return !speaker.host_complaints().isEmpty(); }));
    QCOMPARE(speaker.host_complaints(),
             QStringList(QString::fromLatin1(command.chopped(1)) + QString(": ") + reason));
    QCOMPARE(speaker.config().values, before);
}

void tst_Host_Protocol::a_command_is_not_answered()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    // All that comes back is the answer to the query behind it.
    QCOMPARE(client.ask("RZ!vo041\nRZ?vo\n"), QByteArray("RZ#0041\r"));
}

void tst_Host_Protocol::the_type_code_needs_its_argument()
{
    Virtual_Speaker speaker(config_of(99));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    QCOMPARE(client.ask("RZ?STm\n"), QByteArray("RZ#0099\r"));
    QCOMPARE(client.ask("RZ?ST\n"), QByteArray("RZ#01\r"));
}

void tst_Host_Protocol::the_cell_letter_is_told()
{
    Speaker_Config config = config_of(air);
    config.cell = QString("W");
    Virtual_Speaker speaker(config);
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    QCOMPARE(client.ask("RZ?QO\n"), QByteArray("RZ#00W\r"));
}

void tst_Host_Protocol::an_unknown_query_has_status_01()
{
    Virtual_Speaker speaker(config_of(sub));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    // A subwoofer is asked for its input under other letters.
    QCOMPARE(client.ask("RZ?IN\n"), QByteArray("RZ#01\r"));
    QCOMPARE(speaker.host_complaints(), QStringList(QString("RZ?IN: unknown query")));
}

void tst_Host_Protocol::beeps_and_pings_are_counted()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    client.send("RZ!BI1\nRZ!PI\nRZ!PI\n");
    QVERIFY(speaker.wait_until([&] { return speaker.pings() == 2; }));
    QCOMPARE(speaker.beeps(), 1);
    QCOMPARE(speaker.value(QString("BI")), QString("1"));
}

void tst_Host_Protocol::frames_split_and_joined_are_the_same()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    client.send("RZ!vo0");
    QVERIFY(speaker.wait_for_host_bytes(6));
    QCOMPARE(speaker.host_lines(), QList<QByteArray>());
    client.send("37\nRZ!ba2\nRZ!");
    QVERIFY(speaker.wait_for_host_lines(2));
    client.send("ba3\n");
    QVERIFY(speaker.wait_for_host_line("RZ!ba3\n"));
    QCOMPARE(speaker.host_lines(), (QList<QByteArray>{"RZ!vo037\n", "RZ!ba2\n", "RZ!ba3\n"}));
    QCOMPARE(speaker.host_bytes(), QByteArray("RZ!vo037\nRZ!ba2\nRZ!ba3\n"));
}

void tst_Host_Protocol::links_share_one_host()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    Raw_Client first;
    Raw_Client second;
    QVERIFY(first.open(speaker.address(), 8990));
    QVERIFY(second.open(speaker.address(), 8990));
    QVERIFY(speaker.wait_for_host_open(2));
    first.send("RZ!vo055\n");
    QVERIFY(speaker.wait_for_value("vo", "55"));
    QCOMPARE(second.ask("RZ?vo\n"), QByteArray("RZ#0055\r"));
    QCOMPARE(first.socket.bytesAvailable(), 0);
    first.socket.disconnectFromHost();
    QVERIFY(speaker.wait_for_host_open(1));
    QCOMPARE(speaker.host_connections().accepted, 2);
}

void tst_Host_Protocol::the_record_holds_bytes_lines_and_times()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    QCOMPARE(client.ask("RZ?vo\n"), QByteArray("RZ#0030\r"));
    QCOMPARE(client.ask("RZ?ba\n"), QByteArray("RZ#001\r"));
    const QList<Recorded_Bytes> record = speaker.host_record();
    QCOMPARE(record.size(), 4);
    QCOMPARE(record.at(0).bytes, QByteArray("RZ?vo\n"));
    QVERIFY(record.at(0).incoming);
    QCOMPARE(record.at(1).bytes, QByteArray("RZ#0030\r"));
    QVERIFY(!record.at(1).incoming);
    for (int i = 1; i < record.size(); i++) {
        QVERIFY(record.at(i).us >= record.at(i - 1).us);
        QCOMPARE(record.at(i).link, 1);
    }
    const QList<Recorded_Line> lines = speaker.timed_host_lines();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(1).line, QByteArray("RZ?ba\n"));
    QVERIFY(lines.at(1).us >= lines.at(0).us);
}

void tst_Host_Protocol::clearing_the_record_keeps_the_values()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    client.send("RZ!vo011\nnonsense\n");
    QVERIFY(speaker.wait_until([&] { return speaker.host_complaints().size() == 1; }));
    speaker.clear_record();
    QCOMPARE(speaker.host_lines(), QList<QByteArray>());
    QCOMPARE(speaker.host_bytes(), QByteArray());
    QCOMPARE(speaker.host_complaints(), QStringList());
    QCOMPARE(speaker.value("vo"), QString("11"));
    QCOMPARE(speaker.host_connections().open, 1);
}

void tst_Host_Protocol::values_can_be_scripted_and_awaited()
{
    Speaker_Config config = config_of(air);
    config.values.insert("vo", "64");
    Virtual_Speaker speaker(config);
    QVERIFY(speaker.start());
    speaker.set_value("ba", "2");
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    QCOMPARE(client.ask("RZ?vo\n"), QByteArray("RZ#0064\r"));
    QCOMPARE(client.ask("RZ?ba\n"), QByteArray("RZ#002\r"));
    QVERIFY(!speaker.wait_for_value("vo", "65", 20));
    QVERIFY(!speaker.wait_for_host_lines(3, 20));
    QVERIFY(speaker.value("xx").isNull());
}

void tst_Host_Protocol::a_taken_port_is_an_error()
{
    Virtual_Speaker first(config_of(air));
    QVERIFY(first.start());
    Virtual_Speaker second(config_of(air));
    QVERIFY(!second.start());
    QVERIFY(second.error().contains(own_loopback(1)));
    QVERIFY(!second.running());
    first.stop();
    QVERIFY(second.start());
}

void tst_Host_Protocol::stopping_closes_links_and_starting_brings_the_speaker_back()
{
    Virtual_Speaker speaker(config_of(air));
    QVERIFY(speaker.start());
    QVERIFY(speaker.running());
    Raw_Client client;
    QVERIFY(client.open(speaker.address(), 8990));
    client.send("RZ!vo012\n");
    QVERIFY(speaker.wait_for_value("vo", "12"));
    speaker.stop();
    QVERIFY(client.wait_closed());
    QVERIFY(!speaker.running());
    QCOMPARE(speaker.http_port(), quint16(0));
    Raw_Client refused;
    QVERIFY(!refused.open(own_loopback(1), 8990));
    QCOMPARE(refused.socket.error(), QAbstractSocket::ConnectionRefusedError);
    QVERIFY(speaker.start());
    Raw_Client again;
    QVERIFY(again.open(own_loopback(1), 8990));
    QCOMPARE(again.ask("RZ?vo\n"), QByteArray("RZ#0012\r"));
}

QTEST_GUILESS_MAIN(tst_Host_Protocol)
#include "tst_host_protocol.moc"
