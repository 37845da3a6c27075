// SPDX-License-Identifier: MIT
#include "zeroconf/qzeroconf.h"

#include <QDebug>
#include <QSocketNotifier>
#include <QtEndian>

#include "zeroconf/dns_sd_port.h"
#include "zeroconf/qzeroconfprivate.h"

QZeroConf::QZeroConf(QObject *parent)
    : QObject(parent)
    , pri(new QZeroConfPrivate(this))
{
    qRegisterMetaType<QZeroConfService>("QZeroConfService");
}

QZeroConf::~QZeroConf()
{
    pri->cleanUp(pri->dnssref);
    pri->cleanUp(pri->browser);
    delete pri;
}

void QZeroConf::startBrowser(QString type, QAbstractSocket::NetworkLayerProtocol protocol)
{
    qDebug() << "QZeroConf::startBrowser: started!";
    if (pri->browser) {
        qDebug() << "QZeroConf::startBrowser: Error 1";
        emit error(browser_failed);
        return;
    }

    switch (protocol) {
    case QAbstractSocket::IPv4Protocol:
        pri->protocol = 1;
        break;
    case QAbstractSocket::IPv6Protocol:
        pri->protocol = 2;
        break;
    default:
        qDebug() << "QZeroConf::startBrowser() - unsupported protocol, using IPv4";
        pri->protocol = 1;
        break;
    }

    const DNSServiceErrorType err = DNSServiceBrowse(&pri->browser, 0, 0, type.toUtf8().constData(), nullptr,
                                                     QZeroConfPrivate::browseCallback, pri);
    if (err != 0) {
        pri->cleanUp(pri->browser);
        qDebug() << "QZeroConf::startBrowser: Error 3  ret err=" << err;
        emit error(browser_failed);
    } else if (const int socket = DNSServiceRefSockFD(pri->browser); socket == -1) {
        pri->cleanUp(pri->browser);
        qDebug() << "QZeroConf::startBrowser: Error 2";
        emit error(browser_failed);
    } else {
        pri->browserSocket = new QSocketNotifier(socket, QSocketNotifier::Read, this);
        connect(pri->browserSocket, &QSocketNotifier::activated, pri, &QZeroConfPrivate::browserRead);
    }
    qDebug() << "QZeroConf::startBrowser: return";
}

void QZeroConf::stopBrowser()
{
    pri->cleanUp(pri->browser);
}

void QZeroConf::startServicePublish(const char *name, const char *type, const char *domain, quint16 port)
{
    if (pri->dnssref) {
        emit error(service_registration_failed);
        return;
    }

    const DNSServiceErrorType err = DNSServiceRegister(
        &pri->dnssref, 0, 0, name, type, domain, nullptr, qToBigEndian(port),
        static_cast<quint16>(pri->txt.size()), pri->txt.constData(), QZeroConfPrivate::registerCallback, pri);
    const int socket = err == 0 ? DNSServiceRefSockFD(pri->dnssref) : -1;
    if (socket == -1) {
        pri->cleanUp(pri->dnssref);
        emit error(service_registration_failed);
        return;
    }
    pri->bs = new QSocketNotifier(socket, QSocketNotifier::Read, this);
    connect(pri->bs, &QSocketNotifier::activated, pri, &QZeroConfPrivate::bsRead);
}

void QZeroConf::stopServicePublish()
{
    pri->cleanUp(pri->dnssref);
}
