// SPDX-License-Identifier: MIT
#pragma once

#include "tests/control/control_fixture.h"

// The least that a control object can be.
class Bare_Control : public Virelos
{
public:
    using Virelos::Virelos;

    void set_volume(int) override {}
    void change_volume(int) override {}
    int get_volume() override { return 0; }

    void transmit_function() override
    {
        all_wakes_served();
        Virelos::transmit_function();
    }
};

inline const Lines start_up_reads = {"RZ?MO\n", "RZ?LO\n", "RZ?MT\n"};
