// SPDX-License-Identifier: MIT
// The reply to the device info request.
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
    record.model = record.firmware = record.hardware = "before";
    if (!take_reply(record, &Device_Desc::replyFinished_device_status, body))
        require(record.model == "before" && record.firmware == "before" && record.hardware == "before",
                "a reply without an object leaves the fields");
    return 0;
}
