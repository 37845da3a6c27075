// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>

#include "zeroconf/qzeroconfservice.h"

class QJsonObject;
class QNetworkReply;
class QTreeWidgetItem;
class Virelos;

// The record of one speaker, and the thread that finds out what kind of speaker it is. A record of a second
// kind stands for a group in the overview: it owns a Virelo_Group and has no service.
//
// Threads: everything on the GUI thread but run(), which writes cell_master, control and last_typed_device,
// reads ip and name, and counts. Failures leave fields empty and a log line; every activity counts in
// resolves_running exactly once up and once down, whatever comes.
class Device_Desc : public QThread
{
    Q_OBJECT

public:
    // For a group, `name` becomes groupname and name, and control a Virelo_Group that is not started.
    Device_Desc(QObject *parent, bool is_group, QString name);

    void run() override;

    void set_name(QString name);
    void set_ip(QString ip);
    void set_port(QString port);
    void set_port(int port);
    void set_QZeroConfService(
        QZeroConfService zcs); // once per record: fills it, posts the requests, starts the thread
    void make_urls();

    void resolve_started();  // any thread: one activity more
    void resolve_finished(); // any thread: one less; at 0 emits all_resolves_completed with resolves_mutex
                             // held, so a directly connected slot must not come back for the mutex

    void set_static_network(QString ip, QString netmask, QString gateway, QString domain, QString dns1,
                            QString dns2);
    void clear_static_network();

    // Posts `body` to `url`; `slot` is SLOT(...) of a handler that takes the QNetworkReply*. No timeout, no
    // retry.
    void _request(QString url, QString body, const char *slot);
    // False after a reply that is no JSON object or an empty one; then the activity has been counted down
    // already.
    bool parse_reply(QNetworkReply *reply, QJsonObject &object);

    void request_device_status();
    void request_network_status();
    void request_sender_status();
    void request_sender_enable(QString groupname, int mode); // the mode is stored but does not travel: meant
    void request_sender_disable();
    void request_sender_play();
    void request_sender_stop();
    void request_receiver_state();
    void request_receiver_link(QString uuid);
    void request_receiver_unlink();
    void request_receiver_play();
    void request_receiver_stop();
    void request_bluetooth_enable(); // discoverable and pairable for 600 seconds

    Virelos *control =
        nullptr; // null until run() has made it, whole, or the constructor for a group; never deleted
    bool is_group = false;
    bool cell_master = false;
    QTreeWidgetItem *tree_row = nullptr; // row in the overview, written there
    int tab_index = -1;                  // index of the settings tab, -1 until one is opened
    QString device_url;
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
    int signal = 0;
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
    int receiver_state = 0;  // 0 unlinked, 1 linked, 2 playing
    QString receiver_sender; // uuid of the sender that this receiver is linked to

signals:
    void all_resolves_completed();
    void one_resolve_completed(int running);
    void device_defect(Device_Desc *device);

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
};
