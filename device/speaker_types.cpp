// SPDX-License-Identifier: MIT
#include "device/speaker_types.h"

#include <algorithm>
#include <iterator>

namespace
{
struct speaker_type {
    int type;
    bool accepted;
    const char *name;
    const char *code;
};

// 22 can be named and has firmware, but is never identified as such: meant.
constexpr speaker_type speaker_types[] = {
    {13, true, "Cadre 3.2 Air", "vc3w"},   {14, true, "Cadre 5.2 Air", "vc5w"},
    {15, true, "Cadre 7.2 Air", "vc7w"},   {16, true, "Cadre 8.2 Air", "vc8w"},
    {17, true, "Cadre 9.2 Air", "vc9w"},   {TYPE_SUB, true, "Sub 12 Air", "vs12w"},
    {19, true, "Center.2 Air", "vccw"},    {22, false, "Cadre 11.2 Air", "vc11w"},
    {37, true, "Cadre 3.3 Air", "vc3.3w"}, {38, true, "Cadre 5.3 Air", "vc5.3w"},
    {39, true, "Cadre 7.3 Air", "vc7.3w"}, {40, true, "Cadre 8.3 Air", "vc8.3w"},
    {41, true, "Cadre 9.3 Air", "vc9.3w"}, {42, true, "Sub 12.3 Air", "vs12.3w"},
    {43, true, "Center.3 Air", "vcc.3w"},  {44, true, "Cadre 11.3 Air", "vc11.3w"},
};

constexpr speaker_type unknown_speaker = {TYPE_UNKNOWN, false, "Unknown Speaker :-(", "xxx"};

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
