// SPDX-License-Identifier: MIT
#include "simulator/api_port.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>

#include "simulator/http_connection.h"
#include "simulator/http_record.h"
#include "simulator/readable.h"

namespace
{
constexpr int length_error = 20;

// Members that mean nothing, and the comma behind them.
QByteArray bulk(int size)
{
    const QByteArray entry = R"({"ssid":"Net","level":-50,"list":[1,2,3]},)";
    return "\"bulk\":[" + entry.repeated(size / entry.size() + 1).chopped(1) + "],";
}

// The same document with every value of another type than it should have.
QJsonValue with_wrong_types(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return 7;
    case QJsonValue::Object: {
        QJsonArray array;
        for (const QJsonValue member : value.toObject())
            array.append(with_wrong_types(member));
        return array;
    }
    case QJsonValue::Array:
        return QJsonObject{{"array", 7}};
    default:
        return "text";
    }
}

// The same, but objects and lists stay what they are, and what is in them is spoilt.
QJsonValue with_wrong_members(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue entry : value.toArray())
            array.append(with_wrong_members(entry));
        return array;
    }
    if (!value.isObject())
        return with_wrong_types(value);
    QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        member.value() = with_wrong_members(member.value());
    return object;
}

QByteArray with_each_member(const QByteArray &body, QJsonValue (*spoil)(const QJsonValue &))
{
    QJsonObject object = QJsonDocument::fromJson(body).object();
    for (auto member = object.begin(); member != object.end(); ++member)
        member.value() = spoil(member.value());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// What a fault makes of an answer; those that send none do not come here.
Http_Reply spoilt(Http_Reply reply, const Speaker_Faults &faults)
{
    switch (faults.http) {
    case Http_Fault::error_page:
        reply.status = 500;
        reply.content_type = "text/html";
        reply.body = "<html><body><h1>Internal Server Error</h1></body></html>\n";
        break;
    case Http_Fault::empty:
        reply.body.clear();
        break;
    case Http_Fault::empty_object:
        reply.body = "{}";
        break;
    case Http_Fault::half:
        reply.body.truncate(reply.body.size() / 2);
        break;
    case Http_Fault::too_long:
        reply.length_error = length_error;
        reply.close = true;
        break;
    case Http_Fault::too_short:
        reply.length_error = -length_error;
        reply.close = true;
        break;
    case Http_Fault::huge: // blanks are JSON between two members, so the document stays valid
        reply.body.insert(1, QByteArray(faults.http_size, ' '));
        break;
    case Http_Fault::bulky:
        reply.body.insert(1, bulk(faults.http_size));
        break;
    case Http_Fault::wrong_types:
        reply.body = with_each_member(reply.body, with_wrong_types);
        break;
    case Http_Fault::wrong_members:
        reply.body = with_each_member(reply.body, with_wrong_members);
        break;
    default:
        break;
    }
    return reply;
}
} // namespace

Api_Port::Api_Port(Speaker_Config &config, const Speaker_Faults &faults, Http_Record &record, QObject *parent)
    : QObject(parent)
    , server(record, this)
    , api(config, faults, this)
    , faults(faults)
    , record(record)
{
    connect(&server, &Http_Server::requested, this, &Api_Port::take);
    connect(&api, &Speaker_Api::event, this, &Api_Port::event);
}

void Api_Port::take(Http_Connection *connection, Http_Request request)
{
    const QJsonObject object = api.read(request);
    emit event(QString("<- %1 %2 %3")
                   .arg(QString::fromLatin1(request.method), QString::fromLatin1(request.path),
                        readable(request.body)));
    if (!request.json_ok)
        emit event("!! the body is not JSON: " + request.json_error);
    record.add(request);
    const Held now{connection, request, object};
    switch (faulty(request) ? faults.http : Http_Fault::none) {
    case Http_Fault::silent:
        break;
    case Http_Fault::hold:
        held.push_back(now);
        break;
    case Http_Fault::reset:
        connection->reset();
        break;
    default:
        answer(now);
        break;
    }
}

void Api_Port::answer(const Held &request)
{
    if (!request.connection)
        return;
    Http_Reply reply;
    bool leaving = false;
    int delay = 0;
    if (!faulty(request.request)) {
        reply = api.answer(request.request, request.object, &leaving);
    } else if (!faults.http_returncode.isEmpty()) {
        const QJsonObject refusal{{"returncode", faults.http_returncode}};
        reply.body = QJsonDocument(refusal).toJson(QJsonDocument::Compact);
        delay = faults.http_slow_ms;
    } else {
        reply = spoilt(api.answer(request.request, request.object, &leaving), faults);
        delay = faults.http_slow_ms;
    }
    emit changed();
    send(request.connection, reply, leaving, delay);
}

void Api_Port::send(const QPointer<Http_Connection> &connection, const Http_Reply &reply, bool leaving,
                    int delay_ms)
{
    const auto now = [this, connection, reply, leaving] {
        if (connection) {
            emit event(QString("-> %1 %2").arg(reply.status).arg(readable(reply.body)));
            Http_Reply last = reply;
            last.close = reply.close || leaving; // so that the answer is out before the speaker is
            if (leaving)
                connect(connection, &QObject::destroyed, this, &Api_Port::departed, Qt::QueuedConnection);
            connection->send(last);
        } else if (leaving) { // whoever asked did not wait for the answer
            emit departed();
        }
    };
    if (delay_ms > 0)
        QTimer::singleShot(delay_ms, this, now);
    else
        now();
}

bool Api_Port::faulty(const Http_Request &request) const
{
    return faults.http_only.isEmpty() || faults.http_only == request.action ||
           faults.http_only == QString::fromLatin1(request.path);
}

void Api_Port::apply_faults()
{
    if (faults.http == Http_Fault::hold)
        return;
    std::vector<Held> due;
    due.swap(held);
    for (const Held &request : due)
        answer(request);
}

void Api_Port::drop_held()
{
    held.clear();
}
