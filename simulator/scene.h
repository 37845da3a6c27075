// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "simulator/download_server.h"
#include "simulator/speaker_config.h"
#include "simulator/speaker_faults.h"

// A house of virtual speakers, as read from a JSON text. A plain value.
struct Scene {
    struct Speaker {
        Speaker_Config config;
        Speaker_Faults faults;
        bool present = true; // false: it is there only after "join"
    };
    QString about; // one line for who chooses among scenes
    QList<Speaker> speakers;
    bool has_download_server = false;
    Download_Config download;
    Download_Faults download_faults;
};

// Reads a scene; false with the reason in error. Strict: what is no JSON by the letter, an unknown key, a
// wrong type, a number out of range, a fault that is none, a host value that the speaker does not have, or
// two speakers of one name or address are refused. Pure; any thread.
bool read_scene(const QByteArray &json, Scene &scene, QString *error);

// The keys of a scene, one a line, for who writes one.
QStringList scene_help();

// The scenes that come along, by name; load_scene takes such a name or the path of a file.
QStringList scene_names();
bool load_scene(const QString &name_or_path, Scene &scene, QString *error);
