// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "simulator/http_message.h"
#include "simulator/http_record.h"

class Bell;
class Download_Core;
class Service_Thread;

// What a virtual download server stands on and serves.
struct Download_Config {
    QString address = "127.0.0.1";
    quint16 port = 0; // 0: any free one
    int swu_size = 200000;
    int hex_lines = 100;
    QByteArray hex_line_end = "\r\n";
    QMap<QString, QString> files; // name to content: further ones, or in place of made ones
};

// What a download server does instead of serving.
enum class Download_Fault { none, not_found, no_length, redirect, reset, empty, error_page, slow, silent };

struct Download_Faults {
    Download_Fault fault = Download_Fault::none;
    QString only_method;   // "HEAD" or "GET": the fault is limited to it; empty: both
    int reset_after = 500; // bytes of the body that leave before the reset
    int slow_chunk = 1000; // bytes a chunk
    int slow_gap_ms = 5;   // before each chunk
};

// The maker's firmware download server on a loopback address: "ventaro.swu" and "<model code>_host.hex" for
// every model code, under "/current/", by HEAD and GET. Content is made, not read: the same at every run, and
// valid Intel HEX. It runs on a thread of its own; all functions may be called from any thread but from the
// event sink.
class Download_Server
{
public:
    explicit Download_Server(const Download_Config &config);
    ~Download_Server();
    Download_Server(const Download_Server &) = delete;
    Download_Server &operator=(const Download_Server &) = delete;

    bool start();                // false if the port is taken; error() says why
    bool start_on(quint16 port); // the same on that port in place of the configured one
    void stop();
    QString error() const;
    quint16 port() const;
    QString url() const; // "http://address:port/current/"

    static QStringList model_codes();
    QByteArray file(const QString &name) const; // the content; null if there is no such file
    void set_file(const QString &name, const QByteArray &content); // adds or replaces one

    void set_faults(const Download_Faults &faults);
    QList<Http_Request> requests() const;
    bool wait_for_requests(int count, int timeout_ms = 5000) const;
    void clear_record();
    void set_event_sink(const std::function<void(const QString &)> &sink); // as in Virtual_Speaker

private:
    std::unique_ptr<Bell> bell;
    std::unique_ptr<Http_Record> record;
    std::unique_ptr<Service_Thread> thread;
    Download_Core *core = nullptr; // lives on the thread
};

// Sets the fault by its word: none, not-found, no-length, redirect, reset, empty, error-page, slow, silent.
// False for another word.
bool set_download_fault(Download_Faults &faults, const QString &word);
QStringList download_fault_words();
