// SPDX-License-Identifier: MIT
#include "settings/client_settings_debug.h"

#include <QDebug>
#include <QGridLayout>
#include <QLabel>
#include <QTextEdit>

#include "app/globals.h"

Client_Settings_Debug::Client_Settings_Debug(Client *client)
    : Client_Settings(client, nullptr)
    , grid(new QGridLayout)
{
    const QString title = tr("Debugging output");
    auto *caption = new QLabel("<center>" + title + "</center>");
    caption->setBuddy(debug_console);
    grid->addWidget(caption, 0, 0, Qt::AlignCenter);
    grid->addWidget(debug_console, 1, 0);
    debug_console->setAccessibleName(title); // the caption's text has markup
    debug_console->setTabChangesFocus(true); // else the keyboard could not leave it
    setLayout(grid);

    debug_console->append("DEBUG CONSOLE WINDOW\n\n");
    // Where the message handler is installed this line comes to the console, and shows that it works.
    qDebug() << "This is the first qDebug() output...";
}

Client_Settings_Debug::~Client_Settings_Debug()
{
    qDebug() << "~Client_Settings_Debug() called!";
}
