// SPDX-License-Identifier: MIT
#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"

#include <QApplication>
#include <QPixmap>
#include <QSettings>
#include <QTextEdit>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>

// Writes a picture of the main window with the profiles tab open, which no button of the program opens:
// the title of the tab and the file are its two arguments. It ends with 1 where the file cannot be written.
int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: virelo_profiles_view TITLE FILE\n", stderr);
        return 2;
    }
    settings = new QSettings(QSettings::IniFormat, QSettings::UserScope, "VIRELO", "profiles_view");
    debug_console = new QTextEdit;
    plattform = new rzplattform;
    QTranslator translator;
    translator.load("VIRELO_" + QLocale::system().name(), ":/translations/");
    QCoreApplication::installTranslator(&translator);

    client = new Client(nullptr);
    client->show_profiles(nullptr, arguments[1]);
    client->show();
    QCoreApplication::processEvents(); // the banner takes the size that the layout gives it
    const bool written = client->grab().save(arguments[2], "PNG");
    std::_Exit(written ? 0 : 1); // the main window is never destroyed
}
