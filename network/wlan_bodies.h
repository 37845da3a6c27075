// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Device_Desc;

// The request bodies of the WLAN settings. Nothing is escaped, and each blank is part of what goes on the
// wire. Pure functions, for any thread.

QString set_device_name_body(const QString &name);

// "addnetwork", or "addstaticnetwork" with the record's static fields where static_network is set. An empty
// domain drops the name servers too; no other member is ever dropped.
QString add_network_body(const Device_Desc &device, const QString &password);

QString select_network_body(const QString &id); // the id travels without quotes
