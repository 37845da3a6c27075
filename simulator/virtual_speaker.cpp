// SPDX-License-Identifier: MIT
#include "simulator/virtual_speaker.h"

#include "simulator/bell.h"
#include "simulator/http_record.h"
#include "simulator/service_thread.h"
#include "simulator/speaker_core.h"

Virtual_Speaker::Virtual_Speaker(const Speaker_Config &config)
    : bell(std::make_unique<Bell>())
    , host(std::make_unique<Channel_Record>(*bell))
    , at(std::make_unique<Channel_Record>(*bell))
    , http(std::make_unique<Http_Record>(*bell))
    , thread(std::make_unique<Service_Thread>("speaker"))
{
    thread->call([&] { core = new Speaker_Core(config, *bell, *host, *at, *http); });
}

Virtual_Speaker::~Virtual_Speaker()
{
    thread->call([&] { delete core; });
}

bool Virtual_Speaker::start()
{
    return thread->ask<bool>([&] { return core->start(); });
}

void Virtual_Speaker::stop()
{
    thread->call([&] { core->stop(); });
}

bool Virtual_Speaker::running() const
{
    return thread->ask<bool>([&] { return core->running; });
}

QString Virtual_Speaker::error() const
{
    return thread->ask<QString>([&] { return core->error; });
}

QString Virtual_Speaker::address() const
{
    return thread->ask<QString>([&] { return core->config.address; });
}

quint16 Virtual_Speaker::http_port() const
{
    return thread->ask<quint16>([&] { return core->running ? core->bound_http_port : quint16(0); });
}

bool Virtual_Speaker::set_address(const QString &address)
{
    return thread->ask<bool>([&] { return core->move(address); });
}

QString Virtual_Speaker::value(const QString &letters) const
{
    return thread->ask<QString>([&] { return core->host.processor.value(letters); });
}

void Virtual_Speaker::set_value(const QString &letters, const QString &text)
{
    thread->call([&] { core->host.processor.set_value(letters, text); });
    bell->ring();
}

Speaker_Config Virtual_Speaker::config() const
{
    return thread->ask<Speaker_Config>([&] { return core->config; });
}

void Virtual_Speaker::change(const std::function<void(Speaker_Config &)> &edit)
{
    thread->call([&] { edit(core->config); });
    bell->ring();
}

QList<QByteArray> Virtual_Speaker::host_lines() const
{
    return host->lines();
}

QByteArray Virtual_Speaker::host_bytes() const
{
    return host->incoming();
}

QList<Recorded_Line> Virtual_Speaker::timed_host_lines() const
{
    return host->timed_lines();
}

QList<Recorded_Bytes> Virtual_Speaker::host_record() const
{
    return host->pieces();
}

Connection_Count Virtual_Speaker::host_connections() const
{
    return host->connections();
}

QStringList Virtual_Speaker::host_complaints() const
{
    return thread->ask<QStringList>([&] { return core->host.processor.complaints; });
}

void Virtual_Speaker::set_host_reply(const QString &query, const QByteArray &raw)
{
    thread->call([&] { core->host.processor.set_reply(query, raw); });
}

void Virtual_Speaker::clear_host_reply(const QString &query)
{
    thread->call([&] { core->host.processor.clear_reply(query); });
}

void Virtual_Speaker::send_host(const QByteArray &raw)
{
    thread->call([&] { core->host.send_all(raw); });
}

bool Virtual_Speaker::in_flash_mode() const
{
    return thread->ask<bool>([&] { return core->host.processor.flashing; });
}

Hex_Image Virtual_Speaker::flash_image() const
{
    return thread->ask<Hex_Image>([&] { return core->host.processor.image; });
}

int Virtual_Speaker::beeps() const
{
    return thread->ask<int>([&] { return core->host.processor.beeps; });
}

int Virtual_Speaker::pings() const
{
    return thread->ask<int>([&] { return core->host.processor.pings; });
}

QByteArray Virtual_Speaker::at_bytes() const
{
    return at->incoming();
}

QList<Recorded_Bytes> Virtual_Speaker::at_record() const
{
    return at->pieces();
}

Connection_Count Virtual_Speaker::at_connections() const
{
    return at->connections();
}

QList<Http_Request> Virtual_Speaker::http_requests() const
{
    return http->requests();
}

QList<Http_Request> Virtual_Speaker::http_requests(const QString &action) const
{
    QList<Http_Request> found;
    for (const Http_Request &request : http->requests())
        if (request.action == action)
            found.append(request);
    return found;
}

Connection_Count Virtual_Speaker::http_connections() const
{
    return http->connections();
}

void Virtual_Speaker::set_http_reply(const QString &path, const QString &action, const QByteArray &body)
{
    thread->call([&] { core->api.api.set_reply(path, action, body); });
}

void Virtual_Speaker::clear_http_reply(const QString &path, const QString &action)
{
    thread->call([&] { core->api.api.clear_reply(path, action); });
}

void Virtual_Speaker::clear_record()
{
    thread->call([&] {
        host->clear();
        at->clear();
        http->clear();
        core->host.processor.complaints.clear();
    });
}

bool Virtual_Speaker::wait_for_host_line(const QByteArray &line, int timeout_ms) const
{
    return wait_until([&] { return host->lines().contains(line); }, timeout_ms);
}

bool Virtual_Speaker::wait_for_host_lines(int count, int timeout_ms) const
{
    return wait_until([&] { return host->timed_lines().size() >= count; }, timeout_ms);
}

bool Virtual_Speaker::wait_for_host_bytes(int count, int timeout_ms) const
{
    return wait_until([&] { return host->incoming().size() >= count; }, timeout_ms);
}

bool Virtual_Speaker::wait_for_host_open(int count, int timeout_ms) const
{
    return wait_until([&] { return host->connections().open == count; }, timeout_ms);
}

bool Virtual_Speaker::wait_for_http_requests(int count, int timeout_ms) const
{
    return wait_until([&] { return http->requests().size() >= count; }, timeout_ms);
}

bool Virtual_Speaker::wait_for_value(const QString &letters, const QString &text, int timeout_ms) const
{
    return wait_until([&] { return value(letters) == text; }, timeout_ms);
}

bool Virtual_Speaker::wait_until_stopped(int timeout_ms) const
{
    return wait_until([&] { return !running(); }, timeout_ms);
}

bool Virtual_Speaker::wait_until(const std::function<bool()> &condition, int timeout_ms) const
{
    return bell->wait(timeout_ms, condition);
}

void Virtual_Speaker::set_faults(const Speaker_Faults &faults)
{
    thread->call([&] { core->set_faults(faults); });
}

Speaker_Faults Virtual_Speaker::faults() const
{
    return thread->ask<Speaker_Faults>([&] { return core->faults; });
}

void Virtual_Speaker::cut_link(Cut_How how)
{
    thread->call([&] { core->host.port.cut_all(how); });
}

void Virtual_Speaker::set_event_sink(const std::function<void(const QString &)> &sink)
{
    thread->call([&] { core->event_sink = sink; });
}

void Virtual_Speaker::set_presence_sink(const std::function<void(bool)> &sink)
{
    thread->call([&] { core->presence_sink = sink; });
}
