// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

#include "simulator/host_processor.h"
#include "simulator/speaker_faults.h"
#include "simulator/tcp_port.h"

class Channel_Record;
class Tcp_Link;

// The host channel (port 8990): brings lines to the amplifier processor and its answers back, through the
// faults. Belongs to the speaker's thread.
class Host_Channel : public QObject
{
    Q_OBJECT

public:
    Host_Channel(Speaker_Config &config, Speaker_Faults &faults, Channel_Record &record, QObject *parent);

    void apply_faults(); // after a change of the faults: how the open links read
    void send_all(const QByteArray &raw);

    Tcp_Port port;
    Host_Processor processor;

signals:
    void event(const QString &text); // for the log
    void changed();                  // the processor took a line

private:
    void link_opened(Tcp_Link *link);
    void link_closed(Tcp_Link *link);
    QByteArray carry_out(const QByteArray &line); // as Host_Processor::take, and tells what came of it
    void set_reading(Tcp_Link *link) const;
    void take_begin(Tcp_Link *link, const QByteArray &begin);
    void take(Tcp_Link *link, const QByteArray &line);
    void answer(Tcp_Link *link, QByteArray frame, bool shaped, int delay_ms);
    QByteArray shape(QByteArray frame) const;
    bool cut_due(Cut when) const;
    void cut(Tcp_Link *link);

    const Speaker_Config &config;
    Speaker_Faults &faults; // host_cut_left is counted down here
};
