// SPDX-License-Identifier: MIT
// The replies of the Songcast receiver, to its state request and to its commands.
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
    record.receiver_sender = "before";
    if (!take_reply(record, &Device_Desc::replyFinished_receiver, body))
        require(record.receiver_sender == "before", "a reply without an object leaves the fields");

    const struct {
        Record_Handler handler;
        int state;
    } commands[] = {
        {&Device_Desc::replyFinished_receiver_link, 1},
        {&Device_Desc::replyFinished_receiver_unlink, 0},
        {&Device_Desc::replyFinished_receiver_play, 2},
        {&Device_Desc::replyFinished_receiver_stop, 1},
    };
    for (const auto &command : commands) {
        const int before = record.receiver_state;
        take_reply(record, command.handler, body);
        require(record.receiver_state == before || record.receiver_state == command.state,
                "a reply to a command brings its state or none");
    }
    return 0;
}
