// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QMap>
#include <QMetaType>
#include <QMutex>
#include <QObject>
#include <QSharedPointer>
#include <QString>

class QDebug;

// One service that DNS-SD reported: one speaker on one interface. The discovery engine fills it on the GUI
// thread, stage by stage, and goes on changing it after it was handed out; all holders see the change. Any
// thread may read ip under ip_mutex; the rest is for the GUI thread.
class QZeroConfServiceData
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString type MEMBER type CONSTANT)
    Q_PROPERTY(QString domain MEMBER domain CONSTANT)
    Q_PROPERTY(QString host MEMBER host CONSTANT)

public:
    QString name;    // instance name (browse reply, UTF-8)
    QString type;    // service type (browse reply)
    QString domain;  // domain (browse reply)
    QString host;    // host name (resolve reply)
    QHostAddress ip; // the address reported last, of either family; null until the first (address reply)
    quint32 interfaceIndex = 0;       // interface on which the service was seen (browse reply)
    quint16 port = 0;                 // host byte order (resolve reply)
    QMap<QByteArray, QByteArray> txt; // TXT entries; a key without value holds an empty one (resolve reply)
    QMutex ip_mutex;                  // guards every read and write of ip
};

using QZeroConfService = QSharedPointer<QZeroConfServiceData>;
Q_DECLARE_METATYPE(QZeroConfService)

// What tells services apart inside the engine: the name followed by the interface in decimal. So one speaker
// on two interfaces is two services.
QString service_key(const QString &name, quint32 interfaceIndex);

// The text form for logs: "Zeroconf Service: NAME @ HOST (IP:PORT)". Takes ip_mutex; service must not be
// null.
QDebug operator<<(QDebug debug, const QZeroConfService &service);
