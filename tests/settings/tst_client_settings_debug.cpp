// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QTextEdit>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/message_handler.h"
#include "app/rzplattform.h"
#include "settings/client_settings_debug.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"

class tst_client_settings_debug : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init() { debug_console = new QTextEdit; } // a tab takes it along when it goes
    void shows_a_headline_and_the_console_as_its_child();
    void the_first_line_and_two_line_breaks_come_in_one_append();
    void the_ordinary_log_channel_is_tried_after_the_first_line();
    void with_the_message_handler_the_log_line_comes_to_the_console();
    void its_end_is_logged();
    void the_headline_is_translated_in_the_context_of_the_class();
    void has_no_signals_or_slots_of_its_own();
};

void tst_client_settings_debug::shows_a_headline_and_the_console_as_its_child()
{
    Log_Capture log;
    const Client_Settings_Debug tab(nullptr);
    QVERIFY(!tab.control);
    QCOMPARE(tab.layout(), tab.grid);
    QCOMPARE(tab.grid->count(), 2);

    QCOMPARE(text_at(tab.grid, 0, 0), QString("<center>Debugging output</center>"));
    QCOMPARE(place_of(tab.grid, label_at(tab.grid, 0, 0)), (QList<int>{0, 0, 1, 1}));
    QCOMPARE(alignment_of(tab.grid, label_at(tab.grid, 0, 0)), Qt::AlignCenter);
    QCOMPARE(place_of(tab.grid, debug_console), (QList<int>{1, 0, 1, 1}));
    QCOMPARE(debug_console->parentWidget(), &tab);
}

void tst_client_settings_debug::the_first_line_and_two_line_breaks_come_in_one_append()
{
    Log_Capture log;
    QTextEdit reference;
    reference.append("DEBUG CONSOLE WINDOW\n\n");
    QSignalSpy changed(debug_console, SIGNAL(textChanged()));
    const Client_Settings_Debug tab(nullptr);
    QCOMPARE(debug_console->toPlainText(), reference.toPlainText());
    QCOMPARE(debug_console->toPlainText(), QString("DEBUG CONSOLE WINDOW\n\n"));
    QCOMPARE(changed.count(), 1);
}

void tst_client_settings_debug::the_ordinary_log_channel_is_tried_after_the_first_line()
{
    Log_Capture log;
    QString console_then;
    log.on_debug_line = [&](const QString &) { console_then = debug_console->toPlainText(); };
    const Client_Settings_Debug tab(nullptr);
    QCOMPARE(log.debug_lines(), QStringList{"This is the first qDebug() output..."});
    QCOMPARE(console_then, QString("DEBUG CONSOLE WINDOW\n\n"));
}

void tst_client_settings_debug::with_the_message_handler_the_log_line_comes_to_the_console()
{
    qInstallMessageHandler(message_handler);
    const Client_Settings_Debug tab(nullptr);
    qInstallMessageHandler(nullptr);
    QCOMPARE(debug_console->toPlainText(),
             QString("DEBUG CONSOLE WINDOW\n\n\nThis is the first qDebug() output..."));
}

void tst_client_settings_debug::its_end_is_logged()
{
    Log_Capture log;
    auto tab = std::make_unique<Client_Settings_Debug>(nullptr);
    log.clear();
    tab.reset();
    QCOMPARE(log.debug_lines(), QStringList{"~Client_Settings_Debug() called!"});
}

void tst_client_settings_debug::the_headline_is_translated_in_the_context_of_the_class()
{
    Log_Capture log;
    Marking_Translator translator("Client_Settings_Debug");
    QCoreApplication::installTranslator(&translator);
    const Client_Settings_Debug tab(nullptr);
    QCOMPARE(text_at(tab.grid, 0, 0), QString("<center>#Debugging output</center>"));
}

void tst_client_settings_debug::has_no_signals_or_slots_of_its_own()
{
    const QMetaObject &meta = Client_Settings_Debug::staticMetaObject;
    QCOMPARE(meta.className(), "Client_Settings_Debug");
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

QTEST_MAIN(tst_client_settings_debug)
#include "tst_client_settings_debug.moc"
