// SPDX-License-Identifier: MIT
#include "simulator/speaker_core.h"

#include <QHostAddress>

#include "simulator/bell.h"

Speaker_Core::Speaker_Core(const Speaker_Config &start_config, Bell &bell, Channel_Record &host_record,
                           Channel_Record &at_record, Http_Record &http_record)
    : config(start_config)
    , host(config, faults, host_record, this)
    , at(faults, at_record, this)
    , api(config, faults, http_record, this)
    , bell(bell)
{
    connect(&host, &Host_Channel::event, this, &Speaker_Core::tell);
    connect(&at, &At_Channel::event, this, &Speaker_Core::tell);
    connect(&api, &Api_Port::event, this, &Speaker_Core::tell);
    connect(&host, &Host_Channel::changed, this, [this] { this->bell.ring(); });
    connect(&api, &Api_Port::changed, this, [this] { this->bell.ring(); });
    connect(&api, &Api_Port::departed, this, &Speaker_Core::depart);
}

Speaker_Core::~Speaker_Core()
{
    close_ports();
}

bool Speaker_Core::start()
{
    if (running)
        return true;
    host.processor.restart();
    api.api.restart();
    set_running(settle(config.address, 0));
    return running;
}

void Speaker_Core::stop()
{
    close_ports();
    set_running(false);
}

bool Speaker_Core::move(const QString &address)
{
    if (QHostAddress(address).protocol() != QAbstractSocket::IPv4Protocol) {
        error = QString("\"%1\" is no address").arg(address);
        return false;
    }
    const QString old_address = config.address;
    const quint16 old_http_port = bound_http_port;
    if (!running) {
        config.address = address;
        return true;
    }
    close_ports();
    set_running(false); // whoever announces the speaker has to learn the new address
    const bool moved = settle(address, old_http_port) || settle(address, 0);
    const QString why = error;
    set_running(moved || settle(old_address, old_http_port));
    error = why;
    return moved;
}

// All ports or none. http_port is the one to take if the configuration names none; 0: any free one.
bool Speaker_Core::settle(const QString &address, quint16 http_port)
{
    config.address = address;
    bound_http_port = http_port;
    if (open_ports())
        return true;
    close_ports();
    return false;
}

void Speaker_Core::set_faults(const Speaker_Faults &wanted)
{
    faults = wanted;
    host.apply_faults();
    api.apply_faults();
    if (running && !open_ports())
        tell("!! " + error);
}

// Opens what should be open and closes what a fault refuses; what stands already stays.
bool Speaker_Core::open_ports()
{
    const auto bring = [this](auto &port, bool refused, quint16 number) {
        if (refused) {
            port.close();
            return true;
        }
        if (port.open(config.address, number))
            return true;
        error = QString("%1:%2: %3").arg(config.address).arg(number).arg(port.error());
        return false;
    };
    // A port that was free once is taken again, so that the announcement stays true.
    const quint16 http_number = bound_http_port ? bound_http_port : config.http_port;
    if (!bring(at.port, faults.at_refused, config.at_port) ||
        !bring(host.port, faults.host_refused, config.host_port))
        return false;
    if (faults.http_refused && !bound_http_port && !config.http_port) {
        api.server.open(config.address, 0); // any free port, so that there is one to refuse
        bound_http_port = api.server.port();
        api.server.close();
        return true;
    }
    if (!bring(api.server, faults.http_refused, http_number))
        return false;
    bound_http_port = api.server.listening() ? api.server.port() : http_number;
    return true;
}

void Speaker_Core::close_ports()
{
    at.port.close();
    host.port.close();
    api.server.close();
    api.drop_held();
    at.port.cut_all(Cut_How::fin);
    host.port.cut_all(Cut_How::fin);
    api.server.end_connections(false);
}

void Speaker_Core::depart()
{
    tell(QString("-- leaves its network for \"%1\"").arg(config.ssid));
    stop();
}

void Speaker_Core::set_running(bool now)
{
    if (running == now)
        return;
    running = now;
    if (presence_sink)
        presence_sink(running);
    bell.ring();
}

void Speaker_Core::tell(const QString &text)
{
    if (event_sink)
        event_sink(text);
}
