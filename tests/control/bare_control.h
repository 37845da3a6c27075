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

// What the tests of the worker hold.
class Bare_Control_Holder : protected Control_Holder<Bare_Control>
{
protected:
    void begin()
    {
        Control_Holder::begin();
        make(13, "Kitchen");
    }

    // Keeps the worker in the 150 ms of a command.
    void make_busy()
    {
        control->mt = control->mt + 1;
        control->wake();
        QVERIFY(speaker->wait_for_host_lines(start_up_reads.size() + 1));
    }

    Lines lines_after_start_up() const { return speaker->host_lines().mid(start_up_reads.size()); }
};
