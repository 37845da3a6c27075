// SPDX-License-Identifier: MIT
#include "simulator/http_server.h"

#include "simulator/http_connection.h"
#include "simulator/http_record.h"

Http_Server::Http_Server(Http_Record &record, QObject *parent)
    : Tcp_Listener(parent)
    , record(record)
{
}

void Http_Server::end_connections(bool reset)
{
    const QList<Http_Connection *> all = connections; // each end takes its connection from the list
    for (Http_Connection *connection : all)
        if (reset)
            connection->reset();
        else
            connection->close();
}

void Http_Server::take(QTcpSocket *socket, int id)
{
    auto *connection = new Http_Connection(socket, id, this);
    connections.append(connection);
    record.opened();
    connect(connection, &Http_Connection::requested, this, &Http_Server::requested);
    connect(connection, &Http_Connection::closed, this, &Http_Server::forget);
}

void Http_Server::forget(Http_Connection *connection)
{
    connections.removeOne(connection);
    record.closed();
    connection->deleteLater();
}
