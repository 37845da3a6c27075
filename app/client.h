// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class Client_Settings_Air;
class Client_Settings_Sub;
class Client_Settings_Sub_EQ;
class Device_Desc;
class QResizeEvent;
class QTabWidget;
class Virelo_Sub;

// The main window: one tab widget, the overview as tab 0. Tabs are added as speakers are opened and are never
// removed or rebuilt, so that stored indices never shift; index 0 in a field below means that there is no
// such tab.
//
// There are two ways of showing a speaker: where the OS word is "ios" and the device a phone, one fixed tab
// of each kind is made at start, disabled, and pointed at the chosen speaker later. Everywhere else each
// record gets a tab of its own at its first opening, and keeps the index in its tab_index.
//
// GUI thread only. Never deleted.
class Client : public QDialog
{
    Q_OBJECT

public:
    explicit Client(QWidget *parent);

    // Each operation is defined beside the tab that it opens.
    void show_air(Device_Desc *device);
    void show_sub(Device_Desc *device);
    int show_eq(Virelo_Sub *sub); // index of the tab, as the others with a result
    int show_profiles(Virelo_Sub *control, const QString &title);
    void show_group(Device_Desc *device); // null, as below
    int show_hood(Device_Desc *device);   // null where no speaker is selected; each call adds a tab
    void show_empty(Device_Desc *device); // null opens a tab that belongs to no record

    static bool has_fixed_tabs();

    // However the window closes: ends the event loop, also with dialogs still open.
    void done(int result) override;

    QTabWidget *tabs = nullptr;
    int air_tab_index = 0;
    Client_Settings_Air *air_tab = nullptr;
    int sub_tab_index = 0;
    Client_Settings_Sub *sub_tab = nullptr;
    int eq_tab_index = 0;
    Client_Settings_Sub_EQ *eq_tab = nullptr;
    int debug_tab_index = 0;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void add_debug_tabs();
    void add_fixed_tabs();
};
