// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "simulator/http_message.h"
#include "simulator/tcp_listener.h"

class Http_Connection;
class Http_Record;

// A small HTTP/1.1 server that hands out whole requests. Connections are counted in the record; who takes the
// requests adds them to it. Belongs to the thread that it was made on.
class Http_Server : public Tcp_Listener
{
    Q_OBJECT

public:
    Http_Server(Http_Record &record, QObject *parent);

    void end_connections(bool reset); // by a reset, or in order when all that was sent has left

signals:
    void requested(Http_Connection *connection, const Http_Request &request);

private:
    void take(QTcpSocket *socket, int id) override;
    void forget(Http_Connection *connection);

    Http_Record &record;
    QList<Http_Connection *> connections;
};
