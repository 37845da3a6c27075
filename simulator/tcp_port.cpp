// SPDX-License-Identifier: MIT
#include "simulator/tcp_port.h"

#include "simulator/channel_record.h"
#include "simulator/tcp_link.h"

Tcp_Port::Tcp_Port(Channel_Record &record, QObject *parent)
    : Tcp_Listener(parent)
    , record(record)
{
}

void Tcp_Port::cut_all(Cut_How how)
{
    const QList<Tcp_Link *> all = open_links; // each cut takes its link from the list
    for (Tcp_Link *link : all)
        link->cut_now(how);
}

void Tcp_Port::take(QTcpSocket *socket, int id)
{
    auto *link = new Tcp_Link(socket, id, record, this);
    open_links.append(link);
    connect(link, &Tcp_Link::line_came, this, &Tcp_Port::line_came);
    connect(link, &Tcp_Link::begin_came, this, &Tcp_Port::begin_came);
    connect(link, &Tcp_Link::closed, this, &Tcp_Port::forget);
    emit opened(link);
}

void Tcp_Port::forget(Tcp_Link *link)
{
    open_links.removeOne(link);
    emit closed(link);
    record.closed();
    link->deleteLater();
}
