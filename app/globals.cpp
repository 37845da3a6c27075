// SPDX-License-Identifier: MIT
#include "app/globals.h"

QList<Device_Desc *> device_list;
QSettings *settings = nullptr;
QTextEdit *debug_console = nullptr;
bool debug_enabled = false;
rzplattform *plattform = nullptr;
Client *client = nullptr;
Client_Overview *overview = nullptr;
Device_Desc *sender_device = nullptr;
Device_Desc *last_typed_device = nullptr;
Client_Update *update_dialog = nullptr;
Client_Group *group_dialog = nullptr;
Client_WLANs *wlans_dialog = nullptr;
Client_Conf *conf_dialog = nullptr;
Client_Conf_StatIP *conf_statip_dialog = nullptr;
QMutex resolves_mutex;
int resolves_running = 0;
QMutex spare_mutex;
int request_serial = 0;
int resolve_serial = 1;
bool input_query_seen = false;
