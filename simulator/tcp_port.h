// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include "simulator/speaker_faults.h"
#include "simulator/tcp_listener.h"

class Channel_Record;
class Tcp_Link;

// A line-based TCP port of a speaker with its open links. Belongs to the speaker's thread.
class Tcp_Port : public Tcp_Listener
{
    Q_OBJECT

public:
    Tcp_Port(Channel_Record &record, QObject *parent);

    void cut_all(Cut_How how);
    const QList<Tcp_Link *> &links() const { return open_links; }

signals:
    void opened(Tcp_Link *link);
    void closed(Tcp_Link *link); // before the link is deleted
    void line_came(Tcp_Link *link, const QByteArray &line);
    void begin_came(Tcp_Link *link, const QByteArray &begin); // of a line whose end has not been read yet

private:
    void take(QTcpSocket *socket, int id) override;
    void forget(Tcp_Link *link);

    Channel_Record &record;
    QList<Tcp_Link *> open_links;
};
