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

// Every speaker found, in order of arrival. It has no lock: GUI thread only.
extern QList<Device_Desc *> device_list;
// The default store of the organisation and application; made in start-up.
extern QSettings *settings;
// Always made; shown in the DEBUG tab. Any thread logs to it through message_handler.
extern QTextEdit *debug_console;
// The setting "debug" as read at start.
extern bool debug_enabled;
// Screen metrics, read-only once made.
extern rzplattform *plattform;
// The main window, never deleted.
extern Client *client;
// The first tab; set by its own constructor.
extern Client_Overview *overview;
// Master of the one group: the record last seen with an enabled sender; null for no group.
extern Device_Desc *sender_device;
// Written by a record's thread when its type read ends; nothing reads it.
extern Device_Desc *last_typed_device;

// The dialog of each kind that was opened last. Older ones stay alive.
extern Client_Update *update_dialog;
extern Client_Group *group_dialog;
extern Client_WLANs *wlans_dialog;
extern Client_Conf *conf_dialog;
extern Client_Conf_StatIP *conf_statip_dialog;

// Activities in flight of all records, threads and HTTP requests; any thread, by the mutex, which guards it
// alone.
extern QMutex resolves_mutex;
extern int resolves_running;
// Never locked: device_list has no lock.
extern QMutex spare_mutex;
// Number of the last HTTP request of the program, for the log.
extern int request_serial;
// Argument of the next one_resolve_completed, from 1.
extern int resolve_serial;
// An input method query came: the next release of Quit takes it and does not quit.
extern bool input_query_seen;
