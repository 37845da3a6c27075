// SPDX-License-Identifier: MIT
#include <QtTest>
#include <memory>

#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/simulator/http_client.h"

namespace
{
const QByteArray path = "/api/v19/songcast/receiver.action";
} // namespace

// HTTP itself, as the speaker's JSON API and the download server share it.
class tst_Http_Server : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void requests_share_a_connection_and_may_come_in_pieces();
    void what_is_no_http_is_refused_data();
    void what_is_no_http_is_refused();

private:
    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<Http_Client> client;
};

void tst_Http_Server::init()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    speaker = std::make_unique<Virtual_Speaker>(config);
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    client = std::make_unique<Http_Client>();
    QVERIFY(client->open(speaker->address(), speaker->http_port()));
}

void tst_Http_Server::cleanup()
{
    client.reset();
    speaker.reset();
}

void tst_Http_Server::requests_share_a_connection_and_may_come_in_pieces()
{
    const QByteArray body = R"({"action": "state"})";
    const QByteArray request = "POST " + path + " HTTP/1.1\r\nContent-Length: 19\r\n\r\n" + body;
    QCOMPARE(body.size(), 19);
    QCOMPARE(client->post(path, body).header("Connection"), QByteArray("keep-alive"));
    // One and a half at once, then the rest.
    client->send(request + request.left(request.size() - 5));
    QCOMPARE(client->read_answer().status, 200);
    QCOMPARE(speaker->http_requests().size(), 2);
    client->send(request.right(5));
    QCOMPARE(client->read_answer().status, 200);
    QCOMPARE(speaker->http_requests("state").size(), 3);

    const Http_Answer last = client->post(path, body, "Connection: close\r\n");
    QCOMPARE(last.header("Connection"), QByteArray("close"));
    QVERIFY(client->wait_closed());
    Http_Client old;
    QVERIFY(old.open(speaker->address(), speaker->http_port()));
    QCOMPARE(old.exchange(QByteArray(request).replace("HTTP/1.1", "HTTP/1.0")).status, 200);
    QVERIFY(old.wait_closed());
    QCOMPARE(speaker->http_requests().last().connection, 2);
    QCOMPARE(speaker->http_connections().accepted, 2);
    QVERIFY(speaker->wait_until([this] { return speaker->http_connections().open == 0; }));
}

void tst_Http_Server::what_is_no_http_is_refused_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("status");
    QTest::newRow("no request line") << QByteArray("RZ!vo037\r\n\r\n") << 400;
    QTest::newRow("no version") << QByteArray("POST /\r\n\r\n") << 400;
    QTest::newRow("header without a colon")
        << QByteArray("POST / HTTP/1.1\r\nContent-Length 5\r\n\r\n") << 400;
    QTest::newRow("length is no number") << QByteArray("POST / HTTP/1.1\r\nContent-Length: x\r\n\r\n") << 400;
    QTest::newRow("length below 0") << QByteArray("POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n") << 400;
    QTest::newRow("no length") << QByteArray("POST / HTTP/1.1\r\n\r\n") << 411;
    QTest::newRow("chunked") << QByteArray("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n") << 411;
    QTest::newRow("too long") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 99999999\r\n\r\n") << 413;
    QTest::newRow("endless head") << QByteArray("POST / HTTP/1.1\r\nX: ") + QByteArray(20000, 'x') << 431;
    QTest::newRow("other version") << QByteArray("POST / HTTP/2.0\r\n\r\n") << 505;
}

void tst_Http_Server::what_is_no_http_is_refused()
{
    QFETCH(QByteArray, request);
    QTEST(client->exchange(request).status, "status");
    QVERIFY(client->wait_closed());
    QCOMPARE(speaker->http_requests().size(), 0);
}

QTEST_GUILESS_MAIN(tst_Http_Server)
#include "tst_http_server.moc"
