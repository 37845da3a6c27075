// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "tests/device/http_peer.h"
#include "tests/overview/overview_world.h"

class Device_Desc;
struct QMetaObject;

// What the dialogs of the network setup stand on, for the length of one test: what start-up makes, and a
// record whose speaker is `peer`. Afterwards all dialogs of the three kinds are gone, whoever made them, and
// their globals are null. GUI thread only.
class Wlan_World
{
public:
    explicit Wlan_World(int device_class = 0);
    ~Wlan_World();

    Overview_World start_up;
    Http_Peer peer; // at own_loopback(1)
    Device_Desc *record;
};

QString reply_line(const char *words, const QString &text); // as a reply is logged
// "RETURN NAME(ARGUMENTS)" of each method that the class itself has, in order, with "private " in front where
// it is.
QStringList own_methods(const QMetaObject &meta);
