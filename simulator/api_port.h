// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

#include "simulator/http_server.h"
#include "simulator/speaker_api.h"

class Http_Connection;

// The HTTP port of a speaker: brings requests to the JSON API and its answers back, through the faults.
// Belongs to the speaker's thread.
class Api_Port : public QObject
{
    Q_OBJECT

public:
    Api_Port(Speaker_Config &config, const Speaker_Faults &faults, Http_Record &record, QObject *parent);

    void apply_faults(); // after a change of the faults: answers what was held
    void drop_held();    // forgets it

    Http_Server server;
    Speaker_Api api;

signals:
    void event(const QString &text);
    void changed();  // a request was carried out
    void departed(); // the answer to a selected network has left

private:
    struct Held {
        QPointer<Http_Connection> connection;
        Http_Request request;
        QJsonObject object;
    };
    void take(Http_Connection *connection, Http_Request request);
    void answer(const Held &held);
    bool faulty(const Http_Request &request) const;
    void send(const QPointer<Http_Connection> &connection, const Http_Reply &reply, bool leaving,
              int delay_ms);

    const Speaker_Faults &faults;
    Http_Record &record;
    std::vector<Held> held;
};
