// SPDX-License-Identifier: MIT
#include "tests/app/view_world.h"

#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include "app/client.h"
#include "app/globals.h"
#include "device/device_desc.h"
#include "network/client_conf.h"
#include "network/client_conf_statip.h"
#include "network/client_wlans.h"
#include "overview/client_group.h"
#include "overview/client_overview.h"
#include "update/client_update.h"

namespace
{
const QStringList tabs = {"overview", "debug",        "hood",  "air",  "sub",
                          "sub eq",   "sub profiles", "group", "empty"};
const QStringList dialogs = {"group dialog",    "wlans",          "wlan settings",
                             "address by dhcp", "static address", "update"};
} // namespace

View_World::View_World(int device_class, bool debug)
    : network(device_class)
    , master(network.record)
    , other(network.start_up.add_record("Bathroom", &bathroom))
    , sub(network.start_up.add_record("Cellar", &cellar))
    , unknown(network.start_up.add_record("Attic", &attic))
{
    master->control = &kitchen;
    network.peer.answer = http_answer(R"({"aplist": [{"ssid": "A", "signal_level": "-70"},
        {"ssid": "B", "signal_level": "-80"}, {"ssid": "C", "signal_level": "-90"}]})");
    network.start_up.set_debug(debug);
    network.start_up.open_and_show();
    if (!QTest::qWaitForWindowActive(client))
        qFatal("the main window does not get the focus");
    overview->update_tree_widget();
}

View_World::~View_World()
{
    delete update_dialog;
    delete group_dialog;
    update_dialog = nullptr;
    group_dialog = nullptr;
}

QStringList View_World::views()
{
    return tabs + dialogs;
}

QWidget *View_World::open(const QString &view)
{
    QWidget *const shown = dialogs.contains(view) ? open_dialog(view) : open_tab(view);
    QWidget *const window = shown->window();
    window->show();
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window))
        qFatal("the window does not get the focus");
    return shown;
}

QWidget *View_World::open_tab(const QString &view)
{
    if (view == "overview")
        client->tabs->setCurrentIndex(0);
    else if (view == "debug")
        client->tabs->setCurrentIndex(client->debug_tab_index);
    else if (view == "hood")
        client->show_hood(master);
    else if (view == "air")
        client->show_air(master);
    else if (view == "sub")
        client->show_sub(sub);
    else if (view == "sub eq")
        client->show_eq(&cellar);
    else if (view == "sub profiles")
        client->show_profiles(&cellar, "Cellar");
    else if (view == "empty")
        client->show_empty(unknown);
    else if (view == "group") {
        sender_device = master;
        auto *group = new Device_Desc(client, true, "Party");
        delete group->control;
        group->control = &party;
        client->show_group(group);
    }
    return client->tabs->currentWidget();
}

QWidget *View_World::open_dialog(const QString &view)
{
    if (view == "group dialog")
        return group_dialog = new Client_Group(other, nullptr);
    if (view == "update")
        return update_dialog = new Client_Update(master, nullptr);
    if (view == "wlan settings")
        return conf_dialog = new Client_Conf(master, nullptr);
    if (view == "wlans") {
        wlans_dialog = new Client_WLANs(master, nullptr);
        if (!QTest::qWaitFor([] { return wlans_dialog->next_button->isEnabled(); }))
            qFatal("the list of WLANs does not come");
        return wlans_dialog;
    }
    master->static_network = view == "static address";
    return conf_statip_dialog = new Client_Conf_StatIP(master, nullptr);
}
