// SPDX-License-Identifier: MIT
#pragma once

#include "control/virelos.h"

// Control object of a speaker whose type could not be read: keeps what it is told and sends nothing. Its
// worker is never started, and so it takes no link.
class Virelo_Unknown : public Virelos
{
    Q_OBJECT

public:
    Virelo_Unknown(int type, QString host, QString name);

public slots:
    void set_volume(int vol) override;
    void change_volume(int vol_diff) override;
    int get_volume() override; // always 0

public:
    void transmit_function() override;
};
