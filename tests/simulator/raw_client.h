// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QString>
#include <QTcpSocket>

// A plain blocking TCP client for the tests of the simulator. One thread.
class Raw_Client
{
public:
    static constexpr int patience_ms = 5000;

    bool open(const QString &address, quint16 port)
    {
        socket.connectToHost(QHostAddress(address), port);
        return socket.waitForConnected(patience_ms);
    }

    void send(const QByteArray &bytes)
    {
        socket.write(bytes);
        socket.flush();
    }

    // What has come as soon as it ends in end; what has come by then when the peer is gone or patience ends.
    QByteArray read_to(const QByteArray &end, int timeout_ms = patience_ms)
    {
        return read_while([&](const QByteArray &got) { return !got.endsWith(end); }, timeout_ms);
    }

    QByteArray read_size(int size)
    {
        return read_while([&](const QByteArray &got) { return got.size() < size; }, patience_ms);
    }

    QByteArray read_to_end()
    {
        return read_while([](const QByteArray &) { return true; }, patience_ms);
    }

    QByteArray ask(const QByteArray &frame)
    {
        send(frame);
        return read_to("\r");
    }

    bool wait_closed() { return socket.state() == QAbstractSocket::UnconnectedState || drain_to_end(); }

    QTcpSocket socket;

private:
    template<class Condition>
    QByteArray read_while(const Condition &more, int timeout_ms)
    {
        QByteArray got = socket.readAll();
        QElapsedTimer clock;
        clock.start();
        while (more(got) && clock.elapsed() < timeout_ms) {
            if (!socket.waitForReadyRead(int(timeout_ms - clock.elapsed())) &&
                socket.state() != QAbstractSocket::ConnectedState) {
                got += socket.readAll();
                break;
            }
            got += socket.readAll();
        }
        return got;
    }

    bool drain_to_end()
    {
        read_to_end();
        return socket.state() == QAbstractSocket::UnconnectedState;
    }
};
