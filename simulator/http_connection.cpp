// SPDX-License-Identifier: MIT
#include "simulator/http_connection.h"

#include <QTcpSocket>

#include "simulator/monotonic.h"
#include "simulator/tcp_link.h"

namespace
{
constexpr int longest_head = 16 * 1024;
constexpr int longest_body = 1024 * 1024;
const QByteArray head_end = QByteArrayLiteral("\r\n\r\n");
} // namespace

Http_Connection::Http_Connection(QTcpSocket *socket, int id, QObject *parent)
    : QObject(parent)
    , socket(socket)
    , number(id)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(&slow_timer, &QTimer::timeout, this, &Http_Connection::send_chunk);
    connect(socket, &QTcpSocket::readyRead, this, &Http_Connection::read);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        ended = true;
        slow_timer.stop();
        emit closed(this);
    });
}

void Http_Connection::read()
{
    input += socket->readAll();
    take_request();
}

void Http_Connection::take_request()
{
    if (answering || ended)
        return;
    if (body_missing < 0) {
        const int head_size = input.indexOf(head_end);
        if (head_size > longest_head || (head_size < 0 && input.size() > longest_head)) {
            refuse(431);
            return;
        }
        if (head_size < 0 || !take_head(head_size))
            return;
    }
    if (input.size() < body_missing)
        return;
    request.us = monotonic_us();
    request.connection = number;
    request.body = input.left(body_missing);
    input.remove(0, body_missing);
    body_missing = -1;
    answering = true;
    emit requested(this, request);
}

bool Http_Connection::take_head(int head_size)
{
    QList<QByteArray> lines = input.left(head_size).split('\n');
    input.remove(0, head_size + head_end.size());
    const QList<QByteArray> start = lines.takeFirst().trimmed().split(' ');
    request = Http_Request();
    if (start.size() != 3 || !start.at(2).startsWith("HTTP/")) {
        refuse(400);
        return false;
    }
    if (start.at(2) != "HTTP/1.1" && start.at(2) != "HTTP/1.0") {
        refuse(505);
        return false;
    }
    request.method = start.at(0);
    request.path = start.at(1);
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon <= 0 || line.at(colon - 1) == ' ') {
            refuse(400);
            return false;
        }
        request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    const QByteArray wish = request.header("Connection").toLower();
    stay = start.at(2) == "HTTP/1.1" ? wish != "close" : wish == "keep-alive";
    const QByteArray length = request.header("Content-Length");
    bool is_number = true;
    body_missing = length.isEmpty() ? 0 : length.toInt(&is_number);
    const bool may_have_body = request.method != "GET" && request.method != "HEAD";
    if (!request.header("Transfer-Encoding").isNull() || (may_have_body && length.isEmpty())) {
        refuse(411);
        return false;
    }
    if (!is_number || body_missing < 0 || body_missing > longest_body) {
        refuse(is_number && body_missing > 0 ? 413 : 400);
        return false;
    }
    return true;
}

void Http_Connection::refuse(int status)
{
    request = Http_Request();
    stay = false;
    answering = true;
    Http_Reply reply;
    reply.status = status;
    reply.content_type = "text/plain";
    reply.body = http_reason(status) + '\n';
    send(reply);
}

QByteArray Http_Connection::head_of(const Http_Reply &reply) const
{
    const bool closing = reply.close || reply.no_length || !stay;
    QByteArray head =
        "HTTP/1.1 " + QByteArray::number(reply.status) + ' ' + http_reason(reply.status) + "\r\n";
    head += "Content-Type: " + reply.content_type + "\r\n";
    if (!reply.no_length)
        head += "Content-Length: " + QByteArray::number(reply.body.size() + reply.length_error) + "\r\n";
    for (const auto &header : reply.headers)
        head += header.first + ": " + header.second + "\r\n";
    return head + (closing ? "Connection: close" : "Connection: keep-alive") + head_end;
}

void Http_Connection::send(const Http_Reply &reply)
{
    if (ended)
        return;
    const bool with_body = request.method != "HEAD";
    socket->write(with_body ? head_of(reply) + reply.body : head_of(reply));
    socket->flush();
    finish(reply);
}

void Http_Connection::finish(const Http_Reply &reply)
{
    if (reply.close || reply.no_length || !stay) {
        close();
        return;
    }
    answering = false;
    take_request(); // the peer may have sent the next one already
}

void Http_Connection::send_slowly(const Http_Reply &reply, int chunk, int gap_ms)
{
    if (ended)
        return;
    if (request.method == "HEAD") {
        send(reply);
        return;
    }
    socket->write(head_of(reply));
    socket->flush();
    slow_reply = reply;
    slow_rest = reply.body;
    slow_chunk = chunk;
    slow_timer.start(gap_ms);
}

void Http_Connection::send_chunk()
{
    socket->write(slow_rest.left(slow_chunk));
    socket->flush();
    slow_rest.remove(0, slow_chunk);
    if (slow_rest.isEmpty()) {
        slow_timer.stop();
        finish(slow_reply);
    }
}

void Http_Connection::send_part(const Http_Reply &reply, int body_bytes)
{
    if (ended)
        return;
    socket->write(head_of(reply));
    if (request.method != "HEAD")
        socket->write(reply.body.left(body_bytes));
    while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(1000)) {
        // A reset throws away what has not left yet, and the point of it is that the part arrives.
    }
    reset();
}

void Http_Connection::reset()
{
    if (!ended)
        cut_socket(socket, Cut_How::rst);
}

void Http_Connection::close()
{
    if (!ended)
        cut_socket(socket, Cut_How::fin);
}
