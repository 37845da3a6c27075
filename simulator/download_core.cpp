// SPDX-License-Identifier: MIT
#include "simulator/download_core.h"

#include "simulator/hex_image.h"
#include "simulator/http_connection.h"
#include "simulator/readable.h"

namespace
{
const QString folder = "/current/";
const QByteArray error_page = QByteArrayLiteral("<html><body><h1>Error</h1></body></html>\n");

QByteArray made_content(int size)
{
    QByteArray content(size, '\0');
    quint32 state = 1;
    for (char &byte : content) {
        state = state * 1664525U + 1013904223U;
        byte = char(state >> 24);
    }
    return content;
}

Http_Reply page(int status)
{
    Http_Reply reply;
    reply.status = status;
    reply.content_type = "text/html";
    reply.body = error_page;
    return reply;
}
} // namespace

Download_Core::Download_Core(const Download_Config &config, Http_Record &record)
    : config(config)
    , server(record, this)
    , record(record)
{
    files.insert("ventaro.swu", made_content(config.swu_size));
    int seed = 0;
    for (const QString &code : Download_Server::model_codes())
        files.insert(code + "_host.hex", make_hex_text(config.hex_lines, ++seed, config.hex_line_end));
    for (auto file = config.files.begin(); file != config.files.end(); ++file)
        files.insert(file.key(), file->toUtf8());
    connect(&server, &Http_Server::requested, this, &Download_Core::take);
}

void Download_Core::take(Http_Connection *connection, const Http_Request &request)
{
    record.add(request);
    const QByteArray agent = request.header("User-Agent");
    tell(QString("<- %1 %2").arg(QString::fromLatin1(request.method), readable(request.path)) +
         (agent.isEmpty() ? QString() : ", for " + readable(agent)));
    Http_Reply reply;
    const QString path = QString::fromUtf8(QByteArray::fromPercentEncoding(request.path));
    const auto file = files.constFind(path.mid(folder.size()));
    if (request.method != "GET" && request.method != "HEAD") {
        reply = page(405);
        reply.headers.append(qMakePair(QByteArray("Allow"), QByteArray("GET, HEAD")));
    } else if (!path.startsWith(folder) || file == files.constEnd()) {
        reply = page(404);
    } else {
        reply.content_type = "application/octet-stream";
        reply.body = *file;
    }
    const bool faulty =
        faults.only_method.isEmpty() || faults.only_method == QString::fromLatin1(request.method);
    if (faulty && faults.fault != Download_Fault::none) {
        misbehave(connection, reply);
        return;
    }
    tell(QString("-> %1, %2 bytes").arg(reply.status).arg(reply.body.size()));
    connection->send(reply);
}

void Download_Core::misbehave(Http_Connection *connection, Http_Reply reply)
{
    tell("-> misbehaves");
    switch (faults.fault) {
    case Download_Fault::not_found:
        connection->send(page(404));
        break;
    case Download_Fault::no_length:
        reply.no_length = true;
        connection->send(reply);
        break;
    case Download_Fault::redirect:
        reply = page(302);
        reply.headers.append(qMakePair(QByteArray("Location"), QByteArray("/elsewhere/")));
        connection->send(reply);
        break;
    case Download_Fault::reset:
        connection->send_part(reply, faults.reset_after);
        break;
    case Download_Fault::empty:
        reply.body.clear();
        connection->send(reply);
        break;
    case Download_Fault::error_page: // with the status of a success, as some proxies do
        connection->send(page(200));
        break;
    case Download_Fault::slow:
        connection->send_slowly(reply, faults.slow_chunk, faults.slow_gap_ms);
        break;
    case Download_Fault::silent:
    case Download_Fault::none:
        break;
    }
}

void Download_Core::tell(const QString &text)
{
    if (event_sink)
        event_sink(text);
}
