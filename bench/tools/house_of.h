// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "simulator/announcer.h"
#include "simulator/virtual_speaker.h"

// So many virtual speakers in this process, of the kinds that have a picture, each on a loopback address of
// its own; at most 254. Each answers every query and every request after that time. What cannot be ends the
// benchmark. One thread.
class House_Of
{
public:
    explicit House_Of(int count, int answer_ms = 20);

    void announce(); // returns once all are on the network
    int count() const { return static_cast<int>(speakers.size()); }
    Virtual_Speaker &speaker(int number) const { return *speakers.at(static_cast<size_t>(number)); }
    QString address(int number) const { return speaker(number).address(); }
    void await_workers() const; // until each has been asked for everything

private:
    std::vector<std::unique_ptr<Virtual_Speaker>> speakers;
    std::unique_ptr<Announcer> announcer;
};

// Their names and addresses alone, as configuration.
Speaker_Config speaker_of_house(int number);
