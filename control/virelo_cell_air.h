// SPDX-License-Identifier: MIT
#pragma once

#include "control/virelos.h"

// Placeholder for the full-range speakers of a cell, not yet in use. It overrides no virtual operation and so
// stays abstract, which is meant.
class Virelo_Cell_Air : public Virelos
{
    Q_OBJECT

public:
    Virelo_Cell_Air(int type, QString name);

    int spare_1 = 0;
    int spare_2 = 0;
    int spare_3 = 0;
};
