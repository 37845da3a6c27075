// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QString>
#include <QTcpSocket>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

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

protected:
    // Until more(what has come) is false, the peer is gone, or patience ends.
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

private:
    bool drain_to_end()
    {
        read_to_end();
        return socket.state() == QAbstractSocket::UnconnectedState;
    }
};

// Connects, sends, reads on until the peer ends the connection, and tells how: 0 in order, ECONNRESET by a
// reset, another error where it came to neither in good time. A plain socket, since QTcpSocket does not tell
// them apart.
inline int error_at_end(const QString &address, quint16 port, const QByteArray &bytes)
{
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    inet_pton(AF_INET, address.toLatin1().constData(), &where.sin_addr);
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval patience{Raw_Client::patience_ms / 1000, 0};
    setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ssize_t moved = connect(descriptor, reinterpret_cast<sockaddr *>(&where), sizeof where);
    if (moved == 0)
        moved = send(descriptor, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    char buffer[4096];
    while (moved > 0)
        moved = recv(descriptor, buffer, sizeof buffer, 0);
    const int error = moved < 0 ? errno : 0;
    close(descriptor);
    return error;
}
