// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "app/globals.h"
#include "control/virelo_group.h"
#include "device/device_desc.h"
#include "tests/settings/probe_air.h"
#include "tests/settings/probe_sub.h"

// The listed speakers around a group, for the length of one test: a full-range master, a subwoofer, a speaker
// that is no member, and one without control object yet. No worker runs.
struct Group_World {
    Group_World()
    {
        kitchen.volume = 33;
        add_record("Kitchen left", &kitchen);
        add_record("Cellar", &cellar);
        add_record("Stranger", &stranger);
        add_record("Late", nullptr);
        sender_device = records.front().get();
        forget();
    }
    ~Group_World()
    {
        sender_device = nullptr;
        device_list.clear();
    }
    Group_World(const Group_World &) = delete;
    Group_World &operator=(const Group_World &) = delete;

    Device_Desc *record(int position) const { return records.at(position).get(); }
    QList<int> volumes() const { return {kitchen.volume, cellar.volume, stranger.volume}; }
    int pending() const { return kitchen.pending + cellar.pending + stranger.pending; }
    void forget() // what was asked of the speakers
    {
        for (Virelos *control : std::initializer_list<Virelos *>{&kitchen, &cellar, &stranger})
            control->pending = 0;
        kitchen.volumes.clear();
        kitchen.mutes.clear();
    }

    Probe_Air kitchen{"Kitchen"};
    Probe_Sub cellar{"Cellar"};
    Probe_Air stranger{"Stranger"};
    Virelo_Group group{"Party"};

private:
    void add_record(const QString &name, Virelos *control)
    {
        auto record = std::make_unique<Device_Desc>(nullptr, false, QString());
        record->set_name(name);
        record->control = control;
        device_list.append(record.get());
        records.push_back(std::move(record));
    }

    std::vector<std::unique_ptr<Device_Desc>> records;
};
