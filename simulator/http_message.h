// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

// One HTTP request as it came in, and what was found out about it. A plain value.
struct Http_Request {
    qint64 us = 0;      // monotonic time of its last byte, as monotonic_us() gives it
    int connection = 0; // running number of the connection, from 1
    QByteArray method;
    QByteArray path;                              // the request target as it stood in the request line
    QList<QPair<QByteArray, QByteArray>> headers; // raw names and values in order of arrival
    QByteArray body;

    // Filled by the JSON API alone
    bool json_ok = false; // the body is one JSON object by the letter of the standard
    QString json_error;   // why not
    QString action;       // its "action"

    // The value of the first header of that name, compared without case; null if there is none.
    QByteArray header(const QByteArray &name) const;
};

// One HTTP answer. Content-Length is added unless no_length is set.
struct Http_Reply {
    int status = 200;
    QByteArray content_type = "application/json";
    QByteArray body;
    QList<QPair<QByteArray, QByteArray>> headers; // further ones
    int length_error = 0;                         // added to the Content-Length, so that it is wrong
    bool no_length = false; // no Content-Length; the end of the body is the end of the connection
    bool close = false;     // close the connection after it
};

// The reason phrase of a status code.
QByteArray http_reason(int status);
