// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "control/virelo_group.h"
#include "control/virelo_unknown.h"
#include "tests/network/wlan_world.h"
#include "tests/settings/probe_air.h"
#include "tests/settings/probe_sub.h"

class QWidget;

// All that the program can show, one view at a time, for the length of one test: the main window with four
// listed speakers, its tabs, and the dialogs. No worker runs; the speaker of the dialogs is the peer of
// `network`. GUI thread only.
class View_World
{
public:
    explicit View_World(int device_class = 0, bool debug = false);
    ~View_World();
    View_World(const View_World &) = delete;
    View_World &operator=(const View_World &) = delete;

    static QStringList views(); // those that open() knows
    QWidget *
    open(const QString &view); // what holds the view's controls in its grid; its window has the focus

    // Before the world whose records refer to them.
    Probe_Air kitchen{"Kitchen"};
    Probe_Air bathroom{"Bathroom"};
    Probe_Sub cellar{"Cellar"};
    Virelo_Unknown attic{255, own_loopback(250), "Attic"};
    Virelo_Group party{"Party"};
    Wlan_World network;
    Device_Desc *master;  // the kitchen's record, which is that of the dialogs
    Device_Desc *other;   // the bathroom's
    Device_Desc *sub;     // the cellar's
    Device_Desc *unknown; // the attic's

private:
    QWidget *open_tab(const QString &view);
    QWidget *open_dialog(const QString &view);
};
