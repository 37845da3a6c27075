// SPDX-License-Identifier: MIT
// What a speaker answers while it is identified and its values are read: its type, in up to four tries, then
// the values of the control object and of its worker. The lines of an input are the replies, in the order of
// the queries. What was read is then shown by the tabs.
#include <cstdint>

#include "app/client.h"
#include "app/globals.h"
#include "control/virelo_air.h"
#include "control/virelo_sub.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "fuzz/require.h"
#include "fuzz/script_peer.h"
#include "fuzz/start_up.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_sub.h"
#include "settings/client_settings_sub_eq.h"
#include "simulator/loopback.h"

namespace
{
void show_values(Device_Desc &record)
{
    if (record.control->type == TYPE_SUB) {
        auto *sub = static_cast<Virelo_Sub *>(record.control);
        Client_Settings_Sub(client, sub).refresh(sub);
        Client_Settings_Sub_EQ(client, sub).refresh(sub);
    } else {
        auto *air = static_cast<Virelo_Air *>(record.control);
        Client_Settings_Air(client, air, &record).refresh(air, &record);
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    make_main_window();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString address = own_loopback(1);
    static auto *const peer = new Script_Peer(address);
    peer->set_script(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)).split('\n'));

    Device_Desc record(nullptr, false, "");
    record.set_ip(address);
    record.resolve_started();
    record.run();

    require(resolves_running == 0, "the activity is counted down once");
    require(record.control, "whatever it answers, a speaker gets its control object");
    const int type = record.control->type;
    require(type == TYPE_UNKNOWN || accepted_type(type), "only an accepted type is taken");
    if (type != TYPE_UNKNOWN) {
        record.control->terminate();
        show_values(record);
    }
    delete record.control;
    return 0;
}
