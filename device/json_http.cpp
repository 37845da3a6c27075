// SPDX-License-Identifier: MIT
#include "device/json_http.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

void post_json(QObject *owner, const QString &url, const QString &body, const char *content_type,
               const char *slot)
{
    auto *manager = new QNetworkAccessManager(owner);
    QNetworkRequest request{QUrl(url)};
    request.setRawHeader("Content-Type", content_type);
    request.setRawHeader("charset", "UTF-8"); // a header of its own: meant

    QObject::connect(manager, SIGNAL(finished(QNetworkReply *)), owner, slot);
    // Runs behind the slot. A manager keeps a thread from its first request to its end.
    QObject::connect(manager, &QNetworkAccessManager::finished, manager, [manager](QNetworkReply *reply) {
        reply->deleteLater();
        manager->deleteLater();
    });
    manager->post(request, body.toUtf8());
}

bool read_json_object(const QByteArray &bytes, QJsonObject &object)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    object = document.object();
    if (!object.isEmpty())
        return true;
    qDebug() << (document.isNull() ? "Document is NULL" : "Object is empty");
    return false;
}
