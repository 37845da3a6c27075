// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPointer>
#include <QString>
#include <memory>
#include <vector>

#include "control/virelos.h"
#include "device/device_desc.h"
#include "tests/fakes/log_capture.h"

class Client_Overview;
class QTreeWidgetItem;

// What start-up makes, for the length of one test: metrics of the offscreen platform's screen, an empty
// settings store, the console and, on request, the main window. Afterwards everything is gone, and the
// process-wide objects are as they are at load. GUI thread only.
class Overview_World
{
public:
    explicit Overview_World(int device_class = 0);
    ~Overview_World(); // waits for the identification of every record
    Overview_World(const Overview_World &) = delete;
    Overview_World &operator=(const Overview_World &) = delete;

    Client_Overview *open();          // makes the main window, not shown
    Client_Overview *open_and_show(); // and shows it
    void set_debug(bool debug);       // the stored setting

    // A record in device_list, without a service. It is freed with this world; so is `control` where it is
    // handed over.
    Device_Desc *add_record(const QString &name, std::unique_ptr<Virelos> control);
    Device_Desc *add_record(const QString &name, Virelos *control);

    // All that the GUI thread logs meanwhile; what workers log would come at any time between.
    Log_Capture log{Log_Capture::Own_Thread};

    static QTreeWidgetItem *row(int position); // at top level
    static void click(QTreeWidgetItem *item);  // with the mouse

private:
    QList<QPointer<Device_Desc>> records;
    std::vector<std::unique_ptr<Virelos>> controls; // those of ours
};
