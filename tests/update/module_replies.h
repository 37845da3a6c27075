// SPDX-License-Identifier: MIT
#pragma once

#include <QChildEvent>
#include <QNetworkReply>
#include <algorithm>
#include <functional>

#include "tests/update/update_world.h"

// What a module says to its upgrade, and how it gets to the dialog.

inline const QByteArray success = R"({"returncode": "success"})";
inline const QByteArray poll_body = "{\"action\": \"querystatus\"} ";

inline QByteArray status_reply(const QByteArray &status, const QByteArray &errinfo = "0",
                               const QByteArray &progress = "0")
{
    return R"({"status": ")" + status + R"(", "errinfo": ")" + errinfo + R"(", "downprogress": ")" +
           progress + R"("})";
}

// A reply that is there already.
class Ready_Reply : public QNetworkReply
{
public:
    explicit Ready_Reply(const QByteArray &body)
        : rest(body)
    {
        open(QIODevice::ReadOnly);
    }
    void abort() override {}
    qint64 bytesAvailable() const override { return rest.size() + QNetworkReply::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const int count = static_cast<int>(qMin<qint64>(size, rest.size()));
        std::copy_n(rest.constData(), count, data);
        rest.remove(0, count);
        return count;
    }

private:
    QByteArray rest;
};

inline void hand_over(const Update_World &world, const char *slot, const QByteArray &body)
{
    Ready_Reply reply(body);
    QVERIFY(QMetaObject::invokeMethod(world.dialog.get(), slot,
                                      Q_ARG(QNetworkReply *, static_cast<QNetworkReply *>(&reply))));
}

// Tells when a request is made: each has a manager of its own, a child of the dialog.
class Request_Watch : public QObject
{
public:
    explicit Request_Watch(QObject *dialog) { dialog->installEventFilter(this); }

    std::function<void()> on_request;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded &&
            !static_cast<QChildEvent *>(event)->child()->isWidgetType())
            on_request();
        return false;
    }
};
