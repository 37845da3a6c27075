// SPDX-License-Identifier: MIT
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QtTest>
#include <atomic>
#include <netdb.h>

#include "simulator/download_server.h"
#include "simulator/loopback.h"
#include "tests/control/control_fixture.h"
#include "tests/device/http_peer.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/box_reader.h"
#include "tests/update/own_warnings.h"
#include "update/web_file.h"

namespace
{
std::atomic<int> lookups{0};
}

// In the place of the system's: no name is known, and nobody is asked.
extern "C" int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    ++lookups;
    return EAI_NONAME;
}

namespace
{
using Error = QNetworkReply::NetworkError;

// A reply that has failed as the test wants it.
class Failed_Reply : public QNetworkReply
{
public:
    explicit Failed_Reply(Error error) { setError(error, "scripted"); }
    void abort() override {}

protected:
    qint64 readData(char *, qint64) override { return -1; }
};

// One size request with everything that it tells.
struct Size_Request {
    Size_Request()
    {
        QObject::connect(file, &Web_File::fileSizeFinished, [this](int size) { told += size; });
        QObject::connect(file, &Web_File::fileSizeError, [this] { told += error; });
    }
    explicit Size_Request(const QString &url)
        : Size_Request()
    {
        file->get_size(url);
        manager = file->manager;
    }
    ~Size_Request() { delete file; }
    Size_Request(const Size_Request &) = delete;
    Size_Request &operator=(const Size_Request &) = delete;

    static constexpr int error = -77; // in the place of a size

    QPointer<Web_File> file = new Web_File;
    QPointer<QNetworkAccessManager> manager;
    QList<int> told;
};

const QList<int> an_error = {Size_Request::error};
} // namespace

class tst_web_file : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_request_is_a_plain_head();
    void the_size_is_the_content_length_data();
    void the_size_is_the_content_length();
    void a_server_that_tells_no_length_gives_0();
    void a_redirect_gives_its_own_length();
    void a_missing_file_is_told();
    void an_unknown_host_is_told();
    void a_refused_connection_is_told_as_the_rest_of_the_text();
    void an_aborted_request_is_told_as_the_rest_of_the_text();
    void other_errors_skip_as_many_characters_as_their_number_data();
    void other_errors_skip_as_many_characters_as_their_number();
    void title_and_button_are_translated_and_the_text_is_not();
    void the_signal_comes_after_the_box();
    void the_request_is_released_and_the_object_stays_data();
    void the_request_is_released_and_the_object_stays();
    void a_new_object_has_no_parent_and_no_job();
    void signals_and_slots_stand_in_order();

private:
    void check_box(const Box_Reader &box, const QString &text) const;

    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Http_Peer> peer;
    QString peer_url;
};

void tst_web_file::init()
{
    log = std::make_unique<Log_Capture>();
    peer = std::make_unique<Http_Peer>(QHostAddress(own_loopback(1)));
    peer_url = QString("http://%1:%2/current/ventaro.swu").arg(own_loopback(1)).arg(peer->serverPort());
    lookups = 0;
}

void tst_web_file::cleanup()
{
    peer.reset();
    const QStringList warnings = own_warnings(*log);
    log.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_web_file::check_box(const Box_Reader &box, const QString &text) const
{
    QVERIFY(box.met());
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(box.parent, nullptr);
    QCOMPARE(box.title, QString("Update"));
    QCOMPARE(box.text, text);
    QCOMPARE(box.buttons, QStringList{"OK"});
}

void tst_web_file::the_request_is_a_plain_head()
{
    peer->answer = http_answer("");
    Size_Request request(peer_url);
    QCOMPARE(request.file->url, QString());
    QVERIFY(!request.file->reply);
    QTRY_COMPARE(request.told.size(), 1);
    QCOMPARE(peer->requests.size(), 1);
    QCOMPARE(peer->requests.first().line, QByteArray("HEAD /current/ventaro.swu HTTP/1.1"));
    QCOMPARE(peer->requests.first().header_names(), headers_of_qt);
    QCOMPARE(peer->requests.first().body, QByteArray());
    QCOMPARE(lookups, 0);
}

void tst_web_file::the_size_is_the_content_length_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("module") << "ventaro.swu";
    QTest::newRow("host") << "vs12.3w_host.hex";
}

void tst_web_file::the_size_is_the_content_length()
{
    QFETCH(QString, name);
    Download_Config config;
    config.address = own_loopback(2);
    config.swu_size = 123456;
    Download_Server server(config);
    QVERIFY2(server.start(), qPrintable(server.error()));
    const int size = server.file(name).size();
    QVERIFY(size > 0);

    Size_Request request(server.url() + name);
    QTRY_COMPARE(request.told, QList<int>{size});
    QCOMPARE(log->debug_lines(), QStringList{QString("NO ERR! File Size is  %1  Bytes").arg(size)});
}

void tst_web_file::a_server_that_tells_no_length_gives_0()
{
    peer->answer = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
    peer->close_after_answer = true;
    Size_Request request(peer_url);
    QTRY_COMPARE(request.told, QList<int>{0});
    QCOMPARE(log->debug_lines(), QStringList{"NO ERR! File Size is  0  Bytes"});
}

void tst_web_file::a_redirect_gives_its_own_length()
{
    peer->answer = "HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\nContent-Length: 41\r\n\r\n";
    Size_Request request(peer_url);
    QTRY_COMPARE(request.told, QList<int>{41});
    QCOMPARE(peer->requests.size(), 1);
}

void tst_web_file::a_missing_file_is_told()
{
    peer->answer = http_answer("", "404 Not Found");
    Box_Reader box;
    Size_Request request(peer_url);
    QTRY_COMPARE(request.told, an_error);
    check_box(box, "Error: File could not be found!");
    QCOMPARE(log->debug_lines(), QStringList{"ERROR  404"});
}

void tst_web_file::an_unknown_host_is_told()
{
    Box_Reader box;
    Size_Request request("http://update.invalid/current/ventaro.swu");
    QTRY_COMPARE(request.told, an_error);
    check_box(box, "Error: Host not found!\nAre you in the WLAN of your VIRELO Air?");
    QCOMPARE(log->debug_lines(), QStringList{"Other ERROR:  QNetworkReply::HostNotFoundError"});
    QVERIFY(lookups > 0);
}

void tst_web_file::a_refused_connection_is_told_as_the_rest_of_the_text()
{
    peer->close();
    Box_Reader box;
    Size_Request request(peer_url);
    QTRY_COMPARE(request.told, an_error);
    check_box(box, "ther Error: ");
    QCOMPARE(log->debug_lines(), QStringList{"Other ERROR:  QNetworkReply::ConnectionRefusedError"});
}

void tst_web_file::an_aborted_request_is_told_as_the_rest_of_the_text()
{
    Box_Reader box;
    Size_Request request(peer_url);
    QTRY_COMPARE(peer->requests.size(), 1);
    auto *reply = request.manager->findChild<QNetworkReply *>();
    QVERIFY(reply);
    reply->abort();
    QTRY_COMPARE(request.told, an_error);
    check_box(box, " Error: ");
}

void tst_web_file::other_errors_skip_as_many_characters_as_their_number_data()
{
    QTest::addColumn<Error>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("1") << Error(1) << "ther Error: ";
    QTest::newRow("2") << Error(2) << "her Error: ";
    QTest::newRow("4") << Error(4) << "r Error: ";
    QTest::newRow("5") << Error(5) << " Error: ";
    QTest::newRow("6") << Error(6) << "Error: ";
    QTest::newRow("7") << Error(7) << "rror: ";
    QTest::newRow("8") << Error(8) << "ror: ";
    QTest::newRow("9") << Error(9) << "or: ";
    QTest::newRow("10") << Error(10) << "r: ";
    QTest::newRow("11") << Error(11) << ": ";
    QTest::newRow("12") << Error(12) << " ";
    QTest::newRow("13") << Error(13) << "";
    QTest::newRow("99") << QNetworkReply::UnknownNetworkError << "";
    QTest::newRow("101") << QNetworkReply::ProxyConnectionRefusedError << "";
    QTest::newRow("201") << QNetworkReply::ContentAccessDenied << "";
    QTest::newRow("301") << QNetworkReply::ProtocolUnknownError << "";
    QTest::newRow("401") << QNetworkReply::InternalServerError << "";
    QTest::newRow("499") << QNetworkReply::UnknownServerError << "";
}

void tst_web_file::other_errors_skip_as_many_characters_as_their_number()
{
    QFETCH(Error, error);
    QFETCH(QString, text);
    Size_Request request;
    request.file->manager = new QNetworkAccessManager;
    Failed_Reply reply(error);
    Box_Reader box;
    QVERIFY(QMetaObject::invokeMethod(request.file, "httpResponseFinished", Q_ARG(QNetworkReply *, &reply)));
    check_box(box, text);
    QCOMPARE(request.told, an_error);
    QCOMPARE(log->debug_lines().size(), 1);
    QVERIFY(log->debug_lines().first().startsWith("Other ERROR:  QNetworkReply::"));
}

void tst_web_file::title_and_button_are_translated_and_the_text_is_not()
{
    Marking_Translator translator("Web_File");
    QCoreApplication::installTranslator(&translator);
    peer->answer = http_answer("", "404 Not Found");
    Box_Reader box;
    Size_Request request(peer_url);
    QTRY_COMPARE(request.told, an_error);
    QCOMPARE(box.title, QString("#Update"));
    QCOMPARE(box.buttons, QStringList{"#OK"});
    QCOMPARE(box.text, QString("Error: File could not be found!"));
}

void tst_web_file::the_signal_comes_after_the_box()
{
    peer->answer = http_answer("", "404 Not Found");
    Size_Request request(peer_url);
    bool told_before_the_answer = true;
    Modal_User<QMessageBox> user([&](QMessageBox *box) {
        told_before_the_answer = !request.told.isEmpty();
        box->buttons().constFirst()->click();
    });
    QTRY_COMPARE(request.told, an_error);
    QVERIFY(user.met);
    QVERIFY(!told_before_the_answer);
}

void tst_web_file::the_request_is_released_and_the_object_stays_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::newRow("success") << QByteArray("200 OK");
    QTest::newRow("missing") << QByteArray("404 Not Found");
    QTest::newRow("server error") << QByteArray("500 Internal Server Error");
}

void tst_web_file::the_request_is_released_and_the_object_stays()
{
    QFETCH(QByteArray, status);
    Box_Reader box;
    Size_Request request(peer_url);
    QVERIFY(!request.manager->parent());
    QTRY_COMPARE(peer->requests.size(), 1);
    const QPointer<QNetworkReply> reply = request.manager->findChild<QNetworkReply *>();
    QVERIFY(reply);
    peer->answer_now(peer->requests.first(), http_answer("", status));
    QTRY_COMPARE(request.told.size(), 1);
    QTRY_VERIFY(!request.manager);
    QVERIFY(!reply);
    QVERIFY(request.file);
}

void tst_web_file::a_new_object_has_no_parent_and_no_job()
{
    const Web_File file;
    QVERIFY(!file.parent());
    QVERIFY(!file.manager);
    QVERIFY(!file.reply);
    QCOMPARE(file.url, QString());
    QCOMPARE(file.lines, -1);
}

void tst_web_file::signals_and_slots_stand_in_order()
{
    const QMetaObject &meta = Web_File::staticMetaObject;
    QStringList own_signals;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            own_signals += meta.method(i).methodSignature();
        else
            QCOMPARE(meta.method(i).access(), QMetaMethod::Private);
    }
    QCOMPARE(own_signals, (QStringList{"fileSizeFinished(int)", "fileSizeError()",
                                       "downloadFileFinished(QString,int)", "downloadFileError(QString)"}));
    QCOMPARE(own_slots(meta),
             (QStringList{"error(QNetworkReply::NetworkError)", "updateProgress(qlonglong,qlonglong)",
                          "finished()", "httpResponseFinished(QNetworkReply*)"}));
}

QTEST_MAIN(tst_web_file)
#include "tst_web_file.moc"
