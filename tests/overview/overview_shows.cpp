// SPDX-License-Identifier: MIT
#include "tests/overview/overview_shows.h"

#include <QDebug>
#include <QLabel>
#include <QTest>
#include <QTreeWidget>

#include "app/globals.h"
#include "control/virelo_unknown.h"
#include "overview/client_overview.h"
#include "simulator/loopback.h"
#include "tests/overview/overview_world.h"

QStringList listed_names()
{
    QStringList names;
    for (const Device_Desc *device : qAsConst(device_list))
        names << device->name;
    return names;
}

QStringList row_names()
{
    QStringList names;
    for (int i = 0; i < overview->tree->topLevelItemCount(); ++i)
        names << overview->tree->topLevelItem(i)->text(1);
    return names;
}

QString label()
{
    return overview->status_label->text();
}

int in_flight()
{
    const QMutexLocker lock(&resolves_mutex);
    return resolves_running;
}

QString logged_service(const char *words, const QZeroConfService &service)
{
    QString line;
    QDebug(&line) << words << service;
    return line.trimmed(); // of the blank behind the last word
}

std::unique_ptr<Virelos> control_of_type(int type)
{
    return std::make_unique<Virelo_Unknown>(type, own_loopback(1), "any");
}

void add_known_and_unknown_rows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("port");
    QTest::addColumn<bool>("known");
    const QString address = own_loopback(1);
    QTest::newRow("same") << "Kitchen" << address << 80 << true;
    QTest::newRow("other name") << "Hall" << address << 80 << false;
    QTest::newRow("other case") << "kitchen" << address << 80 << false;
    QTest::newRow("other address") << "Kitchen" << own_loopback(2) << 80 << false;
    QTest::newRow("other port") << "Kitchen" << address << 81 << false;
    QTest::newRow("first of two known") << "Attic" << own_loopback(9) << 8080 << true;
}

void add_known_records(Overview_World &world)
{
    Device_Desc *attic = world.add_record("Attic", control_of_type(255));
    attic->set_ip(own_loopback(9));
    attic->set_port("08080"); // compared as a number
    Device_Desc *kitchen = world.add_record("Kitchen", control_of_type(255));
    kitchen->set_ip(own_loopback(1));
    kitchen->set_port("80");
}
