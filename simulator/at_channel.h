// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "simulator/speaker_faults.h"
#include "simulator/tcp_port.h"

class Channel_Record;

// The AT channel (port 8991) of the Wi-Fi module: tells the serial line's settings and nothing else. Belongs
// to the speaker's thread.
class At_Channel : public QObject
{
    Q_OBJECT

public:
    At_Channel(const Speaker_Faults &faults, Channel_Record &record, QObject *parent);

    Tcp_Port port;

signals:
    void event(const QString &text);

private:
    void take(Tcp_Link *link, const QByteArray &line);

    const Speaker_Faults &faults;
};
