// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QPair>

#include "simulator/http_message.h"
#include "simulator/module_upgrade.h"
#include "simulator/speaker_config.h"
#include "simulator/speaker_faults.h"

// The JSON API of a speaker's Wi-Fi module: eight paths, each with its actions. Reads each body strictly,
// keeps the state and gives the answer. No sockets here. Belongs to the speaker's thread.
class Speaker_Api : public QObject
{
    Q_OBJECT

public:
    Speaker_Api(Speaker_Config &config, const Speaker_Faults &faults, QObject *parent);

    // Fills json_ok, json_error and action of the request; the body's object, empty where it is none.
    QJsonObject read(Http_Request &request) const;

    // Carries the request out. leaving is set when the speaker changes its network after this answer.
    Http_Reply answer(const Http_Request &request, const QJsonObject &object, bool *leaving);

    void set_reply(const QString &path, const QString &action, const QByteArray &body);
    void clear_reply(const QString &path, const QString &action);
    void restart(); // as after a power cycle: no upgrade, no added networks

signals:
    void event(const QString &text);

private:
    struct Action;
    struct Added_Network {
        QString ssid;
        Static_Address static_address;
    };
    static const Action *find_action(const QString &path, const QString &action, bool *known_path);

    QJsonObject device_info(const QJsonObject &object);
    QJsonObject set_device_name(const QJsonObject &object);
    QJsonObject network_info(const QJsonObject &object);
    QJsonObject wifi_scan(const QJsonObject &object);
    QJsonObject add_network(const QJsonObject &object);
    QJsonObject add_static_network(const QJsonObject &object);
    QJsonObject select_network(const QJsonObject &object);
    QJsonObject sender_status(const QJsonObject &object);
    QJsonObject sender_enable(const QJsonObject &object);
    QJsonObject sender_disable(const QJsonObject &object);
    QJsonObject sender_play(const QJsonObject &object);
    QJsonObject sender_stop(const QJsonObject &object);
    QJsonObject receiver_state(const QJsonObject &object);
    QJsonObject receiver_link(const QJsonObject &object);
    QJsonObject receiver_unlink(const QJsonObject &object);
    QJsonObject receiver_play(const QJsonObject &object);
    QJsonObject receiver_stop(const QJsonObject &object);
    QJsonObject set_bluetooth(const QJsonObject &object);
    QJsonObject set_url(const QJsonObject &object);
    QJsonObject query_status(const QJsonObject &object);

    Speaker_Config &config;
    const Speaker_Faults &faults;
    Module_Upgrade upgrade;
    QMap<QPair<QString, QString>, QByteArray> raw_replies;
    QMap<int, Added_Network> added_networks; // by id
    int last_network_id = 0;
    bool leave = false;
};
