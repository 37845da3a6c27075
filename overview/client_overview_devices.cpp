// SPDX-License-Identifier: MIT
// The part of Client_Overview that keeps device_list: discovery's signals in, entries and the search label
// out.
#include <QDebug>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "overview/client_overview.h"
#include "zeroconf/qzeroconf.h"

namespace
{
QString ip_text(const QZeroConfService &zcs)
{
    const QMutexLocker lock(&zcs->ip_mutex);
    return zcs->ip.toString();
}

// All three must match: the same name at a new address is a new device.
bool is_record_of(const Device_Desc *device, const QZeroConfService &zcs)
{
    return device->name == zcs->name && device->ip == ip_text(zcs) && device->port.toInt() == zcs->port;
}
} // namespace

void Client_Overview::start_discovery()
{
    zeroConf = new QZeroConf(nullptr);
    connect(zeroConf, &QZeroConf::serviceAdded, this, &Client_Overview::addService);
    connect(zeroConf, &QZeroConf::serviceUpdated, this, &Client_Overview::updateService);
    if (rzplattform::os_name() != "ios")
        connect(zeroConf, &QZeroConf::serviceRemoved, this, &Client_Overview::removeService);
    zeroConf->startBrowser("_lodeset._tcp", QAbstractSocket::IPv4Protocol);
    qDebug() << "$$$ Client_Overview::Client_Overview(): zeroConf created and startBrowser() called";
}

Device_Desc *Client_Overview::arriving_record_of(const QZeroConfService &zcs) const
{
    const auto found = std::find_if(arriving.begin(), arriving.end(),
                                    [&zcs](const Device_Desc *device) { return is_record_of(device, zcs); });
    return found == arriving.end() ? nullptr : *found;
}

void Client_Overview::addService(QZeroConfService zcs)
{
    qDebug() << "$$$ Added service: " << zcs;
    const QList<Device_Desc *> devices = device_list;
    int position = 0;
    for (const Device_Desc *device : devices) {
        log_device(position++, device);
        if (is_record_of(device, zcs)) {
            qDebug() << "$$$ Device already exists!";
            return;
        }
    }
    if (arriving_record_of(zcs)) {
        qDebug() << "$$$ Device already exists!";
        return;
    }

    auto *device = new Device_Desc(this, false, "");
    connect(device, &Device_Desc::all_resolves_completed, this, &Client_Overview::update_tree_widget);
    // Runs events: this slot and that of the removal may be entered here, while the record is not in the list
    // yet.
    arriving.append(device);
    device->set_QZeroConfService(zcs);
    if (!arriving.removeOne(device))
        return; // it has left meanwhile
    device_list.append(device);

    qDebug() << "======================================= device_list";
    position = 0;
    for (const Device_Desc *listed : qAsConst(device_list))
        log_device(position++, listed);
    qDebug() << "Client_Overview::addService finished";

    const QString found =
        plattform->device_class == DEVICE_PHONE ? tr("<b>Found ") : tr("<b>Speakers Found: ");
    status_label->setText(found + QString::number(device_list.size()) + "...</b>");
    spinner_label->show();

    // A box that opened among those events may have held them until all had ended: this record was in no
    // redraw.
    QMutexLocker lock(&resolves_mutex);
    const bool all_ended = resolves_running == 0;
    lock.unlock();
    if (all_ended)
        update_tree_widget();
}

void Client_Overview::updateService(QZeroConfService zcs)
{
    qDebug() << "$$$ Updated IPv6 service: " << zcs; // said of every protocol: meant
}

void Client_Overview::removeService(QZeroConfService zcs)
{
    qDebug() << "$$$ Removed service: " << zcs;
    const QList<Device_Desc *> devices = device_list;
    for (int position = 0; position < devices.size(); ++position) {
        const Device_Desc *device = devices.at(position);
        log_device(position, device);
        qDebug() << device->name << "==" << zcs->name;
        qDebug() << device->ip << "==" << ip_text(zcs);
        qDebug() << device->port << "==" << zcs->port;
        if (!is_record_of(device, zcs))
            continue;

        qDebug() << "$$$ Device found - removing!";
        if (position < device_list.size())
            device_list.removeAt(position);
        update_tree_widget();
        return;
    }
    arriving.removeOne(arriving_record_of(zcs)); // it has no row yet
}

void Client_Overview::deleteRecords()
{
    tree->clear();
    for (Device_Desc *device : qAsConst(device_list))
        device->discard();
    device_list.clear();
    arriving.clear();
    sender_device = nullptr;
    selected = nullptr; // it may be one of them
}

void Client_Overview::ReloadClicked()
{
    update_button->setEnabled(false);
    group_button->setEnabled(false);
    wifi_button->setEnabled(false);
    spinner_label->show();
}

void Client_Overview::update_status(int running)
{
    // One character of that code, not the number in digits: meant.
    const QString text = tr("<b>Reading Status...</b>") + QChar(static_cast<uchar>(running));
    status_label->setText(text);
    status_label->repaint();
    qDebug() << "****************************************************************" << text;
}

void Client_Overview::setStatusText(QString text)
{
    status_label->setText(text);
    status_label->repaint();
}

void Client_Overview::dummy()
{
    qDebug() << "Client_Overview::dummy()";
    update_tree_widget();
}
