// SPDX-License-Identifier: MIT
#pragma once

#include "control/virelos.h"

// Control object of a group record: passes volume and mute on to every listed speaker, member or not, which
// is meant. Its worker is never started and it has no link; everything happens in the caller's thread, the
// GUI thread. A record without a control object yet is passed over.
class Virelo_Group : public Virelos
{
    Q_OBJECT

public:
    explicit Virelo_Group(QString name);

    void MUTE_OFF() override;
    void MUTE_ON() override;

    int group_volume = 0; // 0 to 100; one absolute value for all, members keep no offsets

public slots:
    void set_volume(int vol) override;
    void change_volume(int vol_diff) override;
    int get_volume() override;
    void muteOn();
    void muteOff();

public:
    void transmit_function() override;
};
