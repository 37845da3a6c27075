// SPDX-License-Identifier: MIT
// The HTTP side of Device_Desc: the one way out, the one parser, and the two information reads.

#include <QDebug>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include "app/globals.h"
#include "device/device_desc.h"
#include "device/json_http.h"

void Device_Desc::_request(QString url, QString body, const char *slot)
{
    resolve_started();
    requests_open++;
    request_serial++;
    qDebug() << "Device_Desc(" << name << ")::_request(" << url << "," << body << ") #" << request_serial
             << " started...";

    const QNetworkAccessManager *manager = post_json(this, url, body, "application/json", slot);
    // Runs behind the handler.
    connect(manager, &QNetworkAccessManager::finished, this, [this] { requests_open--; });
}

bool Device_Desc::parse_reply(QNetworkReply *reply, QJsonObject &object)
{
    const QByteArray bytes = reply->readAll();
    qDebug() << "Device_Desc(" << name << ") reply:" << bytes;

    if (read_json_object(bytes, object))
        return true;

    emit device_defect(this);
    resolve_finished();
    return false;
}

void Device_Desc::request_device_status()
{
    _request(device_url, R"({"action": "info"})", SLOT(replyFinished_device_status(QNetworkReply *)));
}

void Device_Desc::request_network_status()
{
    _request(network_url, R"({"action": "info"})", SLOT(replyFinished_network_status(QNetworkReply *)));
}

void Device_Desc::replyFinished_device_status(QNetworkReply *reply)
{
    QJsonObject object;
    if (!parse_reply(reply, object))
        return;

    model = object.value("model").toString();
    firmware = object.value("firmware").toString();
    hardware = object.value("hardware").toString();
    resolve_finished();
}

void Device_Desc::replyFinished_network_status(QNetworkReply *reply)
{
    QJsonObject object;
    if (!parse_reply(reply, object))
        return;

    const QJsonValue wlan = object.value("wlan");
    if (wlan == QJsonValue(QJsonValue::Undefined)) {
        qDebug() << "NO wlan Object in response...";
        resolve_finished();
        return;
    }
    const QJsonObject wlan_object = wlan.toObject();
    wlan_mode = wlan_object.value("mode").toString();
    ssid = wlan_object.value("ssid").toString();
    mac = wlan_object.value("mac").toString();

    // The ordinary case of a speaker in access point mode: it is no station.
    const QJsonValue stationinfo = wlan_object.value("stationinfo");
    if (stationinfo == QJsonValue(QJsonValue::Undefined)) {
        qDebug() << "NO stationinfo Object in response...";
        resolve_finished();
        return;
    }
    const QJsonObject station = stationinfo.toObject();
    signal = station.value("signal").toInt();
    channelwidth = station.value("channelwidth").toInt();
    bitrate = static_cast<float>(station.value("bitrate").toDouble());
    resolve_finished();
}
