// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include "simulator/download_server.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/fakes/log_capture.h"
#include "tests/update/own_warnings.h"
#include "update/web_file.h"

namespace
{
QByteArray content_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void write_file(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

// One download with everything that it tells.
struct Download {
    explicit Download(const QString &url)
    {
        QObject::connect(file, &Web_File::downloadFileError, [this](const QString &name) {
            told += "error";
            failed_url = name;
        });
        QObject::connect(file, &Web_File::downloadFileFinished, [this](const QString &name, int count) {
            told += "finished";
            path = name;
            lines = count;
        });
        file->download(url);
        manager = file->manager;
        reply = file->reply;
    }
    ~Download() { delete file; }
    Download(const Download &) = delete;
    Download &operator=(const Download &) = delete;

    bool over() const { return told.contains("finished"); }
    bool released() const { return !manager && !reply; }

    QPointer<Web_File> file = new Web_File;
    QPointer<QNetworkAccessManager> manager;
    QPointer<QNetworkReply> reply;
    QStringList told;
    QString failed_url;
    QString path;
    int lines = -2;
};
} // namespace

class tst_web_file_download : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void the_file_is_stored_as_it_came_and_counted_data();
    void the_file_is_stored_as_it_came_and_counted();
    void a_file_from_an_earlier_run_is_overwritten();
    void a_large_file_in_pieces_is_whole();
    void the_request_is_a_plain_get();
    void progress_and_errors_are_listened_to();
    void a_missing_file_gives_both_signals_and_its_page();
    void the_end_comes_however_long_after_the_error();
    void a_refused_connection_leaves_an_empty_file();
    void a_download_that_breaks_off_keeps_what_came();
    void a_redirect_is_not_followed();
    void where_no_file_can_be_nothing_is_said_and_nothing_counted();
    void what_cannot_be_written_is_counted_as_it_was();
    void the_count_goes_on_in_a_second_download();
    void request_and_reply_are_released_and_the_object_stays_data();
    void request_and_reply_are_released_and_the_object_stays();

private:
    QString path() const { return QDir::tempPath() + "/host.hex"; }

    QTemporaryDir folder; // each process has one of its own
    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Http_Peer> peer;
    QString peer_url;
};

void tst_web_file_download::initTestCase()
{
    QVERIFY(folder.isValid());
}

void tst_web_file_download::init()
{
    qputenv("TMPDIR", folder.path().toLocal8Bit());
    QFile::remove(path());
    log = std::make_unique<Log_Capture>();
    peer = std::make_unique<Http_Peer>(QHostAddress(own_loopback(1)));
    peer_url = QString("http://%1:%2/current/vc3w_host.hex").arg(own_loopback(1)).arg(peer->serverPort());
}

void tst_web_file_download::cleanup()
{
    peer.reset();
    const QStringList warnings = own_warnings(*log);
    log.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_web_file_download::the_file_is_stored_as_it_came_and_counted_data()
{
    QByteArray hundred;
    for (int i = 0; i < 100; ++i)
        hundred += ":line " + QByteArray::number(i) + "\r\n";

    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("lines");
    QTest::newRow("empty") << QByteArray("") << -1;
    QTest::newRow("one line") << QByteArray(":00000001FF\r\n") << 0;
    QTest::newRow("one line without end") << QByteArray(":00000001FF") << 0;
    QTest::newRow("two lines, line feeds") << QByteArray(":10\n:00000001FF\n") << 1;
    QTest::newRow("two lines, the last without end") << QByteArray(":10\r\n:00000001FF") << 1;
    QTest::newRow("empty lines") << QByteArray("\n\n\n") << 2;
    QTest::newRow("100 lines") << hundred << 99;
    QTest::newRow("100 lines, the last without end") << hundred.chopped(2) << 99;
    QTest::newRow("bytes that are no text") << QByteArray("\0\xff\x80\r\n\r\0", 7) << 1;
}

void tst_web_file_download::the_file_is_stored_as_it_came_and_counted()
{
    QFETCH(QByteArray, content);
    peer->answer = http_answer(content);
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(download.told, QStringList{"finished"});
    QCOMPARE(download.path, path());
    QTEST(download.lines, "lines");
    QCOMPARE(download.file->lines, download.lines);
    QCOMPARE(content_of(path()), content);
    QCOMPARE(log->debug_lines(), QStringList{QString("Total  %1  lines").arg(download.lines)});
}

void tst_web_file_download::a_file_from_an_earlier_run_is_overwritten()
{
    write_file(path(), "older\nand\nlonger\nthan\nwhat\ncomes\n");
    peer->answer = http_answer("new\n");
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(content_of(path()), QByteArray("new\n"));
    QCOMPARE(download.lines, 0);
}

void tst_web_file_download::a_large_file_in_pieces_is_whole()
{
    Download_Config config;
    config.address = own_loopback(2);
    config.hex_lines = 5000;
    Download_Server server(config);
    QVERIFY2(server.start(), qPrintable(server.error()));
    Download_Faults faults;
    faults.fault = Download_Fault::slow;
    faults.slow_chunk = 20001;
    server.set_faults(faults);

    Download download(server.url() + "vc3w_host.hex");
    QTRY_VERIFY(download.over());
    QCOMPARE(content_of(path()), server.file("vc3w_host.hex"));
    QCOMPARE(download.lines, 4999);
}

void tst_web_file_download::the_request_is_a_plain_get()
{
    peer->answer = http_answer("");
    Download download(peer_url);
    QCOMPARE(download.file->url, peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(peer->requests.size(), 1);
    QCOMPARE(peer->requests.first().line, QByteArray("GET /current/vc3w_host.hex HTTP/1.1"));
    QCOMPARE(peer->requests.first().header_names(), headers_of_qt);
    QCOMPARE(peer->requests.first().body, QByteArray());
}

// To take a connection away is to know that there was one.
void tst_web_file_download::progress_and_errors_are_listened_to()
{
    Download download(peer_url);
    QTRY_COMPARE(peer->requests.size(), 1);
    QNetworkReply *reply = download.reply;
    QVERIFY(QObject::disconnect(reply, &QNetworkReply::downloadProgress, download.file, nullptr));
    QVERIFY(QObject::disconnect(reply, &QNetworkReply::errorOccurred, download.file, nullptr));
    QVERIFY(QObject::disconnect(reply, &QNetworkReply::finished, download.file, nullptr));
    QVERIFY(
        QMetaObject::invokeMethod(download.file, "updateProgress", Q_ARG(qlonglong, 1), Q_ARG(qlonglong, 2)));
    QCOMPARE(download.told, QStringList());
    QCOMPARE(log->debug_lines(), QStringList());
    delete download.manager;
}

void tst_web_file_download::a_missing_file_gives_both_signals_and_its_page()
{
    const QByteArray page = "<html>\n<h1>404</h1>\n</html>\n";
    peer->answer = http_answer(page, "404 Not Found");
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(download.told, (QStringList{"error", "finished"}));
    QCOMPARE(download.failed_url, peer_url);
    QCOMPARE(content_of(path()), page);
    QCOMPARE(download.lines, 2);
    QVERIFY(!QApplication::activeModalWidget());
}

// The reply learns of its error and of its end from another thread, and there may be time between the two.
void tst_web_file_download::the_end_comes_however_long_after_the_error()
{
    Download download(peer_url);
    QTRY_COMPARE(peer->requests.size(), 1);
    emit download.reply->errorOccurred(QNetworkReply::ContentNotFoundError);
    QCOMPARE(download.told, QStringList{"error"});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    peer->answer_now(peer->requests.first(), http_answer("page\n"));
    QTRY_VERIFY(download.over());
    QCOMPARE(download.told, (QStringList{"error", "finished"}));
    QCOMPARE(content_of(path()), QByteArray("page\n"));
    QTRY_VERIFY(download.released());
}

void tst_web_file_download::a_refused_connection_leaves_an_empty_file()
{
    write_file(path(), "older\n");
    peer->close();
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(download.told, (QStringList{"error", "finished"}));
    QCOMPARE(content_of(path()), QByteArray());
    QCOMPARE(download.lines, -1);
    QTRY_VERIFY(download.released());
}

void tst_web_file_download::a_download_that_breaks_off_keeps_what_came()
{
    peer->answer = http_answer("first\nsecond\nthird\n").chopped(13);
    peer->close_after_answer = true;
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(download.told, (QStringList{"error", "finished"}));
    QCOMPARE(content_of(path()), QByteArray("first\n"));
    QCOMPARE(download.lines, 0);
}

void tst_web_file_download::a_redirect_is_not_followed()
{
    peer->answer = "HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\nContent-Length: 6\r\n\r\nmoved\n";
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(download.told, QStringList{"finished"});
    QCOMPARE(content_of(path()), QByteArray("moved\n"));
    QCOMPARE(peer->requests.size(), 1);
}

void tst_web_file_download::where_no_file_can_be_nothing_is_said_and_nothing_counted()
{
    QVERIFY(QDir().mkdir(path()));
    peer->answer = http_answer(":00000001FF\n");
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QVERIFY(QDir().rmdir(path()));
    QCOMPARE(download.told, QStringList{"finished"});
    QCOMPARE(download.path, path());
    QCOMPARE(download.lines, -1);
    QCOMPARE(log->debug_lines(), QStringList());
}

// Nobody, whatever the rights, may write to a program that runs.
void tst_web_file_download::what_cannot_be_written_is_counted_as_it_was()
{
    QVERIFY(QFile::copy(QStandardPaths::findExecutable("sleep"), path()));
    const QByteArray before = content_of(path());
    QVERIFY(before.count('\n') > 3);
    QVERIFY(!before.endsWith('\n'));
    QProcess sleeper;
    sleeper.start(path(), {"60"});
    QVERIFY(sleeper.waitForStarted());

    peer->answer = http_answer(":1\n:2\n:3\n");
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    sleeper.kill();
    QVERIFY(sleeper.waitForFinished());
    QCOMPARE(download.told, QStringList{"finished"});
    QCOMPARE(content_of(path()), before);
    QCOMPARE(download.lines, before.count('\n'));
}

void tst_web_file_download::the_count_goes_on_in_a_second_download()
{
    peer->answer = http_answer(":1\n:2\n:3\n");
    Download download(peer_url);
    QTRY_VERIFY(download.over());
    QCOMPARE(download.lines, 2);
    QTRY_VERIFY(download.released());
    download.file->download(peer_url);
    QTRY_COMPARE(download.told.size(), 2);
    QCOMPARE(download.lines, 5);
}

void tst_web_file_download::request_and_reply_are_released_and_the_object_stays_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::newRow("success") << QByteArray("200 OK");
    QTest::newRow("missing") << QByteArray("404 Not Found");
    QTest::newRow("server error") << QByteArray("500 Internal Server Error");
}

void tst_web_file_download::request_and_reply_are_released_and_the_object_stays()
{
    QFETCH(QByteArray, status);
    peer->answer = http_answer(":1\n", status);
    Download download(peer_url);
    QVERIFY(!download.file->parent());
    QVERIFY(!download.manager->parent());
    QTRY_VERIFY(download.over());
    QTRY_VERIFY(download.released());
    QVERIFY(download.file);
}

QTEST_MAIN(tst_web_file_download)
#include "tst_web_file_download.moc"
