// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "zeroconf/dns_sd_port.h"
#include "zeroconf/qzeroconfservice.h"

// What the scripted dns_sd is told to report to the overview that is open.
namespace air_waves
{
// Takes a service through browse and resolve; returns its address handle, which is yet to be answered.
DNSServiceRef approach(const QString &name, quint32 interface_index, quint16 port);
void answer(DNSServiceRef address_handle, quint32 interface_index, const QString &address);

// The whole road, and back. What they report is delivered by the event loop.
void announce(const QString &name, quint32 interface_index, const QString &address, quint16 port);
void withdraw(const QString &name, quint32 interface_index);

// A service record as discovery hands it out.
QZeroConfService service(const QString &name, const QString &address, quint16 port);
} // namespace air_waves
