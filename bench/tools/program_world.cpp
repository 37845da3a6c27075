// SPDX-License-Identifier: MIT
#include "bench/tools/program_world.h"

#include <QLoggingCategory>
#include <QSettings>
#include <QTextEdit>
#include <cstdio>
#include <cstdlib>

#include "app/globals.h"
#include "app/rzplattform.h"

void make_program_world()
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    settings = new QSettings("VIRELO", "bench");
    debug_console = new QTextEdit;
    plattform = new rzplattform;
}

void leave_program_world()
{
    QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, false);
    std::fflush(nullptr);
    std::_Exit(0);
}
