// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>

#include "simulator/speaker_faults.h"

class Channel_Record;
class Tcp_Link;

// A line-based TCP port of a speaker with its open links. Belongs to the speaker's thread.
class Tcp_Port : public QObject
{
    Q_OBJECT

public:
    Tcp_Port(Channel_Record &record, QObject *parent);

    // Listens on the address; already there, does nothing. False, with the reason in error(), if it cannot.
    bool open(const QString &address, quint16 port);
    void close(); // attempts are refused from now on; links stay
    void cut_all(Cut_How how);
    QString error() const;
    const QList<Tcp_Link *> &links() const { return open_links; }

signals:
    void opened(Tcp_Link *link);
    void closed(Tcp_Link *link); // before the link is deleted
    void line_came(Tcp_Link *link, const QByteArray &line);

private:
    void accept();
    void forget(Tcp_Link *link);

    Channel_Record &record;
    QTcpServer server;
    QList<Tcp_Link *> open_links;
    int last_id = 0;
};
