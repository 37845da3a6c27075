// SPDX-License-Identifier: MIT
#pragma once

#include "device/device_desc.h"

// The record of a cell: the speakers around one that offers its own access point. Not yet in use: nothing
// makes one. It must not be started, since its address is empty. Threads as its base.
class Device_Desc_Cell : public Device_Desc
{
    Q_OBJECT

public:
    Device_Desc_Cell(QObject *parent, QString cell_name);

    QString cell_name;
};
