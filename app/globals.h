// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMutex>

class Client;
class Client_Conf;
class Client_Conf_StatIP;
class Client_Group;
class Client_Overview;
class Client_Update;
class Client_WLANs;
class Device_Desc;
class QSettings;
class QTextEdit;
class rzplattform;

// The process-wide objects. All are made once and none is ever freed: they live until the process ends, so no
// destruction order has to be kept. Only the GUI thread may touch them, except where a line says otherwise.

extern QList<Device_Desc *> device_list; // every speaker found, in order of arrival; no lock, GUI thread only
extern QSettings *settings; // default store of the organisation and application; made in start-up
extern QTextEdit
    *debug_console;            // always made; shown in the DEBUG tab; any thread logs through message_handler
extern bool debug_enabled;     // the setting "debug" as read at start
extern rzplattform *plattform; // screen metrics, read-only once made
extern Client *client;         // the main window, never deleted
extern Client_Overview *overview; // the first tab; set by its own constructor
extern Device_Desc
    *sender_device; // master of the one group: last seen with an enabled sender; null for no group
extern Device_Desc
    *last_typed_device; // written by a record's thread when its type read ends; nothing reads it

// The dialog of each kind that was opened last. Older ones stay alive.
extern Client_Update *update_dialog;
extern Client_Group *group_dialog;
extern Client_WLANs *wlans_dialog;
extern Client_Conf *conf_dialog;
extern Client_Conf_StatIP *conf_statip_dialog;

extern QMutex resolves_mutex; // guards resolves_running alone
extern int resolves_running; // activities in flight of all records: threads and HTTP requests; any thread, by
                             // the mutex
extern QMutex spare_mutex;   // never locked: device_list has no lock
extern int request_serial;   // number of the last HTTP request of the program, for the log
extern int resolve_serial;   // argument of the next one_resolve_completed, from 1
extern bool
    input_query_seen; // an input method query came; the next release of Quit takes it and does not quit
