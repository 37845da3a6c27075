// SPDX-License-Identifier: MIT
#include <QTest>
#include <QTreeWidget>

#include "app/client.h"
#include "app/globals.h"
#include "overview/client_overview.h"
#include "simulator/loopback.h"
#include "tests/fakes/fake_dns_sd.h"
#include "tests/overview/air_waves.h"
#include "tests/overview/overview_world.h"
#include "zeroconf/qzeroconf.h"

// What differs where the OS word is "ios".
class tst_client_overview_ios : public QObject
{
    Q_OBJECT

private slots:
    void speakers_are_added_and_never_removed();
};

void tst_client_overview_ios::speakers_are_added_and_never_removed()
{
    Overview_World world;
    world.open();
    air_waves::announce("Kitchen", 1, own_loopback(1), 9);
    QTRY_COMPARE(overview->tree->topLevelItemCount(), 1);
    air_waves::withdraw("Kitchen", 1);
    QTRY_VERIFY(overview->zeroConf->services.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(device_list.size(), 1);
    QCOMPARE(overview->tree->topLevelItemCount(), 1);
}

QTEST_MAIN(tst_client_overview_ios)
#include "tst_client_overview_ios.moc"
