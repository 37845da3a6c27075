// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include "simulator/http_message.h"

class QTcpSocket;

// One connection of an Http_Server: HTTP/1.0 and 1.1, keep-alive, requests one after another. A request is
// handed out whole and answered by exactly one of the send functions, at once or later; the next one is
// looked at afterwards. What is no HTTP, too long or of unknown length is answered here and the connection
// closed. Belongs to the server's thread; after closed() it is of no use, and its server deletes it.
class Http_Connection : public QObject
{
    Q_OBJECT

public:
    Http_Connection(QTcpSocket *socket, int id, QObject *parent);

    int id() const { return number; }
    void send(const Http_Reply &reply);
    void send_slowly(const Http_Reply &reply, int chunk, int gap_ms); // the body in chunks, a gap before each
    void send_part(const Http_Reply &reply, int body_bytes); // the head, that much of the body, then a reset
    void reset();
    void close(); // in order, when all has left

signals:
    void requested(Http_Connection *connection, const Http_Request &request);
    void closed(Http_Connection *connection);

private:
    void read();
    void take_request();
    bool take_head(int head_size);
    void refuse(int status);
    QByteArray head_of(const Http_Reply &reply) const;
    void finish(const Http_Reply &reply);
    void send_chunk();

    QTcpSocket *socket;
    int number;
    QByteArray input;
    Http_Request request;  // the one being read or answered
    int body_missing = -1; // bytes of the body that the head promised; -1 while the head is not complete
    bool answering = false;
    bool stay = true; // the peer wants the connection kept
    bool ended = false;

    Http_Reply slow_reply;
    QByteArray slow_rest;
    int slow_chunk = 0;
    QTimer slow_timer;
};
