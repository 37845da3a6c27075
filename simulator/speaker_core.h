// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

#include "simulator/api_port.h"
#include "simulator/at_channel.h"
#include "simulator/host_channel.h"
#include "simulator/speaker_config.h"
#include "simulator/speaker_faults.h"

class Bell;
class Channel_Record;
class Http_Record;

// What Virtual_Speaker runs on its thread: the state, the three ports and the faults. Made, used and deleted
// on that thread only.
class Speaker_Core : public QObject
{
    Q_OBJECT

public:
    Speaker_Core(const Speaker_Config &config, Bell &bell, Channel_Record &host, Channel_Record &at,
                 Http_Record &http);
    ~Speaker_Core() override;

    bool start();
    void stop();
    bool move(const QString &address);
    void set_faults(const Speaker_Faults &wanted);

    Speaker_Config config;
    Speaker_Faults faults;
    bool running = false;
    quint16 bound_http_port = 0;
    QString error;
    Host_Channel host;
    At_Channel at;
    Api_Port api;
    std::function<void(const QString &)> event_sink;
    std::function<void(bool)> presence_sink;

private:
    bool settle(const QString &address, quint16 http_port);
    bool open_ports();
    void close_ports();
    void depart();
    void set_running(bool now);
    void tell(const QString &text);

    Bell &bell;
};
