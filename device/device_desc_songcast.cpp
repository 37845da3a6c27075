// SPDX-License-Identifier: MIT
// The Songcast and bluetooth operations of Device_Desc. Bodies are exact texts of the protocol: their blanks
// differ from one to the next, and what is put into them is not escaped.

#include <QDebug>
#include <QJsonObject>
#include <QNetworkReply>

#include "app/globals.h"
#include "device/device_desc.h"

void Device_Desc::request_sender_status()
{
    _request(sender_url, R"({"action": "status"})", SLOT(replyFinished_sender(QNetworkReply *)));
}

void Device_Desc::request_sender_enable(QString groupname, int mode)
{
    this->groupname = groupname;
    sender_mode = mode;
    // Always mode 0 on the wire: meant.
    const QString body = R"({"action": "enable", "groupname": ")" + groupname + R"(", "mode": 0 })";
    qDebug() << "STRING:" << body;
    _request(sender_url, body, SLOT(replyFinished_sender_enable(QNetworkReply *)));
}

void Device_Desc::request_sender_disable()
{
    _request(sender_url, R"({"action": "disable"})", SLOT(replyFinished_sender_disable(QNetworkReply *)));
}

void Device_Desc::request_sender_play()
{
    _request(sender_url, R"({"action": "play"})", SLOT(replyFinished_sender_play(QNetworkReply *)));
}

void Device_Desc::request_sender_stop()
{
    _request(sender_url, R"({"action": "stop"})", SLOT(replyFinished_sender_stop(QNetworkReply *)));
}

void Device_Desc::request_receiver_state()
{
    _request(receiver_url, R"({"action": "state"})", SLOT(replyFinished_receiver(QNetworkReply *)));
}

void Device_Desc::request_receiver_link(QString uuid)
{
    receiver_sender = uuid;
    qDebug() << "linking receiver to" << uuid;
    _request(receiver_url, R"({"action": "link", "uuid": ")" + uuid + R"("})",
             SLOT(replyFinished_receiver_link(QNetworkReply *)));
}

void Device_Desc::request_receiver_unlink()
{
    _request(receiver_url, R"({"action": "unlink" })", SLOT(replyFinished_receiver_unlink(QNetworkReply *)));
}

void Device_Desc::request_receiver_play()
{
    _request(receiver_url, R"({"action": "play" })", SLOT(replyFinished_receiver_play(QNetworkReply *)));
}

void Device_Desc::request_receiver_stop()
{
    _request(receiver_url, R"({"action": "stop" })", SLOT(replyFinished_receiver_stop(QNetworkReply *)));
}

void Device_Desc::request_bluetooth_enable()
{
    qDebug() << "\n\nDevice_Desc(" << name << ")::BLUETOOTH request_bluetooth_enable!";
    _request(bluetooth_url,
             R"({ "action": "setproperties", "discoverable": true, "pairable": true, )"
             R"("discoverableTimeout": 600,  "pairableTimeout": 600 })",
             SLOT(replyFinished_bluetooth_enable(QNetworkReply *)));
}

void Device_Desc::replyFinished_sender(QNetworkReply *reply)
{
    QJsonObject object;
    if (!parse_reply(reply, object))
        return;

    sender_enabled = object.value("enabled").toBool();
    sender_state = object.value("state").toInt();
    sender_mode = object.value("mode").toInt();
    uuid = object.value("uuid").toString();
    groupname = object.value("groupname").toString();
    // A scan finds the group's master again from the speakers themselves. Never cleared here: another record
    // may be the master.
    if (sender_enabled)
        sender_device = this;
    resolve_finished();
}

void Device_Desc::replyFinished_receiver(QNetworkReply *reply)
{
    QJsonObject object;
    if (!parse_reply(reply, object))
        return;

    receiver_state = object.value("state").toInt();
    receiver_sender = object.value("sender").toString();
    resolve_finished();
}

void Device_Desc::command_finished(QNetworkReply *reply, const reply_effect &on_success,
                                   const reply_effect &on_error)
{
    QJsonObject object;
    if (!parse_reply(reply, object))
        return;

    const reply_effect &effect =
        object.value("returncode").toString() == QLatin1String("success") ? on_success : on_error;
    if (effect)
        effect(object);
    resolve_finished();
}

void Device_Desc::replyFinished_bluetooth_enable(QNetworkReply *reply)
{
    qDebug() << "\n\nDevice_Desc(" << name << ")::BLUETOOTH request_bluetooth_enable FINISHED!";
    command_finished(
        reply, [](const QJsonObject &) { qDebug() << "SUCCESS ENABLE BLUETOOTH receiver):"; },
        [](const QJsonObject &) { qDebug() << "ERROR ENABLE BLUETOOTH receiver):"; });
}

void Device_Desc::replyFinished_sender_enable(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &object) {
        uuid = object.value("uuid").toString();
        sender_enabled = true;
        sender_state = -1;
    });
}

void Device_Desc::replyFinished_sender_disable(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &) {
        sender_enabled = false;
        sender_state = -1;
    });
}

void Device_Desc::replyFinished_sender_play(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &) { sender_state = 2; });
}

void Device_Desc::replyFinished_sender_stop(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &object) {
        sender_state = 1;
        qDebug() << "enabled:" << (object.value("enabled").toBool() ? "true" : "false");
        qDebug() << "uuid:" << object.value("uuid").toString();
        qDebug() << "mode" << object.value("mode").toInt();
    });
}

void Device_Desc::replyFinished_receiver_link(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &) { receiver_state = 1; });
}

void Device_Desc::replyFinished_receiver_unlink(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &) { receiver_state = 0; });
}

void Device_Desc::replyFinished_receiver_play(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &) { receiver_state = 2; });
}

void Device_Desc::replyFinished_receiver_stop(QNetworkReply *reply)
{
    command_finished(reply, [this](const QJsonObject &) { receiver_state = 1; });
}
