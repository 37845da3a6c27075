// SPDX-License-Identifier: MIT
#include "settings/client_settings_empty.h"

#include <QGridLayout>
#include <QLabel>
#include <QTabWidget>

#include "app/client.h"
#include "device/device_desc.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"

Client_Settings_Empty::Client_Settings_Empty(Client *client, Virelos *control)
    : Client_Settings(client, control)
    , grid(new QGridLayout)
{
    grid->addWidget(make_banner("Deko_Sub"), 0, 0, 1, 1);
    grid->addWidget(new QLabel("<center>" + tr("Unknow Speaker type... :-(") + "</center>"), 1, 0,
                    Qt::AlignCenter);
    setLayout(grid);
}

void Client::show_empty(Device_Desc *device)
{
    if (!device) {
        tabs->setCurrentIndex(tabs->addTab(new Client_Settings_Empty(this, nullptr), "Empty"));
        return;
    }
    if (device->tab_index <= 0)
        device->tab_index = tabs->addTab(new Client_Settings_Empty(this, device->control), device->name);
    tabs->setCurrentIndex(device->tab_index);
}
