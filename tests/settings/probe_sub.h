// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "control/virelo_sub.h"
#include "simulator/loopback.h"

// The subwoofer's counterpart of Probe_Air: a control object whose worker never starts, on an address that
// refuses at once, with settled values.
class Probe_Sub : public Virelo_Sub
{
public:
    explicit Probe_Sub(const QString &name = "Cellar", int type = 18)
        : Virelo_Sub(type, own_loopback(250), name)
    {
        input = 'W';
        volume = 42;
        frequ_fg = 80;
        steilh_fg = 24;
        frequ_hp = 25;
        hp_enabled = 1;
        phase = 90;
        polarity = 1;
        eq_enabled = 1;
        eq_frequ = 45;
        eq_q = 4;
        eq_gain = -6;
        pending = 0;
    }

    void set_volume(int vol) override
    {
        volumes.append(vol);
        Virelo_Sub::set_volume(vol);
    }
    void MUTE_ON() override
    {
        mutes.append("on");
        Virelo_Sub::MUTE_ON();
    }
    void MUTE_OFF() override
    {
        mutes.append("off");
        Virelo_Sub::MUTE_OFF();
    }

    QList<int> volumes; // each that was set
    QStringList mutes;
};
