// SPDX-License-Identifier: MIT
// The TXT record of a service, as it comes from the network.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "fuzz/require.h"
#include "zeroconf/resolver.h"

namespace
{
constexpr int longest_string = 127;
constexpr size_t longest_record = 0xffff;
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    size = std::min(size, longest_record);
    QMap<QByteArray, QByteArray> entries;
    parse_txt_record(data, static_cast<quint16>(size), entries);

    require(static_cast<size_t>(entries.size()) <= size, "each entry comes from a string of its own");
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        require(entry.key().size() + entry.value().size() <= longest_string,
                "no entry is longer than a string");
        require(!entry.key().contains('=') && !entry.value().contains('='),
                "the sign belongs to neither side");
    }
    return 0;
}
