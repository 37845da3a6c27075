// SPDX-License-Identifier: MIT
#include <QHeaderView>
#include <QJsonObject>
#include <QJsonValue>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "device/device_desc.h"
#include "network/client_wlans.h"
#include "tests/network/wlan_world.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/box_reader.h"

namespace
{
QStringList rows_of(const Client_WLANs *dialog)
{
    QStringList rows;
    for (int i = 0; i < dialog->tree->topLevelItemCount(); ++i)
        rows += dialog->tree->topLevelItem(i)->text(0) + ": " + dialog->tree->topLevelItem(i)->text(1);
    return rows;
}

QByteArray network(const QByteArray &ssid, const QByteArray &signal, const QByteArray &encryption = "WPA2")
{
    return R"({"ssid": ")" + ssid + R"(", "encrypt_type": ")" + encryption + R"(", "signal_level": ")" +
           signal + R"("})";
}

QByteArray list_of(const QList<QByteArray> &networks)
{
    return R"({"aplist": [)" + networks.join(", ") + "]}";
}

const char *const received = "Client WLANS  reply received";
} // namespace

// What the list of WLANs asks the speaker, and what it makes of the answer.
class tst_client_wlans_scan : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_scan_goes_out_before_the_dialog_shows();
    void the_request_is_exactly_this();
    void the_scan_goes_out_only_once();
    void networks_become_rows_in_the_order_of_their_signal();
    void the_first_row_in_that_order_is_selected();
    void the_first_row_counts_in_the_order_of_the_user_too();
    void each_row_holds_its_json();
    void networks_of_one_name_stay_apart();
    void the_encryption_changes_nothing();
    void odd_members_read_as_empty_texts_data();
    void odd_members_read_as_empty_texts();
    void odd_names_stand_as_they_are();
    void everything_is_logged();
    void the_log_of_a_reply_ends_at_the_first_nul();
    void a_list_replaces_the_rows_from_before();
    void no_network_is_told_data();
    void no_network_is_told();
    void the_texts_of_the_box_are_translated();
    void an_unusable_reply_changes_nothing_data();
    void an_unusable_reply_changes_nothing();
    void a_refused_connection_changes_nothing();
    void a_connection_cut_within_the_reply_changes_nothing();
    void an_error_page_that_is_json_is_read_like_any_reply();
    void a_silent_speaker_leaves_it_scanning();
    void a_reply_after_back_fills_the_hidden_list();
    void a_reply_fills_the_list_also_when_the_record_is_gone();
    void for_the_row_of_a_group_the_list_stays_empty();
    void request_and_manager_are_freed_after_the_reply();

private:
    Client_WLANs *open(Device_Desc *record);
    Client_WLANs *open() { return open(world->record); }
    void answer(const QByteArray &raw);
    void answer_json(const QByteArray &body) { answer(http_answer(body)); }
    bool logged(const QString &line) const { return world->start_up.log.debug_lines().contains(line); }

    std::unique_ptr<Wlan_World> world;
};

void tst_client_wlans_scan::init()
{
    world = std::make_unique<Wlan_World>();
}

void tst_client_wlans_scan::cleanup()
{
    world.reset();
}

Client_WLANs *tst_client_wlans_scan::open(Device_Desc *record)
{
    world->start_up.log.clear();
    wlans_dialog = new Client_WLANs(record, nullptr);
    wlans_dialog->show();
    return wlans_dialog;
}

// Returns when the dialog has read the answer.
void tst_client_wlans_scan::answer(const QByteArray &raw)
{
    QTRY_COMPARE(world->peer.requests.size(), 1);
    world->peer.answer_now(world->peer.requests.first(), raw);
    QTRY_COMPARE(wlans_dialog->findChildren<QNetworkAccessManager *>().size(), 0);
}

void tst_client_wlans_scan::the_scan_goes_out_before_the_dialog_shows()
{
    const Client_WLANs dialog(world->record, nullptr);
    QCOMPARE(dialog.findChildren<QNetworkAccessManager *>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
    QTRY_COMPARE(world->peer.requests.size(), 1);
    QVERIFY(!dialog.isVisible());
}

void tst_client_wlans_scan::the_request_is_exactly_this()
{
    open();
    QTRY_COMPARE(world->peer.requests.size(), 1);
    const Http_Peer::Request &request = world->peer.requests.first();
    QCOMPARE(request.line, QByteArray("POST /api/v14/configure.action HTTP/1.1"));
    QCOMPARE(request.body, QByteArray("{\"action\": \"wifiscan\"}"));
    QCOMPARE(request.headers.count("Content-Type: text/plain"), 1);
    QCOMPARE(request.headers.count("charset: UTF-8"), 1);
    QCOMPARE(request.headers.count("Content-Length: 22"), 1);
}

void tst_client_wlans_scan::the_scan_goes_out_only_once()
{
    open();
    answer_json(list_of({network("Home", "-48")}));
    wlans_dialog->hide();
    wlans_dialog->show();
    QMetaObject::invokeMethod(wlans_dialog, "reset");
    QVERIFY(wlans_dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    QCOMPARE(world->peer.requests.size(), 1);
}

void tst_client_wlans_scan::networks_become_rows_in_the_order_of_their_signal()
{
    open();
    answer_json(list_of({network("A", "-70"), network("B", "-8"), network("C", "-100")}));
    QCOMPARE(rows_of(wlans_dialog), (QStringList{"C: -100 dBi", "A: -70 dBi", "B: -8 dBi"}));
    QVERIFY(wlans_dialog->next_button->isEnabled());
}

void tst_client_wlans_scan::the_first_row_in_that_order_is_selected()
{
    open();
    answer_json(list_of({network("A", "-70"), network("C", "-100")}));
    QCOMPARE(wlans_dialog->tree->selectedItems(),
             QList<QTreeWidgetItem *>{wlans_dialog->tree->topLevelItem(0)});
    QCOMPARE(wlans_dialog->tree->selectedItems().first()->text(0), QString("C"));
}

void tst_client_wlans_scan::the_first_row_counts_in_the_order_of_the_user_too()
{
    open();
    QHeaderView *header = wlans_dialog->tree->header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, header->height() / 2));
    answer_json(list_of({network("C", "-100"), network("A", "-70"), network("B", "-8")}));
    QCOMPARE(rows_of(wlans_dialog), (QStringList{"A: -70 dBi", "B: -8 dBi", "C: -100 dBi"}));
    QCOMPARE(wlans_dialog->tree->selectedItems().first()->text(0), QString("A"));
}

void tst_client_wlans_scan::each_row_holds_its_json()
{
    open();
    answer_json(R"({"aplist": [{"ssid": "Home", "more": 7}, 5]})");
    QList<QJsonValue> values;
    for (int i = 0; i < wlans_dialog->tree->topLevelItemCount(); ++i) {
        const QVariant held = wlans_dialog->tree->topLevelItem(i)->data(0, Qt::UserRole);
        QCOMPARE(held.userType(), int(QMetaType::QJsonValue));
        values += held.toJsonValue();
    }
    QCOMPARE(values.size(), 2);
    QVERIFY(values.contains(QJsonObject{{"ssid", "Home"}, {"more", 7}}));
    QVERIFY(values.contains(5));
}

void tst_client_wlans_scan::networks_of_one_name_stay_apart()
{
    open();
    answer_json(list_of({network("Home", "-48"), network("Home", "-55"), network("Home", "-48")}));
    QCOMPARE(rows_of(wlans_dialog), (QStringList{"Home: -48 dBi", "Home: -48 dBi", "Home: -55 dBi"}));
}

void tst_client_wlans_scan::the_encryption_changes_nothing()
{
    open();
    answer_json(list_of({network("A", "-1", "OPEN"), network("B", "-2", ""), network("C", "-3", "WPA3")}));
    QCOMPARE(rows_of(wlans_dialog), (QStringList{"A: -1 dBi", "B: -2 dBi", "C: -3 dBi"}));
    QVERIFY(logged(R"(# 0  SSID:  "A" Encryption: "OPEN" Signal Level: "-1")"));
}

void tst_client_wlans_scan::odd_members_read_as_empty_texts_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("row");
    QTest::newRow("signal is a number") << QByteArray(R"({"ssid": "A", "signal_level": -48})") << "A:  dBi";
    QTest::newRow("no signal") << QByteArray(R"({"ssid": "A"})") << "A:  dBi";
    QTest::newRow("name is a number") << QByteArray(R"({"ssid": 7, "signal_level": "-48"})") << ": -48 dBi";
    QTest::newRow("hidden name") << network("", "-48") << ": -48 dBi";
    QTest::newRow("empty object") << QByteArray("{}") << ":  dBi";
    QTest::newRow("no object") << QByteArray("\"A\"") << ":  dBi";
    QTest::newRow("null") << QByteArray("null") << ":  dBi";
}

void tst_client_wlans_scan::odd_members_read_as_empty_texts()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, row);
    open();
    answer_json(list_of({element}));
    QCOMPARE(rows_of(wlans_dialog), QStringList(row));
    QVERIFY(wlans_dialog->next_button->isEnabled());
}

void tst_client_wlans_scan::odd_names_stand_as_they_are()
{
    const QByteArray longest(32, 'W');
    open();
    answer_json(list_of({network("Café \"am\" Eck", "-3").replace("\"am\"", R"(\"am\")"),
                         network("<b>x</b>", "-1"), network(longest, "-2"), network(R"(  \u0001\n)", "-4")}));
    QCOMPARE(rows_of(wlans_dialog), (QStringList{"<b>x</b>: -1 dBi", longest + ": -2 dBi",
                                                 "Café \"am\" Eck: -3 dBi", "  \u0001\n: -4 dBi"}));
}

void tst_client_wlans_scan::everything_is_logged()
{
    open();
    world->start_up.log.clear();
    const QByteArray body = list_of({network("B", "-9"), network("A", "-1", "OPEN")});
    answer_json(body);
    QCOMPARE(
        world->start_up.log.debug_lines(),
        (QStringList{reply_line(received, body), R"(# 0  SSID:  "B" Encryption: "WPA2" Signal Level: "-9")",
                     R"(# 1  SSID:  "A" Encryption: "OPEN" Signal Level: "-1")"}));
}

void tst_client_wlans_scan::the_log_of_a_reply_ends_at_the_first_nul()
{
    open();
    world->start_up.log.clear();
    answer_json(QByteArray("{\"a\": 1}\0more", 13));
    QCOMPARE(world->start_up.log.debug_lines(),
             (QStringList{reply_line(received, "{\"a\": 1}"), "Document is NULL"}));
}

void tst_client_wlans_scan::a_list_replaces_the_rows_from_before()
{
    open();
    wlans_dialog->tree->addTopLevelItem(new QTreeWidgetItem({"Before", "-1 dBi"}));
    answer_json(list_of({network("Home", "-48")}));
    QCOMPARE(rows_of(wlans_dialog), QStringList("Home: -48 dBi"));
}

void tst_client_wlans_scan::no_network_is_told_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty list") << QByteArray(R"({"aplist": []})");
    QTest::newRow("no list") << QByteArray(R"({"returncode": "success"})");
    QTest::newRow("list is an object") << QByteArray(R"({"aplist": {"ssid": "Home"}})");
    QTest::newRow("list is null") << QByteArray(R"({"aplist": null})");
}

void tst_client_wlans_scan::no_network_is_told()
{
    QFETCH(QByteArray, body);
    open();
    wlans_dialog->tree->addTopLevelItem(new QTreeWidgetItem({"Before", "-1 dBi"}));
    Box_Reader user;
    answer_json(body);
    QVERIFY(user.met());
    QCOMPARE(user.seen(), (QStringList{"Info", "No Speakers found", "OK"}));
    QCOMPARE(user.icon, QMessageBox::Information);
    QCOMPARE(user.parent, wlans_dialog);
    QCOMPARE(rows_of(wlans_dialog), QStringList());
    QVERIFY(!wlans_dialog->next_button->isEnabled());
    QVERIFY(wlans_dialog->isVisible());
}

void tst_client_wlans_scan::the_texts_of_the_box_are_translated()
{
    Marking_Translator translator("Client_WLANs");
    QCoreApplication::installTranslator(&translator);
    open();
    Box_Reader user;
    answer_json(R"({"aplist": []})");
    QCOMPARE(user.seen(), (QStringList{"#Info", "#No Speakers found", "#OK"}));
}

void tst_client_wlans_scan::an_unusable_reply_changes_nothing_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QString>("line");
    const QByteArray list = list_of({network("Home", "-48")});
    QTest::newRow("empty object") << http_answer("{}") << "Object is empty";
    QTest::newRow("array") << http_answer("[" + list + "]") << "Object is empty";
    QTest::newRow("empty") << http_answer("") << "Document is NULL";
    QTest::newRow("error page") << http_answer("<html></html>", "500 Internal Server Error")
                                << "Document is NULL";
    QTest::newRow("half a document") << http_answer(list.left(30)) << "Document is NULL";
    QTest::newRow("two documents") << http_answer(list + list) << "Document is NULL";
}

void tst_client_wlans_scan::an_unusable_reply_changes_nothing()
{
    QFETCH(QByteArray, raw);
    QFETCH(QString, line);
    open();
    wlans_dialog->tree->addTopLevelItem(new QTreeWidgetItem({"Before", "-1 dBi"}));
    answer(raw);
    QCOMPARE(world->start_up.log.debug_lines().last(), line);
    QCOMPARE(rows_of(wlans_dialog), QStringList("Before: -1 dBi"));
    QVERIFY(!wlans_dialog->next_button->isEnabled());
    QVERIFY(wlans_dialog->isVisible());
}

void tst_client_wlans_scan::a_refused_connection_changes_nothing()
{
    world->peer.close();
    open();
    QTRY_VERIFY(logged("Document is NULL"));
    QVERIFY(logged(reply_line(received, "")));
    QCOMPARE(rows_of(wlans_dialog), QStringList());
    QVERIFY(!wlans_dialog->next_button->isEnabled());
}

void tst_client_wlans_scan::a_connection_cut_within_the_reply_changes_nothing()
{
    world->peer.close_after_answer = true;
    open();
    answer(http_answer(list_of({network("Home", "-48")})).chopped(5));
    QVERIFY(logged("Document is NULL"));
    QCOMPARE(rows_of(wlans_dialog), QStringList());
}

void tst_client_wlans_scan::an_error_page_that_is_json_is_read_like_any_reply()
{
    open();
    answer(http_answer(list_of({network("Home", "-48")}), "404 Not Found"));
    QCOMPARE(rows_of(wlans_dialog), QStringList("Home: -48 dBi"));
}

void tst_client_wlans_scan::a_silent_speaker_leaves_it_scanning()
{
    open();
    QTRY_COMPARE(world->peer.requests.size(), 1);
    QVERIFY(!wlans_dialog->next_button->isEnabled());
    QTest::mouseClick(wlans_dialog->back_button, Qt::LeftButton);
    QVERIFY(!wlans_dialog->isVisible());
    QCOMPARE(wlans_dialog->findChildren<QNetworkAccessManager *>().size(), 1); // still open
}

void tst_client_wlans_scan::a_reply_after_back_fills_the_hidden_list()
{
    open();
    QTest::mouseClick(wlans_dialog->back_button, Qt::LeftButton);
    answer_json(list_of({network("Home", "-48")}));
    QCOMPARE(rows_of(wlans_dialog), QStringList("Home: -48 dBi"));
    QVERIFY(!wlans_dialog->isVisible());
}

void tst_client_wlans_scan::a_reply_fills_the_list_also_when_the_record_is_gone()
{
    open();
    QTRY_COMPARE(world->peer.requests.size(), 1);
    delete world->record;
    answer_json(list_of({network("Home", "-48")}));
    QCOMPARE(rows_of(wlans_dialog), QStringList("Home: -48 dBi"));
    QVERIFY(wlans_dialog->next_button->isEnabled());
}

// Its record has no address, so no request leaves.
void tst_client_wlans_scan::for_the_row_of_a_group_the_list_stays_empty()
{
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    open(&group);
    world->start_up.log.clear(); // of the offscreen platform's own words
    QTRY_VERIFY(logged("Document is NULL"));
    QCOMPARE(rows_of(wlans_dialog), QStringList());
    QVERIFY(!wlans_dialog->next_button->isEnabled());
    QCOMPARE(world->peer.requests.size(), 0);
    QCOMPARE(world->start_up.log.warnings().join("\n"), QString());
}

void tst_client_wlans_scan::request_and_manager_are_freed_after_the_reply()
{
    open();
    const QPointer<QNetworkAccessManager> manager = wlans_dialog->findChild<QNetworkAccessManager *>();
    QVERIFY(manager);
    answer_json(R"({"a": 1, "aplist": [{}]})");
    QTRY_VERIFY(!manager);
}

QTEST_MAIN(tst_client_wlans_scan)
#include "tst_client_wlans_scan.moc"
