// SPDX-License-Identifier: MIT
#include "app/client.h"

#include <QCoreApplication>
#include <QDebug>
#include <QResizeEvent>
#include <QSettings>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "overview/client_overview.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_debug.h"
#include "settings/client_settings_sub.h"
#include "settings/client_settings_sub_eq.h"

Client::Client(QWidget *parent)
    : QDialog(parent)
{
    resize(plattform->window_width, plattform->window_height);
    setWindowTitle(tr("VIRELOv2 App"));

    tabs = new QTabWidget;
    tabs->setAccessibleName(windowTitle());
    tabs->tabBar()->setAccessibleName(windowTitle());
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
    if (!settings->value("debug").toBool())
        return;
    debug_tab_index = tabs->addTab(new Client_Settings_Debug(this), "DEBUG");
    show_hood(nullptr);
}

void Client::add_fixed_tabs()
{
    if (!has_fixed_tabs())
        return;

    const auto add_fixed_tab = [this](QWidget *tab, const QString &title) {
        const int index = tabs->addTab(tab, title);
        tabs->setTabEnabled(index, false);
        return index;
    };
    air_tab = new Client_Settings_Air(this, nullptr, nullptr);
    air_tab_index = add_fixed_tab(air_tab, "Air");
    sub_tab = new Client_Settings_Sub(this, nullptr);
    sub_tab_index = add_fixed_tab(sub_tab, "Sub");
    eq_tab = new Client_Settings_Sub_EQ(this, nullptr);
    eq_tab_index = add_fixed_tab(eq_tab, "EQ");
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
