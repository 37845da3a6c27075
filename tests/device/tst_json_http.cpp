// SPDX-License-Identifier: MIT
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "device/json_http.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/fakes/log_capture.h"

namespace
{
int times_given_back = 0;

// While it lives no timer object of this thread fires.
class Timers_Held : public QObject
{
public:
    Timers_Held() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::Timer && qobject_cast<QTimer *>(watched);
    }
};
} // namespace

#ifdef __GLIBC__
// In place of the C library's, whose work is not seen from here.
extern "C" int malloc_trim(size_t) noexcept
{
    ++times_given_back;
    return 1;
}
#endif

// Keeps what it is told of each reply.
class Owner : public QObject
{
    Q_OBJECT

public:
    QByteArrayList bodies;
    QList<QNetworkReply::NetworkError> errors;
    QPointer<QNetworkReply> reply;
    std::function<void()> meanwhile;

public slots:
    void take(QNetworkReply *finished)
    {
        reply = finished;
        if (meanwhile)
            meanwhile();
        bodies += finished->readAll();
        errors += finished->error();
    }
};

// The one way to a speaker's JSON API, for any owner. What the record adds is told in tst_device_desc_http.
class tst_json_http : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void a_request_carries_what_it_is_given_data();
    void a_request_carries_what_it_is_given();
    void each_request_has_a_manager_of_its_own();
    void none_queues_behind_another();
    void the_reply_comes_once_and_is_freed_after();
    void the_reply_stays_while_its_slot_runs_events();
    void failures_come_as_replies_too_data();
    void failures_come_as_replies_too();
    void a_reply_of_1_MiB_arrives_whole();
    void a_longer_one_does_not();
    void a_silent_speaker_leaves_it_open();
    void an_owner_that_goes_takes_its_request_along();
    void an_owner_may_go_in_the_slot();
#ifdef __GLIBC__
    void what_fifty_at_once_have_taken_is_given_back_data();
    void what_fifty_at_once_have_taken_is_given_back();
#endif
    void bytes_are_read_as_an_object_data();
    void bytes_are_read_as_an_object();
    void a_reply_is_logged_and_read_as_an_object_data();
    void a_reply_is_logged_and_read_as_an_object();

private:
    QNetworkAccessManager *post(const QString &body = "{}");
    QString url() const;

    std::unique_ptr<Http_Peer> peer;
    std::unique_ptr<Owner> owner;
};

void tst_json_http::init()
{
    peer = std::make_unique<Http_Peer>(QHostAddress(own_loopback(1)));
    QVERIFY(peer->isListening());
    owner = std::make_unique<Owner>();
}

QString tst_json_http::url() const
{
    return QString("http://%1:%2/api/x.action").arg(peer->serverAddress().toString()).arg(peer->serverPort());
}

QNetworkAccessManager *tst_json_http::post(const QString &body)
{
    return post_json(owner.get(), url(), body, "text/plain", SLOT(take(QNetworkReply *)));
}

void tst_json_http::a_request_carries_what_it_is_given_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("plain text") << QByteArray("text/plain") << QByteArray("{\"action\": \"wifiscan\"}");
    QTest::newRow("JSON") << QByteArray("application/json") << QByteArray("{\"a\": \"K\xc3\xbc\" } ");
    QTest::newRow("nothing") << QByteArray("text/plain") << QByteArray();
    QTest::newRow("control characters") << QByteArray("text/plain") << QByteArray("\n\t\"\\\x01");
    QTest::newRow("much") << QByteArray("text/plain") << QByteArray(200000, 'x');
}

void tst_json_http::a_request_carries_what_it_is_given()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, body);
    post_json(owner.get(), url(), QString::fromUtf8(body), type, SLOT(take(QNetworkReply *)));
    QTRY_COMPARE(peer->requests.size(), 1);
    const Http_Peer::Request &request = peer->requests.first();
    QCOMPARE(request.line, QByteArray("POST /api/x.action HTTP/1.1"));
    QCOMPARE(request.body, body);
    QCOMPARE(request.headers.count("Content-Type: " + type), 1);
    QCOMPARE(request.headers.count("charset: UTF-8"), 1);
}

void tst_json_http::each_request_has_a_manager_of_its_own()
{
    const QNetworkAccessManager *first = post();
    const QNetworkAccessManager *second = post();
    QVERIFY(first != second);
    QCOMPARE(first->parent(), owner.get());
    QCOMPARE(second->parent(), owner.get());
}

// One host takes six connections of one manager at most.
void tst_json_http::none_queues_behind_another()
{
    for (int i = 0; i < 12; ++i)
        post();
    QTRY_COMPARE(peer->requests.size(), 12);
    QCOMPARE(owner->bodies.size(), 0);
}

void tst_json_http::the_reply_comes_once_and_is_freed_after()
{
    const QPointer<QNetworkAccessManager> manager = post();
    QTRY_COMPARE(peer->requests.size(), 1);
    peer->answer_now(peer->requests.first(), http_answer("{\"a\": 1}"));
    QTRY_VERIFY(!manager);
    QVERIFY(!owner->reply);
    QCOMPARE(owner->bodies, QByteArrayList{"{\"a\": 1}"});
    QCOMPARE(peer->requests.size(), 1);
}

void tst_json_http::the_reply_stays_while_its_slot_runs_events()
{
    peer->answer = http_answer("{\"a\": 1}");
    bool went_on = false;
    owner->meanwhile = [this, &went_on] {
        QTimer::singleShot(0, this, [&went_on] { went_on = true; });
        QTRY_VERIFY(went_on);
    };
    post();
    QTRY_COMPARE(owner->bodies, QByteArrayList{"{\"a\": 1}"});
    QVERIFY(went_on);
}

void tst_json_http::failures_come_as_replies_too_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("error page") << http_answer("<html>", "500 Internal Server Error") << QByteArray("<html>");
    QTest::newRow("not found") << http_answer("{}", "404 Not Found") << QByteArray("{}");
    QTest::newRow("cut") << http_answer("{\"a\": 1}").chopped(3) << QByteArray("{\"a\":");
    QTest::newRow("no HTTP") << QByteArray("hello") << QByteArray();
}

void tst_json_http::failures_come_as_replies_too()
{
    QFETCH(QByteArray, raw);
    QFETCH(QByteArray, body);
    peer->answer = raw;
    peer->close_after_answer = true;
    post();
    QTRY_COMPARE(owner->errors.size(), 1);
    QVERIFY(owner->errors.first() != QNetworkReply::NoError);
    QCOMPARE(owner->bodies.first(), body);
}

void tst_json_http::a_reply_of_1_MiB_arrives_whole()
{
    const QByteArray body(1024 * 1024, 'x');
    peer->answer = http_answer(body);
    post();
    QTRY_COMPARE(owner->bodies, QByteArrayList{body});
}

void tst_json_http::a_longer_one_does_not()
{
    peer->answer = http_answer(QByteArray(1024 * 1024 + 1, 'x'));
    post();
    QTRY_COMPARE(owner->errors, QList<QNetworkReply::NetworkError>{QNetworkReply::NoError});
    QVERIFY(owner->bodies.first().size() < 1024 * 1024);
}

void tst_json_http::a_silent_speaker_leaves_it_open()
{
    const QPointer<QNetworkAccessManager> manager = post();
    QTRY_COMPARE(peer->requests.size(), 1);
    QVERIFY(manager);
    QCOMPARE(owner->bodies.size(), 0);
}

void tst_json_http::an_owner_that_goes_takes_its_request_along()
{
    const QPointer<QNetworkAccessManager> manager = post();
    QTRY_COMPARE(peer->requests.size(), 1);
    owner.reset();
    QVERIFY(!manager);
    QTRY_COMPARE(peer->requests.first().link->state(), QAbstractSocket::UnconnectedState);
}

void tst_json_http::an_owner_may_go_in_the_slot()
{
    const QPointer<QNetworkAccessManager> manager = post();
    owner->meanwhile = [this] { owner.release()->deleteLater(); };
    peer->answer = http_answer("{}");
    QTRY_VERIFY(!manager);
}

#ifdef __GLIBC__
void tst_json_http::what_fifty_at_once_have_taken_is_given_back_data()
{
    QTest::addColumn<int>("requests");
    QTest::addColumn<int>("times");
    QTest::newRow("less") << 49 << 0;
    QTest::newRow("as many") << 50 << 1;
    QTest::newRow("less again") << 49 << 0;
}

void tst_json_http::what_fifty_at_once_have_taken_is_given_back()
{
    QFETCH(int, requests);
    times_given_back = 0;
    peer->answer = http_answer("{}");
    QList<QPointer<QNetworkAccessManager>> managers;
    {
        // So that all are done before the first of them is freed.
        const Timers_Held held;
        for (int i = 0; i < requests; ++i)
            managers << post();
        QTRY_COMPARE(owner->bodies.size(), requests);
        QCOMPARE(managers.count(nullptr), 0);
    }
    QTRY_COMPARE(managers.count(nullptr), requests);
    QTEST(times_given_back, "times");
}
#endif

void tst_json_http::bytes_are_read_as_an_object_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("members");
    QTest::addColumn<QStringList>("lines");
    const QStringList no_document{"Document is NULL"}, empty{"Object is empty"};
    QTest::newRow("object") << QByteArray("{\"a\": 1, \"b\": {}}") << 2 << QStringList();
    QTest::newRow("blanks around") << QByteArray(" \r\n{\"a\": 1}\n ") << 1 << QStringList();
    QTest::newRow("empty object") << QByteArray("{}") << 0 << empty;
    QTest::newRow("array") << QByteArray("[{\"a\": 1}]") << 0 << empty;
    QTest::newRow("nothing") << QByteArray() << 0 << no_document;
    QTest::newRow("no JSON") << QByteArray("<html>") << 0 << no_document;
    QTest::newRow("half") << QByteArray("{\"a\": ") << 0 << no_document;
    QTest::newRow("two") << QByteArray("{\"a\": 1}{\"a\": 1}") << 0 << no_document;
    QTest::newRow("number") << QByteArray("7") << 0 << no_document;
}

void tst_json_http::bytes_are_read_as_an_object()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, members);
    const Log_Capture log;
    QJsonObject object{{"from", "before"}, {"the", "call"}, {"this", "stays not"}};
    QCOMPARE(read_json_object(bytes, object), members > 0);
    QCOMPARE(object.size(), members);
    QTEST(log.debug_lines(), "lines");
}

void tst_json_http::a_reply_is_logged_and_read_as_an_object_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QJsonObject>("object");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("object") << QByteArray("{\"a\": 1}") << QJsonObject{{"a", 1}}
                            << QStringList(R"(heard "{\"a\": 1}")");
    QTest::newRow("empty object") << QByteArray("{}") << QJsonObject()
                                  << QStringList{R"(heard "{}")", "Object is empty"};
    QTest::newRow("nothing") << QByteArray() << QJsonObject()
                             << QStringList{R"(heard "")", "Document is NULL"};
    QTest::newRow("NUL") << QByteArray("{}\0{}", 5) << QJsonObject()
                         << QStringList{R"(heard "{}")", "Document is NULL"};
}

void tst_json_http::a_reply_is_logged_and_read_as_an_object()
{
    QFETCH(QByteArray, body);
    peer->answer = http_answer(body);
    QJsonObject object{{"from", "before"}};
    QStringList lines;
    owner->meanwhile = [this, &object, &lines] {
        const Log_Capture log;
        object = read_json_reply(owner->reply, "heard");
        lines = log.debug_lines();
    };
    post();
    QTRY_COMPARE(owner->bodies, QByteArrayList{""}); // nothing is left to read
    QTEST(object, "object");
    QTEST(lines, "lines");
}

QTEST_GUILESS_MAIN(tst_json_http)
#include "tst_json_http.moc"
