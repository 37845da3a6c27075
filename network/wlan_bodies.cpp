// SPDX-License-Identifier: MIT
#include "network/wlan_bodies.h"

#include "device/device_desc.h"

namespace
{
QString quoted(const QString &text)
{
    return '"' + text + '"';
}

QString member(const char *name, const QString &value)
{
    return quoted(name) + ": " + quoted(value);
}

QString inet_block(const Device_Desc &device)
{
    return "\"inet\": {" + member("address", device.static_ip) + ", " +
           member("netmask", device.static_netmask) + ", " + member("broadcast", device.static_broadcast) +
           ", " + member("gateway", device.static_gateway) + " } ";
}

QString dns_block(const Device_Desc &device)
{
    if (device.static_domain.isEmpty())
        return QString();
    return ", \"dns\": { \"domains\": [ " + quoted(device.static_domain) + " ], \"nameservers\": [ " +
           quoted(device.static_dns1) + ", " + quoted(device.static_dns2) + " ] } ";
}
} // namespace

QString set_device_name_body(const QString &name)
{
    return "{" + member("action", "setdevicename") + ", " + member("devicename", name) + " }";
}

QString add_network_body(const Device_Desc &device, const QString &password)
{
    const QString network = ", " + member("ssid", device.ssid) + ", " + member("psk", password);
    if (!device.static_network)
        return "{" + member("action", "addnetwork") + network + " } ";
    return "{" + member("action", "addstaticnetwork") + network + ", " + inet_block(device) +
           dns_block(device) + "} ";
}

QString select_network_body(const QString &id)
{
    return "{" + member("action", "selectnetwork") + ", \"id\": " + id + " }";
}
