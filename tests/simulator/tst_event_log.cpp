// SPDX-License-Identifier: MIT
#include <QtTest>
#include <thread>
#include <vector>

#include "tests/simulator/log_file.h"

class tst_Event_Log : public QObject
{
    Q_OBJECT

private slots:
    void an_event_has_its_time_who_and_what();
    void a_line_stands_alone_and_at_once();
    void lines_of_many_threads_stay_whole();
    void a_file_that_cannot_be_written_is_named();
};

void tst_Event_Log::an_event_has_its_time_who_and_what()
{
    Log_File file;
    file.log.event("Küche", "<- RZ!vo037");
    file.log.event("a name that is longer than its column", "%1 %2");
    const QStringList lines = file.lines();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(QRegularExpression("^ {3}0\\.\\d{3} Küche {15}  <- RZ!vo037$").match(lines.at(0)).hasMatch(),
             qPrintable(lines.at(0)));
    QVERIFY2(lines.at(1).endsWith(" a name that is longer than its column  %1 %2"), qPrintable(lines.at(1)));
}

void tst_Event_Log::a_line_stands_alone_and_at_once()
{
    Log_File file;
    file.log.line("ready");
    QCOMPARE(file.lines(), QStringList("ready"));
    file.log.line("ok");
    QCOMPARE(file.lines(), (QStringList{"ready", "ok"}));
}

void tst_Event_Log::lines_of_many_threads_stay_whole()
{
    constexpr int threads = 4;
    constexpr int lines = 50;
    Log_File file;
    std::vector<std::thread> writers;
    writers.reserve(threads);
    for (int i = 0; i < threads; i++)
        writers.emplace_back([&file, i] {
            for (int k = 0; k < lines; k++)
                file.log.line(QString(60, QChar('a' + i)));
        });
    for (std::thread &writer : writers)
        writer.join();
    QCOMPARE(file.lines().size(), threads * lines);
    for (int i = 0; i < threads; i++)
        QCOMPARE(file.lines().count(QString(60, QChar('a' + i))), lines);
}

void tst_Event_Log::a_file_that_cannot_be_written_is_named()
{
    Event_Log log;
    QVERIFY(!log.open_file("/no/such/folder/log"));
    QCOMPARE(log.error(), QString("/no/such/folder/log: No such file or directory"));
    log.line("goes to standard output alone");
}

QTEST_GUILESS_MAIN(tst_Event_Log)
#include "tst_event_log.moc"
