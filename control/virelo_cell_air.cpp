// SPDX-License-Identifier: MIT
#include "control/virelo_cell_air.h"

Virelo_Cell_Air::Virelo_Cell_Air(int type, QString name)
    : Virelos(type, QString(), name)
{
}
