// SPDX-License-Identifier: MIT
#include "control/virelo_cell.h"

#include <QDebug>

#include "control/fan_out.h"

Virelo_Cell::Virelo_Cell(int type, QString name)
    : Virelos(type, QString(), name)
{
}

void Virelo_Cell::set_volume(int vol)
{
    cell_volume = clamped_volume(vol);
    fan_out_volume(cell_volume);
}

void Virelo_Cell::change_volume(int vol_diff)
{
    cell_volume = clamped_volume(qint64(cell_volume) + vol_diff);
    fan_out_volume(cell_volume);
}

int Virelo_Cell::get_volume()
{
    return cell_volume;
}

void Virelo_Cell::MUTE_ON()
{
    qDebug() << "Virelo_Cell::MUTE_ON()";
    fan_out_mute_on();
}

void Virelo_Cell::MUTE_OFF()
{
    qDebug() << "Virelo_Cell::MUTE_OFF()";
    fan_out_mute_off();
}

void Virelo_Cell::muteOn()
{
    MUTE_ON();
}

void Virelo_Cell::muteOff()
{
    MUTE_OFF();
}

void Virelo_Cell::transmit_function()
{
    all_wakes_served();
}
