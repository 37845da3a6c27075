// SPDX-License-Identifier: MIT
#include "tests/overview/overview_world.h"

#include <QSettings>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelos.h"
#include "device/device_desc.h"
#include "overview/client_overview.h"
#include "tests/fakes/fake_dns_sd.h"
#include "zeroconf/qzeroconf.h"

Overview_World::Overview_World(int device_class)
{
    QCoreApplication::setOrganizationName("VIRELO");
    QCoreApplication::setApplicationName("VireloApp");
    settings = new QSettings;
    settings->clear();
    debug_console = new QTextEdit;
    plattform = new rzplattform;
    plattform->device_class = device_class;
}

Overview_World::~Overview_World()
{
    QZeroConf *const zeroconf = overview ? overview->zeroConf : nullptr;
    // The console is a child of the DEBUG tab where there is one.
    debug_console->setParent(nullptr);
    delete client; // with the overview, and with the records that belong to it
    delete zeroconf;
    fake_dns_sd::reset();
    for (const QPointer<Device_Desc> &record : qAsConst(records))
        delete record;

    delete debug_console;
    delete plattform;
    delete settings;
    device_list.clear();
    settings = nullptr;
    debug_console = nullptr;
    plattform = nullptr;
    client = nullptr;
    overview = nullptr;
    sender_device = nullptr;
    debug_enabled = false;
    input_query_seen = false;
}

Client_Overview *Overview_World::open()
{
    client = new Client(nullptr);
    return overview;
}

Client_Overview *Overview_World::open_and_show()
{
    open();
    client->show();
    if (!QTest::qWaitForWindowExposed(client))
        qFatal("the main window does not show");
    return overview;
}

Device_Desc *Overview_World::add_record(const QString &name, std::unique_ptr<Virelos> control)
{
    controls.push_back(std::move(control));
    return add_record(name, controls.back().get());
}

Device_Desc *Overview_World::add_record(const QString &name, Virelos *control)
{
    auto *device = new Device_Desc(nullptr, false, "");
    device->set_name(name);
    device->control = control;
    records.append(device);
    device_list.append(device);
    return device;
}

void Overview_World::set_debug(bool debug)
{
    settings->setValue("debug", debug);
    debug_enabled = debug;
}

QTreeWidgetItem *Overview_World::row(int position)
{
    return overview->tree->topLevelItem(position);
}

void Overview_World::click(QTreeWidgetItem *item)
{
    QTreeWidget *const tree = overview->tree;
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(item).center());
}
