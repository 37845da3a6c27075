// SPDX-License-Identifier: MIT
#include <QNetworkAccessManager>
#include <QTimer>
#include <vector>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/update/module_replies.h"
#include "tests/update/update_world.h"

// When a module that upgrades itself is asked again.
class tst_client_update_polling : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void polling_goes_on_or_ends_by_status();
    void the_next_poll_comes_one_second_after_the_reply();
    void polling_goes_on_behind_a_closed_dialog();
    void the_polls_follow_the_address_of_the_record();
    void a_record_that_goes_ends_the_polling();
    void a_speaker_that_goes_ends_the_polling();
    void every_poll_has_a_manager_of_its_own_that_goes();

private:
    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Update_World> world;
};

void tst_client_update_polling::init()
{
    log = std::make_unique<Log_Capture>();
    world = std::make_unique<Update_World>();
    world->open();
    log->clear();
}

void tst_client_update_polling::cleanup()
{
    world.reset();
    const QStringList warnings = own_warnings(*log);
    log.reset();
    QCOMPARE(warnings, QStringList());
}

// All speakers side by side. Those that end are answered first: when the last one of the others has polled
// again, each of them would have done so.
void tst_client_update_polling::polling_goes_on_or_ends_by_status()
{
    const QList<QByteArray> last_replies = {
        status_reply("5"), status_reply("5", "2"), status_reply("6"), "", "{}", "<html>", "{\"status\": \"1"};
    const QList<QByteArray> other_replies = {status_reply("0"),  status_reply("1"),  status_reply("2"),
                                             status_reply("3"),  status_reply("4"),  status_reply("7"),
                                             status_reply(""),   status_reply("-1"), R"({"status": 6})",
                                             R"({"status": 5})", R"({"other": "6"})"};
    std::vector<std::unique_ptr<Update_World>> worlds;
    for (const QByteArray &reply : last_replies + other_replies) {
        worlds.push_back(std::make_unique<Update_World>());
        Update_World &each = *worlds.back();
        each.open();
        each.call("updateCheckTimer");
        QTRY_COMPARE(each.peer.requests.size(), 1);
        log->clear();
        each.answer(reply);
        QTRY_VERIFY(!log->debug_lines().isEmpty());
    }
    const auto last_count = static_cast<size_t>(last_replies.size());
    for (size_t i = last_count; i < worlds.size(); ++i) {
        QTRY_COMPARE(worlds[i]->peer.requests.size(), 2);
        QCOMPARE(worlds[i]->peer.requests.last().body, poll_body);
    }
    for (size_t i = 0; i < last_count; ++i)
        QCOMPARE(worlds[i]->peer.requests.size(), 1);
}

// All on one event loop, so the order of what happens holds on a busy machine too.
void tst_client_update_polling::the_next_poll_comes_one_second_after_the_reply()
{
    QStringList order;
    QTimer early, late;
    for (QTimer *timer : {&early, &late}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    early.setInterval(990);
    late.setInterval(1100);
    connect(&early, &QTimer::timeout, [&order] { order += "early"; });
    connect(&late, &QTimer::timeout, [&order] { order += "late"; });
    Request_Watch watch(world->dialog.get());
    watch.on_request = [&order] { order += "poll"; };
    log->on_debug_line = [&](const QString &line) {
        if (line.startsWith("Status:")) {
            early.start();
            late.start();
        }
    };
    hand_over(*world, "replyFinishedUpdateCheck", status_reply("1"));
    QTRY_COMPARE(order.size(), 3);
    QCOMPARE(order, (QStringList{"early", "poll", "late"}));
    log->on_debug_line = nullptr;
}

void tst_client_update_polling::polling_goes_on_behind_a_closed_dialog()
{
    world->dialog->show();
    world->press_flash();
    world->answer(success);
    QTRY_COMPARE(world->peer.requests.size(), 2);
    world->answer(status_reply("1"));
    QTRY_COMPARE(world->dialog->status_label->text(), QString("Downloading..."));
    world->dialog->close();
    QTRY_COMPARE(world->peer.requests.size(), 3);
    world->answer(status_reply("6"));
    QTRY_COMPARE(world->dialog->status_label->text(), QString("Done!"));
    QVERIFY(!world->dialog->isVisible());
}

void tst_client_update_polling::the_polls_follow_the_address_of_the_record()
{
    Http_Peer elsewhere(QHostAddress(own_loopback(3)));
    world->press_flash();
    elsewhere.point_at_me(*world->record);
    world->answer(success);
    QTRY_COMPARE(elsewhere.requests.size(), 1);
    QCOMPARE(elsewhere.requests.first().body, poll_body);
}

// A second dialog whose reply comes later tells when the poll of the first one would have come.
void tst_client_update_polling::a_record_that_goes_ends_the_polling()
{
    world->press_flash();
    world->answer(success);
    QTRY_COMPARE(world->peer.requests.size(), 2);
    world->answer(status_reply("1"));
    QTRY_COMPARE(world->dialog->status_label->text(), QString("Downloading..."));
    world->record.release()->discard();

    Update_World other;
    other.open();
    hand_over(other, "replyFinishedUpdateCheck", status_reply("1"));
    QTRY_COMPARE(other.peer.requests.size(), 1);
    QCOMPARE(world->peer.requests.size(), 2);
    QVERIFY(world->dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    QCOMPARE(world->enabled(), stuck);

    hand_over(*world, "replyFinished", success);
    QVERIFY(world->dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    hand_over(*world, "replyFinishedUpdateCheck", status_reply("6"));
    QCOMPARE(world->enabled(), done);
}

void tst_client_update_polling::a_speaker_that_goes_ends_the_polling()
{
    world->press_flash();
    world->answer(success);
    QTRY_COMPARE(world->peer.requests.size(), 2);
    log->clear();
    world->peer.close();
    world->peer.requests.last().link->abort();
    QTRY_COMPARE(log->debug_lines(),
                 (QStringList{"Client UpdateCheck reply received \"\"", "Document is NULL"}));
    QCOMPARE(world->enabled(), stuck);
}

void tst_client_update_polling::every_poll_has_a_manager_of_its_own_that_goes()
{
    const auto managers = [this] { return world->dialog->findChildren<QNetworkAccessManager *>(); };
    world->press_flash();
    QCOMPARE(managers().size(), 1);
    const QPointer<QNetworkAccessManager> first = managers().constFirst();
    QCOMPARE(first->parent(), world->dialog.get());
    world->answer(success);
    QTRY_COMPARE(world->peer.requests.size(), 2);
    QTRY_VERIFY(!first);
    QCOMPARE(managers().size(), 1);
    world->answer(status_reply("6"));
    QTRY_COMPARE(world->enabled(), done);
    QTRY_VERIFY(managers().isEmpty());
}

QTEST_MAIN(tst_client_update_polling)
#include "tst_client_update_polling.moc"
