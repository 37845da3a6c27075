// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "control/virelo_air.h"
#include "simulator/loopback.h"

// A full-range speaker whose worker never starts, on an address that refuses at once: all its values are 0 or
// NUL until a test writes them, and what a tab asks of it stays in its wanted fields, is counted in
// `pending`, and is noted here where the operation is virtual.
class Probe_Air : public Virelo_Air
{
public:
    explicit Probe_Air(const QString &name = "Kitchen", int type = 13)
        : Virelo_Air(type, own_loopback(250), name)
    {
        input = 'W';
        position = 'F';
        room = 'R';
    }

    void set_volume(int vol) override
    {
        volumes.append(vol);
        Virelo_Air::set_volume(vol);
    }
    void change_volume(int vol_diff) override
    {
        steps.append(vol_diff);
        Virelo_Air::change_volume(vol_diff);
    }
    void MUTE_ON() override
    {
        mutes.append("on");
        Virelo_Air::MUTE_ON();
    }
    void MUTE_OFF() override
    {
        mutes.append("off");
        Virelo_Air::MUTE_OFF();
    }

    QList<int> volumes; // each that was set
    QList<int> steps;   // each change by a difference
    QStringList mutes;
};
