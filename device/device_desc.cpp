// SPDX-License-Identifier: MIT
#include "device/device_desc.h"

#include <QCoreApplication>
#include <QDebug>
#include <QHostAddress>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QStringList>
#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <memory>

#include "app/globals.h"
#include "control/serial_wifi.h"
#include "control/virelo_air.h"
#include "control/virelo_group.h"
#include "control/virelo_sub.h"
#include "control/virelo_unknown.h"
#include "device/speaker_types.h"

namespace
{
constexpr int type_tries = 4;

struct api_path {
    QString Device_Desc::*url;
    const char *path;
};

// The mixture of versions is part of the protocol.
constexpr api_path api_paths[] = {
    {&Device_Desc::configure_url, "/api/v14/configure.action"},
    {&Device_Desc::device_url, "/api/v19/device.action"},
    {&Device_Desc::otaupgrade_url, "/api/v14/otaupgrade.action"},
    {&Device_Desc::network_url, "/api/v19/network.action"},
    {&Device_Desc::wifi_url, "/api/v19/wifi.action"},
    {&Device_Desc::sender_url, "/api/v19/songcast/sender.action"},
    {&Device_Desc::receiver_url, "/api/v19/songcast/receiver.action"},
    {&Device_Desc::bluetooth_url, "/api/v20/bluetooth.action"},
};

// Records identify side by side, and each stores itself in last_typed_device.
QMutex last_typed_mutex;

std::unique_ptr<serial_wifi> type_link(const QString &ip, const QString &name)
{
    return std::make_unique<serial_wifi>(ip, name + "  for reading SpeakerType", 57600, 8, 0, 1);
}

int read_type_code(serial_wifi &link)
{
    char reply[serial_wifi::reply_size] = {};
    link.host_query("ST", "m", reply);
    QCoreApplication::processEvents();
    const int code = static_cast<int>(std::clamp<long>(std::strtol(reply, nullptr, 10), INT_MIN, INT_MAX));
    qDebug() << "******** response:" << reply;
    qDebug() << "******** Speaker of type found:" << code << model_name(code);
    return code;
}

bool read_cell_master(serial_wifi &link)
{
    char reply[serial_wifi::reply_size] = {};
    QCoreApplication::processEvents();
    link.host_query("QO", "", reply);
    QCoreApplication::processEvents();
    return reply[0] == 'W';
}

Virelos *make_control(int type, const QString &ip, const QString &name)
{
    if (type == TYPE_SUB)
        return new Virelo_Sub(type, ip, name);
    if (type == TYPE_UNKNOWN) {
        qDebug() << "******************** Virleo_Unknown found!";
        return new Virelo_Unknown(type, ip, name);
    }
    return new Virelo_Air(type, ip, name);
}

QString address_of(QZeroConfServiceData &service)
{
    const QMutexLocker lock(&service.ip_mutex);
    return service.ip.toString();
}

// Parts that are missing or no numbers count as 0, parts above 255 run over into the part before: nobody
// refuses them here, and unsigned arithmetic keeps the result defined.
quint32 address_number(const QString &dotted)
{
    const QStringList parts = dotted.split('.');
    quint32 number = 0;
    for (int i = 0; i < 4; i++)
        number += parts.value(i).toUInt() << (24 - 8 * i);
    return number;
}

QString dotted_address(quint32 number)
{
    QStringList parts;
    for (int shift = 24; shift >= 0; shift -= 8)
        parts += QString::number(number >> shift & 0xff);
    return parts.join('.');
}
} // namespace

Device_Desc::Device_Desc(QObject *parent, bool is_group, QString name)
    : QThread(parent)
    , is_group(is_group)
{
    if (!is_group)
        return;
    groupname = name;
    set_name(name);
    control = new Virelo_Group(name);
}

Device_Desc::~Device_Desc()
{
    // A QThread destroyed while it runs aborts the program.
    requestInterruption();
    wait();
    drop_requests();
}

void Device_Desc::discard()
{
    disconnect();
    setParent(nullptr);
    drop_requests();
    requestInterruption();
    // The connection comes before the question, so that an end between the two is not missed.
    connect(this, &QThread::finished, this, &QObject::deleteLater);
    if (!isRunning())
        delete this;
}

// A manager deleted with its reply in flight never reports the end of the request. What was counted up for it
// goes down here, in silence: the receiver of all_resolves_completed walks the very list from which this
// record is being taken.
void Device_Desc::drop_requests()
{
    qDeleteAll(findChildren<QNetworkAccessManager *>(QString(), Qt::FindDirectChildrenOnly));
    QMutexLocker locker(&resolves_mutex);
    resolves_running -= requests_open;
    requests_open = 0;
}

void Device_Desc::set_name(QString name)
{
    this->name = name;
    qDebug() << "Name:" << name;
}

void Device_Desc::set_ip(QString ip)
{
    this->ip = ip;
    make_urls();
}

void Device_Desc::set_port(QString port)
{
    this->port = port;
    make_urls();
}

void Device_Desc::set_port(int port)
{
    set_port(QString::number(port));
}

void Device_Desc::set_QZeroConfService(QZeroConfService zcs)
{
    qDebug() << "$$$ Device_Desc::set_QZeroConfService():";
    qDebug() << "name:" << zcs->name;
    qDebug() << "type:" << zcs->type;
    qDebug() << "domain:" << zcs->domain;
    qDebug() << "host:" << zcs->host;

    const QString address = address_of(*zcs);
    qDebug() << "IP:" << address;
    qDebug() << "Port:" << zcs->port;

    set_name(zcs->name);
    set_ip(address);
    set_port(zcs->port);
    qDebug() << "Device_Desc: resolve of" << name << " finished: IP=" << address << " port=" << zcs->port;

    request_device_status();
    request_network_status();
    request_sender_status();
    request_receiver_state();
    request_bluetooth_enable();

    resolve_started();
    start();
    QCoreApplication::processEvents();

    emit one_resolve_completed(resolve_serial);
    resolve_serial++;
}

void Device_Desc::make_urls()
{
    const QString base = "http://" + ip + ":" + port;
    for (const api_path &each : api_paths)
        this->*each.url = base + each.path;
}

void Device_Desc::run()
{
    identify();
    QCoreApplication::processEvents();
    resolve_finished();
}

// Ends early once the record is discarded: nobody is left to use what it would find.
void Device_Desc::identify()
{
    auto link = type_link(ip, name);
    int type = TYPE_UNKNOWN;
    for (int attempt = 0; attempt < type_tries; attempt++) {
        qDebug() << "Reading Speaker Type, try #" << attempt;
        const int code = read_type_code(*link);
        if (isInterruptionRequested())
            return;
        if (accepted_type(code)) {
            type = code;
            break;
        }
        // Closed before the next one opens: the speaker has one serial line to lend.
        link.reset();
        link = type_link(ip, name);
    }

    if (read_cell_master(*link))
        cell_master = true;
    last_typed_mutex.lock();
    last_typed_device = this;
    last_typed_mutex.unlock();
    link.reset();

    if (!isInterruptionRequested())
        publish_control(make_control(type, ip, name), type != TYPE_UNKNOWN);
}

void Device_Desc::publish_control(Virelos *made, bool with_worker)
{
    // This thread ends, and what is queued for an object of an ended thread is never delivered.
    made->moveToThread(thread());
    // Others look at the plain pointer at any time and must find the whole object behind it.
    std::atomic_thread_fence(std::memory_order_release);
    control = made;
    if (with_worker)
        made->start();
}

void Device_Desc::resolve_started()
{
    QMutexLocker locker(&resolves_mutex);
    resolves_running++;
}

void Device_Desc::resolve_finished()
{
    QMutexLocker locker(&resolves_mutex);
    resolves_running--;
    if (resolves_running == 0)
        emit all_resolves_completed();
}

void Device_Desc::set_static_network(QString ip, QString netmask, QString gateway, QString domain,
                                     QString dns1, QString dns2)
{
    static_network = true;
    static_ip = ip;
    static_netmask = netmask;
    static_gateway = gateway;
    static_domain = domain;
    static_dns1 = dns1;
    static_dns2 = dns2;
    static_broadcast = dotted_address(address_number(ip) | ~address_number(netmask));
    qDebug() << "Calculated Boradcast Address:" << static_broadcast;
}

void Device_Desc::clear_static_network()
{
    static_network = false;
}
