// SPDX-License-Identifier: MIT
#include "simulator/host_commands.h"

namespace
{
constexpr int sub_type_code = 18;

constexpr Host_Value number(const char *letters, const char *initial, int low, int high)
{
    return {letters, initial, nullptr, low, high, 1, false};
}

constexpr Host_Value letter(const char *letters, const char *initial, const char *allowed)
{
    return {letters, initial, allowed, 0, 0, 1, false};
}

constexpr Host_Command plain(const char *letters, const char *format)
{
    return {letters, format, letters, nullptr, Host_Deed::store};
}

// clang-format off
const std::vector<Host_Value> shared_values = {
    number("MO", "0", 0, 1),
    number("LO", "0", 0, 1),
    number("MT", "0", 0, INT_MAX),
};

const std::vector<Host_Command> shared_commands = {
    {"MO", "",     "MO", "1",     Host_Deed::store},
    {"MF", "",     "MO", "0",     Host_Deed::store},
    {"LO", "",     "LO", "1",     Host_Deed::store},
    {"LF", "",     "LO", "0",     Host_Deed::store},
    {"MT", "%03d", "MT", nullptr, Host_Deed::store},
    {"BI", "%01d", "BI", nullptr, Host_Deed::beep},
    {"PI", "",     "PI", "1",     Host_Deed::ping},
    {"PF", "",     "PO", "0",     Host_Deed::store},
    {"PO", "",     "PO", "1",     Host_Deed::store},
    {"FL", "",     "FL", "1",     Host_Deed::flash},
};

const std::vector<Host_Value> air_values = {
    letter("IN", "W", "WDdBA"),
    number("vo", "30", 0, 100),
    number("ba", "1", 0, 3),
    letter("pl", "F", "FWC"),
    letter("ro", "n", "RrndD"),
    number("ga", "0", -12, 12),
    number("gw", "0", -12, 12),
    number("g1", "0", -12, 12),
    number("g2", "0", -12, 12),
    number("td", "0", INT_MIN, 8191),
};

// No row for "g1" and "g2": they are read only, and a change of theirs is written as "ga".
const std::vector<Host_Command> air_commands = {
    plain("IN", "%c"),
    plain("vo", "%03d"),
    plain("ba", "%1d"),
    plain("pl", "%c"),
    plain("ro", "%c"),
    plain("ga", "%03d"),
    plain("gw", "%03d"),
    plain("td", "%03d"),
};

const std::vector<Host_Value> sub_values = {
    letter("ai", "W", "CXLDW"),
    number("vo", "30", 0, 100),
    number("fg", "80", 30, 180),
    {"fs", "24", nullptr, 0, 24, 6, false},
    {"fh", "20", nullptr, 20, 40, 1, true},
    number("ph", "0", INT_MIN, INT_MAX),
    number("po", "0", 0, 1),
    number("eq", "0", 0, 1),
    number("ef", "50", 20, 200),
    number("eQ", "1", 1, 10),
    number("eg", "0", -24, 6),
};

// The input is written under other letters than it is read.
const std::vector<Host_Command> sub_commands = {
    {"IN", "%c", "ai", nullptr, Host_Deed::store},
    plain("vo", "%03d"),
    plain("fg", "%03d"),
    plain("fs", "%02d"),
    plain("fh", "%02d"),
    plain("ph", "%03d"),
    plain("po", "%d"),
    plain("eq", "%01d"),
    plain("ef", "%03d"),
    plain("eQ", "%01d"),
    plain("eg", "%02d"),
    plain("Pl", "%2d"),
    plain("Ps", "%2d"),
};
// clang-format on

template<class Row>
std::vector<Row> joined(const std::vector<Row> &first, const std::vector<Row> &second)
{
    std::vector<Row> all = first;
    all.insert(all.end(), second.begin(), second.end());
    return all;
}
} // namespace

Host_Kind host_kind(int type_code)
{
    return type_code == sub_type_code ? Host_Kind::sub : Host_Kind::air;
}

const std::vector<Host_Value> &host_values(Host_Kind kind)
{
    static const std::vector<Host_Value> air = joined(shared_values, air_values);
    static const std::vector<Host_Value> sub = joined(shared_values, sub_values);
    return kind == Host_Kind::sub ? sub : air;
}

const std::vector<Host_Command> &host_commands(Host_Kind kind)
{
    static const std::vector<Host_Command> air = joined(shared_commands, air_commands);
    static const std::vector<Host_Command> sub = joined(shared_commands, sub_commands);
    return kind == Host_Kind::sub ? sub : air;
}
