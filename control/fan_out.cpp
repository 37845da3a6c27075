// SPDX-License-Identifier: MIT
#include "control/fan_out.h"

#include "app/globals.h"
#include "control/virelos.h"
#include "device/device_desc.h"

namespace
{
template<class Action>
void for_each_control(Action action)
{
    const QList<Device_Desc *> records = device_list; // a copy: a slot may change the list
    for (const Device_Desc *record : records) {
        if (record->control)
            action(record->control);
    }
}
} // namespace

void fan_out_volume(int vol)
{
    for_each_control([vol](Virelos *control) { control->set_volume(vol); });
}

void fan_out_mute_on()
{
    for_each_control([](Virelos *control) { control->MUTE_ON(); });
}

void fan_out_mute_off()
{
    for_each_control([](Virelos *control) { control->MUTE_OFF(); });
}
