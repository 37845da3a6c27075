// SPDX-License-Identifier: MIT
#pragma once

#include "tests/e2e/probe/lateness.h"
#include "tests/e2e/probe/probe_reader.h"

#include <QJsonObject>
#include <QLocalServer>
#include <QPointer>
#include <QQueue>
#include <QTimer>

class QLocalSocket;

// Answers the road tests on a local socket: one JSON object a line in, one a line out, in order. A request
// names what it wants under "do"; an answer has "ok", and "error" with one sentence where that is false.
//
// Input is answered before it is delivered, since it may open a dialog that does not return, or end the
// program. Requests that come while a dialog runs its own event loop are served all the same.
//
// GUI thread only. Where the socket cannot be opened, nothing answers; the test notices.
class Probe_Server : public QObject
{
    Q_OBJECT

public:
    explicit Probe_Server(const QString &path);

    void listen();

private:
    void take_connection();
    void read_lines(QLocalSocket *socket);
    void serve_next();
    void deliver(const QJsonObject &request, QWidget *widget);
    QJsonObject answer(const QJsonObject &request);
    QJsonObject resize(const QJsonObject &request);
    QJsonObject grab(const QJsonObject &request);

    struct Line {
        QPointer<QLocalSocket> socket;
        QByteArray text;
    };

    const QString path;
    QLocalServer server;
    QQueue<Line> lines;
    QTimer pump;             // serves the next line
    int delivery_level = -1; // nesting of event loops in which input is being delivered; -1 for none
    Probe_Reader reader;
    Lateness lateness;
};
