// SPDX-License-Identifier: MIT
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTest>
#include <functional>

#include "app/globals.h"
#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/fakes/log_capture.h"

namespace
{
using Operation = std::function<void(Device_Desc &)>;

const char sender_status[] =
    R"({"enabled": true, "state": 2, "mode": 1, "uuid": "u-1", "groupname": "Party"})";

// Everything of the record that a reply of this family may touch.
QString state_of(const Device_Desc &record)
{
    return QString("%1/%2/%3/%4/%5/%6/%7")
        .arg(record.sender_enabled)
        .arg(record.sender_state)
        .arg(record.sender_mode)
        .arg(record.uuid, record.groupname)
        .arg(record.receiver_state)
        .arg(record.receiver_sender);
}
} // namespace

Q_DECLARE_METATYPE(Operation)

class tst_device_desc_songcast : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void each_operation_posts_its_exact_text_data();
    void each_operation_posts_its_exact_text();
    void enabling_stores_group_and_mode_at_once_but_sends_mode_0();
    void a_quote_in_the_group_name_goes_out_as_typed();
    void linking_stores_the_sender_at_once();
    void the_slots_stand_in_their_order();

    void the_sender_status_fills_all_fields();
    void the_receiver_state_fills_both_fields();
    void status_keys_that_are_missing_or_of_a_wrong_type_read_as_nothing_data();
    void status_keys_that_are_missing_or_of_a_wrong_type_read_as_nothing();
    void an_enabled_sender_becomes_the_sender_device();
    void a_disabled_sender_leaves_the_sender_device();
    void of_two_enabled_senders_the_last_reply_wins();

    void a_command_reply_acts_on_success_alone_data();
    void a_command_reply_acts_on_success_alone();
    void an_enabled_sender_without_uuid_has_none();
    void stopping_a_sender_logs_what_the_reply_says();
    void bluetooth_alone_logs_its_outcome_data();
    void bluetooth_alone_logs_its_outcome();
    void an_unusable_reply_changes_nothing_and_counts_down_once_data();
    void an_unusable_reply_changes_nothing_and_counts_down_once();

private:
    void post(Device_Desc &record, const Operation &operation);
    static void add_operations();

    QScopedPointer<Http_Peer> peer;
};

void tst_device_desc_songcast::init()
{
    resolves_running = 0;
    sender_device = nullptr;
    peer.reset(new Http_Peer(QHostAddress(own_loopback(1))));
    QVERIFY(peer->isListening());
}

void tst_device_desc_songcast::cleanup()
{
    QCOMPARE(resolves_running, 0);
}

// Runs the operation against the peer until its reply has been handled. One activity more is held open around
// it, so that a reply that counts down twice is seen.
void tst_device_desc_songcast::post(Device_Desc &record, const Operation &operation)
{
    peer->point_at_me(record);
    record.resolve_started();
    operation(record);
    QCOMPARE(resolves_running, 2);
    QSignalSpy freed(record.findChild<QNetworkAccessManager *>(), &QObject::destroyed);
    QVERIFY(freed.wait());
    QCOMPARE(resolves_running, 1);
    record.resolve_finished();
}

void tst_device_desc_songcast::each_operation_posts_its_exact_text_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const char *path, const char *body, const Operation &operation) {
        QTest::newRow(name) << operation << QByteArray(path) << QByteArray(body);
    };
    const char sender[] = "/api/v19/songcast/sender.action";
    const char receiver[] = "/api/v19/songcast/receiver.action";

    row("sender status", sender, "{\"action\": \"status\"}", [](auto &it) { it.request_sender_status(); });
    row("sender enable", sender,
        "{\"action\": \"enable\", \"groupname\": \"K\xc3\xbc"
        "che\", \"mode\": 0 }",
        [](auto &it) {
            it.request_sender_enable(QString::fromUtf8("K\xc3\xbc"
                                                       "che"),
                                     0);
        });
    row("sender enable without a name", sender, "{\"action\": \"enable\", \"groupname\": \"\", \"mode\": 0 }",
        [](auto &it) { it.request_sender_enable("", 0); });
    row("sender disable", sender, "{\"action\": \"disable\"}", [](auto &it) { it.request_sender_disable(); });
    row("sender play", sender, "{\"action\": \"play\"}", [](auto &it) { it.request_sender_play(); });
    row("sender stop", sender, "{\"action\": \"stop\"}", [](auto &it) { it.request_sender_stop(); });
    row("receiver state", receiver, "{\"action\": \"state\"}", [](auto &it) { it.request_receiver_state(); });
    row("receiver link", receiver, "{\"action\": \"link\", \"uuid\": \"u-1\"}",
        [](auto &it) { it.request_receiver_link("u-1"); });
    row("receiver unlink", receiver, "{\"action\": \"unlink\" }",
        [](auto &it) { it.request_receiver_unlink(); });
    row("receiver play", receiver, "{\"action\": \"play\" }", [](auto &it) { it.request_receiver_play(); });
    row("receiver stop", receiver, "{\"action\": \"stop\" }", [](auto &it) { it.request_receiver_stop(); });
    row("bluetooth enable", "/api/v20/bluetooth.action",
        "{ \"action\": \"setproperties\", \"discoverable\": true, \"pairable\": true, "
        "\"discoverableTimeout\": 600, "
        " \"pairableTimeout\": 600 }",
        [](auto &it) { it.request_bluetooth_enable(); });
}

void tst_device_desc_songcast::each_operation_posts_its_exact_text()
{
    QFETCH(Operation, operation);
    QFETCH(QByteArray, path);
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer("{}");
    post(record, operation);

    QCOMPARE(peer->requests.size(), 1);
    const Http_Peer::Request &request = peer->requests.first();
    QCOMPARE(request.line, "POST " + path + " HTTP/1.1");
    QTEST(request.body, "body");
    QCOMPARE(request.headers.count("Content-Type: application/json"), 1);
    QCOMPARE(request.headers.count("charset: UTF-8"), 1);
}

void tst_device_desc_songcast::enabling_stores_group_and_mode_at_once_but_sends_mode_0()
{
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer(R"({"returncode": "error"})");
    QTest::ignoreMessage(QtDebugMsg,
                         R"(STRING: "{\"action\": \"enable\", \"groupname\": \"Party\", \"mode\": 0 }")");
    post(record, [](Device_Desc &it) {
        it.request_sender_enable("Party", 3);
        QCOMPARE(it.groupname, QString("Party"));
        QCOMPARE(it.sender_mode, 3);
    });
    QCOMPARE(peer->requests.first().body,
             QByteArray(R"({"action": "enable", "groupname": "Party", "mode": 0 })"));
    QCOMPARE(record.groupname, QString("Party"));
    QCOMPARE(record.sender_mode, 3);
}

void tst_device_desc_songcast::a_quote_in_the_group_name_goes_out_as_typed()
{
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer("{}");
    post(record, [](Device_Desc &it) { it.request_sender_enable("a\"b\\c", 0); });
    QCOMPARE(peer->requests.first().body,
             QByteArray("{\"action\": \"enable\", \"groupname\": \"a\"b\\c\", \"mode\": 0 }"));
}

void tst_device_desc_songcast::linking_stores_the_sender_at_once()
{
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer(R"({"returncode": "error"})");
    QTest::ignoreMessage(QtDebugMsg, "linking receiver to \"u-7\"");
    post(record, [](Device_Desc &it) {
        it.request_receiver_link("u-7");
        QCOMPARE(it.receiver_sender, QString("u-7"));
    });
    QCOMPARE(record.receiver_sender, QString("u-7"));
    QCOMPARE(record.receiver_state, 0);
}

void tst_device_desc_songcast::the_slots_stand_in_their_order()
{
    QList<QByteArray> slots_found;
    const QMetaObject &meta = Device_Desc::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); i++) {
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            slots_found += meta.method(i).methodSignature();
    }
    QList<QByteArray> expected;
    for (const char *name : {"device_status", "network_status", "sender", "receiver", "bluetooth_enable",
                             "sender_enable", "sender_disable", "sender_play", "sender_stop", "receiver_link",
                             "receiver_unlink", "receiver_play", "receiver_stop"})
        expected += QByteArray("replyFinished_") + name + "(QNetworkReply*)";
    QCOMPARE(slots_found, expected);
}

void tst_device_desc_songcast::the_sender_status_fills_all_fields()
{
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer(sender_status);
    post(record, [](Device_Desc &it) { it.request_sender_status(); });
    QCOMPARE(state_of(record), QString("1/2/1/u-1/Party/0/"));
}

void tst_device_desc_songcast::the_receiver_state_fills_both_fields()
{
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer(R"({"state": 2, "sender": "u-9"})");
    post(record, [](Device_Desc &it) { it.request_receiver_state(); });
    QCOMPARE(state_of(record), QString("0/0/0///2/u-9"));
}

void tst_device_desc_songcast::status_keys_that_are_missing_or_of_a_wrong_type_read_as_nothing_data()
{
    QTest::addColumn<bool>("sender");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("state");
    QTest::newRow("sender: only enabled") << true << QByteArray(R"({"enabled": true})") << "1/0/0///5/old";
    QTest::newRow("sender: only state") << true << QByteArray(R"({"state": 7})") << "0/7/0///5/old";
    QTest::newRow("sender: only mode") << true << QByteArray(R"({"mode": 7})") << "0/0/7///5/old";
    QTest::newRow("sender: only uuid") << true << QByteArray(R"({"uuid": "u"})") << "0/0/0/u//5/old";
    QTest::newRow("sender: only groupname")
        << true << QByteArray(R"({"groupname": "g"})") << "0/0/0//g/5/old";
    QTest::newRow("sender: wrong types")
        << true << QByteArray(R"({"enabled": "true", "state": "2", "mode": 1.5, "uuid": 3, "groupname": {}})")
        << "0/0/0///5/old";
    QTest::newRow("sender: enabled as a number")
        << true << QByteArray(R"({"enabled": 1})") << "0/0/0///5/old";
    QTest::newRow("receiver: only state") << false << QByteArray(R"({"state": 2})") << "1/4/4/old/old/2/";
    QTest::newRow("receiver: only sender")
        << false << QByteArray(R"({"sender": "u"})") << "1/4/4/old/old/0/u";
    QTest::newRow("receiver: wrong types")
        << false << QByteArray(R"({"state": "1", "sender": null})") << "1/4/4/old/old/0/";
}

void tst_device_desc_songcast::status_keys_that_are_missing_or_of_a_wrong_type_read_as_nothing()
{
    QFETCH(bool, sender);
    QFETCH(QByteArray, body);
    Device_Desc record(nullptr, false, "");
    record.sender_enabled = true;
    record.sender_state = record.sender_mode = 4;
    record.uuid = record.groupname = record.receiver_sender = "old";
    record.receiver_state = 5;
    peer->answer = http_answer(body);
    post(record,
         [sender](Device_Desc &it) { sender ? it.request_sender_status() : it.request_receiver_state(); });
    QTEST(state_of(record), "state");
}

void tst_device_desc_songcast::an_enabled_sender_becomes_the_sender_device()
{
    Device_Desc record(nullptr, false, "");
    Device_Desc before(nullptr, false, "");
    sender_device = &before;
    peer->answer = http_answer(sender_status);
    post(record, [](Device_Desc &it) { it.request_sender_status(); });
    QCOMPARE(sender_device, &record);
}

void tst_device_desc_songcast::a_disabled_sender_leaves_the_sender_device()
{
    Device_Desc record(nullptr, false, "");
    Device_Desc other(nullptr, false, "");
    peer->answer = http_answer(R"({"enabled": false, "state": 1, "mode": 0, "uuid": "u", "groupname": ""})");
    for (Device_Desc *before : {static_cast<Device_Desc *>(nullptr), &record, &other}) {
        sender_device = before;
        post(record, [](Device_Desc &it) { it.request_sender_status(); });
        QCOMPARE(sender_device, before);
    }
}

void tst_device_desc_songcast::of_two_enabled_senders_the_last_reply_wins()
{
    Device_Desc first(nullptr, false, "");
    Device_Desc second(nullptr, false, "");
    peer->point_at_me(first);
    peer->point_at_me(second);
    first.request_sender_status();
    QTRY_COMPARE(peer->requests.size(), 1);
    second.request_sender_status();
    QTRY_COMPARE(peer->requests.size(), 2);

    peer->answer_now(peer->requests.at(1), http_answer(sender_status));
    QTRY_COMPARE(resolves_running, 1);
    QCOMPARE(sender_device, &second);
    peer->answer_now(peer->requests.at(0), http_answer(sender_status));
    QTRY_COMPARE(resolves_running, 0);
    QCOMPARE(sender_device, &first);
}

void tst_device_desc_songcast::add_operations()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QByteArray>("more");
    QTest::addColumn<QString>("on_success");
    const auto row = [](const char *name, const char *more, const char *on_success,
                        const Operation &operation) {
        QTest::newRow(name) << operation << QByteArray(more) << QString(on_success);
    };
    // The record starts as "0/7/7/old/old/7/old", so that each effect shows.
    row("sender enable", R"(, "uuid": "new")", "1/-1/7/new/old/7/old",
        [](auto &it) { it.request_sender_enable(it.groupname, it.sender_mode); });
    row("sender disable", "", "0/-1/7/old/old/7/old", [](auto &it) { it.request_sender_disable(); });
    row("sender disable of an enabled one", "", "0/-1/7/old/old/7/old", [](auto &it) {
        it.sender_enabled = true;
        it.request_sender_disable();
    });
    row("sender play", "", "0/2/7/old/old/7/old", [](auto &it) { it.request_sender_play(); });
    row("sender stop", R"(, "enabled": true, "uuid": "new", "mode": 3)", "0/1/7/old/old/7/old",
        [](auto &it) { it.request_sender_stop(); });
    row("receiver link", "", "0/7/7/old/old/1/old",
        [](auto &it) { it.request_receiver_link(it.receiver_sender); });
    row("receiver unlink", "", "0/7/7/old/old/0/old", [](auto &it) { it.request_receiver_unlink(); });
    row("receiver play", "", "0/7/7/old/old/2/old", [](auto &it) { it.request_receiver_play(); });
    row("receiver stop", "", "0/7/7/old/old/1/old", [](auto &it) { it.request_receiver_stop(); });
    row("bluetooth enable", "", "0/7/7/old/old/7/old", [](auto &it) { it.request_bluetooth_enable(); });
}

void tst_device_desc_songcast::a_command_reply_acts_on_success_alone_data()
{
    add_operations();
}

void tst_device_desc_songcast::a_command_reply_acts_on_success_alone()
{
    QFETCH(Operation, operation);
    QFETCH(QByteArray, more);
    const auto after = [&](const QByteArray &body) {
        Device_Desc record(nullptr, false, "");
        record.sender_state = record.sender_mode = record.receiver_state = 7;
        record.uuid = record.groupname = record.receiver_sender = "old";
        peer->answer = http_answer(body);
        QString before;
        post(record, [&](Device_Desc &it) {
            operation(it);
            before = state_of(it);
        });
        return body.contains("\"success\"") ? state_of(record)
                                            : (state_of(record) == before ? "as before" : "changed");
    };
    QTEST(after("{\"returncode\": \"success\"" + more + "}"), "on_success");
    for (const char *code :
         {"\"SUCCESS\"", "\"Success\"", "\"success \"", "\"\"", "\"error\"", "true", "0", "null"})
        QCOMPARE(after("{\"returncode\": " + QByteArray(code) + more + "}"), QString("as before"));
    QCOMPARE(after("{\"code\": 1" + more + "}"), QString("as before"));
    QVERIFY(!sender_device); // a status reply alone makes a master
}

void tst_device_desc_songcast::an_enabled_sender_without_uuid_has_none()
{
    Device_Desc record(nullptr, false, "");
    record.uuid = "old";
    peer->answer = http_answer(R"({"returncode": "success"})");
    post(record, [](Device_Desc &it) { it.request_sender_enable("Party", 0); });
    QCOMPARE(record.uuid, QString());
    QVERIFY(record.sender_enabled);
}

void tst_device_desc_songcast::stopping_a_sender_logs_what_the_reply_says()
{
    Device_Desc record(nullptr, false, "");
    peer->answer = http_answer(R"({"returncode": "success", "enabled": true, "uuid": "u-3", "mode": 3})");
    const Log_Capture log;
    post(record, [](Device_Desc &it) { it.request_sender_stop(); });
    QCOMPARE(log.debug_lines().mid(2), QStringList({"enabled: true", "uuid: \"u-3\"", "mode 3"}));

    peer->answer = http_answer(R"({"returncode": "success", "enabled": false})");
    post(record, [](Device_Desc &it) { it.request_sender_stop(); });
    QCOMPARE(log.debug_lines().mid(7), QStringList({"enabled: false", "uuid: \"\"", "mode 0"}));
}

void tst_device_desc_songcast::bluetooth_alone_logs_its_outcome_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("log");
    QTest::newRow("success") << QByteArray(R"({"returncode": "success"})")
                             << QByteArray("SUCCESS ENABLE BLUETOOTH receiver):");
    QTest::newRow("SUCCESS") << QByteArray(R"({"returncode": "SUCCESS"})")
                             << QByteArray("ERROR ENABLE BLUETOOTH receiver):");
    QTest::newRow("no returncode") << QByteArray(R"({"code": 1})")
                                   << QByteArray("ERROR ENABLE BLUETOOTH receiver):");
    QTest::newRow("unusable") << QByteArray("<html>") << QByteArray("Document is NULL");
}

void tst_device_desc_songcast::bluetooth_alone_logs_its_outcome()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, log);
    Device_Desc record(nullptr, false, "");
    record.set_name("Left");
    peer->answer = http_answer(body);
    const Log_Capture capture;
    post(record, [](Device_Desc &it) { it.request_bluetooth_enable(); });
    QStringList lines = capture.debug_lines();
    QVERIFY(lines.value(1).contains(")::_request("));
    lines.removeAt(1);
    QVERIFY(lines.value(2).contains(") reply:"));
    lines.removeAt(2);
    QCOMPARE(lines,
             QStringList({"\n\nDevice_Desc( \"Left\" )::BLUETOOTH request_bluetooth_enable!",
                          "\n\nDevice_Desc( \"Left\" )::BLUETOOTH request_bluetooth_enable FINISHED!", log}));
}

void tst_device_desc_songcast::an_unusable_reply_changes_nothing_and_counts_down_once_data()
{
    add_operations();
    QTest::newRow("sender status") << Operation([](Device_Desc &it) { it.request_sender_status(); })
                                   << QByteArray() << QString();
    QTest::newRow("receiver state") << Operation([](Device_Desc &it) { it.request_receiver_state(); })
                                    << QByteArray() << QString();
}

void tst_device_desc_songcast::an_unusable_reply_changes_nothing_and_counts_down_once()
{
    QFETCH(Operation, operation);
    for (const char *body : {"", "{}", "<html>No</html>", "{\"returncode\": \"succ", "[]"}) {
        Device_Desc record(nullptr, false, "");
        QSignalSpy defect(&record, &Device_Desc::device_defect);
        record.sender_state = record.receiver_state = 7;
        peer->answer = http_answer(body);
        QString before;
        post(record, [&](Device_Desc &it) {
            operation(it);
            before = state_of(it);
        });
        QCOMPARE(state_of(record), before);
        QCOMPARE(defect.count(), 1);
    }
}

QTEST_GUILESS_MAIN(tst_device_desc_songcast)
#include "tst_device_desc_songcast.moc"
