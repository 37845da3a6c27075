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
// log. Who asks for a speaker names it as the scene does, also after it was given another name over the
// network. One thread uses it, the one that made it; the log must outlive it.
class House
{
public:
    House(const Scene &scene, bool announce, Event_Log &log);
    ~House(); // everybody leaves

    // Starts all that are present, and the download server. False if an address or port is not to be had, or
    // if an announcement does not come to stand in time.
    bool start();
    QString error() const { return reason; } // of the last function that returned false

    QStringList names() const;                                          // in the scene's order
    Virtual_Speaker *speaker(const QString &name) const;                // null if there is none
    Download_Server *download_server() const { return download.get(); } // null if the scene has none

    // False, with the reason in error(), if there is no such speaker or its ports are not to be had.
    bool join(const QString &name);                         // opens the ports and announces
    bool move(const QString &name, const QString &address); // announces anew under the same host name
    bool leave(const QString &name);                        // closes the ports and withdraws

private:
    struct Resident {
        QString name; // as the scene has it
        bool there_from_start;
        std::unique_ptr<Virtual_Speaker> speaker;
    };
    void add_speaker(const Scene::Speaker &entry);
    void add_download_server(const Scene &scene);
    bool start_download_server();
    bool open(const Resident &resident);
    void announce(const Resident &resident);
    const Resident *find(const QString &name) const;
    bool refuse_stranger(const QString &name);

    Event_Log &log;
    QString reason;
    std::unique_ptr<Announcer> announcer; // null if nobody is announced
    std::vector<Resident> residents;
    std::unique_ptr<Download_Server> download;
};
