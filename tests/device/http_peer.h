// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>

class Device_Desc;

// An HTTP peer for the record's own side: keeps every request as it came in, byte for byte, and answers with
// raw bytes of the test's choice, at once or when the test says so. Lives on the test's thread and event
// loop.
class Http_Peer : public QTcpServer
{
    Q_OBJECT

public:
    struct Request {
        QByteArray line; // "POST /path HTTP/1.1"
        QList<QByteArray> headers;
        QByteArray body;
        QPointer<QTcpSocket> link;

        QList<QByteArray> header_names() const;
    };

    explicit Http_Peer(const QHostAddress &address);

    void point_at_me(Device_Desc &record) const; // gives it address and port

    QList<Request> requests;
    // Raw answer to each further request; a null one leaves it open.
    QByteArray answer;
    bool close_after_answer = false;

    void answer_now(const Request &request, const QByteArray &raw) const;

private:
    void take(QTcpSocket *link, QByteArray &collected);
};

QByteArray http_answer(const QByteArray &body, const QByteArray &status = "200 OK");

// Of a request to which the program adds none of its own.
inline const QList<QByteArray> headers_of_qt = {"Host", "Connection", "Accept-Encoding", "Accept-Language",
                                                "User-Agent"};
