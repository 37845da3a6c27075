// SPDX-License-Identifier: MIT
#include "simulator/house.h"

#include "simulator/event_log.h"

House::House(const Scene &scene, bool announce, Event_Log &log)
    : log(log)
    , scene(scene)
{
    if (announce)
        announcer = std::make_unique<Announcer>([&log](const QString &text) { log.event("dns-sd", text); });
}

House::~House()
{
    for (Resident &resident : residents) {
        resident.speaker->set_presence_sink({});
        resident.speaker->stop();
    }
    announcer.reset();
}

bool House::start()
{
    if (scene.has_download_server && !start_download_server())
        return false;

    for (const Scene::Speaker &entry : scene.speakers) {
        const QString name = entry.config.name;
        residents.push_back({name, entry.present, std::make_unique<Virtual_Speaker>(entry.config)});
        Resident &resident = residents.back();
        resident.speaker->set_faults(entry.faults);
        resident.speaker->set_event_sink([this, name](const QString &text) { log.event(name, text); });
        // A speaker that was told to select a network leaves by itself.
        resident.speaker->set_presence_sink([this, name](bool there) {
            log.event(name, there ? "is there" : "has left");
            if (!there && announcer)
                announcer->withdraw(name);
        });
        if (resident.present && !open(resident))
            return false;
    }
    if (announcer && !announcer->wait_until_established()) {
        reason = "the announcements do not come to stand; is avahi-daemon running?";
        return false;
    }
    return true;
}

bool House::start_download_server()
{
    download = std::make_unique<Download_Server>(scene.download);
    download->set_event_sink([this](const QString &text) { log.event("download server", text); });
    download->set_faults(scene.download_faults);
    if (download->start())
        return true;
    reason = "download server: " + download->error();
    return false;
}

// A port below 1024 may be closed to who runs this; any free one serves as well, since the announcement tells
// it.
bool House::open(Resident &resident)
{
    Virtual_Speaker &speaker = *resident.speaker;
    if (!speaker.start()) {
        const QString first_error = speaker.error();
        speaker.change([](Speaker_Config &config) { config.http_port = 0; });
        if (!speaker.start()) {
            reason = QString("%1: %2").arg(resident.name, first_error);
            return false;
        }
    }
    announce(resident);
    return true;
}

void House::announce(const Resident &resident)
{
    if (announcer)
        announcer->announce(resident.speaker->config(), resident.speaker->http_port());
}

const House::Resident *House::find(const QString &name) const
{
    for (const Resident &resident : residents)
        if (resident.name == name)
            return &resident;
    return nullptr;
}

QStringList House::names() const
{
    QStringList list;
    for (const Resident &resident : residents)
        list.append(resident.name);
    return list;
}

Virtual_Speaker *House::speaker(const QString &name) const
{
    const Resident *resident = find(name);
    return resident ? resident->speaker.get() : nullptr;
}

bool House::join(const QString &name)
{
    for (Resident &resident : residents)
        if (resident.name == name)
            return resident.speaker->running() || open(resident);
    return false;
}

void House::leave(const QString &name)
{
    if (Virtual_Speaker *leaving = speaker(name))
        leaving->stop();
}

bool House::move(const QString &name, const QString &address)
{
    const Resident *resident = find(name);
    if (!resident || !resident->speaker->set_address(address))
        return false;
    announce(*resident);
    return true;
}
