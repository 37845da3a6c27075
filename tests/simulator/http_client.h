// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonDocument>
#include <QJsonObject>

#include "tests/simulator/raw_client.h"

// One HTTP answer as it came. A status of 0 means that none came, or that its head is not whole.
struct Http_Answer {
    int status = 0;
    QByteArray head; // with the status line, without the blank line
    QByteArray body;

    QByteArray header(const QByteArray &name) const
    {
        for (const QByteArray &line : head.split('\n'))
            if (line.toLower().startsWith(name.toLower() + ':'))
                return line.mid(name.size() + 1).trimmed();
        return QByteArray();
    }

    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
};

// A blocking HTTP client that sends what it is given, byte for byte. One thread.
class Http_Client : public Raw_Client
{
public:
    Http_Answer post(const QByteArray &path, const QByteArray &body, const QByteArray &headers = {})
    {
        return exchange("POST " + path + " HTTP/1.1\r\nHost: speaker\r\n" + headers +
                        "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }

    Http_Answer get(const QByteArray &path) { return exchange("GET " + path + " HTTP/1.1\r\n\r\n"); }
    Http_Answer head(const QByteArray &path) { return exchange("HEAD " + path + " HTTP/1.1\r\n\r\n", false); }

    Http_Answer exchange(const QByteArray &request, bool with_body = true)
    {
        send(request);
        return read_answer(with_body);
    }

    // Waits for the answer: up to its Content-Length, or to the end of the connection where it has none.
    Http_Answer read_answer(bool with_body = true)
    {
        return split(
            read_while([&](const QByteArray &got) { return !whole(split(got), with_body); }, patience_ms));
    }

private:
    static Http_Answer split(const QByteArray &got)
    {
        Http_Answer answer;
        const int end = got.indexOf("\r\n\r\n");
        if (end < 0)
            return answer;
        answer.head = got.left(end);
        answer.body = got.mid(end + 4);
        answer.status = answer.head.split(' ').value(1).toInt();
        return answer;
    }

    static bool whole(const Http_Answer &answer, bool with_body)
    {
        const QByteArray length = answer.header("Content-Length");
        return answer.status != 0 &&
               (!with_body || (!length.isNull() && answer.body.size() >= length.toInt()));
    }
};
