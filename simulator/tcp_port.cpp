// SPDX-License-Identifier: MIT
#include "simulator/tcp_port.h"

#include <QHostAddress>
#include <QTcpSocket>

#include "simulator/channel_record.h"
#include "simulator/tcp_link.h"

Tcp_Port::Tcp_Port(Channel_Record &record, QObject *parent)
    : QObject(parent)
    , record(record)
{
    connect(&server, &QTcpServer::newConnection, this, &Tcp_Port::accept);
}

bool Tcp_Port::open(const QString &address, quint16 port)
{
    return server.isListening() || server.listen(QHostAddress(address), port);
}

void Tcp_Port::close()
{
    accept(); // whoever the system has already let in is a link, and no refused attempt
    server.close();
}

void Tcp_Port::cut_all(Cut_How how)
{
    const QList<Tcp_Link *> all = open_links; // each cut takes its link from the list
    for (Tcp_Link *link : all)
        link->cut_now(how);
}

QString Tcp_Port::error() const
{
    return server.errorString();
}

void Tcp_Port::accept()
{
    while (QTcpSocket *socket = server.nextPendingConnection()) {
        auto *link = new Tcp_Link(socket, ++last_id, record, this);
        open_links.append(link);
        connect(link, &Tcp_Link::line_came, this, &Tcp_Port::line_came);
        connect(link, &Tcp_Link::closed, this, &Tcp_Port::forget);
        emit opened(link);
    }
}

void Tcp_Port::forget(Tcp_Link *link)
{
    open_links.removeOne(link);
    emit closed(link);
    record.closed();
    link->deleteLater();
}
