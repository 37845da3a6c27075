// SPDX-License-Identifier: MIT
#include "simulator/loopback.h"

#include <QCoreApplication>

QString own_loopback(int n)
{
    const qint64 pid = QCoreApplication::applicationPid();
    const int a = 1 + int((pid / 256) % 254);
    const int b = int(pid % 256);
    return QString("127.%1.%2.%3").arg(a).arg(b).arg(n);
}
