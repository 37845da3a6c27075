// SPDX-License-Identifier: MIT
// The reply to the network info request.
#include <cstdint>

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
    record.wlan_mode = record.ssid = record.mac = "before";
    record.signal = record.channelwidth = 1;
    if (!take_reply(record, &Device_Desc::replyFinished_network_status, body))
        require(record.wlan_mode == "before" && record.ssid == "before" && record.mac == "before" &&
                    record.signal == 1 && record.channelwidth == 1,
                "a reply without an object leaves the fields");
    return 0;
}
