// SPDX-License-Identifier: MIT
#include "control/serial_wifi.h"

#include <QDebug>
#include <QTcpSocket>
#include <QThread>
#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace
{
constexpr int pace = 150;            // ms that the host is given after each command
constexpr int write_timeout = 30000; // ms
constexpr int read_timeout = 5000;   // ms
constexpr int close_timeout = 1000;  // ms, for bytes that are still on their way out
constexpr int end_timeout = 5000;    // ms that a loop without limit goes on once its thread is told to end
constexpr int read_size = 100;       // bytes that one read of a reply keeps
constexpr int status_offset = 3;     // of the two status digits in a reply
constexpr int payload_offset = 5;    // of what is handed to the caller
constexpr char carriage_return = '\r';

// The waits warn on standard error, or return at once, when the socket is down: every use of a socket asks
// this first.
bool is_up(const QTcpSocket *socket)
{
    return socket && socket->state() == QAbstractSocket::ConnectedState;
}

QByteArray take_arrived(QTcpSocket *socket)
{
    return socket && socket->isReadable() ? socket->readAll() : QByteArray();
}

// Without an event loop what came in stays with the system until somebody waits for it.
QByteArray take_waiting(QTcpSocket *socket)
{
    if (is_up(socket))
        socket->waitForReadyRead(0);
    return take_arrived(socket);
}

// The result of waitForBytesWritten says nothing: it is false also when nothing is left to write.
qint64 write_out(QTcpSocket *socket, const char *bytes, qint64 size)
{
    if (!is_up(socket))
        return -1;
    const qint64 written = socket->write(bytes, size);
    if (socket->bytesToWrite() > 0)
        socket->waitForBytesWritten(write_timeout);
    socket->flush();
    return written;
}

// Bytes written right before the deletion arrive only if the close is waited for.
void close_and_delete(QTcpSocket *&socket)
{
    if (!socket)
        return;
    socket->disconnectFromHost();
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->waitForDisconnected(close_timeout);
    socket->abort();
    delete socket;
    socket = nullptr;
}

QByteArray build_frame(char kind, const char *command, const char *args)
{
    QByteArray frame("RZ");
    frame += kind;
    frame.append(command, static_cast<int>(qstrnlen(command, 2)));
    frame += args; // null adds nothing
    frame += '\n';
    return frame;
}
} // namespace

serial_wifi::serial_wifi(QString host, QString name, int baud, int data_bits, int parity, int stop_bits)
    : host(host)
    , name(name)
    , baud(baud)
    , data_bits(data_bits)
    , parity(parity)
    , stop_bits(stop_bits)
{
    if (open_link() == 0)
        connected = true;
}

serial_wifi::~serial_wifi()
{
    closing = true;
    if (connected)
        close_link();
    delete at_socket;
    delete host_socket;
}

int serial_wifi::open_link()
{
    at_socket = new QTcpSocket;
    host_socket = new QTcpSocket;

    // The AT channel comes first: a speaker that refuses it is never tried on the host channel.
    at_socket->connectToHost(host, at_port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    if (!at_socket->waitForConnected(connect_timeout))
        return -1;

    host_socket->connectToHost(host, host_port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    if (!host_socket->waitForConnected(connect_timeout)) {
        at_socket->disconnectFromHost();
        return -1;
    }

    connect(host_socket, &QTcpSocket::stateChanged, this, &serial_wifi::stateChanged, Qt::DirectConnection);
    return 0;
}

int serial_wifi::close_link()
{
    if (host_socket)
        disconnect(host_socket, &QTcpSocket::stateChanged, this, &serial_wifi::stateChanged);
    close_and_delete(at_socket);
    close_and_delete(host_socket);
    return 0;
}

// A failed reopening leaves `reconnect` clear and the sockets unwatched: the link is useless from then on,
// and its owner is not told. Meant so.
void serial_wifi::reopen_if_lost()
{
    if (!reconnect)
        return;
    close_link();
    if (open_link() == 0)
        connected = true;
    reconnect = false;
}

int serial_wifi::send_frame(char *buffer, int size)
{
    if (!connected)
        return -1;
    buffer[size] = '\n';
    return static_cast<int>(write_out(host_socket, buffer, size));
}

// The frame's own line feed is within `frame`; one byte more gives send_frame the place behind it.
int serial_wifi::send_whole(QByteArray frame)
{
    const int size = frame.size();
    frame += '\0';
    return send_frame(frame.data(), size);
}

int serial_wifi::host_command(const char *command, const char *args)
{
    const QByteArray frame = build_frame('!', command, args);
    for (bool first = true;; first = false) {
        reopen_if_lost();
        const int count = send_whole(frame);
        qDebug() << "serial_wifi::host_command() sending" << frame << " returned" << count;
        if (count < 0)
            return count;
        if (!reconnect)
            break;
        if (last_call_over())
            return -1;
        // A link that was lost while idle is replaced at once; a speaker that drops one after the other is
        // not to be overrun with new ones.
        if (!first)
            QThread::msleep(pace);
    }

    QThread::msleep(pace);
    return 0;
}

// Neither the resending nor the collecting has a limit of its own, but whoever waits for the end of this
// thread must not wait for ever.
bool serial_wifi::last_call_over()
{
    if (last_call.isForever() && QThread::currentThread()->isInterruptionRequested())
        last_call.setRemainingTime(end_timeout);
    return last_call.hasExpired();
}

int serial_wifi::read_reply(char *buffer, int size)
{
    if (!connected)
        return -1;
    std::memset(buffer, 0, static_cast<size_t>(size));
    if (is_up(host_socket))
        host_socket->waitForReadyRead(read_timeout);
    const QByteArray arrived = take_arrived(host_socket);
    const int count = std::min(size, arrived.size());
    std::memcpy(buffer, arrived.constData(), static_cast<size_t>(count));
    return count;
}

// Appends reads to `reply` until a carriage return has come. There is no overall limit in time, which is
// meant; in space there is one: bytes that can never reach the caller are looked through and not kept. False,
// with `result` set, when nothing came at all, or the link closed or the thread had to end first.
bool serial_wifi::collect_reply(QByteArray &reply, int &result)
{
    constexpr int kept_max = payload_offset + reply_size - 1;
    char part[read_size];
    for (;;) {
        const int count = read_reply(part, read_size);
        if (count > 0) {
            reply.append(part, std::min(count, kept_max - reply.size()));
            if (std::memchr(part, carriage_return, static_cast<size_t>(count)))
                return true;
        } else if (reply.isEmpty() || !is_up(host_socket)) {
            result = reply.isEmpty() ? count : -1;
            return false;
        }
        if (last_call_over()) {
            result = -1;
            return false;
        }
    }
}

int serial_wifi::host_query(const char *command, const char *args, char *reply)
{
    reopen_if_lost();
    int result = send_whole(build_frame('?', command, args));
    if (result < 0)
        return result;

    QByteArray data;
    if (!collect_reply(data, result))
        return result;
    if (data.size() < status_offset || data.at(status_offset - 1) != '#')
        return -1;

    const QByteArray payload = data.mid(payload_offset);
    std::memcpy(reply, payload.constData(), static_cast<size_t>(payload.size()) + 1);
    return std::atoi(data.mid(status_offset, 2).constData());
}

long serial_wifi::host_query_int(const char *command)
{
    char reply[reply_size] = {};
    host_query(command, "", reply);
    return std::strtol(reply, nullptr, 10);
}

void serial_wifi::prepare_xon()
{
    qDebug() << "=== serial_wifi::prepare_xon()";
    xon = true;
}

int serial_wifi::send_line(const QString &line)
{
    const QByteArray bytes = line.toLocal8Bit();
    write_out(host_socket, bytes.constData(), qstrlen(bytes.constData()));
    if (is_up(host_socket))
        host_socket->waitForReadyRead(read_timeout);
    take_arrived(host_socket);
    return 0;
}

void serial_wifi::clear_recv_socket()
{
    const QByteArray waiting = take_waiting(host_socket);
    qDebug() << "CLEAR RECV SOCKET " << waiting.size() << "Bytes in socket";
}

int serial_wifi::query_uart()
{
    // Line feed before carriage return is meant.
    static constexpr char question[] = "AT+UART?\n\r";
    write_out(at_socket, question, sizeof question - 1);
    if (is_up(at_socket))
        at_socket->waitForReadyRead(read_timeout);
    char answer[read_size];
    if (at_socket && at_socket->isReadable()) // a failed wait may have closed it
        at_socket->read(answer, std::min<qint64>(read_size, at_socket->bytesAvailable()));
    return 0;
}

void serial_wifi::readReady()
{
    const QByteArray bytes = take_waiting(host_socket);
    for (int i = 0; i < bytes.size(); ++i) {
        const char byte = bytes.at(i);
        if (byte == '!')
            xon = true;
        else if (byte == '?')
            xon = false;
        else
            qDebug() << "[" << i << byte << "=" << static_cast<int>(byte) << "]";
    }
}

void serial_wifi::stateChanged(QAbstractSocket::SocketState socketState)
{
    if (socketState == QAbstractSocket::UnconnectedState && !closing)
        reconnect = true;
}
