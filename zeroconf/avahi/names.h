// SPDX-License-Identifier: MIT
#pragma once

#include <string>

// How names pass between dns_sd and Avahi. Avahi writes domain names without the dot of the root, dns_sd with
// it; and where dns_sd takes null or an empty text for "the usual one", Avahi wants null.

inline std::string with_dot(const std::string &name)
{
    return name.empty() || name.back() == '.' ? name : name + '.';
}

inline const char *or_null(const std::string &text)
{
    return text.empty() ? nullptr : text.c_str();
}

inline const char *or_empty(const char *text)
{
    return text ? text : "";
}
