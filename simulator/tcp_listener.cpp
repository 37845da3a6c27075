// SPDX-License-Identifier: MIT
#include "simulator/tcp_listener.h"

#include <QHostAddress>
#include <QTcpSocket>

Tcp_Listener::Tcp_Listener(QObject *parent)
    : QObject(parent)
{
    connect(&server, &QTcpServer::newConnection, this, &Tcp_Listener::accept);
}

bool Tcp_Listener::open(const QString &address, quint16 port)
{
    return server.isListening() || server.listen(QHostAddress(address), port);
}

void Tcp_Listener::close()
{
    accept(); // whoever the system has already let in is a connection, and no refused attempt
    server.close();
}

void Tcp_Listener::accept()
{
    while (QTcpSocket *socket = server.nextPendingConnection())
        take(socket, ++last_id);
}
