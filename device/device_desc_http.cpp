// SPDX-License-Identifier: MIT
// The HTTP side of Device_Desc: the one way out, the one parser, and the two information reads.

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QNetworkSession>

#include "app/globals.h"
#include "device/device_desc.h"

namespace
{
// Qt's HTTP threads make this type known when the first of them needs it, and two that do so at the same time
// let Qt complain on standard error. Known beforehand, it is left alone.
void make_session_type_known()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    static const int type = qRegisterMetaType<QSharedPointer<QNetworkSession>>();
    QT_WARNING_POP
    Q_UNUSED(type)
}
} // namespace

void Device_Desc::_request(QString url, QString body, const char *slot)
{
    resolve_started();
    requests_open++;
    request_serial++;
    qDebug() << "Device_Desc(" << name << ")::_request(" << url << "," << body << ") #" << request_serial
             << " started...";

    make_session_type_known();
    // One manager a request, so that no request queues behind another of the same speaker.
    auto *manager = new QNetworkAccessManager(this);
    QNetworkRequest request{QUrl(url)};
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("charset", "UTF-8"); // a header of its own: meant

    connect(manager, SIGNAL(finished(QNetworkReply *)), this, slot);
    // Runs behind the handler. A manager keeps a thread from its first request to its end.
    connect(manager, &QNetworkAccessManager::finished, this, [this, manager](QNetworkReply *reply) {
        requests_open--;
        reply->deleteLater();
        manager->deleteLater();
    });
    manager->post(request, body.toUtf8());
}

bool Device_Desc::parse_reply(QNetworkReply *reply, QJsonObject &object)
{
    const QByteArray bytes = reply->readAll();
    qDebug() << "Device_Desc(" << name << ") reply:" << bytes;

    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    object = document.object();
    if (!object.isEmpty())
        return true;

    qDebug() << (document.isNull() ? "Document is NULL" : "Object is empty");
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
