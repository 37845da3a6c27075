// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QDebug>
#include <QIcon>
#include <QLocale>
#include <QLoggingCategory>
#include <QSettings>
#include <QTextEdit>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>

#include "app/apphandler.h"
#include "app/client.h"
#include "app/globals.h"
#include "app/message_handler.h"
#include "app/rzplattform.h"

namespace
{
// With debug off the program prints nothing: Qt's own handler stays, and only the category's debug output is
// cut off.
void set_up_logging()
{
    debug_enabled = settings->value("debug").toBool();
    if (!debug_enabled)
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    qDebug() << "Debug:" << (debug_enabled ? "true" : "false");

    debug_console = new QTextEdit;
    if (debug_enabled)
        qInstallMessageHandler(message_handler);
}

int run_application(int argc, char *argv[])
{
    rzplattform::set_up_process();
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName("VIRELO");
    QCoreApplication::setOrganizationDomain(VIRELO_MAKER_DOMAIN);
    QCoreApplication::setApplicationName("VireloApp");
    // By this a desktop finds name and icon of the window. Wayland asks for it, X11 for the icon itself.
    QGuiApplication::setDesktopFileName(VIRELO_APP_ID);
    QApplication::setWindowIcon(QIcon::fromTheme(VIRELO_APP_ID));

    settings = new QSettings;
    set_up_logging();
    plattform = new rzplattform;

    // The search falls back from the full locale name to the language; without a catalogue the source texts
    // show.
    QTranslator translator;
    translator.load("VIRELO_" + QLocale::system().name(), ":/translations/");
    QCoreApplication::installTranslator(&translator);

    new AppHandler(&application);
    qDebug() << "VIRELO Configurator running...";
    client = new Client(nullptr);
    client->show();
    const int exit_code = QApplication::exec();

    // Workers go on while the application object goes, and Qt complains on their behalf that there is none.
    QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, false);
    return exit_code;
}
} // namespace

int main(int argc, char *argv[])
{
    const int exit_code = run_application(argc, argv);

    // The workers of the speakers still run, in any state. Static objects must not be destroyed under them,
    // so the process leaves here and not through the end of main.
    std::fflush(nullptr);
    std::_Exit(exit_code);
}
