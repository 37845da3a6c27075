// SPDX-License-Identifier: MIT
#include "control/virelo_unknown.h"

#include <QDebug>

Virelo_Unknown::Virelo_Unknown(int type, QString host, QString name)
    : Virelos(type, host, name)
{
    qDebug() << "Virelo_Unknown::Virelo_Unknown()";
}

void Virelo_Unknown::set_volume(int vol)
{
    qDebug() << "set_volume()";
}

void Virelo_Unknown::change_volume(int vol_diff)
{
    qDebug() << "change_volume()";
}

int Virelo_Unknown::get_volume()
{
    return 0;
}

void Virelo_Unknown::transmit_function()
{
    qDebug() << "transmit_function()";
}
