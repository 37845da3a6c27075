// SPDX-License-Identifier: MIT
#pragma once

#include "device/device_desc.h"

using Record_Handler = void (Device_Desc::*)(QNetworkReply *);

// Hands `body` to a handler of the record, as a reply of the speaker. Whatever it holds, the activity must be
// counted down once, and the record be called defective just where there is no object in it. True if there is
// one.
bool take_reply(Device_Desc &record, Record_Handler handler, const QByteArray &body);
