// SPDX-License-Identifier: MIT
#include <QFile>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include "app/client.h"
#include "app/globals.h"
#include "overview/client_overview.h"
#include "settings/client_hood.h"
#include "settings/rzpushbutton.h"
#include "tests/overview/overview_world.h"

namespace
{
QtMessageHandler installed_handler()
{
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handler);
    return handler;
}

QtMessageHandler default_handler()
{
    const QtMessageHandler before = qInstallMessageHandler(nullptr);
    return qInstallMessageHandler(before);
}

QByteArray stored_settings()
{
    QFile file(settings->fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What is so when the window that it filters is told to close.
class Close_Watch : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Close) {
            handler = installed_handler();
            stored = stored_settings();
        }
        return false;
    }

    QtMessageHandler handler = nullptr;
    QByteArray stored;
};

void press()
{
    QTest::mousePress(overview->quit_button, Qt::LeftButton);
}

void release()
{
    QTest::mouseRelease(overview->quit_button, Qt::LeftButton);
}

// As the platform's input method does it.
void report_hold()
{
    QVariant answer;
    QMetaObject::invokeMethod(overview->quit_button, "inputMethodQuery", Q_RETURN_ARG(QVariant, answer),
                              Q_ARG(Qt::InputMethodQuery, Qt::ImEnabled), Q_ARG(QVariant, QVariant()));
    QVERIFY(answer.toBool());
}
} // namespace

// The Quit button: a short press ends the program, a long one does not.
class tst_client_overview_quit : public QObject
{
    Q_OBJECT

private slots:
    void short_press_closes_the_window_on_release();
    void short_press_ends_the_event_loop();
    void settings_are_written_before_the_window_closes();
    void message_handler_is_removed_before_the_window_closes();
    void gesture_is_logged_in_the_order_of_the_signals();
    void press_starts_a_single_shot_of_two_seconds();
    void each_press_starts_a_timer_of_its_own();
    void expired_timer_blocks_the_release();
    void hood_timer_blocks_quitting();
    void expired_timer_opens_the_service_tab_for_the_last_clicked_row();
    void each_hold_opens_one_more_service_tab();
    void press_ends_an_earlier_block();
    void reported_hold_blocks_the_release();
    void input_query_swallows_one_release();
    void timer_goes_on_after_a_swallowed_release();
    void blocked_release_leaves_the_input_query_alone();
};

void tst_client_overview_quit::short_press_closes_the_window_on_release()
{
    Overview_World world;
    world.open_and_show();
    press();
    QVERIFY(client->isVisible());
    release();
    QVERIFY(!client->isVisible());
}

void tst_client_overview_quit::short_press_ends_the_event_loop()
{
    Overview_World world;
    world.open_and_show();
    QTimer::singleShot(0, [] { QTest::mouseClick(overview->quit_button, Qt::LeftButton); });
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(-1); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void tst_client_overview_quit::settings_are_written_before_the_window_closes()
{
    Overview_World world;
    world.open_and_show();
    Close_Watch watch;
    client->installEventFilter(&watch);
    settings->sync();
    settings->setValue("debug", true);
    QVERIFY(!stored_settings().contains("debug=true")); // kept back until the loop is idle
    press();
    release();
    QVERIFY(watch.stored.contains("debug=true"));
}

void tst_client_overview_quit::message_handler_is_removed_before_the_window_closes()
{
    Overview_World world;
    world.open_and_show();
    Close_Watch watch;
    client->installEventFilter(&watch);
    press();
    QVERIFY(installed_handler() != default_handler());
    release();
    QVERIFY(watch.handler);
    QVERIFY(watch.handler == default_handler());
    QVERIFY(installed_handler() == default_handler());
}

void tst_client_overview_quit::gesture_is_logged_in_the_order_of_the_signals()
{
    Overview_World world;
    world.open_and_show();
    world.log.clear();
    press();
    overview->quit_blocked = true; // the handler stays, so that all is seen
    release();
    QCOMPARE(world.log.texts(), QStringList({"quitPressed", "quitReleased", "quitClicked"}));
    world.log.clear();
    overview->quitHold();
    QCOMPARE(world.log.texts(), QStringList());
    overview->hoodTimer();
    QCOMPARE(world.log.texts().value(0), QString("quit Hold Timer expired!"));
}

void tst_client_overview_quit::press_starts_a_single_shot_of_two_seconds()
{
    Overview_World world;
    world.open_and_show();
    press();
    QVERIFY(overview->hood_timer);
    QVERIFY(overview->hood_timer->isActive());
    QVERIFY(overview->hood_timer->isSingleShot());
    QCOMPARE(overview->hood_timer->interval(), 2000);
    QCOMPARE(overview->hood_timer->parent(), overview);
}

void tst_client_overview_quit::each_press_starts_a_timer_of_its_own()
{
    Overview_World world;
    world.open_and_show();
    overview->quitPressed();
    QTimer *const first = overview->hood_timer;
    overview->quitPressed();
    QVERIFY(overview->hood_timer != first);
    QVERIFY(first->isActive());
    QCOMPARE(overview->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).size(), 2);
}

void tst_client_overview_quit::expired_timer_blocks_the_release()
{
    Overview_World world;
    world.open_and_show();
    press();
    overview->hood_timer->start(0); // the two seconds, shortened
    QTRY_VERIFY(overview->quit_blocked);
    QVERIFY(!overview->hood_timer->isActive());
    release();
    QVERIFY(client->isVisible());
    QVERIFY(world.log.texts().contains("quit Hold Timer expired!"));
}

void tst_client_overview_quit::hood_timer_blocks_quitting()
{
    Overview_World world;
    world.open_and_show();
    press();
    QVERIFY(QMetaObject::invokeMethod(overview, "hoodTimer"));
    QVERIFY(overview->quit_blocked);
    release();
    QVERIFY(client->isVisible());
}

void tst_client_overview_quit::expired_timer_opens_the_service_tab_for_the_last_clicked_row()
{
    Overview_World world;
    world.open_and_show();
    Device_Desc *kitchen = world.add_record("Kitchen", nullptr); // not identified yet
    overview->update_tree_widget();
    Overview_World::click(Overview_World::row(0));
    press();
    overview->hood_timer->start(0); // the two seconds, shortened
    QTRY_COMPARE(client->tabs->count(), 2);
    QCOMPARE(client->tabs->tabText(1), QString("HOOD"));
    QCOMPARE(client->tabs->currentIndex(), 1);
    auto *tab = qobject_cast<Client_Hood *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->device, kitchen);
    release();
    QVERIFY(client->isVisible());
}

void tst_client_overview_quit::each_hold_opens_one_more_service_tab()
{
    Overview_World world;
    world.open_and_show();
    for (int hold = 1; hold <= 2; ++hold) {
        client->tabs->setCurrentIndex(0);
        press();
        overview->hood_timer->start(0); // the two seconds, shortened
        QTRY_COMPARE(client->tabs->count(), 1 + hold);
        QCOMPARE(client->tabs->currentIndex(), hold);
        QVERIFY(!qobject_cast<Client_Hood *>(client->tabs->widget(hold))->device);
        QTest::mouseRelease(client, Qt::LeftButton);
        QVERIFY(client->isVisible());
    }
}

void tst_client_overview_quit::press_ends_an_earlier_block()
{
    Overview_World world;
    world.open_and_show();
    overview->quit_blocked = true;
    press();
    QVERIFY(!overview->quit_blocked);
    release();
    QVERIFY(!client->isVisible());
}

void tst_client_overview_quit::reported_hold_blocks_the_release()
{
    Overview_World world;
    world.open_and_show();
    press();
    report_hold();
    QVERIFY(overview->quit_blocked);
    release();
    QVERIFY(client->isVisible());
}

void tst_client_overview_quit::input_query_swallows_one_release()
{
    Overview_World world;
    world.open_and_show();
    input_query_seen = true;
    press();
    release();
    QVERIFY(client->isVisible());
    QVERIFY(!input_query_seen);
    QVERIFY(!overview->quit_blocked);
    press();
    release();
    QVERIFY(!client->isVisible());
}

void tst_client_overview_quit::timer_goes_on_after_a_swallowed_release()
{
    Overview_World world;
    world.open_and_show();
    input_query_seen = true;
    press();
    release();
    QVERIFY(overview->hood_timer->isActive());
    overview->hood_timer->start(0); // the two seconds, shortened
    QTRY_VERIFY(world.log.texts().contains("quit Hold Timer expired!"));
    QVERIFY(client->isVisible());
}

void tst_client_overview_quit::blocked_release_leaves_the_input_query_alone()
{
    Overview_World world;
    world.open_and_show();
    press();
    report_hold(); // sets both
    QVERIFY(input_query_seen);
    release();
    QVERIFY(client->isVisible());
    QVERIFY(input_query_seen);
}

QTEST_MAIN(tst_client_overview_quit)
#include "tst_client_overview_quit.moc"
