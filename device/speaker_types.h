// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// What the type code that a speaker's amplifier reports stands for. Pure lookups in a constant table, for any
// thread; a code without a row is no error and gives the texts of an unknown speaker.

constexpr int TYPE_SUB = 18;      // the one code controlled as a subwoofer; 42, one by name, is not: meant
constexpr int TYPE_UNKNOWN = 255; // no accepted code could be read

// Display name, as the tree and the tabs show it; "Unknown Speaker :-(" outside the table. Product names are
// not translated.
QString model_name(int type);

// Model code, the part of a firmware file's name that tells the model; "xxx" outside the table.
QString model_code(int type);

// Whether identification takes the code as an answer. False outside the table, and for 22, which has a name.
bool accepted_type(int type);
