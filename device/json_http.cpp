// SPDX-License-Identifier: MIT
#include "device/json_http.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QNetworkSession>
#include <QPointer>
#include <QQueue>
#include <QTimer>

#include "app/rzplattform.h"

namespace
{
// Bytes. A speaker's longest reply is far shorter. One of this size is parsed before a user notices.
constexpr qint64 reply_max = 1024LL * 1024;

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

// Frees managers that are done, one in each pass of the event loop. Each waits for its HTTP thread to end:
// with a house full of speakers hundreds are done at once, and the window would not answer until all had
// waited. A manager that its owner has freed meanwhile is passed over.
class Manager_Disposal
{
public:
    Manager_Disposal()
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { free_next(); });
    }

    void take(QNetworkAccessManager *manager)
    {
        managers.enqueue(manager);
        timer.start(0);
    }

private:
    void free_next()
    {
        delete managers.dequeue().data();
        ++freed;
        if (!managers.isEmpty())
            return;
        timer.stop();
        if (freed >= burst)
            rzplattform::give_memory_back(); // of some hundred threads that have ended
        freed = 0;
    }

    static constexpr int burst = 50; // as many as ten speakers bring
    int freed = 0;                   // since there was nothing left to free
    QQueue<QPointer<QNetworkAccessManager>> managers;
    QTimer timer;
};

// Never freed: the last managers may be done at any time before the process ends.
Manager_Disposal &disposal()
{
    static auto *const the_disposal = new Manager_Disposal;
    return *the_disposal;
}

// What is dropped leaves the rest no document. The reply is not aborted: it ends when the speaker ends it, as
// every other does, and stays readable.
void drop_endless(QNetworkReply *reply)
{
    // Else Qt's thread piles up what this one has not taken yet. It does not hear of the size before it has
    // begun.
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply,
                     [reply] { reply->setReadBufferSize(2 * reply_max); });
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply] {
        if (reply->bytesAvailable() > reply_max)
            reply->readAll();
    });
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
    QObject::connect(manager, &QNetworkAccessManager::finished, manager,
                     [manager] { disposal().take(manager); });
    drop_endless(manager->post(request, body.toUtf8()));
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

QJsonObject read_json_reply(QNetworkReply *reply, const char *words)
{
    const QByteArray bytes = reply->readAll();
    qDebug() << words << QString::fromUtf8(bytes.constData());
    QJsonObject object;
    read_json_object(bytes, object);
    return object;
}
