// SPDX-License-Identifier: MIT
#include "simulator/house.h"

#include "simulator/event_log.h"

House::House(const Scene &scene, bool announce, Event_Log &log)
    : log(log)
{
    if (announce)
        announcer = std::make_unique<Announcer>([&log](const QString &text) { log.event("dns-sd", text); });
    for (const Scene::Speaker &entry : scene.speakers)
        add_speaker(entry);
    if (scene.has_download_server)
        add_download_server(scene);
}

House::~House()
{
    // Nobody withdraws one by one; the announcer takes all announcements with it.
    for (const Resident &resident : residents) {
        resident.speaker->set_presence_sink({});
        resident.speaker->stop();
    }
}

void House::add_speaker(const Scene::Speaker &entry)
{
    const QString name = entry.config.name;
    auto speaker = std::make_unique<Virtual_Speaker>(entry.config);
    speaker->set_faults(entry.faults);
    speaker->set_event_sink([this, name](const QString &text) { log.event(name, text); });
    // A speaker that is told to select a network leaves by itself.
    speaker->set_presence_sink([this, name](bool there) {
        log.event(name, there ? "is there" : "has left");
        if (!there && announcer)
            announcer->withdraw(name);
    });
    residents.push_back({name, entry.present, std::move(speaker)});
}

void House::add_download_server(const Scene &scene)
{
    download = std::make_unique<Download_Server>(scene.download);
    download->set_faults(scene.download_faults);
    download->set_event_sink([this](const QString &text) { log.event("download server", text); });
}

bool House::start()
{
    if (download && !start_download_server())
        return false;
    for (const Resident &resident : residents)
        if (resident.there_from_start && !open(resident))
            return false;
    if (announcer && !announcer->wait_until_established()) {
        reason =
            "the announcements do not come to stand; is avahi-daemon running? --no-announce does without";
        return false;
    }
    return true;
}

// A port below 1024 may be closed to who runs this; any free one serves as well, since the log tells it.
bool House::start_download_server()
{
    if (!download->start()) {
        reason = "download server: " + download->error();
        if (!download->start_on(0))
            return false;
    }
    log.event("download server", "serves " + download->url());
    return true;
}

// The same here, since the announcement tells it.
bool House::open(const Resident &resident)
{
    Virtual_Speaker &speaker = *resident.speaker;
    if (!speaker.start()) {
        reason = resident.name + ": " + speaker.error();
        speaker.change([](Speaker_Config &config) { config.http_port = 0; });
        if (!speaker.start())
            return false;
        log.event(resident.name,
                  QString("-- its HTTP port is closed to us; it takes %1").arg(speaker.http_port()));
    }
    announce(resident);
    return true;
}

void House::announce(const Resident &resident)
{
    const Virtual_Speaker &speaker = *resident.speaker;
    if (announcer && speaker.running())
        announcer->announce(resident.name, speaker.config(), speaker.http_port());
}

QStringList House::names() const
{
    QStringList list;
    for (const Resident &resident : residents)
        list += resident.name;
    return list;
}

const House::Resident *House::find(const QString &name) const
{
    for (const Resident &resident : residents)
        if (resident.name == name)
            return &resident;
    return nullptr;
}

Virtual_Speaker *House::speaker(const QString &name) const
{
    const Resident *resident = find(name);
    return resident ? resident->speaker.get() : nullptr;
}

bool House::join(const QString &name)
{
    const Resident *resident = find(name);
    if (!resident)
        return refuse_stranger(name);
    return resident->speaker->running() || open(*resident);
}

bool House::move(const QString &name, const QString &address)
{
    const Resident *resident = find(name);
    if (!resident)
        return refuse_stranger(name);
    const bool moved = resident->speaker->set_address(address);
    if (!moved)
        reason = resident->speaker->error();
    announce(*resident); // also where it had to come back
    return moved;
}

bool House::leave(const QString &name)
{
    const Resident *resident = find(name);
    if (!resident)
        return refuse_stranger(name);
    resident->speaker->stop();
    return true;
}

bool House::refuse_stranger(const QString &name)
{
    reason = QString("there is no speaker \"%1\"").arg(name);
    return false;
}
