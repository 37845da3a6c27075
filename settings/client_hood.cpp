// SPDX-License-Identifier: MIT
#include "settings/client_hood.h"

#include <QDebug>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_air.h"
#include "device/device_desc.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"

namespace
{
constexpr int delay_max = 185;          // ms, end of the slider
constexpr int command_delay_max = 8191; // ms, end of what the command takes

QString delay_text(int value)
{
    return QString::number(value) + " / " + QString::number(delay_max) + " msec";
}
} // namespace

Client_Hood::Client_Hood(Client *client, Device_Desc *device)
    : Client_Settings(client, nullptr)
    , device(device)
    , air(device ? qobject_cast<Virelo_Air *>(device->control) : nullptr)
    , grid(new QGridLayout)
{
    const int banner_columns = plattform->device_class == DEVICE_PHONE ? 3 : 6;
    grid->addWidget(make_banner("Deko_Air"), 0, 0, 1, banner_columns);
    build_speaker();
    build_debug();
    build_delay();

    connect(delay_slider, SIGNAL(valueChanged(int)), this, SLOT(sliderValueChanged(int)));
    connect(delay_slider, SIGNAL(sliderPressed()), this, SLOT(sliderPressed()));
    connect(debug_button, SIGNAL(toggled(bool)), this, SLOT(debugToggled(bool)));
    setLayout(grid);
    order_tabs(grid);
}

void Client_Hood::build_speaker()
{
    add_caption(grid, 1, tr("Speaker:"));
    const Virelos *named = device ? device->control : nullptr;
    grid->addWidget(new QLabel(named ? speaker_title(named) : QString("no speaker selected")), 1, 1);
}

void Client_Hood::build_debug()
{
    debug_button = make_checkable(tr("DEBUG"));
    debug_button->setChecked(settings->value("debug").toBool());
    restart_label = new QLabel(tr("Restart App!")); // no catalogue has this text: meant
    grid->addWidget(debug_button, 2, 0);
    grid->addWidget(restart_label, 2, 1);
}

void Client_Hood::build_delay()
{
    delay_slider = make_slider(0, delay_max, 10);
    add_caption(grid, 3, tr("Time Delay:"), delay_slider);
    // A fixed reference, which the first movement takes away.
    delay_label = new QLabel(delay_text(0) + " (125msec)");
    grid->addWidget(delay_slider, 4, 0, 1, 2);
    grid->addWidget(delay_label, 5, 0);
}

void Client_Hood::sliderValueChanged(int value)
{
    delay_label->setText(delay_text(value));
    if (value <= command_delay_max && air)
        air->TimeDelay(value);
}

// Connected and without effect, which is meant.
void Client_Hood::sliderPressed() {}

void Client_Hood::debugToggled(bool state)
{
    qDebug() << "<< Client_Hood::debugToggled" << (state ? "true" : "false");
    settings->setValue("debug", state);
    settings->sync();
    restart_label->setText(state ? "Debug On" : "Debug Off");
    debug_button->repaint();
    restart_label->repaint();
}

int Client::show_hood(Device_Desc *device)
{
    const int index = tabs->addTab(new Client_Hood(this, device), "HOOD");
    tabs->setCurrentIndex(index);
    return index;
}
