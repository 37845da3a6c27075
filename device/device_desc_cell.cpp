// SPDX-License-Identifier: MIT
#include "device/device_desc_cell.h"

Device_Desc_Cell::Device_Desc_Cell(QObject *parent, QString cell_name)
    : Device_Desc(parent, false, "")
    , cell_name(cell_name)
{
}
