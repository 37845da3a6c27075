// SPDX-License-Identifier: MIT
#include "bench/tools/house_of.h"

#include "bench/tools/child_process.h"
#include "simulator/loopback.h"
#include "simulator/many_descriptors.h"

namespace
{
constexpr int types[] = {13, 14, 15, 16, 17, 37, 38, 39, 40, 41, 18};
constexpr int patience_ms = 60000;
} // namespace

Speaker_Config speaker_of_house(int number)
{
    Speaker_Config config;
    config.name = QString("Speaker %1").arg(number + 1, 3, 10, QChar('0'));
    config.address = own_loopback(number + 1);
    config.type = types[static_cast<size_t>(number) % std::size(types)];
    return config;
}

House_Of::House_Of(int count, int answer_ms)
{
    allow_many_descriptors();
    Speaker_Faults slow;
    slow.host_slow_ms = answer_ms;
    slow.http_slow_ms = answer_ms;
    for (int number = 0; number < count; ++number) {
        speakers.push_back(std::make_unique<Virtual_Speaker>(speaker_of_house(number)));
        speakers.back()->set_faults(slow);
        if (!speakers.back()->start())
            give_up(speakers.back()->error());
    }
}

void House_Of::announce()
{
    announcer = std::make_unique<Announcer>();
    for (const auto &speaker : speakers)
        announcer->announce(speaker->config().name, speaker->config(), speaker->http_port());
    if (!announcer->wait_until_established(patience_ms))
        give_up("the announcements do not come to stand; this wants scripts/lab");
}

void House_Of::await_workers() const
{
    for (const auto &speaker : speakers)
        if (!speaker->wait_for_host_line("RZ?MT\n", patience_ms))
            give_up("a worker does not come");
}
