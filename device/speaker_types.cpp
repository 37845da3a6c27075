// SPDX-License-Identifier: MIT
#include "device/speaker_types.h"

#include <algorithm>
#include <iterator>

namespace
{
struct speaker_type {
    int type;
    const char *name;
    const char *code;
    bool accepted;
};

// 22 can be named and has firmware, but is never identified as such: meant.
constexpr speaker_type speaker_types[] = {
    {13, "Cadre 3.2 Air", "vc3w", true},   {14, "Cadre 5.2 Air", "vc5w", true},
    {15, "Cadre 7.2 Air", "vc7w", true},   {16, "Cadre 8.2 Air", "vc8w", true},
    {17, "Cadre 9.2 Air", "vc9w", true},   {TYPE_SUB, "Sub 12 Air", "vs12w", true},
    {19, "Center.2 Air", "vccw", true},    {22, "Cadre 11.2 Air", "vc11w", false},
    {37, "Cadre 3.3 Air", "vc3.3w", true}, {38, "Cadre 5.3 Air", "vc5.3w", true},
    {39, "Cadre 7.3 Air", "vc7.3w", true}, {40, "Cadre 8.3 Air", "vc8.3w", true},
    {41, "Cadre 9.3 Air", "vc9.3w", true}, {42, "Sub 12.3 Air", "vs12.3w", true},
    {43, "Center.3 Air", "vcc.3w", true},  {44, "Cadre 11.3 Air", "vc11.3w", true},
};

constexpr speaker_type unknown_speaker = {TYPE_UNKNOWN, "Unknown Speaker :-(", "xxx", false};

const speaker_type &row_of(int type)
{
    const auto row = std::find_if(std::begin(speaker_types), std::end(speaker_types),
                                  [type](const speaker_type &each) { return each.type == type; });
    return row == std::end(speaker_types) ? unknown_speaker : *row;
}
} // namespace

QString model_name(int type)
{
    return QString::fromLatin1(row_of(type).name);
}

QString model_code(int type)
{
    return QString::fromLatin1(row_of(type).code);
}

bool accepted_type(int type)
{
    return row_of(type).accepted;
}
