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
    grid->addWidget(new QLabel("<center>" + tr("Debugging output") + "</center>"), 0, 0, Qt::AlignCenter);
    grid->addWidget(debug_console, 1, 0);
    setLayout(grid);

    debug_console->append("DEBUG CONSOLE WINDOW\n\n");
    // Where the message handler is installed this line comes to the console, and shows that it works.
    qDebug() << "This is the first qDebug() output...";
}

Client_Settings_Debug::~Client_Settings_Debug()
{
    qDebug() << "~Client_Settings_Debug() called!";
}
