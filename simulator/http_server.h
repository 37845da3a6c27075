// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>

#include "simulator/http_message.h"

class Http_Connection;
class Http_Record;

// A small HTTP/1.1 server that hands out whole requests. Connections are counted in the record; who takes the
// requests adds them to it. Belongs to the thread that it was made on.
class Http_Server : public QObject
{
    Q_OBJECT

public:
    Http_Server(Http_Record &record, QObject *parent);

    // Listens on the address; already there, does nothing. False, with the reason in error(), if it cannot.
    bool open(const QString &address, quint16 port);
    void close();                     // attempts are refused from now on; connections stay
    void end_connections(bool reset); // by a reset, or in order when all that was sent has left
    bool listening() const { return server.isListening(); }
    quint16 port() const { return server.serverPort(); }
    QString error() const { return server.errorString(); }

signals:
    void requested(Http_Connection *connection, const Http_Request &request);

private:
    void accept();
    void forget(Http_Connection *connection);

    Http_Record &record;
    QTcpServer server;
    QList<Http_Connection *> connections;
    int last_id = 0;
};
