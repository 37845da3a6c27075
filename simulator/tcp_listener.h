// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QTcpServer>

class QTcpSocket;

// What listens on an address of a virtual device; who derives from it takes the connections, which are
// numbered from 1. Belongs to the thread that it was made on.
class Tcp_Listener : public QObject
{
    Q_OBJECT

public:
    explicit Tcp_Listener(QObject *parent);

    // Listens on the address; already there, does nothing. False, with the reason in error(), if it cannot.
    bool open(const QString &address, quint16 port);
    void close(); // attempts are refused from now on; connections stay
    bool listening() const { return server.isListening(); }
    quint16 port() const { return server.serverPort(); }
    QString error() const { return server.errorString(); }

protected:
    virtual void take(QTcpSocket *socket, int id) = 0;

private:
    void accept();

    QTcpServer server;
    int last_id = 0;
};
