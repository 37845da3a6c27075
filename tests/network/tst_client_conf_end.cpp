// SPDX-License-Identifier: MIT
#include <QNetworkAccessManager>
#include <QPointer>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/client.h"
#include "device/device_desc.h"
#include "network/client_conf_statip.h"
#include "network/client_wlans.h"
#include "overview/client_overview.h"
#include "simulator/loopback.h"
#include "tests/network/conf_user.h"
#include "tests/network/wlan_world.h"
#include "tests/overview/air_waves.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/silent_speaker.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/box_reader.h"

// The end of the chain, which takes the records and the main window away, and what is left then: further
// chains and other dialogs.
class tst_client_conf_end : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_selected_network_is_told_and_ends_the_program();
    void the_overview_is_left_alone_until_the_user_confirms();
    void the_texts_of_the_box_are_translated();
    void any_object_counts_as_success_data();
    void any_object_counts_as_success();
    void what_the_global_names_is_hidden();
    void a_second_chain_sends_nothing_once_the_record_is_gone_data();
    void a_second_chain_sends_nothing_once_the_record_is_gone();
    void a_second_chain_goes_on_while_the_first_box_is_open();
    void a_second_end_is_told_as_well();
    void two_ends_may_be_open_at_a_time();
    void a_chain_survives_the_end_that_another_dialog_brings();
    void a_record_that_is_still_identified_serves_until_it_goes();
    void all_dialogs_of_one_record_survive_its_end();

private:
    bool select_network(int first_request = 0);
    bool idle(const QObject *dialog) const
    {
        return dialog->findChildren<QNetworkAccessManager *>().isEmpty();
    }

    std::unique_ptr<Wlan_World> world;
    Client_Conf *dialog = nullptr;
};

const QString farewell =
    "Successfully added Device to WiFi Network.\n\n Please get back to your WiFi Network "
    "and start VIRELOv2 App again!";

// The end of the last window would end a loop of a later test.
void tst_client_conf_end::initTestCase()
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void tst_client_conf_end::init()
{
    world = std::make_unique<Wlan_World>();
    world->start_up.open_and_show();
    overview->update_tree_widget();
    for (QPushButton *button : {overview->update_button, overview->group_button, overview->wifi_button})
        button->setEnabled(true);
    dialog = open_conf(*world);
}

void tst_client_conf_end::cleanup()
{
    world.reset();
}

// The program's own loop, until something ends it. Its exit code, or -1 where nothing does.
static int run_program()
{
    QTimer guard;
    QObject::connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(-1); });
    guard.start(10000);
    return QCoreApplication::exec();
}

// From "SAVE" to the request that selects the network.
bool tst_client_conf_end::select_network(int first_request)
{
    save(dialog);
    return answer_json(*world, first_request, added) && QTest::qWaitFor([this, first_request] {
               return world->peer.requests.size() == first_request + 2;
           });
}

static void check_that_all_is_over()
{
    QVERIFY(!client->isVisible());
    QVERIFY(device_list.isEmpty());
    QVERIFY(!sender_device);
    QCOMPARE(overview->tree->topLevelItemCount(), 0);
    for (const QPushButton *button : {overview->update_button, overview->group_button, overview->wifi_button})
        QVERIFY(!button->isEnabled());
}

void tst_client_conf_end::a_selected_network_is_told_and_ends_the_program()
{
    sender_device = world->record;
    const QPointer<Device_Desc> record = world->record;
    Box_Reader user;
    QVERIFY(select_network());
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    QTRY_VERIFY(idle(dialog));
    QCOMPARE(user.seen(), (QStringList{"Info", farewell, "OK"}));
    QCOMPARE(user.icon, QMessageBox::Information);
    QCOMPARE(user.parent, dialog);
    check_that_all_is_over();
    QVERIFY(!record);
    QVERIFY(!dialog->isVisible());
    QVERIFY(!dialog->device);
}

void tst_client_conf_end::the_overview_is_left_alone_until_the_user_confirms()
{
    bool seen = false;
    Box_Reader user([this, &seen] {
        seen = client->isVisible() && !dialog->isVisible() && device_list.size() == 1 &&
               overview->tree->topLevelItemCount() == 1 && overview->wifi_button->isEnabled();
    });
    QVERIFY(select_network());
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    QVERIFY(seen);
}

void tst_client_conf_end::the_texts_of_the_box_are_translated()
{
    Marking_Translator translator("Client_Conf");
    QCoreApplication::installTranslator(&translator);
    Box_Reader user;
    QVERIFY(select_network());
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    QCOMPARE(user.seen(), (QStringList{"#Info", "#" + farewell, "#OK"}));
}

void tst_client_conf_end::any_object_counts_as_success_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("error") << QByteArray(R"({"returncode": "error"})");
    QTest::newRow("no returncode") << QByteArray(R"({"a": null})");
    QTest::newRow("number") << QByteArray(R"({"returncode": 1})");
}

void tst_client_conf_end::any_object_counts_as_success()
{
    QFETCH(QByteArray, reply);
    Box_Reader user;
    QVERIFY(select_network());
    QVERIFY(answer_json(*world, 1, reply));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    QCOMPARE(user.text, farewell);
    check_that_all_is_over();
}

void tst_client_conf_end::what_the_global_names_is_hidden()
{
    QVERIFY(select_network());
    const Client_Conf *later = open_conf(*world);
    Box_Reader user;
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    QCOMPARE(user.parent, dialog);
    QVERIFY(!later->isVisible());
    QVERIFY(dialog->isVisible());
    check_that_all_is_over();
}

void tst_client_conf_end::a_second_chain_sends_nothing_once_the_record_is_gone_data()
{
    QTest::addColumn<bool>("renamed");
    QTest::newRow("name awaited") << true;
    QTest::newRow("network awaited") << false;
}

void tst_client_conf_end::a_second_chain_sends_nothing_once_the_record_is_gone()
{
    QFETCH(bool, renamed);
    QVERIFY(select_network());
    if (renamed)
        dialog->name_edit->setText("Bath");
    save(dialog);
    QTRY_COMPARE(world->peer.requests.size(), 3);
    Box_Reader user;
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());

    QVERIFY(answer_json(*world, 2, renamed ? success : added));
    QTRY_VERIFY(idle(dialog));
    QCOMPARE(world->peer.requests.size(), 3);
    save(dialog);
    QVERIFY(idle(dialog));
}

void tst_client_conf_end::a_second_chain_goes_on_while_the_first_box_is_open()
{
    QVERIFY(select_network());
    save(dialog);
    QTRY_COMPARE(world->peer.requests.size(), 3);
    bool went_on = false;
    Box_Reader user([this, &went_on] {
        went_on = answer_json(*world, 2, added) &&
                  QTest::qWaitFor([this] { return world->peer.requests.size() == 4; });
    });
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    QVERIFY(went_on);
    check_that_all_is_over();
}

void tst_client_conf_end::a_second_end_is_told_as_well()
{
    QVERIFY(select_network());
    QVERIFY(select_network(2));
    Box_Reader first;
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(first.met());
    Box_Reader second;
    QVERIFY(answer_json(*world, 3, success));
    QTRY_VERIFY(second.met());
    QCOMPARE(second.text, farewell);
    QTRY_VERIFY(idle(dialog));
    check_that_all_is_over();
}

void tst_client_conf_end::two_ends_may_be_open_at_a_time()
{
    QVERIFY(select_network());
    QVERIFY(select_network(2));
    bool both = false;
    Box_Reader first([this, &both] {
        QWidget *below = QApplication::activeModalWidget();
        QTimer second_user;
        connect(&second_user, &QTimer::timeout, [&both, below] {
            auto *above = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (both || !above || above == below)
                return;
            both = true;
            above->buttons().constFirst()->click();
        });
        second_user.start(1);
        QVERIFY(answer_json(*world, 3, success));
        QTRY_VERIFY(both);
        QTRY_COMPARE(QApplication::activeModalWidget(), below);
        check_that_all_is_over();
    });
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(first.met());
    QTRY_VERIFY(idle(dialog));
    check_that_all_is_over();
}

void tst_client_conf_end::a_chain_survives_the_end_that_another_dialog_brings()
{
    dialog->name_edit->setText("Bath");
    save(dialog);
    QTRY_COMPARE(world->peer.requests.size(), 1);
    Client_Conf *const first = dialog;
    dialog = open_conf(*world);
    QVERIFY(select_network(1));
    Box_Reader user;
    QVERIFY(answer_json(*world, 2, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());

    Box_Reader refused;
    QVERIFY(answer_json(*world, 0, R"({"returncode": "error"})"));
    QTRY_VERIFY(refused.met());
    QCOMPARE(refused.text, QString("DeviceName could not be set"));
    QCOMPARE(refused.parent, first);
    QTRY_VERIFY(idle(first));
    QCOMPARE(world->peer.requests.size(), 3);
}

// Its thread is told to end and goes on for a while; the record lives until then.
void tst_client_conf_end::a_record_that_is_still_identified_serves_until_it_goes()
{
    Silent_Speaker speaker(own_loopback(3));
    air_waves::announce("Silent", 1, own_loopback(3), speaker.http_port());
    QTRY_COMPARE(device_list.size(), 2);
    const QPointer<Device_Desc> record = device_list.last();
    QVERIFY(record->isRunning());
    auto *const other = new Client_Conf(record, nullptr);
    conf_dialog = dialog;

    Box_Reader user;
    QVERIFY(select_network());
    QVERIFY(answer_json(*world, 1, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    check_that_all_is_over();
    QVERIFY(record);
    other->show();
    save(other); // goes out to a speaker that does not answer
    QCOMPARE(other->findChildren<QNetworkAccessManager *>().size(), 1);

    speaker.end();
    QTRY_VERIFY(!record);
    QTRY_VERIFY(idle(other)); // the request has ended with the speaker
    save(other);
    QVERIFY(idle(other));
}

void tst_client_conf_end::all_dialogs_of_one_record_survive_its_end()
{
    wlans_dialog = new Client_WLANs(world->record, nullptr);
    wlans_dialog->show();
    QTest::mouseClick(dialog->dhcp_button, Qt::LeftButton);
    QVERIFY(answer_json(*world, 0, R"({"aplist": [{"ssid": "Home"}]})"));
    QTRY_VERIFY(wlans_dialog->next_button->isEnabled());
    QVERIFY(select_network(1));
    Box_Reader user;
    QVERIFY(answer_json(*world, 2, success));
    QCOMPARE(run_program(), 0);
    QVERIFY(user.met());
    check_that_all_is_over();
    QTRY_VERIFY(idle(dialog)); // what is done with is freed

    QTest::mouseClick(wlans_dialog->next_button, Qt::LeftButton);
    QTest::mouseClick(conf_statip_dialog->save_button, Qt::LeftButton);
    save(dialog);
    QVERIFY(idle(dialog));
    QCOMPARE(conf_dialog, dialog);
}

QTEST_MAIN(tst_client_conf_end)
#include "tst_client_conf_end.moc"
