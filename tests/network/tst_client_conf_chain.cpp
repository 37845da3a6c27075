// SPDX-License-Identifier: MIT
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTest>
#include <algorithm>
#include <memory>

#include "device/device_desc.h"
#include "tests/network/conf_user.h"
#include "tests/network/wlan_world.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/box_reader.h"

// The chain of requests that "SAVE" starts, up to the selection of the network. Its end is told in
// tst_client_conf_end.
class tst_client_conf_chain : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void an_unchanged_name_is_not_sent();
    void a_changed_name_comes_first();
    void each_reply_is_logged();
    void the_password_is_read_when_the_network_is_added();
    void a_refused_name_ends_the_chain_data();
    void a_refused_name_ends_the_chain();
    void a_refused_network_ends_the_chain_data();
    void a_refused_network_ends_the_chain();
    void the_texts_of_the_boxes_are_translated_but_one();
    void an_unusable_reply_ends_the_chain_in_silence_data();
    void an_unusable_reply_ends_the_chain_in_silence();
    void a_refused_connection_ends_the_chain_in_silence();
    void after_a_failure_save_starts_over();
    void a_second_press_starts_a_second_chain();
    void the_dialog_stays_usable_while_a_reply_is_awaited();
    void a_chain_goes_on_when_the_dialog_is_closed();
    void each_request_has_a_manager_of_its_own();

private:
    QStringList actions() const;
    QStringList lines_of_replies() const;
    bool idle() const { return dialog->findChildren<QNetworkAccessManager *>().isEmpty(); }

    std::unique_ptr<Wlan_World> world;
    Client_Conf *dialog = nullptr;
};

void tst_client_conf_chain::init()
{
    world = std::make_unique<Wlan_World>();
    world->record->ssid = "Home";
    dialog = open_conf(*world);
    world->start_up.log.clear();
}

void tst_client_conf_chain::cleanup()
{
    world.reset();
}

// Of all requests, in order.
QStringList tst_client_conf_chain::actions() const
{
    QStringList found;
    for (const Http_Peer::Request &request : world->peer.requests)
        found += QJsonDocument::fromJson(request.body).object().value("action").toString();
    return found;
}

// Without the requests.
QStringList tst_client_conf_chain::lines_of_replies() const
{
    QStringList lines;
    for (const QString &line : world->start_up.log.debug_lines())
        if (!line.startsWith("CONFIG"))
            lines += line;
    return lines;
}

void tst_client_conf_chain::an_unchanged_name_is_not_sent()
{
    dialog->name_edit->setText("Bath");
    dialog->name_edit->setText("Kitchen"); // as before
    save(dialog);
    QVERIFY(answer_json(*world, 0, added));
    QTRY_COMPARE(actions(), (QStringList{"addnetwork", "selectnetwork"}));
}

void tst_client_conf_chain::a_changed_name_comes_first()
{
    dialog->name_edit->setText("Bath");
    save(dialog);
    QTRY_COMPARE(actions(), QStringList("setdevicename"));
    QVERIFY(answer_json(*world, 0, success));
    QTRY_COMPARE(actions(), (QStringList{"setdevicename", "addnetwork"}));
    QVERIFY(answer_json(*world, 1, added));
    QTRY_COMPARE(actions(), (QStringList{"setdevicename", "addnetwork", "selectnetwork"}));
    QCOMPARE(world->record->name, QString("Kitchen")); // the record keeps the old one
}

void tst_client_conf_chain::each_reply_is_logged()
{
    dialog->name_edit->setText("Bath");
    save(dialog);
    QVERIFY(answer_json(*world, 0, success));
    QVERIFY(answer_json(*world, 1, added));
    QVERIFY(answer_json(*world, 2, "{}"));
    QTRY_VERIFY(idle());
    QCOMPARE(lines_of_replies(),
             (QStringList{reply_line("setDeviceName reply received", success),
                          reply_line("AddNetwork / AddStaticNetwork reply received", added),
                          reply_line("selecetNetwork reply received", "{}"), "Object is empty"}));
}

void tst_client_conf_chain::the_password_is_read_when_the_network_is_added()
{
    dialog->name_edit->setText("Bath");
    dialog->passwd_edit->setText("early");
    save(dialog);
    QTRY_COMPARE(world->peer.requests.size(), 1);
    dialog->passwd_edit->setText("late");
    QVERIFY(answer_json(*world, 0, success));
    QTRY_COMPARE(world->peer.requests.size(), 2);
    QVERIFY(world->peer.requests.at(1).body.contains("\"psk\": \"late\""));
}

static void add_refusals()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("returncode");
    QTest::newRow("error") << QByteArray(R"({"returncode": "error"})") << "error";
    QTest::newRow("other case") << QByteArray(R"({"returncode": "Success"})") << "Success";
    QTest::newRow("blank") << QByteArray(R"({"returncode": "success "})") << "success ";
    QTest::newRow("umlauts") << QByteArray(R"({"returncode": "für <b>x</b>"})") << "für <b>x</b>";
    QTest::newRow("empty") << QByteArray(R"({"returncode": ""})") << "";
    QTest::newRow("none") << QByteArray(R"({"id": 3})") << "";
    QTest::newRow("number") << QByteArray(R"({"returncode": 0})") << "";
    QTest::newRow("other key") << QByteArray(R"({"Returncode": "success"})") << "";
}

void tst_client_conf_chain::a_refused_name_ends_the_chain_data()
{
    add_refusals();
}

void tst_client_conf_chain::a_refused_name_ends_the_chain()
{
    QFETCH(QByteArray, reply);
    dialog->name_edit->setText("Bath");
    save(dialog);
    Box_Reader user;
    QVERIFY(answer_json(*world, 0, reply));
    QTRY_VERIFY(user.met());
    QTRY_VERIFY(idle());
    QCOMPARE(user.seen(), (QStringList{"Info", "DeviceName could not be set", "OK"}));
    QCOMPARE(user.icon, QMessageBox::Information);
    QCOMPARE(user.parent, dialog);
    QCOMPARE(actions(), QStringList("setdevicename"));
    QVERIFY(dialog->isVisible());
}

void tst_client_conf_chain::a_refused_network_ends_the_chain_data()
{
    add_refusals();
}

void tst_client_conf_chain::a_refused_network_ends_the_chain()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, returncode);
    save(dialog);
    Box_Reader user;
    QVERIFY(answer_json(*world, 0, reply));
    QTRY_VERIFY(user.met());
    QTRY_VERIFY(idle());
    QCOMPARE(user.seen(),
             (QStringList{"Add/Static/Network", "Result " + returncode + " something went wrong...", "OK"}));
    QCOMPARE(user.icon, QMessageBox::Information);
    QCOMPARE(user.parent, dialog);
    QCOMPARE(actions(), QStringList("addnetwork"));
    QVERIFY(dialog->isVisible());
}

void tst_client_conf_chain::the_texts_of_the_boxes_are_translated_but_one()
{
    Marking_Translator translator("Client_Conf");
    QCoreApplication::installTranslator(&translator);
    save(dialog);
    Box_Reader refused_network;
    QVERIFY(answer_json(*world, 0, R"({"returncode": "error"})"));
    QTRY_VERIFY(refused_network.met());
    QCOMPARE(refused_network.seen(),
             (QStringList{"#Add/Static/Network", "Result error something went wrong...", "#OK"}));

    dialog->name_edit->setText("Bath");
    save(dialog);
    Box_Reader refused_name;
    QVERIFY(answer_json(*world, 1, R"({"returncode": "error"})"));
    QTRY_VERIFY(refused_name.met());
    QCOMPARE(refused_name.seen(), (QStringList{"#Info", "#DeviceName could not be set", "#OK"}));
}

void tst_client_conf_chain::an_unusable_reply_ends_the_chain_in_silence_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QString>("line");
    const struct {
        const char *what;
        QByteArray raw;
        const char *line;
    } replies[] = {
        {"empty object", http_answer("{}"), "Object is empty"},
        {"array", http_answer("[1]"), "Object is empty"},
        {"empty", http_answer(""), "Document is NULL"},
        {"error page", http_answer("<html></html>", "500 Internal Server Error"), "Document is NULL"},
        {"half a document", http_answer(R"({"returncode": "succ)"), "Document is NULL"},
    };
    for (int step = 0; step < 3; ++step)
        for (const auto &reply : replies)
            QTest::addRow("step %d, %s", step + 1, reply.what) << step << reply.raw << reply.line;
}

void tst_client_conf_chain::an_unusable_reply_ends_the_chain_in_silence()
{
    QFETCH(int, step);
    QFETCH(QByteArray, raw);
    QFETCH(QString, line);
    dialog->name_edit->setText("Bath");
    save(dialog);
    const QByteArray before[] = {success, added};
    for (int number = 0; number < step; ++number)
        QVERIFY(answer_json(*world, number, before[number]));
    QVERIFY(answer(*world, step, raw));
    QTRY_VERIFY(idle());
    QCOMPARE(world->peer.requests.size(), step + 1);
    QCOMPARE(lines_of_replies().last(), line);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(dialog->isVisible());
    QVERIFY(dialog->save_button->isEnabled());
    QVERIFY(dialog->name_edit->isEnabled());
}

void tst_client_conf_chain::a_refused_connection_ends_the_chain_in_silence()
{
    world->peer.close();
    save(dialog);
    QTRY_VERIFY(idle());
    QCOMPARE(lines_of_replies(), (QStringList{reply_line("AddNetwork / AddStaticNetwork reply received", ""),
                                              "Document is NULL"}));
    QVERIFY(dialog->isVisible());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_client_conf_chain::after_a_failure_save_starts_over()
{
    dialog->name_edit->setText("Bath");
    save(dialog);
    QVERIFY(answer_json(*world, 0, success));
    Box_Reader user;
    QVERIFY(answer_json(*world, 1, R"({"returncode": "error"})"));
    QTRY_VERIFY(user.met());

    // The name that the speaker has taken goes out again, as the record keeps the old one.
    dialog->passwd_edit->setText("another");
    save(dialog);
    QVERIFY(answer_json(*world, 2, success));
    QVERIFY(answer_json(*world, 3, added));
    QVERIFY(answer_json(*world, 4, "{}")); // added and not selected
    QTRY_VERIFY(idle());
    save(dialog);
    QVERIFY(answer_json(*world, 5, success));
    QTRY_COMPARE(actions(), (QStringList{"setdevicename", "addnetwork", "setdevicename", "addnetwork",
                                         "selectnetwork", "setdevicename", "addnetwork"}));
}

void tst_client_conf_chain::a_second_press_starts_a_second_chain()
{
    save(dialog);
    QVERIFY(dialog->save_button->isEnabled());
    QVERIFY(dialog->back_button->isEnabled());
    QVERIFY(dialog->dhcp_button->isEnabled());
    save(dialog);
    QTRY_COMPARE(actions(), (QStringList{"addnetwork", "addnetwork"}));
    QVERIFY(answer_json(*world, 1, R"({"returncode": "success", "id": 2})"));
    QVERIFY(answer_json(*world, 0, R"({"returncode": "success", "id": 1})"));
    QTRY_COMPARE(world->peer.requests.size(), 4);
    QByteArrayList last{world->peer.requests.at(2).body, world->peer.requests.at(3).body};
    std::sort(last.begin(), last.end());
    QCOMPARE(last, (QByteArrayList{R"({"action": "selectnetwork", "id": 1 })",
                                   R"({"action": "selectnetwork", "id": 2 })"}));
}

void tst_client_conf_chain::the_dialog_stays_usable_while_a_reply_is_awaited()
{
    save(dialog);
    QVERIFY(answer_json(*world, 0, added));
    QTRY_COMPARE(actions(), (QStringList{"addnetwork", "selectnetwork"})); // which stays open
    QTest::keyClicks(dialog->passwd_edit, "typed");
    QCOMPARE(dialog->passwd_edit->text(), QString("typed"));
    QVERIFY(dialog->isVisible());
    QVERIFY(!QApplication::activeModalWidget());
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
}

void tst_client_conf_chain::a_chain_goes_on_when_the_dialog_is_closed()
{
    dialog->name_edit->setText("Bath");
    save(dialog);
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(answer_json(*world, 0, success));
    QTRY_COMPARE(actions(), (QStringList{"setdevicename", "addnetwork"}));
}

void tst_client_conf_chain::each_request_has_a_manager_of_its_own()
{
    save(dialog);
    save(dialog);
    QCOMPARE(dialog->findChildren<QNetworkAccessManager *>(QString(), Qt::FindDirectChildrenOnly).size(), 2);
    QVERIFY(answer_json(*world, 0, "{}"));
    QVERIFY(answer_json(*world, 1, "{}"));
    QTRY_VERIFY(idle()); // freed after their replies
}

QTEST_MAIN(tst_client_conf_chain)
#include "tst_client_conf_chain.moc"
