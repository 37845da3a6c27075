// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// What the type code that a speaker's amplifier reports stands for. Pure table lookups, for any thread.

constexpr int TYPE_SUB =
    18; // the one code that is controlled as a subwoofer; 42, a subwoofer by name, is not: meant
constexpr int TYPE_UNKNOWN = 255; // no accepted code could be read

QString model_name(int type); // display name; "Unknown Speaker :-(" outside the table
QString model_code(int type); // prefix of the firmware's file name; "xxx" outside the table
bool accepted_type(int type); // identification takes it; 22 has a name and is refused, which is meant
