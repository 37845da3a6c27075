// SPDX-License-Identifier: MIT
#include <QtTest>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

#include "simulator/download_server.h"
#include "simulator/hex_image.h"
#include "simulator/loopback.h"
#include "tests/simulator/raw_client.h"

// The virtual download server: what it serves, and each of its faults as bytes on a socket.
class tst_Download_Server : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void get_gives_the_whole_file();
    void head_gives_the_size_alone();
    void every_model_code_has_a_whole_hex_file();
    void files_are_the_same_in_every_server();
    void files_of_two_codes_differ();
    void a_file_can_be_replaced();
    void a_file_may_be_given_from_the_start();
    void what_is_not_there_is_404_data();
    void what_is_not_there_is_404();
    void other_methods_are_refused();
    void requests_are_recorded_in_order();
    void it_tells_who_asked_for_what();
    void a_connection_serves_several_requests();
    void a_fault_has_its_form_data();
    void a_fault_has_its_form();
    void a_reset_comes_after_its_part_of_the_file_data();
    void a_reset_comes_after_its_part_of_the_file();
    void slow_comes_in_chunks_and_whole();
    void silent_never_answers();
    void a_fault_may_be_limited_to_a_method();
    void every_fault_has_a_word();
    void a_taken_port_is_told_and_another_one_serves();

private:
    QByteArray exchange(const QByteArray &request);
    static QByteArray head_of(const QByteArray &answer)
    {
        return answer.left(answer.indexOf("\r\n\r\n") + 4);
    }
    static QByteArray body_of(const QByteArray &answer) { return answer.mid(answer.indexOf("\r\n\r\n") + 4); }
    static Download_Config config()
    {
        Download_Config config;
        config.address = own_loopback(1);
        config.swu_size = 5000;
        config.hex_lines = 40;
        return config;
    }

    std::unique_ptr<Download_Server> server;
};

void tst_Download_Server::init()
{
    server = std::make_unique<Download_Server>(config());
    QVERIFY2(server->start(), qPrintable(server->error()));
}

void tst_Download_Server::cleanup()
{
    server.reset();
}

// The answer to a request after which the connection is closed.
QByteArray tst_Download_Server::exchange(const QByteArray &request)
{
    Raw_Client client;
    if (!client.open(own_loopback(1), server->port()))
        return "no connection";
    client.send(request + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    return client.read_to_end();
}

void tst_Download_Server::get_gives_the_whole_file()
{
    const QByteArray answer = exchange("GET /current/ventaro.swu");
    QVERIFY(answer.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(head_of(answer).contains("\r\nContent-Length: 5000\r\n"));
    QCOMPARE(body_of(answer), server->file("ventaro.swu"));
    QCOMPARE(body_of(answer).size(), 5000);
}

void tst_Download_Server::head_gives_the_size_alone()
{
    const QByteArray answer = exchange("HEAD /current/vc3w_host.hex");
    QVERIFY(answer.startsWith("HTTP/1.1 200 OK\r\n"));
    const QByteArray size = QByteArray::number(server->file("vc3w_host.hex").size());
    QVERIFY(answer.contains("\r\nContent-Length: " + size + "\r\n"));
    QCOMPARE(body_of(answer), QByteArray());
}

void tst_Download_Server::every_model_code_has_a_whole_hex_file()
{
    const QStringList codes = Download_Server::model_codes();
    QCOMPARE(codes.size(), 16);
    for (const QString &code : codes) {
        const QByteArray text = body_of(exchange("GET /current/" + code.toLatin1() + "_host.hex"));
        QVERIFY(text.endsWith("\r\n"));
        Hex_Image image;
        for (const QByteArray &line : text.chopped(2).split('\n'))
            image.take(line.trimmed());
        QVERIFY2(image.whole(), qPrintable(code + ": " + image.complaints().join("; ")));
        QCOMPARE(image.lines(), 40);
    }
}

void tst_Download_Server::files_are_the_same_in_every_server()
{
    Download_Config other_config = config();
    other_config.address = own_loopback(2);
    const Download_Server other(other_config);
    for (const QString name : {"ventaro.swu", "vc3w_host.hex", "vcc.3w_host.hex"}) {
        QVERIFY(!server->file(name).isEmpty());
        QCOMPARE(other.file(name), server->file(name));
    }
}

void tst_Download_Server::files_of_two_codes_differ()
{
    QVERIFY(server->file("vc3w_host.hex") != server->file("vc5w_host.hex"));
}

void tst_Download_Server::a_file_can_be_replaced()
{
    server->set_file("xxx_host.hex", ":00000001FF\n");
    QCOMPARE(body_of(exchange("GET /current/xxx_host.hex")), QByteArray(":00000001FF\n"));
}

void tst_Download_Server::a_file_may_be_given_from_the_start()
{
    Download_Config with_files = config();
    with_files.address = own_loopback(2);
    with_files.files = {{"vc3w_host.hex", "a\r\n\nä"}, {"empty.hex", ""}};
    const Download_Server other(with_files);
    QCOMPARE(other.file("vc3w_host.hex"), QByteArray("a\r\n\n\xc3\xa4"));
    QVERIFY(!other.file("empty.hex").isNull());
    QCOMPARE(other.file("vc5w_host.hex"), server->file("vc5w_host.hex"));
}

void tst_Download_Server::what_is_not_there_is_404_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addRow("no such file") << QByteArray("/current/nothing.swu");
    QTest::addRow("a code that is none") << QByteArray("/current/xxx_host.hex");
    QTest::addRow("the folder") << QByteArray("/current/");
    QTest::addRow("outside of the folder") << QByteArray("/ventaro.swu");
    QTest::addRow("another folder") << QByteArray("/currant/ventaro.swu");
}

void tst_Download_Server::what_is_not_there_is_404()
{
    QFETCH(QByteArray, path);
    QVERIFY(exchange("GET " + path).startsWith("HTTP/1.1 404 Not Found\r\n"));
    QVERIFY(exchange("HEAD " + path).startsWith("HTTP/1.1 404 Not Found\r\n"));
}

void tst_Download_Server::other_methods_are_refused()
{
    const QByteArray answer = exchange("DELETE /current/ventaro.swu");
    QVERIFY2(answer.startsWith("HTTP/1.1 411 "), answer.constData()); // it might have a body of any length
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), server->port()));
    client.send("POST /current/ventaro.swu HTTP/1.1\r\nContent-Length: 2\r\nConnection: close\r\n\r\n{}");
    const QByteArray refusal = client.read_to_end();
    QVERIFY2(refusal.startsWith("HTTP/1.1 405 "), refusal.constData());
    QVERIFY(refusal.contains("\r\nAllow: GET, HEAD\r\n"));
}

void tst_Download_Server::requests_are_recorded_in_order()
{
    exchange("HEAD /current/ventaro.swu");
    exchange("GET /current/vc3w_host.hex");
    QVERIFY(server->wait_for_requests(2));
    QVERIFY(!server->wait_for_requests(3, 20));
    const QList<Http_Request> requests = server->requests();
    QCOMPARE(requests.at(0).method, QByteArray("HEAD"));
    QCOMPARE(requests.at(0).path, QByteArray("/current/ventaro.swu"));
    QCOMPARE(requests.at(1).method, QByteArray("GET"));
    QCOMPARE(requests.at(1).header("host"), QByteArray("x"));
    QVERIFY(requests.at(1).us >= requests.at(0).us);
    server->clear_record();
    QCOMPARE(server->requests().size(), 0);
}

void tst_Download_Server::it_tells_who_asked_for_what()
{
    QStringList events; // all are there with the answer
    server->set_event_sink([&events](const QString &text) { events += text; });
    exchange("HEAD /current/ventaro.swu");
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), server->port()));
    client.send("GET /current/x HTTP/1.1\r\nUser-Agent: a module\r\nConnection: close\r\n\r\n");
    client.read_to_end();
    server->set_event_sink({});
    QCOMPARE(events, QStringList({"<- HEAD /current/ventaro.swu", "-> 200, 5000 bytes",
                                  "<- GET /current/x, for a module", "-> 404, 41 bytes"}));
}

void tst_Download_Server::a_connection_serves_several_requests()
{
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), server->port()));
    const QByteArray ask = "HEAD /current/ventaro.swu HTTP/1.1\r\n\r\n";
    client.send(ask);
    QVERIFY(client.read_to("\r\n\r\n").startsWith("HTTP/1.1 200 OK\r\n"));
    client.send(ask + ask); // also two at once
    const QByteArray both = client.read_size(2 * head_of(exchange("HEAD /current/ventaro.swu")).size());
    QCOMPARE(both.count("HTTP/1.1 200 OK\r\n"), 2);
    QCOMPARE(server->requests().at(0).connection, server->requests().at(2).connection);
}

void tst_Download_Server::a_fault_has_its_form_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<int>("size");
    QTest::addRow("not-found") << "not-found" << QByteArray("HTTP/1.1 404 Not Found\r\n")
                               << QByteArray("Content-Length: 41\r\n") << 41;
    QTest::addRow("no-length") << "no-length" << QByteArray("HTTP/1.1 200 OK\r\n")
                               << QByteArray("Connection: close\r\n") << 5000;
    QTest::addRow("redirect") << "redirect" << QByteArray("HTTP/1.1 302 Found\r\n")
                              << QByteArray("Location: /elsewhere/\r\n") << 41;
    QTest::addRow("empty") << "empty" << QByteArray("HTTP/1.1 200 OK\r\n")
                           << QByteArray("Content-Length: 0\r\n") << 0;
    QTest::addRow("error-page") << "error-page" << QByteArray("HTTP/1.1 200 OK\r\n")
                                << QByteArray("Content-Type: text/html\r\n") << 41;
}

void tst_Download_Server::a_fault_has_its_form()
{
    QFETCH(QString, word);
    QFETCH(QByteArray, start);
    QFETCH(QByteArray, header);
    QFETCH(int, size);
    Download_Faults faults;
    QVERIFY(set_download_fault(faults, word));
    server->set_faults(faults);
    const QByteArray answer = exchange("GET /current/ventaro.swu");
    QVERIFY2(answer.startsWith(start), answer.left(40).constData());
    QVERIFY2(head_of(answer).contains("\r\n" + header), head_of(answer).constData());
    QCOMPARE(head_of(answer).contains("Content-Length"), word != "no-length");
    QCOMPARE(body_of(answer).size(), size);
}

void tst_Download_Server::a_reset_comes_after_its_part_of_the_file_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<int>("size");
    QTest::addRow("GET") << QByteArray("GET") << 1234;
    QTest::addRow("HEAD") << QByteArray("HEAD") << 0; // it has no body to break off in
}

void tst_Download_Server::a_reset_comes_after_its_part_of_the_file()
{
    QFETCH(QByteArray, method);
    QFETCH(int, size);
    Download_Faults faults;
    faults.fault = Download_Fault::reset;
    faults.reset_after = 1234;
    server->set_faults(faults);
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), server->port()));
    client.send(method + " /current/ventaro.swu HTTP/1.1\r\n\r\n");
    // Below Qt, whose sockets show a reset and an orderly end alike.
    const int handle = int(client.socket.socketDescriptor());
    QByteArray answer;
    char buffer[1000];
    pollfd ready{handle, POLLIN, 0};
    ssize_t count = 0;
    while (poll(&ready, 1, 5000) == 1 && (count = recv(handle, buffer, sizeof buffer, 0)) > 0)
        answer.append(buffer, int(count));
    QCOMPARE(count, ssize_t(-1));
    QCOMPARE(errno, ECONNRESET);
    QVERIFY(head_of(answer).contains("\r\nContent-Length: 5000\r\n"));
    QCOMPARE(body_of(answer), server->file("ventaro.swu").left(size));
}

void tst_Download_Server::slow_comes_in_chunks_and_whole()
{
    Download_Faults faults;
    faults.fault = Download_Fault::slow;
    faults.slow_chunk = 1000;
    faults.slow_gap_ms = 10;
    server->set_faults(faults);
    QElapsedTimer clock;
    clock.start();
    const QByteArray answer = exchange("GET /current/ventaro.swu");
    QVERIFY(clock.elapsed() >= 40); // five chunks with a gap before each
    QCOMPARE(body_of(answer), server->file("ventaro.swu"));
}

void tst_Download_Server::silent_never_answers()
{
    Download_Faults faults;
    faults.fault = Download_Fault::silent;
    server->set_faults(faults);
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), server->port()));
    client.send("GET /current/ventaro.swu HTTP/1.1\r\n\r\n");
    QVERIFY(server->wait_for_requests(1));
    QCOMPARE(client.read_to("x", 100), QByteArray());
    QCOMPARE(client.socket.state(), QAbstractSocket::ConnectedState);
}

void tst_Download_Server::a_fault_may_be_limited_to_a_method()
{
    Download_Faults faults;
    faults.fault = Download_Fault::not_found;
    faults.only_method = "GET";
    server->set_faults(faults);
    QVERIFY(exchange("HEAD /current/ventaro.swu").startsWith("HTTP/1.1 200 "));
    QVERIFY(exchange("GET /current/ventaro.swu").startsWith("HTTP/1.1 404 "));
    server->set_faults(Download_Faults());
    QVERIFY(exchange("GET /current/ventaro.swu").startsWith("HTTP/1.1 200 "));
}

void tst_Download_Server::every_fault_has_a_word()
{
    QCOMPARE(download_fault_words(), QStringList({"none", "not-found", "no-length", "redirect", "reset",
                                                  "empty", "error-page", "slow", "silent"}));
    Download_Faults faults;
    for (const QString &word : download_fault_words())
        QVERIFY(set_download_fault(faults, word));
    QCOMPARE(int(faults.fault), int(Download_Fault::silent));
    QVERIFY(!set_download_fault(faults, "404"));
    QCOMPARE(int(faults.fault), int(Download_Fault::silent));
}

void tst_Download_Server::a_taken_port_is_told_and_another_one_serves()
{
    Download_Config taken = config();
    taken.port = server->port();
    Download_Server second(taken);
    QVERIFY(!second.start());
    QVERIFY(!second.error().isEmpty());
    QVERIFY(second.start_on(0));
    QVERIFY(second.port() != server->port());
    QCOMPARE(second.url(), QString("http://%1:%2/current/").arg(own_loopback(1)).arg(second.port()));
    const quint16 port = second.port();
    Raw_Client client;
    QVERIFY(client.open(own_loopback(1), port));
    second.stop();
    QVERIFY(client.wait_closed());
    QVERIFY(!client.open(own_loopback(1), port));
}

QTEST_GUILESS_MAIN(tst_Download_Server)
#include "tst_download_server.moc"
