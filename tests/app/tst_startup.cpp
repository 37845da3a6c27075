// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTextStream>
#include <QTimer>
#include <csignal>

#include "app/client.h"
#include "app/globals.h"
#include "overview/client_overview.h"
#include "settings/rzpushbutton.h"

// The program's own entry point, under another name in this test program.
int virelo_main(int argc, char *argv[]);

namespace
{
// In a process that runs the program: what its user does as soon as the window shows.
const char *user_deed = nullptr;

void tell_what_shows()
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << "organisation: " << QCoreApplication::organizationName() << '\n'
        << "domain: " << QCoreApplication::organizationDomain() << '\n'
        << "application: " << QCoreApplication::applicationName() << '\n'
        << "desktop file: " << QGuiApplication::desktopFileName() << '\n'
        << "title: " << client->windowTitle() << '\n'
        << "first tab: " << client->tabs->tabText(0) << '\n'
        << "quit: " << overview->quit_button->text() << '\n'
        << "debug tab: " << client->debug_tab_index << '\n'
        << "debug enabled: " << debug_enabled << '\n'
        << "console:\n"
        << debug_console->toPlainText() << '\n';
}

void act()
{
    if (!client || !client->isVisible()) {
        QTimer::singleShot(5, act);
        return;
    }
    if (qstrcmp(user_deed, "change debug") == 0) {
        settings->setValue("debug", !debug_enabled);
        settings->sync();
        qDebug() << "after the change";
        QCoreApplication::processEvents();
    }
    tell_what_shows();
    if (qstrcmp(user_deed, "close on the console") == 0) {
        client->tabs->setCurrentIndex(client->debug_tab_index);
        QCoreApplication::processEvents(); // it is laid out and painted
    }
    if (QByteArray(user_deed).startsWith("close")) {
        client->close();
    } else if (qstrcmp(user_deed, "exit with 3") == 0) {
        QCoreApplication::exit(3);
    } else {
        client->tabs->setCurrentIndex(0); // in debug mode another one is shown at start
        QTest::mouseClick(overview->quit_button, Qt::LeftButton);
    }
}

void send_the_user()
{
    if (user_deed)
        QTimer::singleShot(0, act);
}
Q_COREAPP_STARTUP_FUNCTION(send_the_user)

struct Run {
    int exit_code = -1;
    QString out;
    QStringList errors; // lines on standard error, without what the offscreen platform says of itself
};

QStringList error_lines(const QByteArray &bytes)
{
    QStringList lines = QString::fromUtf8(bytes).split('\n');
    QStringList kept;
    for (const QString &line : qAsConst(lines)) {
        if (!line.contains("This plugin does not support propagateSizeHints()"))
            kept << line;
    }
    if (!kept.isEmpty() && kept.last().isEmpty())
        kept.removeLast();
    return kept;
}

// The message of a line that message_handler wrote; null of any other.
QString message_of(const QString &line)
{
    static const QRegularExpression form("^Debug: (.*) \\([^()]*:\\d+, .*\\)$");
    const QRegularExpressionMatch match = form.match(line);
    return match.hasMatch() ? match.captured(1) : QString();
}
} // namespace

// The program from start to end, as a process of its own.
class tst_startup : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void debug_off_prints_nothing_and_ends_with_0_data();
    void debug_off_prints_nothing_and_ends_with_0();
    void unreadable_settings_read_as_debug_off();
    void debug_on_logs_start_up_in_order();
    void debug_on_ends_with_0_however_the_window_closes_data();
    void debug_on_ends_with_0_however_the_window_closes();
    void console_holds_the_log_but_its_first_line();
    void exit_code_is_that_of_the_event_loop();
    void organisation_is_set();
    void desktops_know_it_by_the_name_of_its_desktop_file();
    void texts_follow_the_locale_data();
    void texts_follow_the_locale();
    void debug_setting_changed_at_run_time_waits_for_the_next_start();
    void arguments_are_not_looked_at();

    void built_program_starts_silently_with_debug_off();
    void built_program_logs_its_start_with_debug_on();

private:
    void store_debug(bool debug);
    QProcessEnvironment environment(const QString &locale = "C.UTF-8") const;
    Run run_program(const QString &deed, const QString &locale = "C.UTF-8",
                    const QStringList &arguments = {});

    QScopedPointer<QTemporaryDir> home;
};

void tst_startup::init()
{
    home.reset(new QTemporaryDir);
    QVERIFY(home->isValid());
}

void tst_startup::store_debug(bool debug)
{
    QVERIFY(QDir(home->path()).mkpath("VIRELO"));
    QFile file(home->filePath("VIRELO/VireloApp.conf"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(debug ? "[General]\ndebug=true\n" : "[General]\ndebug=false\n");
}

QProcessEnvironment tst_startup::environment(const QString &locale) const
{
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    all.insert("HOME", home->path());
    all.insert("XDG_CONFIG_HOME", home->path());
    all.insert("LC_ALL", locale);
    all.insert("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + home->filePath("no-bus"));
    return all;
}

Run tst_startup::run_program(const QString &deed, const QString &locale, const QStringList &arguments)
{
    QProcess child;
    child.setProcessEnvironment(environment(locale));
    child.start(QCoreApplication::applicationFilePath(), QStringList{"--as-program", deed} + arguments);
    Run run;
    if (!child.waitForFinished(20000)) {
        child.kill();
        child.waitForFinished();
        return run;
    }
    if (child.exitStatus() == QProcess::NormalExit)
        run.exit_code = child.exitCode();
    run.out = QString::fromUtf8(child.readAllStandardOutput());
    run.errors = error_lines(child.readAllStandardError());
    return run;
}

void tst_startup::debug_off_prints_nothing_and_ends_with_0_data()
{
    QTest::addColumn<QString>("deed");
    QTest::addColumn<bool>("stored");
    QTest::newRow("quit, no settings") << "quit" << false;
    QTest::newRow("quit, debug=false") << "quit" << true;
    QTest::newRow("close, no settings") << "close" << false;
    QTest::newRow("close, debug=false") << "close" << true;
}

void tst_startup::debug_off_prints_nothing_and_ends_with_0()
{
    QFETCH(QString, deed);
    QFETCH(bool, stored);
    if (stored)
        store_debug(false);
    const Run run = run_program(deed);
    QCOMPARE(run.errors, QStringList());
    QCOMPARE(run.exit_code, 0);
    QVERIFY2(run.out.endsWith("console:\n\n"), qPrintable(run.out));
    QVERIFY(run.out.contains("debug tab: 0\n"));
}

void tst_startup::unreadable_settings_read_as_debug_off()
{
    QVERIFY(QDir(home->path()).mkpath("VIRELO/VireloApp.conf")); // a folder where the file should be
    const Run run = run_program("quit");
    QCOMPARE(run.errors, QStringList());
    QCOMPARE(run.exit_code, 0);
    QVERIFY(run.out.contains("debug enabled: 0\n"));
}

void tst_startup::debug_on_logs_start_up_in_order()
{
    store_debug(true);
    const Run run = run_program("quit");
    QCOMPARE(run.exit_code, 0);
    QCOMPARE(run.errors.value(0), QString("Debug: true")); // before the handler is installed

    QStringList messages;
    for (const QString &line : run.errors)
        messages << message_of(line);
    int position = 0;
    for (const char *text :
         {"rzplattform::rzplattform()", "*** void apphandler::AppHandler() constructor",
          "VIRELO Configurator running...", "Column sizes: 100 192.615 192.615 144.462",
          "QZeroConf::startBrowser: started!",
          "$$$ Client_Overview::Client_Overview(): zeroConf created and startBrowser() called",
          "This is the first qDebug() output...", "quitPressed", "quitReleased"}) {
        position = messages.indexOf(text, position + 1);
        QVERIFY2(position > 0, text);
    }
    // Quit removes the handler, so the end is logged by the default one.
    QVERIFY(run.errors.indexOf("quitClicked", position) > position);
    QCOMPARE(run.errors.last(), QString("~AppHandler Destructor called"));
}

void tst_startup::debug_on_ends_with_0_however_the_window_closes_data()
{
    QTest::addColumn<QString>("deed");
    QTest::newRow("quit") << "quit";
    QTest::newRow("close") << "close";
    QTest::newRow("close on the console") << "close on the console";
}

void tst_startup::debug_on_ends_with_0_however_the_window_closes()
{
    QFETCH(QString, deed);
    store_debug(true);
    const Run run = run_program(deed);
    QCOMPARE(run.exit_code, 0);
    QVERIFY2(run.errors.last().contains("~AppHandler Destructor called"), qPrintable(run.errors.last()));
}

void tst_startup::console_holds_the_log_but_its_first_line()
{
    store_debug(true);
    const Run run = run_program("quit");
    const QString console = run.out.mid(run.out.indexOf("console:\n"));
    QVERIFY(console.startsWith("console:\nrzplattform::rzplattform()\n"));
    QVERIFY(!console.contains("Debug: "));
    QVERIFY(console.contains("\nVIRELO Configurator running...\n"));
    QVERIFY(console.contains("\nDEBUG CONSOLE WINDOW\n\n\n"));
    QVERIFY(console.contains("\nThis is the first qDebug() output...\n"));
    QVERIFY(run.out.contains("debug tab: 1\n"));
}

void tst_startup::exit_code_is_that_of_the_event_loop()
{
    const Run run = run_program("exit with 3");
    QCOMPARE(run.errors, QStringList());
    QCOMPARE(run.exit_code, 3);
}

void tst_startup::organisation_is_set()
{
    const Run run = run_program("quit");
    QVERIFY(run.out.startsWith("organisation: VIRELO\ndomain: " VIRELO_MAKER_DOMAIN
                               "\napplication: VireloApp\n"));
}

void tst_startup::desktops_know_it_by_the_name_of_its_desktop_file()
{
    QVERIFY(run_program("quit").out.contains("\ndesktop file: " VIRELO_APP_ID "\n"));
}

void tst_startup::texts_follow_the_locale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("quit");
    QTest::addColumn<bool>("german");
    QTest::newRow("German") << "de_DE.UTF-8"
                            << "Beenden" << true;
    QTest::newRow("Austrian") << "de_AT.UTF-8"
                              << "Beenden" << true;
    QTest::newRow("British") << "en_GB.UTF-8"
                             << "Quit" << false;
    QTest::newRow("French, without catalogue") << "fr_FR.UTF-8"
                                               << "Quit" << false;
    QTest::newRow("C") << "C.UTF-8"
                       << "Quit" << false;
}

void tst_startup::texts_follow_the_locale()
{
    QFETCH(QString, locale);
    QFETCH(QString, quit);
    QFETCH(bool, german);
    const Run run = run_program("quit", locale);
    QCOMPARE(run.exit_code, 0);
    QCOMPARE(run.errors, QStringList());
    QVERIFY2(run.out.contains("quit: " + quit + '\n'), qPrintable(run.out));
    QCOMPARE(run.out.contains("first tab: Air Selection / Setup\n"), !german);
}

void tst_startup::debug_setting_changed_at_run_time_waits_for_the_next_start()
{
    const Run first = run_program("change debug");
    QCOMPARE(first.exit_code, 0);
    QCOMPARE(first.errors, QStringList()); // still no handler
    QVERIFY(first.out.contains("debug tab: 0\n"));
    QVERIFY(first.out.contains("debug enabled: 0\n"));

    const Run second = run_program("change debug");
    QCOMPARE(second.exit_code, 0);
    QVERIFY(second.out.contains("debug tab: 1\n"));
    QVERIFY(second.out.contains("debug enabled: 1\n"));
    QVERIFY(second.out.contains("\nafter the change\n")); // still in the console

    const Run third = run_program("quit");
    QCOMPARE(third.errors, QStringList());
    QVERIFY(third.out.contains("debug tab: 0\n"));
}

void tst_startup::arguments_are_not_looked_at()
{
    const Run run = run_program("quit", "C.UTF-8", {"--help", "--debug", "--version", "speaker"});
    QCOMPARE(run.exit_code, 0);
    QCOMPARE(run.errors, QStringList());
    QVERIFY(run.out.startsWith("organisation: "));
    QVERIFY(run.out.contains("debug enabled: 0\n"));
}

void tst_startup::built_program_starts_silently_with_debug_off()
{
#ifndef TEST_DISCOVERY_USES_THE_BUS
    QSKIP("nothing tells from outside that this build has come to its browse");
#endif
    // Nobody answers here; that the program calls tells that it has come to its window and its browse.
    QLocalServer bus;
    QVERIFY(bus.listen(home->filePath("no-bus")));
    QProcess child;
    child.setProcessEnvironment(environment());
    child.start(VIRELO_PROGRAM, QStringList());
    QTRY_VERIFY(bus.hasPendingConnections());
    QCOMPARE(child.state(), QProcess::Running);
    child.terminate();
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), SIGTERM);
    QCOMPARE(error_lines(child.readAllStandardError()), QStringList());
    QCOMPARE(child.readAllStandardOutput(), QByteArray());
}

void tst_startup::built_program_logs_its_start_with_debug_on()
{
    store_debug(true);
    QProcess child;
    child.setProcessEnvironment(environment());
    child.start(VIRELO_PROGRAM, QStringList());
    QByteArray errors;
    QTRY_VERIFY((errors += child.readAllStandardError()).contains("This is the first qDebug() output..."));
    child.terminate();
    QVERIFY(child.waitForFinished());
    const QStringList lines = error_lines(errors);
    QCOMPARE(lines.value(0), QString("Debug: true"));
    QCOMPARE(message_of(lines.value(1)), QString("rzplattform::rzplattform()"));
    QVERIFY(errors.indexOf("VIRELO Configurator running...") <
            errors.indexOf("QZeroConf::startBrowser: started!"));
}

int main(int argc, char *argv[])
{
    if (argc > 2 && qstrcmp(argv[1], "--as-program") == 0) {
        user_deed = argv[2];
        argv[2] = argv[0];
        return virelo_main(argc - 2, argv + 2);
    }
    QApplication application(argc, argv);
    tst_startup test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_startup.moc"
