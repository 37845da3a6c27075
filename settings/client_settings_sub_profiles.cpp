// SPDX-License-Identifier: MIT
#include "settings/client_settings_sub_profiles.h"

#include <QGridLayout>
#include <QPushButton>
#include <QTabWidget>

#include "app/client.h"
#include "control/virelo_sub.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"

Client_Settings_Sub_Profiles::Client_Settings_Sub_Profiles(Client *client, Virelo_Sub *sub)
    : Client_Settings(client, sub)
    , sub(sub)
    , grid(new QGridLayout)
{
    grid->addWidget(make_banner("Deko_Sub"), 0, 0, 1, 7);
    add_caption(grid, 1, tr("Device:"));
    grid->addWidget(new QPushButton(tr("Profile 1")), 1, 0); // on top of the caption: meant
    grid->addWidget(new QPushButton(tr("Profile 2")), 1, 1);
    grid->addWidget(new QPushButton(tr("Profile 3")), 1, 2);
    grid->addWidget(new QPushButton(tr("SAVE")), 1, 4);
    setLayout(grid);
    order_tabs(grid);
}

int Client::show_profiles(Virelo_Sub *control, const QString &title)
{
    const int index = tabs->addTab(new Client_Settings_Sub_Profiles(this, control), title);
    tabs->setCurrentIndex(index);
    return index;
}
