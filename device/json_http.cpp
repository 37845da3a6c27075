// SPDX-License-Identifier: MIT
#include "device/json_http.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QNetworkSession>

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

QNetworkAccessManager *post_json(QObject *owner, const QString &url, const QString &body,
                                 const char *content_type, const char *slot)
{
    make_session_type_known();
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
    return manager;
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
