// SPDX-License-Identifier: MIT
// The replies of the Songcast sender, to its status request and to its commands, and of bluetooth.
#include <cstdint>

#include "app/globals.h"
#include "fuzz/record_reply.h"
#include "fuzz/require.h"
#include "fuzz/start_up.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<int>(size));
    Device_Desc record(nullptr, false, "");
    sender_device = nullptr;
    take_reply(record, &Device_Desc::replyFinished_sender, body);
    require(sender_device == (record.sender_enabled ? &record : nullptr),
            "an enabled sender is the group's master");

    for (const Record_Handler handler :
         {&Device_Desc::replyFinished_sender_enable, &Device_Desc::replyFinished_sender_disable,
          &Device_Desc::replyFinished_sender_play, &Device_Desc::replyFinished_sender_stop,
          &Device_Desc::replyFinished_bluetooth_enable})
        take_reply(record, handler, body);
    return 0;
}
