// SPDX-License-Identifier: MIT
#include "network/wlan_bodies.h"

#include "device/device_desc.h"

namespace
{
QString dns_block(const Device_Desc &device)
{
    if (device.static_domain.isEmpty())
        return QString();
    return R"(, "dns": { "domains": [ ")" + device.static_domain + R"(" ], "nameservers": [ ")" +
           device.static_dns1 + R"(", ")" + device.static_dns2 + R"(" ] } )";
}
} // namespace

QString set_device_name_body(const QString &name)
{
    return R"({"action": "setdevicename", "devicename": ")" + name + R"(" })";
}

QString add_network_body(const Device_Desc &device, const QString &password)
{
    if (!device.static_network)
        return R"({"action": "addnetwork", "ssid": ")" + device.ssid + R"(", "psk": ")" + password +
               R"(" } )";

    return R"({"action": "addstaticnetwork", "ssid": ")" + device.ssid + R"(", "psk": ")" + password +
           R"(", )" + R"("inet": {"address": ")" + device.static_ip + R"(", "netmask": ")" +
           device.static_netmask + R"(", "broadcast": ")" + device.static_broadcast + R"(", "gateway": ")" +
           device.static_gateway + R"(" } )" + dns_block(device) + R"(} )";
}

QString select_network_body(const QString &id)
{
    return R"({"action": "selectnetwork", "id": )" + id + " }";
}
