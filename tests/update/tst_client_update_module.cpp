// SPDX-License-Identifier: MIT
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/overview/paint_log.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/module_replies.h"
#include "tests/update/update_world.h"

// The upgrade of the Wi-Fi module: what is asked of the speaker, and what its replies do. When it is asked
// again is told in tst_client_update_polling.
class tst_client_update_module : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void flash_sends_folder_and_size_data();
    void flash_sends_folder_and_size();
    void flash_disables_and_repaints_all_buttons_in_order();
    void a_reply_of_success_polls_at_once();
    void a_refused_start_leaves_it_stuck();
    void an_unreadable_reply_leaves_it_stuck_data() { add_unreadable(); }
    void an_unreadable_reply_leaves_it_stuck();
    void a_status_shows_its_text_data();
    void a_status_shows_its_text();
    void an_error_shows_its_text_data();
    void an_error_shows_its_text();
    void a_status_or_error_is_translated_data();
    void a_status_or_error_is_translated();
    void progress_is_shown_on_every_reply_data();
    void progress_is_shown_on_every_reply();
    void numbers_are_logged_as_they_were_read();
    void done_enables_and_repaints_back_alone();
    void an_unreadable_poll_reply_leaves_it_stuck_data() { add_unreadable(); }
    void an_unreadable_poll_reply_leaves_it_stuck();
    void a_group_has_no_address_and_gets_stuck();

private:
    void add_unreadable();

    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Update_World> world;
};

void tst_client_update_module::init()
{
    log = std::make_unique<Log_Capture>();
    world = std::make_unique<Update_World>();
    world->open();
    log->clear();
}

void tst_client_update_module::cleanup()
{
    world.reset();
    const QStringList warnings = own_warnings(*log);
    log.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_client_update_module::flash_sends_folder_and_size_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("body");
    const QByteArray server = VIRELO_DOWNLOAD_SERVER;
    QTest::newRow("untouched") << QString() << 4321
                               << QByteArray(R"({"action": "seturl", "otaaddress": "http://)" + server +
                                             R"(/current/", "filesize": "4321" })");
    QTest::newRow("edited, no length told")
        << "http://127.0.0.1/test/" << 0
        << QByteArray(R"({"action": "seturl", "otaaddress": "http://127.0.0.1/test/", "filesize": "0" })");
    QTest::newRow("empty") << "" << 1
                           << QByteArray(R"({"action": "seturl", "otaaddress": "", "filesize": "1" })");
    QTest::newRow("not escaped") << "a\"b\\ü" << 2147483647
                                 << QByteArray("{\"action\": \"seturl\", \"otaaddress\": \"a\"b\\ü\", "
                                               "\"filesize\": \"2147483647\" }");
}

void tst_client_update_module::flash_sends_folder_and_size()
{
    QFETCH(QString, url);
    QFETCH(int, size);
    QVERIFY(QMetaObject::invokeMethod(world->dialog.get(), "fileSize", Q_ARG(int, size)));
    if (!url.isNull())
        world->dialog->url_edit->setText(url);
    world->dialog->flash_button->click();
    QTRY_COMPARE(world->peer.requests.size(), 1);
    const Http_Peer::Request &request = world->peer.requests.first();
    QCOMPARE(request.line, QByteArray("POST /api/v14/otaupgrade.action HTTP/1.1"));
    QVERIFY(request.headers.contains("Content-Type: application/json"));
    QVERIFY(request.headers.contains("charset: UTF-8"));
    QTEST(request.body, "body");

    QString logged;
    QDebug(&logged) << "CONFIG STRING: >>>" << QString::fromUtf8(request.body) << "<<<\n\n";
    QCOMPARE(log->debug_lines().last(), logged.chopped(1)); // the blank that ends every item but the last
}

void tst_client_update_module::flash_disables_and_repaints_all_buttons_in_order()
{
    Client_Update &dialog = *world->dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(QMetaObject::invokeMethod(&dialog, "fileSize", Q_ARG(int, 1)));
    Paint_Log paints({dialog.check_button, dialog.flash_button, dialog.back_button});
    world->call("updateFirmware");
    QCOMPARE(paints.painted,
             (QList<QObject *>{dialog.check_button, dialog.flash_button, dialog.back_button}));
    QCOMPARE(world->enabled(), stuck);
    QVERIFY(dialog.url_edit->isEnabled());
}

void tst_client_update_module::a_reply_of_success_polls_at_once()
{
    world->press_flash();
    bool asked = false;
    Request_Watch watch(world->dialog.get());
    watch.on_request = [&asked] { asked = true; };
    hand_over(*world, "replyFinished", success);
    QVERIFY(asked);
    QTRY_COMPARE(world->peer.requests.size(), 2);
    const Http_Peer::Request &request = world->peer.requests.last();
    QCOMPARE(request.line, QByteArray("POST /api/v14/otaupgrade.action HTTP/1.1"));
    QVERIFY(request.headers.contains("Content-Type: application/json"));
    QVERIFY(request.headers.contains("charset: UTF-8"));
    QCOMPARE(request.body, poll_body);
    QCOMPARE(request.body.size(), 26);
    QCOMPARE(world->enabled(), stuck);
    QCOMPARE(world->dialog->status_label->text(), QString("Click Check Button!"));
    QVERIFY(log->debug_lines().contains("Client Update reply received \"{\\\"returncode\\\": "
                                        "\\\"success\\\"}\""));
    QCOMPARE(log->debug_lines().last(), QString("Started Firmware Update"));
}

void tst_client_update_module::a_refused_start_leaves_it_stuck()
{
    world->press_flash();
    world->answer(R"({"returncode": "error"})");
    QTRY_COMPARE(log->debug_lines().last(), QString("Start of Firmware Update failed"));
    QCOMPARE(world->enabled(), stuck);
    QCOMPARE(world->dialog->status_label->text(), QString("Click Check Button!"));
    QTRY_VERIFY(world->dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    QCOMPARE(world->peer.requests.size(), 1);
}

void tst_client_update_module::add_unreadable()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("logged");
    QTest::newRow("nothing") << QByteArray("") << "Document is NULL";
    QTest::newRow("no JSON") << QByteArray("<html></html>") << "Document is NULL";
    QTest::newRow("half") << QByteArray("{\"status\": \"1") << "Document is NULL";
    QTest::newRow("empty object") << QByteArray("{}") << "Object is empty";
    QTest::newRow("array") << QByteArray("[\"1\"]") << "Object is empty";
}

void tst_client_update_module::an_unreadable_reply_leaves_it_stuck()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, logged);
    world->press_flash();
    world->answer(reply);
    QTRY_COMPARE(log->debug_lines().last(), logged);
    QVERIFY(log->debug_lines().constEnd()[-2].startsWith("Client Update reply received "));
    QCOMPARE(world->enabled(), stuck);
    QCOMPARE(world->dialog->status_label->text(), QString("Click Check Button!"));
    QTRY_VERIFY(world->dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    QCOMPARE(world->peer.requests.size(), 1);
}

void tst_client_update_module::a_status_shows_its_text_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << QByteArray("0") << "before";
    QTest::newRow("1") << QByteArray("1") << "Downloading...";
    QTest::newRow("2") << QByteArray("2") << "Download finished!";
    QTest::newRow("3") << QByteArray("3") << "Updating...!";
    QTest::newRow("4") << QByteArray("4") << "Checksum verification!";
    QTest::newRow("6") << QByteArray("6") << "Done!";
    QTest::newRow("7") << QByteArray("7") << "before";
    QTest::newRow("-1") << QByteArray("-1") << "before";
    QTest::newRow("no number") << QByteArray("one") << "before";
    QTest::newRow("empty") << QByteArray("") << "before";
}

void tst_client_update_module::a_status_shows_its_text()
{
    QFETCH(QByteArray, status);
    world->dialog->status_label->setText("before");
    hand_over(*world, "replyFinishedUpdateCheck", status_reply(status, "2"));
    QTEST(world->dialog->status_label->text(), "text");
}

void tst_client_update_module::an_error_shows_its_text_data()
{
    QTest::addColumn<QByteArray>("errinfo");
    QTest::addColumn<QString>("text");
    QTest::newRow("-1") << QByteArray("-1") << "Error: Update not running";
    QTest::newRow("0") << QByteArray("0") << "Other Error :-(";
    QTest::newRow("1") << QByteArray("1") << "Error: File doesnt exist";
    QTest::newRow("2") << QByteArray("2") << "Error: Download Error";
    QTest::newRow("3") << QByteArray("3") << "Error: Checksum Error";
    QTest::newRow("4") << QByteArray("4") << "Error: Flash Error";
    QTest::newRow("5") << QByteArray("5") << "Error: Update error";
    QTest::newRow("6") << QByteArray("6") << "Other Error :-(";
    QTest::newRow("-2") << QByteArray("-2") << "Other Error :-(";
    QTest::newRow("no number") << QByteArray("x") << "Other Error :-(";
}

void tst_client_update_module::an_error_shows_its_text()
{
    QFETCH(QByteArray, errinfo);
    world->press_flash();
    hand_over(*world, "replyFinishedUpdateCheck", status_reply("5", errinfo));
    QTEST(world->dialog->status_label->text(), "text");
    QCOMPARE(world->enabled(), stuck);
}

void tst_client_update_module::a_status_or_error_is_translated_data()
{
    QTest::addColumn<QByteArray>("reply");
    for (const char *status : {"1", "2", "3", "4", "6"})
        QTest::addRow("status %s", status) << status_reply(status);
    for (const char *errinfo : {"-1", "0", "1", "2", "3", "4", "5", "6"})
        QTest::addRow("errinfo %s", errinfo) << status_reply("5", errinfo);
}

void tst_client_update_module::a_status_or_error_is_translated()
{
    QFETCH(QByteArray, reply);
    hand_over(*world, "replyFinishedUpdateCheck", reply);
    const QString text = world->dialog->status_label->text();
    Marking_Translator translator("Client_Update");
    QCoreApplication::installTranslator(&translator);
    hand_over(*world, "replyFinishedUpdateCheck", reply);
    QCOMPARE(world->dialog->status_label->text(), "#" + text);
}

void tst_client_update_module::progress_is_shown_on_every_reply_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<int>("value");
    for (const char *status : {"0", "1", "2", "3", "4", "5", "7"})
        QTest::addRow("status %s", status) << status_reply(status, "0", "37") << 37;
    QTest::newRow("status 6") << status_reply("6", "0", "37") << 100;
    QTest::newRow("JSON number") << QByteArray(R"({"status": "1", "downprogress": 37})") << 0;
    QTest::newRow("missing") << QByteArray(R"({"status": "1"})") << 0;
    QTest::newRow("no number") << status_reply("1", "0", "37%") << 0;
}

void tst_client_update_module::progress_is_shown_on_every_reply()
{
    QFETCH(QByteArray, reply);
    world->dialog->progress_bar->setValue(50);
    hand_over(*world, "replyFinishedUpdateCheck", reply);
    QTEST(world->dialog->progress_bar->value(), "value");
}

void tst_client_update_module::numbers_are_logged_as_they_were_read()
{
    hand_over(*world, "replyFinishedUpdateCheck", status_reply("5", "-1", "12"));
    QCOMPARE(log->debug_lines(),
             (QStringList{"Client UpdateCheck reply received \"{\\\"status\\\": \\\"5\\\", \\\"errinfo\\\": "
                          "\\\"-1\\\", \\\"downprogress\\\": \\\"12\\\"}\"",
                          "Status: 5 Error: -1 Progress: 12"}));
    hand_over(*world, "replyFinishedUpdateCheck", R"({"status": 6, "errinfo": 3, "downprogress": 99})");
    QCOMPARE(log->debug_lines().last(), QString("Status: 0 Error: 0 Progress: 0"));
}

void tst_client_update_module::done_enables_and_repaints_back_alone()
{
    Client_Update &dialog = *world->dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    world->call("updateFirmware");
    Paint_Log paints({dialog.check_button, dialog.flash_button, dialog.back_button});
    hand_over(*world, "replyFinishedUpdateCheck", status_reply("6", "0", "3"));
    QCOMPARE(paints.painted, QList<QObject *>{dialog.back_button});
    QCOMPARE(world->enabled(), done);
    QCOMPARE(dialog.progress_bar->value(), 100);
}

void tst_client_update_module::an_unreadable_poll_reply_leaves_it_stuck()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, logged);
    world->press_flash();
    world->dialog->status_label->setText("before");
    world->dialog->progress_bar->setValue(50);
    hand_over(*world, "replyFinishedUpdateCheck", reply);
    QCOMPARE(log->debug_lines().last(), logged);
    QVERIFY(log->debug_lines().constEnd()[-2].startsWith("Client UpdateCheck reply received "));
    QCOMPARE(world->dialog->status_label->text(), QString("before"));
    QCOMPARE(world->dialog->progress_bar->value(), 50);
    QCOMPARE(world->enabled(), stuck);
}

void tst_client_update_module::a_group_has_no_address_and_gets_stuck()
{
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    Client_Update dialog(&group, nullptr);
    QVERIFY(QMetaObject::invokeMethod(&dialog, "fileSize", Q_ARG(int, 1)));
    dialog.flash_button->click();
    QTRY_COMPARE(log->debug_lines().last(), QString("Document is NULL"));
    QVERIFY(!dialog.back_button->isEnabled());
}

QTEST_MAIN(tst_client_update_module)
#include "tst_client_update_module.moc"
