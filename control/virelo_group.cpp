// SPDX-License-Identifier: MIT
#include "control/virelo_group.h"

#include <QDebug>

#include "control/fan_out.h"

Virelo_Group::Virelo_Group(QString name)
    : Virelos(0, QString(), name)
{
}

void Virelo_Group::set_volume(int vol)
{
    group_volume = clamped_volume(vol);
    fan_out_volume(group_volume);
}

void Virelo_Group::change_volume(int vol_diff)
{
    group_volume = clamped_volume(qint64(group_volume) + vol_diff);
    fan_out_volume(group_volume);
}

int Virelo_Group::get_volume()
{
    return group_volume;
}

void Virelo_Group::MUTE_ON()
{
    qDebug() << "Virelo_Group::MUTE_ON()";
    fan_out_mute_on();
}

void Virelo_Group::MUTE_OFF()
{
    qDebug() << "Virelo_Group::MUTE_OFF()";
    fan_out_mute_off();
}

void Virelo_Group::muteOn()
{
    MUTE_ON();
}

void Virelo_Group::muteOff()
{
    MUTE_OFF();
}

void Virelo_Group::transmit_function()
{
    all_wakes_served();
}
