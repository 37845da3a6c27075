// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "simulator/channel_record.h"
#include "simulator/hex_image.h"
#include "simulator/http_message.h"
#include "simulator/speaker_config.h"
#include "simulator/speaker_faults.h"

class Speaker_Core;
class Service_Thread;
class Bell;
class Http_Record;

// A speaker on a loopback address: host channel (8990), AT channel (8991) and JSON API over HTTP. It is a
// real peer that holds its state and answers by it, records all that comes in, and misbehaves on demand. It
// does not announce itself; an Announcer does that for it.
//
// It runs on a thread of its own, so a test may block its own thread on it. All functions may be called from
// any thread but from the event sink; those that change something return when the change has happened. A
// QCoreApplication must exist. The destructor closes all ports and links.
class Virtual_Speaker
{
public:
    static constexpr int default_wait_ms = 5000;

    explicit Virtual_Speaker(const Speaker_Config &config);
    ~Virtual_Speaker();
    Virtual_Speaker(const Virtual_Speaker &) = delete;
    Virtual_Speaker &operator=(const Virtual_Speaker &) = delete;

    // Binds the three ports on the address, without those that a fault refuses. False if one is taken: then
    // none is open and error() says why. stop() closes ports and links, and start() brings the speaker back
    // as after a power cycle: same values, flash mode left, upgrade forgotten.
    bool start();
    void stop();
    bool running() const; // false also after a selected network made the speaker leave
    QString error() const;

    QString address() const;
    quint16 http_port() const; // the bound one; 0 while stopped
    // Moves a running speaker: links are cut, the HTTP port stays if it is free there. False, with the reason
    // in error(), if that is no IPv4 address or the ports are taken there: then the speaker is back where it
    // was.
    bool set_address(const QString &address);

    // State. Values are plain text as answers carry them: "37", "-5", "W". Keys are the two letters under
    // which the value is read; mute and lock are "MO" and "LO". Unknown letters read as a null text.
    QString value(const QString &letters) const;
    void set_value(const QString &letters, const QString &text);
    Speaker_Config config() const;
    void change(const std::function<void(Speaker_Config &)> &edit); // runs edit on the speaker's thread

    // Host channel. A line is complete with its line feed, flash lines included.
    QList<QByteArray> host_lines() const;
    QByteArray host_bytes() const;
    QList<Recorded_Line> timed_host_lines() const;
    QList<Recorded_Bytes> host_record() const; // both directions
    Connection_Count host_connections() const;
    QStringList host_complaints() const; // each frame that was not understood, or refused, with the reason
    void set_host_reply(const QString &query, const QByteArray &raw); // raw bytes instead of the answer to a
                                                                      // query such as "vo" or "STm"
    void clear_host_reply(const QString &query);
    void send_host(const QByteArray &raw); // unasked bytes to every open host link

    // Flash mode, entered by "FL"
    bool in_flash_mode() const;
    Hex_Image flash_image() const; // of the last flash

    // How often each came
    int beeps() const;
    int pings() const;

    // AT channel
    QByteArray at_bytes() const;
    QList<Recorded_Bytes> at_record() const;
    Connection_Count at_connections() const;

    // JSON API. Requests stand in order of their completion; bad ones are among them.
    QList<Http_Request> http_requests() const;
    QList<Http_Request> http_requests(const QString &action) const;
    Connection_Count http_connections() const;
    void set_http_reply(const QString &path, const QString &action,
                        const QByteArray &body); // replaces the answer;
                                                 // nothing is carried out
    void clear_http_reply(const QString &path, const QString &action);

    void clear_record(); // lines, bytes, complaints and requests; not the connection counts

    // Waits. Each returns at once when the condition holds already, and false after the time limit.
    bool wait_for_host_line(const QByteArray &line,
                            int timeout_ms = default_wait_ms) const;             // with its line feed
    bool wait_for_host_lines(int count, int timeout_ms = default_wait_ms) const; // at least so many
    bool wait_for_host_bytes(int count, int timeout_ms = default_wait_ms) const;
    bool wait_for_host_open(int count, int timeout_ms = default_wait_ms) const; // exactly so many open links
    bool wait_for_http_requests(int count, int timeout_ms = default_wait_ms) const;
    bool wait_for_value(const QString &letters, const QString &text, int timeout_ms = default_wait_ms) const;
    bool wait_until_stopped(int timeout_ms = default_wait_ms) const;
    bool wait_until(const std::function<bool()> &condition, int timeout_ms = default_wait_ms) const;

    // Faults
    void set_faults(const Speaker_Faults &faults);
    Speaker_Faults faults() const;
    void cut_link(Cut_How how); // all open host links, at once

    // Called on the speaker's thread for each event with one readable text, such as "<- RZ!vo037". Set before
    // start; must not call the speaker.
    void set_event_sink(const std::function<void(const QString &)> &sink);
    // Called on the speaker's thread whenever running() changes; must not call the speaker.
    void set_presence_sink(const std::function<void(bool)> &sink);

private:
    std::unique_ptr<Bell> bell;
    std::unique_ptr<Channel_Record> host;
    std::unique_ptr<Channel_Record> at;
    std::unique_ptr<Http_Record> http;
    std::unique_ptr<Service_Thread> thread;
    Speaker_Core *core = nullptr; // lives on the thread
};
