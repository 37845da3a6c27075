// SPDX-License-Identifier: MIT
#include "tests/e2e/probe/probe_server.h"

#include "tests/e2e/probe/probe_input.h"

#include <QJsonDocument>
#include <QLocalSocket>
#include <QPixmap>
#include <QThread>
#include <QWidget>

namespace
{
QJsonObject failure(const QString &text)
{
    return {{"ok", false}, {"error", text}};
}

void send(QLocalSocket *socket, const QJsonObject &answer)
{
    if (!socket)
        return;
    socket->write(QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n');
    socket->flush();
}
} // namespace

Probe_Server::Probe_Server(const QString &path)
    : path(path)
{
    pump.setSingleShot(true);
    connect(&pump, &QTimer::timeout, this, &Probe_Server::serve_next);
    connect(&server, &QLocalServer::newConnection, this, &Probe_Server::take_connection);
}

void Probe_Server::listen()
{
    server.listen(path);
}

void Probe_Server::take_connection()
{
    QLocalSocket *socket = server.nextPendingConnection();
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read_lines(socket); });
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
}

// Only queues: a socket does not report new bytes while a slot of its own report still runs, and what is
// served may run an event loop.
void Probe_Server::read_lines(QLocalSocket *socket)
{
    while (socket->canReadLine())
        lines.enqueue({socket, socket->readLine()});
    if (!lines.isEmpty())
        pump.start(0);
}

void Probe_Server::serve_next()
{
    if (delivery_level == QThread::currentThread()->loopLevel()) {
        pump.start(5); // what delivers input lets events through between its steps
        return;
    }
    const Line line = lines.dequeue();
    if (!lines.isEmpty())
        pump.start(0);

    const QJsonObject request = QJsonDocument::fromJson(line.text).object();
    if (!is_input(request)) {
        send(line.socket, answer(request));
        return;
    }
    QWidget *widget = reader.widget(request.value("widget").toInt());
    const QString refusal = input_refusal(request, widget);
    if (!refusal.isEmpty()) {
        send(line.socket, failure(refusal));
        return;
    }
    send(line.socket, {{"ok", true}});
    deliver(request, widget);
}

void Probe_Server::deliver(const QJsonObject &request, QWidget *widget)
{
    const int outer_level = delivery_level;
    delivery_level = QThread::currentThread()->loopLevel();
    deliver_input(request, widget);
    delivery_level = outer_level;
}

QJsonObject Probe_Server::answer(const QJsonObject &request)
{
    const QString what = request.value("do").toString();
    if (what == "widgets")
        return {{"ok", true},
                {"widgets", reader.widgets(request.value("kind").toString("QWidget"),
                                           request.value("hidden").toBool(true))}};
    if (what == "watch") {
        lateness.start();
        return {{"ok", true}};
    }
    if (what == "lateness")
        return {{"ok", true}, {"latest", lateness.latest()}, {"worst", lateness.take_worst()}};
    if (what == "grab")
        return grab(request);
    if (what == "resize")
        return resize(request);
    return failure("unknown request: " + what);
}

// As a user draws at the edge of the window.
QJsonObject Probe_Server::resize(const QJsonObject &request)
{
    QWidget *widget = reader.widget(request.value("widget").toInt());
    if (!widget || !widget->isWindow())
        return failure("there is no such window");
    widget->resize(request.value("w").toInt(), request.value("h").toInt());
    return {{"ok", true}};
}

QJsonObject Probe_Server::grab(const QJsonObject &request)
{
    QWidget *widget = reader.widget(request.value("widget").toInt());
    if (!widget)
        return failure("there is no such widget");
    if (!widget->grab().save(request.value("file").toString(), "PNG"))
        return failure("the picture cannot be written");
    return {{"ok", true}};
}
