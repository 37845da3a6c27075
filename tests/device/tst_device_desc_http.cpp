// SPDX-License-Identifier: MIT
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

#include "app/globals.h"
#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/device/status_fields.h"
#include "tests/fakes/log_capture.h"

namespace
{
int managers_of(const Device_Desc &record)
{
    return record.findChildren<QNetworkAccessManager *>().size();
}
} // namespace

class tst_device_desc_http : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_request_makes_the_type_known_that_http_threads_would_race_for();
    void a_request_is_a_post_with_exact_headers_and_body_data();
    void a_request_is_a_post_with_exact_headers_and_body();
    void a_body_travels_as_utf8();
    void the_serial_of_requests_rises_across_all_records();
    void a_request_counts_up_at_once_and_down_with_its_reply();
    void requests_of_one_record_go_out_at_the_same_time();
    void reply_and_manager_are_freed_after_the_handler();

    void an_unusable_reply_changes_nothing_and_counts_down_once_data();
    void an_unusable_reply_changes_nothing_and_counts_down_once();
    void a_refused_connection_counts_down_once();
    void a_record_without_address_counts_down_once();
    void an_error_page_that_is_json_is_read_like_any_reply();
    void the_bytes_of_a_reply_are_logged();
    void a_redirect_is_not_followed();
    void a_silent_speaker_keeps_the_request_open();
    void a_record_destroyed_with_a_request_in_flight_leaves_the_count_right();

    void completion_is_told_once_by_the_record_that_comes_last();
    void completion_is_told_with_the_mutex_held();

private:
    QScopedPointer<Http_Peer> peer;
};

void tst_device_desc_http::initTestCase()
{
    qRegisterMetaType<Device_Desc *>();
}

void tst_device_desc_http::init()
{
    resolves_running = 0;
    peer.reset(new Http_Peer(QHostAddress(own_loopback(1))));
    QVERIFY(peer->isListening());
}

void tst_device_desc_http::cleanup()
{
    QCOMPARE(resolves_running, 0);
}

// First of all tests, since a type that is known stays so. The name is Qt's own.
void tst_device_desc_http::a_request_makes_the_type_known_that_http_threads_would_race_for()
{
    const char *type = "QSharedPointer<QNetworkSession>";
    QCOMPARE(QMetaType::type(type), int(QMetaType::UnknownType));
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer("{}");
    record.request_device_status();
    QVERIFY(QMetaType::type(type) != QMetaType::UnknownType);
    QTRY_COMPARE(managers_of(record), 0);
}

void tst_device_desc_http::a_request_is_a_post_with_exact_headers_and_body_data()
{
    QTest::addColumn<bool>("network");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("device") << false << QByteArray("POST /api/v19/device.action HTTP/1.1");
    QTest::newRow("network") << true << QByteArray("POST /api/v19/network.action HTTP/1.1");
}

void tst_device_desc_http::a_request_is_a_post_with_exact_headers_and_body()
{
    QFETCH(bool, network);
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer("{}");
    network ? record.request_network_status() : record.request_device_status();
    QTRY_COMPARE(resolves_running, 0);

    QCOMPARE(peer->requests.size(), 1);
    const Http_Peer::Request &request = peer->requests.first();
    QTEST(request.line, "line");
    QCOMPARE(request.body, QByteArray(R"({"action": "info"})"));
    QCOMPARE(request.headers.count("Content-Type: application/json"), 1);
    QCOMPARE(request.headers.count("charset: UTF-8"), 1);
    QCOMPARE(request.headers.count("Content-Length: 18"), 1);
    const QString host = peer->serverAddress().toString() + ":" + QString::number(peer->serverPort());
    QVERIFY(request.headers.contains("Host: " + host.toLatin1()));
}

void tst_device_desc_http::a_body_travels_as_utf8()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer("{}");
    record._request(record.wifi_url, QString::fromUtf8("Küche 東"),
                    SLOT(replyFinished_device_status(QNetworkReply *)));
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(peer->requests.first().line, QByteArray("POST /api/v19/wifi.action HTTP/1.1"));
    QCOMPARE(peer->requests.first().body, QByteArray("K\xc3\xbc"
                                                     "che \xe6\x9d\xb1"));
}

void tst_device_desc_http::the_serial_of_requests_rises_across_all_records()
{
    Device_Desc first(nullptr, false, "");
    Device_Desc second(nullptr, false, "");
    peer->answer = http_answer("{}");
    peer->point_at_me(first);
    peer->point_at_me(second);
    first.set_name("One");
    second.set_name("Two");

    request_serial = 41;
    const auto expect = [](const Device_Desc &record, int serial) {
        const QString text = QString("Device_Desc( \"%1\" )::_request( \"%2\" , \"{\\\"action\\\": "
                                     "\\\"info\\\"}\" ) # %3  started...")
                                 .arg(record.name, record.device_url)
                                 .arg(serial);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(text));
    };
    expect(first, 42);
    expect(second, 43);
    expect(first, 44);
    first.request_device_status();
    second.request_device_status();
    first.request_device_status();
    QCOMPARE(request_serial, 44);
    QTRY_COMPARE(resolves_running, 0);
}

void tst_device_desc_http::a_request_counts_up_at_once_and_down_with_its_reply()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    record.request_device_status();
    QCOMPARE(resolves_running, 1);
    record.request_network_status();
    QCOMPARE(resolves_running, 2);

    QTRY_COMPARE(peer->requests.size(), 2);
    QCOMPARE(resolves_running, 2);
    peer->answer_now(peer->requests.at(0), http_answer(device_info));
    QTRY_COMPARE(resolves_running, 1);
    peer->answer_now(peer->requests.at(1), http_answer(network_info));
    QTRY_COMPARE(resolves_running, 0);
}

void tst_device_desc_http::requests_of_one_record_go_out_at_the_same_time()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    // More than one manager would let through to one peer.
    const int many = 12;
    for (int i = 0; i < many; i++)
        record.request_device_status();
    QTRY_COMPARE(peer->requests.size(), many);
    for (const Http_Peer::Request &request : qAsConst(peer->requests))
        peer->answer_now(request, http_answer(device_info));
    QTRY_COMPARE(resolves_running, 0);
}

void tst_device_desc_http::reply_and_manager_are_freed_after_the_handler()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    record.request_device_status();
    record.request_network_status();
    QCOMPARE(managers_of(record), 2);
    const auto managers = record.findChildren<QNetworkAccessManager *>();
    QSignalSpy first_gone(managers.at(0), &QObject::destroyed);
    QPointer<QNetworkReply> reply = managers.at(0)->findChild<QNetworkReply *>();
    QVERIFY(reply);

    QTRY_COMPARE(peer->requests.size(), 2);
    const bool device_first = peer->requests.at(0).line.contains("device");
    peer->answer_now(peer->requests.at(device_first ? 0 : 1), http_answer(device_info));
    QTRY_COMPARE(first_gone.count(), 1);
    QVERIFY(!reply);
    QCOMPARE(record.model, QString("VIRELO Air"));
    QCOMPARE(managers_of(record), 1);

    peer->answer_now(peer->requests.at(device_first ? 1 : 0), http_answer("no JSON"));
    QTRY_COMPARE(managers_of(record), 0);
}

void tst_device_desc_http::an_unusable_reply_changes_nothing_and_counts_down_once_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("close");
    QTest::addColumn<QByteArray>("log");
    const QByteArray null = "Document is NULL";
    const QByteArray no_keys = "Object is empty";
    QTest::newRow("{}") << http_answer("{}") << false << no_keys;
    QTest::newRow("blanks in {}") << http_answer(" { \n } ") << false << no_keys;
    QTest::newRow("a list") << http_answer("[{\"model\": \"M\"}]") << false << no_keys;
    QTest::newRow("empty body") << http_answer("") << false << null;
    QTest::newRow("error page") << http_answer("<html>No</html>", "500 Internal Server Error") << false
                                << null;
    QTest::newRow("not found, without body") << http_answer("", "404 Not Found") << false << null;
    QTest::newRow("half a document") << http_answer(R"({"model": "M", "wlan": {"mo)") << false << null;
    QTest::newRow("less than announced")
        << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"model\": \"M\", ") << true << null;
    QTest::newRow("closed without a byte") << QByteArray("") << true << null;
    QTest::newRow("a number") << http_answer("7") << false << null;
    QTest::newRow("no HTTP") << QByteArray("RZ#00\r\n\r\n") << true << null;
}

void tst_device_desc_http::an_unusable_reply_changes_nothing_and_counts_down_once()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, close);
    QFETCH(QByteArray, log);
    Device_Desc record(nullptr, false, "");
    QSignalSpy defect(&record, &Device_Desc::device_defect);
    fill_status(record);
    peer->point_at_me(record);
    peer->answer = answer;
    peer->close_after_answer = close;
    record.resolve_started(); // so that a second count down would show
    QList<int> running;       // the defect is told before the count goes down
    connect(&record, &Device_Desc::device_defect, this, [&running] { running += resolves_running; });

    QTest::ignoreMessage(QtDebugMsg, log);
    record.request_device_status();
    QTRY_COMPARE(managers_of(record), 0);
    QCOMPARE(resolves_running, 1);
    QTest::ignoreMessage(QtDebugMsg, log);
    record.request_network_status();
    QTRY_COMPARE(managers_of(record), 0);
    QCOMPARE(resolves_running, 1);

    QCOMPARE(status_of(record), filled_status());
    QCOMPARE(running, QList<int>({2, 2}));
    QCOMPARE(defect.count(), 2);
    QCOMPARE(defect.first().first().value<Device_Desc *>(), &record);
    record.resolve_finished();
}

void tst_device_desc_http::a_refused_connection_counts_down_once()
{
    Device_Desc record(nullptr, false, "");
    QSignalSpy defect(&record, &Device_Desc::device_defect);
    fill_status(record);
    peer->point_at_me(record);
    peer->close();
    QTest::ignoreMessage(QtDebugMsg, "Document is NULL");
    record.request_device_status();
    QCOMPARE(resolves_running, 1);
    QTRY_COMPARE(managers_of(record), 0);
    QCOMPARE(resolves_running, 0);
    QCOMPARE(defect.count(), 1);
    QCOMPARE(status_of(record), filled_status());
}

void tst_device_desc_http::a_record_without_address_counts_down_once()
{
    Device_Desc record(nullptr, false, "");
    QTest::ignoreMessage(QtDebugMsg, "Document is NULL");
    record.request_device_status();
    QCOMPARE(resolves_running, 1);
    QTRY_COMPARE(managers_of(record), 0);
    QCOMPARE(resolves_running, 0);
}

void tst_device_desc_http::an_error_page_that_is_json_is_read_like_any_reply()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer(device_info, "500 Internal Server Error");
    record.request_device_status();
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(record.model, QString("VIRELO Air"));
}

void tst_device_desc_http::the_bytes_of_a_reply_are_logged()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer("<html>No</html>");
    const Log_Capture log;
    record.request_device_status();
    QTRY_COMPARE(managers_of(record), 0);
    QCOMPARE(log.debug_lines().filter("<html>No</html>").size(), 1);
}

void tst_device_desc_http::a_redirect_is_not_followed()
{
    Http_Peer elsewhere{QHostAddress(own_loopback(2))};
    elsewhere.answer = http_answer(device_info);
    const QByteArray target = "http://" + elsewhere.serverAddress().toString().toLatin1() + ":" +
                              QByteArray::number(elsewhere.serverPort());

    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer =
        "HTTP/1.1 307 Temporary Redirect\r\nLocation: " + target + "/\r\nContent-Length: 0\r\n\r\n";
    QTest::ignoreMessage(QtDebugMsg, "Document is NULL");
    record.request_device_status();
    QTRY_COMPARE(managers_of(record), 0);
    QCOMPARE(elsewhere.requests.size(), 0);
    QVERIFY(!elsewhere.hasPendingConnections());
    QVERIFY(record.model.isEmpty());
}

void tst_device_desc_http::a_silent_speaker_keeps_the_request_open()
{
    Device_Desc record(nullptr, false, "");
    Device_Desc other(nullptr, false, "");
    QSignalSpy completed(&other, &Device_Desc::all_resolves_completed);
    peer->point_at_me(record);
    peer->point_at_me(other);
    record.request_device_status();
    QTRY_COMPARE(peer->requests.size(), 1);

    peer->answer = http_answer(device_info);
    other.request_device_status();
    QTRY_COMPARE(managers_of(other), 0);
    QCOMPARE(resolves_running, 1);
    QCOMPARE(managers_of(record), 1);
    QCOMPARE(completed.count(), 0);

    peer->answer_now(peer->requests.first(), http_answer(device_info));
    QTRY_COMPARE(resolves_running, 0);
}

void tst_device_desc_http::a_record_destroyed_with_a_request_in_flight_leaves_the_count_right()
{
    Device_Desc other(nullptr, false, "");
    peer->point_at_me(other);
    QSignalSpy completed(&other, &Device_Desc::all_resolves_completed);
    auto *record = new Device_Desc(nullptr, false, "");
    int told = 0;
    connect(record, &Device_Desc::all_resolves_completed, this, [&told] { told++; });
    peer->point_at_me(*record);
    record->request_device_status();
    record->request_network_status();
    record->request_device_status();
    QTRY_COMPARE(peer->requests.size(), 3);
    peer->answer_now(peer->requests.first(), http_answer("{}"));
    QTRY_COMPARE(resolves_running, 2);

    delete record;
    QCOMPARE(resolves_running, 0);
    QCOMPARE(told, 0);

    peer->answer = http_answer(device_info);
    other.request_device_status();
    QTRY_COMPARE(completed.count(), 1);
}

void tst_device_desc_http::completion_is_told_once_by_the_record_that_comes_last()
{
    Device_Desc first(nullptr, false, "");
    Device_Desc second(nullptr, false, "");
    QSignalSpy first_completed(&first, &Device_Desc::all_resolves_completed);
    QSignalSpy second_completed(&second, &Device_Desc::all_resolves_completed);
    peer->point_at_me(first);
    peer->point_at_me(second);
    first.request_device_status();
    QTRY_COMPARE(peer->requests.size(), 1);
    second.request_network_status();
    QTRY_COMPARE(peer->requests.size(), 2);

    peer->answer_now(peer->requests.at(1), http_answer("{}"));
    QTRY_COMPARE(resolves_running, 1);
    QCOMPARE(first_completed.count() + second_completed.count(), 0);
    peer->answer_now(peer->requests.at(0), http_answer(device_info));
    QTRY_COMPARE(first_completed.count(), 1);
    QCOMPARE(second_completed.count(), 0);
    QCOMPARE(first.model, QString("VIRELO Air"));

    // A second wave comes to 0 again.
    peer->answer = http_answer(network_info);
    second.request_network_status();
    QTRY_COMPARE(second_completed.count(), 1);
    QCOMPARE(first_completed.count(), 1);
}

void tst_device_desc_http::completion_is_told_with_the_mutex_held()
{
    Device_Desc record(nullptr, false, "");
    peer->point_at_me(record);
    peer->answer = http_answer(device_info);
    int told = 0;
    bool was_free = false;
    QString model;
    connect(&record, &Device_Desc::all_resolves_completed, this, [&] {
        told++;
        model = record.model;
        was_free = resolves_mutex.tryLock();
        if (was_free)
            resolves_mutex.unlock();
    });
    record.request_device_status();
    QTRY_COMPARE(told, 1);
    QVERIFY(!was_free);
    QCOMPARE(model, QString("VIRELO Air")); // stored before the count goes down
    QVERIFY(resolves_mutex.tryLock());
    resolves_mutex.unlock();
}

QTEST_GUILESS_MAIN(tst_device_desc_http)
#include "tst_device_desc_http.moc"
