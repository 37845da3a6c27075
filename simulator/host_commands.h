// SPDX-License-Identifier: MIT
#pragma once

#include <climits>
#include <vector>

// The host protocol's tables: what each kind of speaker answers and what it can be told. They are written
// apart from the program's own, so that one can be held against the other. Read-only; any thread.

enum class Host_Kind { air, sub };

// A value that can be asked for with "RZ?xx". It is kept as text, a letter or a decimal number.
struct Host_Value {
    const char *letters;
    const char *initial;
    const char *allowed; // letters that it takes; null for a number
    int low;             // range of a number
    int high;
    int step;      // a number is a multiple of it
    bool also_off; // 0 is taken beside the range, for "off"
};

// What a command does beside storing a value.
enum class Host_Deed { store, beep, ping, flash };

// A command "RZ!xx": how its argument must be written, and where it goes.
struct Host_Command {
    const char *letters;
    const char *format; // printf form of the argument; "" for none
    const char *target; // letters of the value that it sets
    const char *fixed;  // what is stored where there is no argument; null: the argument
    Host_Deed deed;
};

Host_Kind host_kind(int type_code); // 18 alone is a subwoofer to the protocol

// All values and commands of a kind, the shared ones first.
const std::vector<Host_Value> &host_values(Host_Kind kind);
const std::vector<Host_Command> &host_commands(Host_Kind kind);
