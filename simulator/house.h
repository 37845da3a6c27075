// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "simulator/announcer.h"
#include "simulator/download_server.h"
#include "simulator/scene.h"
#include "simulator/virtual_speaker.h"

class Event_Log;

// The speakers of a scene, alive: each on its address, announced while it is there, with its events in the
// log. One thread uses it, the one that made it.
class House
{
public:
    House(const Scene &scene, bool announce, Event_Log &log);
    ~House(); // everybody leaves

    // Starts all that are present, and the download server. False if an address or port is not to be had,
    // with the reason in error(), or if an announcement does not come to stand in time.
    bool start();
    QString error() const { return reason; }

    QStringList names() const;
    Virtual_Speaker *speaker(const QString &name) const;                // null if there is none
    Download_Server *download_server() const { return download.get(); } // null if the scene has none

    bool join(const QString &name); // opens the ports and announces
    void leave(const QString &name);
    bool move(const QString &name, const QString &address); // announces anew under the same host name

private:
    struct Resident {
        QString name;
        bool present;
        std::unique_ptr<Virtual_Speaker> speaker;
    };
    bool start_download_server();
    bool open(Resident &resident);
    void announce(const Resident &resident);
    const Resident *find(const QString &name) const;

    Event_Log &log;
    const Scene scene;
    QString reason;
    std::unique_ptr<Announcer> announcer; // goes after the speakers, which withdraw themselves through it
    std::vector<Resident> residents;
    std::unique_ptr<Download_Server> download;
};
