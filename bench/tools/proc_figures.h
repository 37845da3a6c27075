// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <sys/types.h>

// What the system says about a running process.
struct Proc_Figures {
    int threads = 0;
    int descriptors = 0;
    qint64 private_kb = 0;        // memory that is its own
    qint64 cpu_us = 0;            // since its start, in steps of the system's clock tick
    QMap<QString, qint64> sleeps; // how often the threads of a name went to sleep

    static Proc_Figures of(pid_t pid);
};
