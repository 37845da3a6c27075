// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "tests/fakes/log_capture.h"

// What was warned of, without the one thing that the offscreen platform says of every message box.
inline QStringList own_warnings(const Log_Capture &log)
{
    QStringList warnings = log.warnings();
    warnings.removeAll("This plugin does not support propagateSizeHints()");
    return warnings;
}
