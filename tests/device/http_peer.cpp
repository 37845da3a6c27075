// SPDX-License-Identifier: MIT
#include "tests/device/http_peer.h"

#include <memory>

#include "device/device_desc.h"

Http_Peer::Http_Peer(const QHostAddress &address)
{
    listen(address);
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *link = nextPendingConnection()) {
            auto collected = std::make_shared<QByteArray>();
            connect(link, &QTcpSocket::readyRead, this, [this, link, collected] { take(link, *collected); });
        }
    });
}

QList<QByteArray> Http_Peer::Request::header_names() const
{
    QList<QByteArray> names;
    for (const QByteArray &header : headers)
        names += header.left(header.indexOf(':'));
    return names;
}

void Http_Peer::point_at_me(Device_Desc &record) const
{
    record.set_ip(serverAddress().toString());
    record.set_port(serverPort());
}

void Http_Peer::take(QTcpSocket *link, QByteArray &collected)
{
    collected += link->readAll();
    const int head = collected.indexOf("\r\n\r\n");
    if (head < 0)
        return;
    Request request;
    request.link = link;
    for (const QByteArray &line : collected.left(head).split('\n'))
        request.headers += line.endsWith('\r') ? line.chopped(1) : line;
    request.line = request.headers.takeFirst();
    int length = 0;
    for (const QByteArray &header : qAsConst(request.headers)) {
        if (header.toLower().startsWith("content-length:"))
            length = header.mid(15).trimmed().toInt();
    }
    if (collected.size() < head + 4 + length)
        return;
    request.body = collected.mid(head + 4, length);
    collected.remove(0, head + 4 + length);
    requests += request;
    if (!answer.isNull())
        answer_now(request, answer);
}

void Http_Peer::answer_now(const Request &request, const QByteArray &raw) const
{
    request.link->write(raw);
    if (close_after_answer)
        request.link->disconnectFromHost();
}

QByteArray http_answer(const QByteArray &body, const QByteArray &status)
{
    return "HTTP/1.1 " + status +
           "\r\nContent-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n\r\n" + body;
}
