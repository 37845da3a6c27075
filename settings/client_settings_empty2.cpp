// SPDX-License-Identifier: MIT
#include "settings/client_settings_empty2.h"

#include <QDebug>
#include <QGridLayout>
#include <QLabel>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"

Client_Settings_Empty2::Client_Settings_Empty2(Client *client, Virelos *control)
    : Client_Settings(client, control)
    , grid(new QGridLayout)
{
    setMinimumSize(400, 1600);
    // The name of the other class is meant.
    qDebug() << "Client_Settings_Empty wx=" << plattform->desktop_width
             << " wy=" << plattform->desktop_height;

    grid->addWidget(make_banner("Deko_Sub"), 0, 0, 1, 3);
    grid->addWidget(new QLabel("<center>" + tr("TEST!... :-(") + "</center>"), 1, 0, Qt::AlignCenter);
    grid->addWidget(new QLabel(tr("Speaker:")), 2, 0, Qt::AlignRight);
    grid->addWidget(new QLabel("<b>speaker name</b>"), 2, 1);
    grid->addWidget(new QLabel("(speaker model)"), 2, 2);
    setLayout(grid);
}
