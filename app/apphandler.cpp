// SPDX-License-Identifier: MIT
#include "app/apphandler.h"

#include <QDebug>

#include "app/globals.h"
#include "control/virelos.h"
#include "device/device_desc.h"

AppHandler::AppHandler(QObject *parent)
    : QObject(parent)
{
    qDebug() << "*** void apphandler::AppHandler() constructor";
    connect(parent, SIGNAL(applicationStateChanged(Qt::ApplicationState)), this,
            SLOT(onApplicationStateChanged(Qt::ApplicationState)));
}

AppHandler::~AppHandler()
{
    qDebug() << "~AppHandler Destructor called";
    qInstallMessageHandler(nullptr);
}

void AppHandler::onApplicationStateChanged(Qt::ApplicationState state)
{
    qDebug() << "*** void apphandler::onApplicationStateChanged(Qt::ApplicationState state =" << state << ")";
    if (state != Qt::ApplicationActive)
        return;

    qDebug() << "\n\n\nAPP ACTIVE AGAIN!!!";
    pingDevice();
}

void AppHandler::pingDevice()
{
    qDebug() << "void AppHandler::pingDevice() PINGING DEVICE:";
    const QList<Device_Desc *> devices = device_list;
    int position = 1;
    for (Device_Desc *device : devices) {
        qDebug() << "Pinging Device #" << position++ << ": " << device->name;
        Virelos *control = device->control;
        if (!control)
            continue; // still being identified
        control->ping = 1;
        control->wake();
    }
}
