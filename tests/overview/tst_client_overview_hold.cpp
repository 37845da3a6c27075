// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include "app/client.h"
#include "app/globals.h"
#include "overview/client_overview.h"
#include "settings/rzpushbutton.h"
#include "tests/overview/overview_world.h"

// The hold gesture in real time, and therefore apart.
class tst_client_overview_hold : public QObject
{
    Q_OBJECT

private slots:
    void quit_held_for_2_s_opens_the_service_tab_and_does_not_quit();
};

void tst_client_overview_hold::quit_held_for_2_s_opens_the_service_tab_and_does_not_quit()
{
    Overview_World world;
    world.open_and_show();
    QElapsedTimer held;
    held.start();
    QTest::mousePress(overview->quit_button, Qt::LeftButton);
    QTRY_VERIFY(overview->quit_blocked);
    QVERIFY(held.elapsed() >= 1900); // a coarse timer may be 5 % early
    QTest::mouseRelease(overview->quit_button, Qt::LeftButton);
    QVERIFY(client->isVisible());
    QCOMPARE(client->tabs->tabText(client->tabs->currentIndex()), QString("HOOD"));
}

QTEST_MAIN(tst_client_overview_hold)
#include "tst_client_overview_hold.moc"
