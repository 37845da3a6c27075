// SPDX-License-Identifier: MIT
#include "fuzz/dialog_reply.h"

#include <QNetworkAccessManager>

#include "fuzz/memory_reply.h"
#include "fuzz/require.h"

void hand_reply(QObject *dialog, const char *handler, const QByteArray &body)
{
    Memory_Reply reply(body);
    const bool called = QMetaObject::invokeMethod(
        dialog, handler, Qt::DirectConnection, Q_ARG(QNetworkReply *, static_cast<QNetworkReply *>(&reply)));
    require(called, "the handler is there");
}

int requests_of(const QObject *owner)
{
    return owner->findChildren<QNetworkAccessManager *>(QString(), Qt::FindDirectChildrenOnly).size();
}
