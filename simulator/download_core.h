// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QObject>
#include <functional>

#include "simulator/download_server.h"
#include "simulator/http_server.h"

class Http_Connection;

// What Download_Server runs on its thread.
class Download_Core : public QObject
{
    Q_OBJECT

public:
    Download_Core(const Download_Config &config, Http_Record &record);

    Download_Config config;
    Download_Faults faults;
    QMap<QString, QByteArray> files;
    Http_Server server;
    std::function<void(const QString &)> event_sink;

private:
    void take(Http_Connection *connection, const Http_Request &request);
    void misbehave(Http_Connection *connection, Http_Reply reply);
    void tell(const QString &text);

    Http_Record &record;
};
