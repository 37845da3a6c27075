// SPDX-License-Identifier: MIT
#include "zeroconf/qzeroconfservice.h"

#include <QDebug>
#include <QMutexLocker>

QString service_key(const QString &name, quint32 interfaceIndex)
{
    return name + QString::number(interfaceIndex);
}

QDebug operator<<(QDebug debug, const QZeroConfService &service)
{
    QMutexLocker lock(&service->ip_mutex);
    const QString ip = service->ip.toString();
    lock.unlock();

    QDebugStateSaver saver(debug);
    debug.nospace().noquote() << "Zeroconf Service: " << service->name << " @ " << service->host << " (" << ip
                              << ":" << service->port << ")";
    return debug;
}
