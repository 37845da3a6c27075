// SPDX-License-Identifier: MIT
#include "app/client.h"

#include <QCoreApplication>
#include <QDebug>
#include <QResizeEvent>
#include <QSettings>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "overview/client_overview.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_debug.h"

Client::Client(QWidget *parent)
    : QDialog(parent)
{
    resize(plattform->window_width, plattform->window_height);
    setWindowTitle(tr("VIRELOv2 App"));

    tabs = new QTabWidget;
    auto *layout = new QVBoxLayout;
    layout->addWidget(tabs);
    setLayout(layout);

    // Discovery starts inside this constructor, before the window shows.
    tabs->addTab(new Client_Overview(this), tr("Air Selection / Setup"));
    add_debug_tabs();
    add_fixed_tabs();
}

bool Client::has_fixed_tabs()
{
    return plattform->device_class == DEVICE_PHONE && rzplattform::os_name() == "ios";
}

void Client::add_debug_tabs()
{
    if (settings->value("debug").toBool())
        debug_tab_index = tabs->addTab(new Client_Settings_Debug(this), "DEBUG");
}

void Client::add_fixed_tabs()
{
    if (!has_fixed_tabs())
        return;

    air_tab = new Client_Settings_Air(this, nullptr, nullptr);
    air_tab_index = tabs->addTab(air_tab, "Air");
    tabs->setTabEnabled(air_tab_index, false);
}

void Client::done(int result)
{
    QDialog::done(result);
    QCoreApplication::quit();
}

void Client::resizeEvent(QResizeEvent *event)
{
    qDebug() << "Client::resizeEvent()" << event->size();
}
