// SPDX-License-Identifier: MIT
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>

#include "simulator/loopback.h"
#include "simulator/scene.h"
#include "simulator/sim_console.h"
#include "simulator/speaker_faults.h"
#include "tests/simulator/http_client.h"

namespace
{
constexpr int patience_ms = 10000;
} // namespace

// The built program as a child process, without announcements.
class tst_Virelo_Sim : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_list_is_printed_and_that_is_all_data();
    void a_list_is_printed_and_that_is_all();
    void wrong_use_is_told_in_one_line_with_exit_code_2_data();
    void wrong_use_is_told_in_one_line_with_exit_code_2();
    void a_taken_port_is_told_with_exit_code_1();
    void a_typed_command_is_obeyed_and_events_are_printed();
    void lines_come_in_pieces_and_the_last_may_lack_its_end();
    void the_end_of_the_input_ends_it();
    void a_signal_ends_it_data();
    void a_signal_ends_it();
    void an_empty_input_does_not_end_it();
    void what_is_printed_goes_to_a_file_too();

private:
    void run(const QStringList &arguments);
    void start_scene(const QStringList &more = {});
    bool print_ready();
    void check_end(int code);
    QStringList lines();

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QProcess> process;
    QString printed;
};

void tst_Virelo_Sim::init()
{
    folder = std::make_unique<QTemporaryDir>();
    process = std::make_unique<QProcess>();
    printed.clear();
    QFile scene(folder->filePath("scene.json"));
    QVERIFY(scene.open(QIODevice::WriteOnly));
    scene.write(R"({"speakers": [{"name": "Küche", "address": ")" + own_loopback(1).toUtf8() + R"("}]})");
}

void tst_Virelo_Sim::cleanup()
{
    if (process->state() != QProcess::NotRunning) {
        process->kill();
        process->waitForFinished();
    }
    process.reset();
    folder.reset();
}

void tst_Virelo_Sim::run(const QStringList &arguments)
{
    process->start(VIRELO_SIM, arguments);
    QVERIFY(process->waitForStarted(patience_ms));
}

void tst_Virelo_Sim::start_scene(const QStringList &more)
{
    run(QStringList{"--no-announce", "--scene", folder->filePath("scene.json")} + more);
    QTRY_VERIFY_WITH_TIMEOUT(lines().contains("ready"), patience_ms);
}

QStringList tst_Virelo_Sim::lines()
{
    printed += QString::fromUtf8(process->readAllStandardOutput());
    return printed.split('\n', Qt::SkipEmptyParts);
}

void tst_Virelo_Sim::check_end(int code)
{
    QVERIFY(process->state() == QProcess::NotRunning || process->waitForFinished(patience_ms));
    QCOMPARE(process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(process->exitCode(), code);
    if (code == 0)
        QCOMPARE(process->readAllStandardError(), QByteArray());
}

void tst_Virelo_Sim::a_list_is_printed_and_that_is_all_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QStringList>("among");
    QStringList commands = Sim_Console::help();
    for (QString &line : commands)
        line.prepend("  ");
    QTest::newRow("help") << "--help" << commands;
    QTest::newRow("h") << "-h"
                       << QStringList{
                              "Options:",
                              "  --no-announce    Do not announce the speakers; no DNS-SD daemon is needed"};
    QTest::newRow("version") << "--version" << QStringList("virelo-sim " VIRELO_VERSION);
    QTest::newRow("faults") << "--list-faults" << fault_help();
    QTest::newRow("keys") << "--list-keys" << scene_help();
    QStringList scenes;
    for (const QString &name : scene_names()) {
        Scene scene;
        QString error;
        QVERIFY2(load_scene(name, scene, &error), qPrintable(error));
        scenes += name.leftJustified(14) + ' ' + scene.about;
    }
    QCOMPARE(scenes.size(), 5);
    QTest::newRow("scenes") << "--list-scenes" << scenes;
}

void tst_Virelo_Sim::a_list_is_printed_and_that_is_all()
{
    QFETCH(QString, option);
    QFETCH(QStringList, among);
    run({option});
    check_end(0);
    for (const QString &line : among)
        QVERIFY2(lines().contains(line), qPrintable(line + " is not in\n" + printed));
    if (!option.startsWith("-h") && option != "--help")
        QCOMPARE(lines(), among);
}

void tst_Virelo_Sim::wrong_use_is_told_in_one_line_with_exit_code_2_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("scene") << QStringList{"--scene", "attic"}
                           << QByteArray("virelo-sim: attic: No such file or directory\n");
    QTest::newRow("no scene") << QStringList{"--scene", "/dev/null"}
                              << QByteArray("virelo-sim: /dev/null: no value at byte 0\n");
    QTest::newRow("option") << QStringList{"--fly"} << QByteArray("virelo-sim: Unknown option 'fly'.\n");
    QTest::newRow("no value") << QStringList{"--scene"}
                              << QByteArray("virelo-sim: Missing value after '--scene'.\n");
    QTest::newRow("argument") << QStringList{"home"}
                              << QByteArray("virelo-sim: it takes options only; --help lists them\n");
    QTest::newRow("log") << QStringList{"--log", "/no/such/log"}
                         << QByteArray("virelo-sim: /no/such/log: No such file or directory\n");
}

void tst_Virelo_Sim::wrong_use_is_told_in_one_line_with_exit_code_2()
{
    QFETCH(QStringList, arguments);
    run(arguments);
    check_end(2);
    QTEST(process->readAllStandardError(), "error");
    QCOMPARE(lines(), QStringList());
}

void tst_Virelo_Sim::a_taken_port_is_told_with_exit_code_1()
{
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress(own_loopback(1)), 8990));
    run({"--no-announce", "--scene", folder->filePath("scene.json")});
    check_end(1);
    QCOMPARE(process->readAllStandardError(),
             QString("virelo-sim: Küche: %1:8990: The bound address is already in use\n")
                 .arg(own_loopback(1))
                 .toUtf8());
}

void tst_Virelo_Sim::a_typed_command_is_obeyed_and_events_are_printed()
{
    start_scene();
    process->write("set Küche vo 64\n");
    QTRY_VERIFY_WITH_TIMEOUT(lines().contains("ok"), patience_ms);
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), 8990));
    QCOMPARE(client.ask("RZ?vo\n"), QByteArray("RZ#0064\r"));
    QTRY_VERIFY_WITH_TIMEOUT(!lines().filter(QRegularExpression("Küche +<- RZ\\?vo$")).isEmpty(),
                             patience_ms);
    QTRY_VERIFY_WITH_TIMEOUT(!lines().filter(QRegularExpression("Küche +-> RZ#0064$")).isEmpty(),
                             patience_ms);
    process->write("fly\n");
    QTRY_VERIFY_WITH_TIMEOUT(lines().contains(R"(? there is no command "fly"; "help" lists them)"),
                             patience_ms);
    process->write("quit\n");
    check_end(0);
    QVERIFY(client.wait_closed());
}

void tst_Virelo_Sim::lines_come_in_pieces_and_the_last_may_lack_its_end()
{
    start_scene();
    for (const char *piece : {"set K", "\xc3", "\xbc", "che vo 1\nset Küche ba 3\nset Küche", " LO 1"}) {
        process->write(piece);
        QVERIFY(process->waitForBytesWritten(patience_ms));
    }
    process->closeWriteChannel();
    check_end(0);
    QCOMPARE(lines().count("ok"), 3);
}

void tst_Virelo_Sim::the_end_of_the_input_ends_it()
{
    start_scene();
    process->write("list\n");
    process->closeWriteChannel();
    check_end(0);
    QCOMPARE(lines().filter(QRegularExpression("^Küche +type +13 ")).size(), 1);
}

void tst_Virelo_Sim::a_signal_ends_it_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void tst_Virelo_Sim::a_signal_ends_it()
{
    QFETCH(int, number);
    start_scene();
    QCOMPARE(::kill(pid_t(process->processId()), number), 0);
    check_end(0);
}

void tst_Virelo_Sim::an_empty_input_does_not_end_it()
{
    process->setStandardInputFile(QProcess::nullDevice());
    start_scene();
    QTRY_VERIFY_WITH_TIMEOUT(lines().contains("there is no input; a signal ends this"), patience_ms);
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), 8990));
    QCOMPARE(client.ask("RZ?STm\n"), QByteArray("RZ#0013\r"));
    QCOMPARE(process->state(), QProcess::Running);
    process->terminate();
    check_end(0);
}

void tst_Virelo_Sim::what_is_printed_goes_to_a_file_too()
{
    const QString path = folder->filePath("log");
    start_scene({"--log", path});
    process->write("list\nquit\n");
    check_end(0);
    lines();
    QFile log(path);
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(log.readAll()), printed);
    QVERIFY(printed.contains("is there"));
}

QTEST_GUILESS_MAIN(tst_Virelo_Sim)
#include "tst_virelo_sim.moc"
