// SPDX-License-Identifier: MIT
#include "simulator/download_server.h"

#include "simulator/bell.h"
#include "simulator/download_core.h"
#include "simulator/service_thread.h"

namespace
{
struct Fault_Word {
    const char *word;
    Download_Fault fault;
};

constexpr Fault_Word fault_words[] = {
    {"none", Download_Fault::none},
    {"not-found", Download_Fault::not_found},
    {"no-length", Download_Fault::no_length},
    {"redirect", Download_Fault::redirect},
    {"reset", Download_Fault::reset},
    {"empty", Download_Fault::empty},
    {"error-page", Download_Fault::error_page},
    {"slow", Download_Fault::slow},
    {"silent", Download_Fault::silent},
};
} // namespace

Download_Server::Download_Server(const Download_Config &config)
    : bell(std::make_unique<Bell>())
    , record(std::make_unique<Http_Record>(*bell))
    , thread(std::make_unique<Service_Thread>("download server"))
{
    thread->call([&] { core = new Download_Core(config, *record); });
}

Download_Server::~Download_Server()
{
    thread->call([&] { delete core; });
}

bool Download_Server::start()
{
    return thread->ask<bool>([&] { return core->server.open(core->config.address, core->config.port); });
}

bool Download_Server::start_on(quint16 port)
{
    return thread->ask<bool>([&] { return core->server.open(core->config.address, port); });
}

void Download_Server::stop()
{
    thread->call([&] {
        core->server.close();
        core->server.end_connections(false);
    });
}

QString Download_Server::error() const
{
    return thread->ask<QString>([&] { return core->server.error(); });
}

quint16 Download_Server::port() const
{
    return thread->ask<quint16>([&] { return core->server.port(); });
}

QString Download_Server::url() const
{
    const QString address = thread->ask<QString>([&] { return core->config.address; });
    return QString("http://%1:%2/current/").arg(address).arg(port());
}

QStringList Download_Server::model_codes()
{
    return {"vc3w",   "vc5w",   "vc7w",   "vc8w",   "vc9w",   "vs12w",   "vccw",   "vc11w",
            "vc3.3w", "vc5.3w", "vc7.3w", "vc8.3w", "vc9.3w", "vs12.3w", "vcc.3w", "vc11.3w"};
}

QByteArray Download_Server::file(const QString &name) const
{
    return thread->ask<QByteArray>([&] { return core->files.value(name); });
}

void Download_Server::set_file(const QString &name, const QByteArray &content)
{
    thread->call([&] { core->files.insert(name, content); });
}

void Download_Server::set_faults(const Download_Faults &faults)
{
    thread->call([&] { core->faults = faults; });
}

QList<Http_Request> Download_Server::requests() const
{
    return record->requests();
}

bool Download_Server::wait_for_requests(int count, int timeout_ms) const
{
    return bell->wait(timeout_ms, [&] { return record->requests().size() >= count; });
}

void Download_Server::clear_record()
{
    record->clear();
}

void Download_Server::set_event_sink(const std::function<void(const QString &)> &sink)
{
    thread->call([&] { core->event_sink = sink; });
}

bool set_download_fault(Download_Faults &faults, const QString &word)
{
    for (const Fault_Word &row : fault_words) {
        if (word == QLatin1String(row.word)) {
            faults.fault = row.fault;
            return true;
        }
    }
    return false;
}

QStringList download_fault_words()
{
    QStringList all;
    for (const Fault_Word &row : fault_words)
        all += QString::fromLatin1(row.word);
    return all;
}
