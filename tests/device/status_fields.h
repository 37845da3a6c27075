// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "device/device_desc.h"

inline constexpr char device_info[] = R"({"model": "VIRELO Air", "firmware": "1.4.2", "hardware": "2.0"})";
inline constexpr char network_info[] = R"({"wlan": {"mode": "STA", "ssid": "Home", "mac": "02:00:00:00:00:01",
    "stationinfo": {"signal": -52, "channelwidth": 40, "bitrate": 144.5}}})";

// The fields of the two information reads as one text, and a filling that shows whether one was touched.

inline void fill_status(Device_Desc &record)
{
    record.model = "m";
    record.firmware = "f";
    record.hardware = "h";
    record.wlan_mode = "w";
    record.ssid = "s";
    record.mac = "a";
    record.signal = 1;
    record.channelwidth = 2;
    record.bitrate = 3;
}

inline QString filled_status()
{
    return "m/f/h/w/s/a/1/2/3";
}

inline QString status_of(const Device_Desc &record)
{
    return QString("%1/%2/%3/%4/%5/%6/%7/%8/%9")
        .arg(record.model, record.firmware, record.hardware, record.wlan_mode, record.ssid, record.mac)
        .arg(record.signal)
        .arg(record.channelwidth)
        .arg(double(record.bitrate));
}
