// SPDX-License-Identifier: MIT
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "simulator/house.h"
#include "simulator/loopback.h"
#include "simulator/sim_console.h"
#include "tests/simulator/http_client.h"
#include "tests/simulator/log_file.h"

class tst_Sim_Console : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_line_splits_into_words_data();
    void a_line_splits_into_words();
    void a_quote_that_is_not_closed_is_no_line();
    void what_cannot_be_done_is_said_in_one_line_data();
    void what_cannot_be_done_is_said_in_one_line();
    void an_empty_line_says_nothing();
    void list_tells_who_is_where();
    void set_turns_a_value();
    void fault_switches_a_fault();
    void a_speaker_leaves_and_joins();
    void a_speaker_moves();
    void cut_ends_the_open_links_data();
    void cut_ends_the_open_links();
    void send_brings_bytes_to_the_open_links();
    void download_makes_the_server_misbehave();
    void without_a_download_server_there_is_nothing_to_misbehave();
    void help_lists_every_command();
    void faults_lists_every_fault();
    void quit_asks_for_the_end();

private:
    QStringList obey(const QString &line);

    std::unique_ptr<Log_File> file;
    std::unique_ptr<House> house;
    std::unique_ptr<Sim_Console> console;
};

void tst_Sim_Console::init()
{
    Scene scene;
    Scene::Speaker kitchen;
    kitchen.config.name = "Küche";
    kitchen.config.address = own_loopback(1);
    Scene::Speaker sub;
    sub.config.name = "Sub Wohnzimmer";
    sub.config.address = own_loopback(2);
    sub.config.type = 18;
    sub.present = false;
    scene.speakers = {kitchen, sub};
    scene.has_download_server = true;
    scene.download.address = own_loopback(3);
    file = std::make_unique<Log_File>();
    house = std::make_unique<House>(scene, false, file->log);
    QVERIFY2(house->start(), qPrintable(house->error()));
    console = std::make_unique<Sim_Console>(*house, file->log);
}

void tst_Sim_Console::cleanup()
{
    console.reset();
    house.reset();
    file.reset();
}

// What the console says to the line; the events that it brings about left out.
QStringList tst_Sim_Console::obey(const QString &line)
{
    const int before = file->lines().size();
    console->obey(line);
    return file->lines().mid(before).filter(QRegularExpression("^(?! *\\d+\\.\\d{3} )"));
}

void tst_Sim_Console::a_line_splits_into_words_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("empty") << "" << QStringList();
    QTest::newRow("blanks") << " \t " << QStringList();
    QTest::newRow("words") << " set  A\tvo 37 " << QStringList{"set", "A", "vo", "37"};
    QTest::newRow("quoted") << R"(set "Sub Wohnzimmer" vo)" << QStringList{"set", "Sub Wohnzimmer", "vo"};
    QTest::newRow("blanks in quotes") << R"("  a  ")" << QStringList{"  a  "};
    QTest::newRow("empty word") << R"(send A "")" << QStringList{"send", "A", ""};
    QTest::newRow("quote within a word") << R"(a"b c"d)" << QStringList{"ab cd"};
    QTest::newRow("not latin") << "leave Küche" << QStringList{"leave", "Küche"};
}

void tst_Sim_Console::a_line_splits_into_words()
{
    QFETCH(QString, line);
    QVERIFY(split_words(line));
    QTEST(*split_words(line), "words");
}

void tst_Sim_Console::a_quote_that_is_not_closed_is_no_line()
{
    QVERIFY(!split_words("leave \"Küche"));
    QVERIFY(!split_words("\"a\" \""));
}

void tst_Sim_Console::what_cannot_be_done_is_said_in_one_line_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *line, const char *answer) { QTest::newRow(line) << line << answer; };
    row("fly", R"(? there is no command "fly"; "help" lists them)");
    row("LIST", R"(? there is no command "LIST"; "help" lists them)");
    row("list all", "? it goes: list");
    row("set Küche vo", "? it goes: set NAME LETTERS VALUE");
    row("set Küche vo 3 7", "? it goes: set NAME LETTERS VALUE");
    row("leave", "? it goes: leave NAME");
    row("leave Sub Wohnzimmer", "? it goes: leave NAME");
    row("leave \"Küche", "? a quote is not closed");
    row("leave Bad", R"(? there is no speaker "Bad")");
    row("leave küche", R"(? there is no speaker "küche")");
    row("set Bad vo 37", R"(? there is no speaker "Bad")");
    row("set Küche v0 37", R"(? it has no value "v0")");
    row("set Küche fg 80", R"(? it has no value "fg")");
    row("fault Küche fire on", R"(? no fault is called "fire")");
    row("fault Küche host-slow fast", R"(? host-slow takes NUMBER, not "fast")");
    row("cut Küche hard", R"(? a link is cut by "fin" or "rst")");
    row("move Küche nowhere", R"(? "nowhere" is no address)");
    row("download fast",
        "? it takes one of none, not-found, no-length, redirect, reset, empty, error-page, slow, silent");
}

void tst_Sim_Console::what_cannot_be_done_is_said_in_one_line()
{
    QFETCH(QString, line);
    QFETCH(QString, answer);
    QCOMPARE(obey(line), QStringList(answer));
    QVERIFY(house->speaker("Küche")->running());
}

void tst_Sim_Console::an_empty_line_says_nothing()
{
    QCOMPARE(obey(""), QStringList());
    QCOMPARE(obey("   "), QStringList());
}

void tst_Sim_Console::list_tells_who_is_where()
{
    QStringList lines;
    for (const QString &line : obey("list"))
        lines += line.simplified();
    QCOMPARE(lines, (QStringList{
                        QString("Küche type 13 %1 there, HTTP port %2")
                            .arg(own_loopback(1))
                            .arg(house->speaker("Küche")->http_port()),
                        QString("Sub Wohnzimmer type 18 %1 away").arg(own_loopback(2)),
                    }));
}

void tst_Sim_Console::set_turns_a_value()
{
    QCOMPARE(obey("set Küche vo 64"), QStringList("ok"));
    QCOMPARE(house->speaker("Küche")->value("vo"), QString("64"));
    QCOMPARE(obey("set \"Sub Wohnzimmer\" eg -5"), QStringList("ok"));
    QCOMPARE(house->speaker("Sub Wohnzimmer")->value("eg"), QString("-5"));
}

void tst_Sim_Console::fault_switches_a_fault()
{
    QCOMPARE(obey("fault Küche host-slow 250"), QStringList("ok"));
    QCOMPARE(obey("fault Küche http error-page"), QStringList("ok"));
    QCOMPARE(house->speaker("Küche")->faults().host_slow_ms, 250); // one does not undo another
    QCOMPARE(house->speaker("Küche")->faults().http, Http_Fault::error_page);
    QCOMPARE(obey("fault Küche http none"), QStringList("ok"));
    QCOMPARE(house->speaker("Küche")->faults().http, Http_Fault::none);
}

void tst_Sim_Console::a_speaker_leaves_and_joins()
{
    QCOMPARE(obey("leave Küche"), QStringList("ok"));
    QVERIFY(!house->speaker("Küche")->running());
    QCOMPARE(obey("join Küche"), QStringList("ok"));
    QVERIFY(house->speaker("Küche")->running());
    QCOMPARE(obey("join \"Sub Wohnzimmer\""), QStringList("ok"));
    QVERIFY(house->speaker("Sub Wohnzimmer")->running());
    QVERIFY(file->events().contains("Küche has left"));
}

void tst_Sim_Console::a_speaker_moves()
{
    QCOMPARE(obey("move Küche " + own_loopback(9)), QStringList("ok"));
    QCOMPARE(house->speaker("Küche")->address(), own_loopback(9));
    Raw_Client client;
    QVERIFY(client.open(own_loopback(9), 8990));
}

void tst_Sim_Console::cut_ends_the_open_links_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("in order") << "fin";
    QTest::newRow("by a reset") << "rst";
}

void tst_Sim_Console::cut_ends_the_open_links()
{
    QFETCH(QString, how);
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), 8990));
    QVERIFY(house->speaker("Küche")->wait_for_host_open(1));
    QCOMPARE(obey("cut Küche " + how), QStringList("ok"));
    QVERIFY(client.wait_closed());
}

void tst_Sim_Console::send_brings_bytes_to_the_open_links()
{
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), 8990));
    QVERIFY(house->speaker("Küche")->wait_for_host_open(1));
    QCOMPARE(obey("send Küche \"RZ#00 ä\""), QStringList("ok"));
    QCOMPARE(client.read_to("\r"), QByteArray("RZ#00 ä\r"));
}

void tst_Sim_Console::download_makes_the_server_misbehave()
{
    Http_Client client;
    QVERIFY(client.open(own_loopback(3), house->download_server()->port()));
    QCOMPARE(obey("download not-found"), QStringList("ok"));
    QCOMPARE(client.head("/current/ventaro.swu").status, 404);
    QCOMPARE(obey("download none"), QStringList("ok"));
    QCOMPARE(client.head("/current/ventaro.swu").status, 200);
}

void tst_Sim_Console::without_a_download_server_there_is_nothing_to_misbehave()
{
    House bare(Scene(), false, file->log);
    QVERIFY(bare.start());
    Sim_Console(bare, file->log).obey("download slow");
    QCOMPARE(file->lines().last(), QString("? the scene has no download server"));
}

void tst_Sim_Console::help_lists_every_command()
{
    const QStringList lines = obey("help");
    QCOMPARE(lines, Sim_Console::help());
    QStringList commands;
    for (const QString &line : lines)
        commands += line.section(' ', 0, 0);
    QCOMPARE(commands, (QStringList{"list", "set", "fault", "faults", "leave", "join", "move", "cut", "send",
                                    "download", "help", "quit"}));
}

void tst_Sim_Console::faults_lists_every_fault()
{
    QCOMPARE(obey("faults"), fault_help());
}

void tst_Sim_Console::quit_asks_for_the_end()
{
    const QSignalSpy asked(console.get(), &Sim_Console::quit_asked);
    obey("help");
    QCOMPARE(asked.size(), 0);
    QCOMPARE(obey("quit"), QStringList());
    QCOMPARE(asked.size(), 1);
}

QTEST_GUILESS_MAIN(tst_Sim_Console)
#include "tst_sim_console.moc"
