// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QTextCodec>
#include <QTextEdit>
#include <QThread>
#include <QVector>
#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <vector>

#include "app/globals.h"
#include "app/message_handler.h"
#include "tests/app/stderr_capture.h"

namespace
{
const QMessageLogContext somewhere("speaker.cpp", 42, "void play(int)", "default");

// What the program does to itself on a fatal message is watched from outside: this is the child's whole life.
int die()
{
    const rlimit no_core{0, 0};
    setrlimit(RLIMIT_CORE, &no_core);
    message_handler(QtFatalMsg, somewhere, "the end");
    return 0;
}

void handle_in_other_thread(const QString &text)
{
    std::unique_ptr<QThread> thread(
        QThread::create([text] { message_handler(QtDebugMsg, somewhere, text); }));
    thread->start();
    thread->wait();
}
} // namespace

class tst_message_handler : public QObject
{
    Q_OBJECT

private slots:
    void init() { debug_console = new QTextEdit; }

    void cleanup()
    {
        delete debug_console;
        debug_console = nullptr;
    }

    void each_shown_type_is_written_in_its_format_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("debug") << int(QtDebugMsg)
                               << QByteArray("Debug: volume 37 (speaker.cpp:42, void play(int))\n");
        QTest::newRow("warning") << int(QtWarningMsg)
                                 << QByteArray("Warning: volume 37 (speaker.cpp:42, void play(int))\n");
        QTest::newRow("critical") << int(QtCriticalMsg)
                                  << QByteArray("Critical: volume 37 (speaker.cpp:42, void play(int))\n");
    }

    void each_shown_type_is_written_in_its_format()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, line);
        QByteArray written;
        {
            Stderr_Capture capture;
            message_handler(QtMsgType(type), somewhere, "volume 37");
            written = capture.written();
        }
        QCOMPARE(written, line);
        QCOMPARE(debug_console->toPlainText(), QString("volume 37"));
    }

    void info_appears_nowhere()
    {
        QByteArray written;
        {
            Stderr_Capture capture;
            message_handler(QtInfoMsg, somewhere, "not for anyone");
            written = capture.written();
        }
        QCOMPARE(written, QByteArray());
        QCoreApplication::processEvents();
        QCOMPARE(debug_console->toPlainText(), QString());
    }

    void fatal_is_written_and_aborts_the_process()
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {"--die"});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        QCOMPARE(child.exitCode(), SIGABRT);
        QCOMPARE(child.readAllStandardError(),
                 QByteArray("Fatal: the end (speaker.cpp:42, void play(int))\n"));
    }

    void messages_are_appended_in_order_each_as_a_paragraph()
    {
        const Stderr_Capture capture;
        message_handler(QtDebugMsg, somewhere, "one");
        message_handler(QtWarningMsg, somewhere, "two");
        message_handler(QtCriticalMsg, somewhere, "three");
        QCOMPARE(debug_console->toPlainText(), QString("one\ntwo\nthree"));
    }

    void text_is_written_in_the_local_encoding()
    {
        QTextCodec *const locale_codec = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        QByteArray written;
        {
            Stderr_Capture capture;
            message_handler(QtDebugMsg, somewhere,
                            QString::fromUtf8("K\xc3\xbc"
                                              "che"));
            written = capture.written();
        }
        QTextCodec::setCodecForLocale(locale_codec);
        QCOMPARE(written, QByteArray("Debug: K\xfc"
                                     "che (speaker.cpp:42, void play(int))\n"));
        QCOMPARE(debug_console->toPlainText(), QString::fromUtf8("K\xc3\xbc"
                                                                 "che"));
    }

    void text_reaches_the_console_as_it_is()
    {
        const Stderr_Capture capture;
        message_handler(QtDebugMsg, somewhere, "\n\n  APP ACTIVE ");
        QCOMPARE(debug_console->toPlainText(), QString("\n\n  APP ACTIVE "));
    }

    void percent_signs_in_a_text_are_no_placeholders()
    {
        QByteArray written;
        {
            Stderr_Capture capture;
            message_handler(QtDebugMsg, somewhere, "100%s %n");
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Debug: 100%s %n (speaker.cpp:42, void play(int))\n"));
    }

    void a_context_without_file_and_function_leaves_them_empty()
    {
        QByteArray written;
        {
            Stderr_Capture capture;
            message_handler(QtDebugMsg, QMessageLogContext(), "bare");
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Debug: bare (:0, )\n"));
        QCOMPARE(debug_console->toPlainText(), QString("bare"));
    }

    void text_of_another_thread_reaches_the_console_on_the_gui_thread()
    {
        QByteArray written;
        {
            Stderr_Capture capture;
            handle_in_other_thread("from afar");
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Debug: from afar (speaker.cpp:42, void play(int))\n"));
        // The widget is not touched before this thread comes to its events.
        QCOMPARE(debug_console->toPlainText(), QString());
        QTRY_COMPARE(debug_console->toPlainText(), QString("from afar"));
    }

    void threads_log_side_by_side_and_no_line_is_torn_or_lost()
    {
        constexpr int threads = 8;
        constexpr int lines = 50;
        const QString text(200, 'x');
        QByteArray written;
        {
            Stderr_Capture capture;
            std::vector<std::unique_ptr<QThread>> loggers;
            for (int i = 0; i < threads; ++i) {
                loggers.emplace_back(QThread::create([text] {
                    for (int line = 0; line < lines; ++line)
                        message_handler(QtDebugMsg, somewhere, text);
                }));
                loggers.back()->start();
            }
            for (const auto &logger : loggers)
                logger->wait();
            written = capture.written();
        }
        const QByteArray line = "Debug: " + text.toLatin1() + " (speaker.cpp:42, void play(int))\n";
        QCOMPARE(written, line.repeated(threads * lines));
        QTRY_COMPARE(debug_console->toPlainText().split('\n'),
                     QVector<QString>(threads * lines, text).toList());
    }

    void it_serves_the_logging_macros_once_installed()
    {
        QByteArray written;
        {
            Stderr_Capture capture;
            const QtMessageHandler previous = qInstallMessageHandler(message_handler);
            QMessageLogger("overview.cpp", 7, "void draw()").debug() << "rows:" << 3;
            QMessageLogger("overview.cpp", 8, "void draw()").info() << "dropped";
            qInstallMessageHandler(previous);
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Debug: rows: 3 (overview.cpp:7, void draw())\n"));
        QCOMPARE(debug_console->toPlainText(), QString("rows: 3"));
    }
};

int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], "--die") == 0)
        return die();
    QApplication application(argc, argv);
    tst_message_handler test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_message_handler.moc"
