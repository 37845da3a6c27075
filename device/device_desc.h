// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>
#include <functional>

#include "zeroconf/qzeroconfservice.h"

class QJsonObject;
class QNetworkReply;
class QTreeWidgetItem;
class Virelos;

// The record of one speaker, and the thread that finds out what kind of speaker it is. A record of a second
// kind stands for a group in the overview: it owns a Virelo_Group and has no service.
//
// Threads: everything on the GUI thread, which made the record, but run(). That one writes cell_master,
// control and last_typed_device, reads ip and name, and counts. Neighbouring classes read and write the
// public fields directly, and may find control null while the record is being identified.
//
// Failures leave fields as they were and a log line; nothing else tells of them. Every activity, a thread or
// an HTTP request, counts in resolves_running exactly once up and once down, whatever comes. An HTTP request
// has no time limit: a speaker that never answers keeps it, and the count, open.
class Device_Desc : public QThread
{
    Q_OBJECT

public:
    // For a group, `name` becomes groupname and name, and control a Virelo_Group that is not started; else
    // `name` is not used.
    Device_Desc(QObject *parent, bool is_group, QString name);

    // Requests in flight end without their handlers, and are counted down without a signal. A thread that
    // still runs is told to end and waited for, which may take long: see discard. Neither is to be called
    // from a slot of this record's signals, nor from a handler of its replies: the thread may be waiting for
    // the mutex held there. `control` stays.
    ~Device_Desc() override;
    // The way to delete a record that may still be busy: at once, or as soon as the thread, told to end, has
    // done so. Until then the record is deaf and mute: no handler runs, no signal is emitted.
    void discard();

    // The identification, blocking: reads the type in up to four tries, makes control and starts its worker.
    // Told to end, it makes no further try, and no control. Every path ends in resolve_finished.
    void run() override;

    void set_name(QString name);
    void set_ip(QString ip); // this one and set_port rebuild the URL table
    void set_port(QString port);
    void set_port(int port);
    // Once per record: fills it, posts the five status requests and starts the thread. Runs the event loop
    // once, so other slots may be called inside.
    void set_QZeroConfService(QZeroConfService zcs);
    void make_urls();

    void resolve_started(); // any thread: one activity more
    // Any thread: one less. At 0 emits all_resolves_completed with resolves_mutex held, so a directly
    // connected slot must neither post a request nor end one.
    void resolve_finished();

    // What the next WLAN change is to use. Nothing is refused: broadcast is computed from what parts of `ip`
    // and `netmask` are there, missing ones counting as 0.
    void set_static_network(QString ip, QString netmask, QString gateway, QString domain, QString dns1,
                            QString dns2);
    void clear_static_network(); // the values stay, only static_network falls

    // Posts `body` to `url`; `slot` is SLOT(...) of a handler that takes the QNetworkReply* and calls
    // resolve_finished once, by parse_reply or itself. No timeout, no retry, no redirects. Reply and manager
    // are freed after the handler.
    void _request(QString url, QString body, const char *slot);
    // False after a reply that is no JSON object or an empty one: then device_defect is out and the activity
    // counted down already.
    bool parse_reply(QNetworkReply *reply, QJsonObject &object);

    void request_device_status();
    void request_network_status();
    void request_sender_status();
    // Stores both at once, whatever the speaker will say. The mode does not travel: meant.
    void request_sender_enable(QString groupname, int mode);
    void request_sender_disable();
    void request_sender_play();
    void request_sender_stop();
    void request_receiver_state();
    void request_receiver_link(QString uuid); // stores receiver_sender at once
    void request_receiver_unlink();
    void request_receiver_play();
    void request_receiver_stop();
    void request_bluetooth_enable(); // discoverable and pairable for 600 seconds

    // Null until run() has made it, whole, or the constructor for a group. Lives on the thread that made the
    // record. Never deleted: its worker and a tab may outlive the record.
    Virelos *control = nullptr;
    bool is_group = false;
    bool cell_master = false; // host reply to "QO", written by run(): its own access point's master
    QTreeWidgetItem *tree_row = nullptr; // row in the overview, written there
    int tab_index = -1;                  // index of the settings tab, -1 until one is opened
    QString device_url;                  // this one to receiver_url: "http://" + ip + ":" + port + path
    QString configure_url;
    QString otaupgrade_url;
    QString network_url;
    QString wifi_url;
    QString bluetooth_url;
    QString sender_url;
    QString receiver_url;
    QString name;  // service name or group name
    QString ip;    // dotted
    QString port;  // HTTP, decimal
    QString model; // this one and the next two: device info reply
    QString firmware;
    QString hardware;
    QString wlan_mode; // this one to mac: network info reply; "AP" for a speaker with its own access point
    QString ssid;
    int signal = 0; // this one to bitrate: as the speaker reports, stations only
    int channelwidth = 0;
    float bitrate = 0;
    QString mac;
    bool static_network = false; // the next WLAN change uses the fields below
    QString static_ip;
    QString static_netmask;
    QString static_broadcast;
    QString static_gateway;
    QString static_domain;
    QString static_dns1;
    QString static_dns2;
    QString groupname; // this one to sender_state: sender status reply
    int sender_mode = 0;
    QString uuid;
    bool sender_enabled = false;
    int sender_state = 0;    // -1 after enable and disable, 1 stopped, 2 playing, else as reported
    int receiver_state = 0;  // receiver state reply: 0 unlinked, 1 linked, 2 playing
    QString receiver_sender; // receiver state reply: uuid of the sender that this receiver is linked to

signals:
    void all_resolves_completed();
    void one_resolve_completed(int running); // number of the record in order of arrival, from 1
    void device_defect(Device_Desc *device); // a reply that could not be used

public slots:
    void replyFinished_device_status(QNetworkReply *reply);
    void replyFinished_network_status(QNetworkReply *reply);
    void replyFinished_sender(QNetworkReply *reply);
    void replyFinished_receiver(QNetworkReply *reply);
    void replyFinished_bluetooth_enable(QNetworkReply *reply);
    void replyFinished_sender_enable(QNetworkReply *reply);
    void replyFinished_sender_disable(QNetworkReply *reply);
    void replyFinished_sender_play(QNetworkReply *reply);
    void replyFinished_sender_stop(QNetworkReply *reply);
    void replyFinished_receiver_link(QNetworkReply *reply);
    void replyFinished_receiver_unlink(QNetworkReply *reply);
    void replyFinished_receiver_play(QNetworkReply *reply);
    void replyFinished_receiver_stop(QNetworkReply *reply);

private:
    using reply_effect = std::function<void(const QJsonObject &)>;

    void identify();
    void publish_control(Virelos *made, bool with_worker);
    // The common form of the handlers of commands: one of the two runs, by the reply's "returncode".
    void command_finished(QNetworkReply *reply, const reply_effect &on_success,
                          const reply_effect &on_error = nullptr);

    void drop_requests();

    int requests_open = 0; // HTTP requests in flight
};
