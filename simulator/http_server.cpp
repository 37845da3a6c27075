// SPDX-License-Identifier: MIT
#include "simulator/http_server.h"

#include <QHostAddress>
#include <QTcpSocket>

#include "simulator/http_connection.h"
#include "simulator/http_record.h"

Http_Server::Http_Server(Http_Record &record, QObject *parent)
    : QObject(parent)
    , record(record)
{
    connect(&server, &QTcpServer::newConnection, this, &Http_Server::accept);
}

bool Http_Server::open(const QString &address, quint16 port)
{
    return server.isListening() || server.listen(QHostAddress(address), port);
}

void Http_Server::close()
{
    accept(); // whoever the system has already let in is a connection, and no refused attempt
    server.close();
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

void Http_Server::accept()
{
    while (QTcpSocket *socket = server.nextPendingConnection()) {
        auto *connection = new Http_Connection(socket, ++last_id, this);
        connections.append(connection);
        record.opened();
        connect(connection, &Http_Connection::requested, this, &Http_Server::requested);
        connect(connection, &Http_Connection::closed, this, &Http_Server::forget);
    }
}

void Http_Server::forget(Http_Connection *connection)
{
    connections.removeOne(connection);
    record.closed();
    connection->deleteLater();
}
