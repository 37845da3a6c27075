// SPDX-License-Identifier: MIT
#include "network/client_conf.h"

#include <QDebug>
#include <QGridLayout>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "device/json_http.h"
#include "network/client_conf_statip.h"
#include "network/wlan_bodies.h"
#include "overview/client_overview.h"
#include "settings/banner.h"
#include "settings/info_box.h"
#include "settings/rzpixmaplabel.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/window_picture.h"

namespace
{
bool is_phone()
{
    return plattform->device_class == DEVICE_PHONE;
}

void add_row(QGridLayout *grid, int row, const QString &caption, QWidget *widget, int span)
{
    add_caption(grid, row, caption, widget, {});
    grid->addWidget(widget, row, 1, 1, span);
}

QString returncode_of(const QJsonObject &object)
{
    return object.value("returncode").toString();
}

bool is_success(const QJsonObject &object)
{
    return returncode_of(object) == "success";
}
} // namespace

Client_Conf::Client_Conf(Device_Desc *device, QWidget *parent)
    : QDialog(parent)
    , device(device)
{
    conf_dialog = this;
    resize(plattform->window_width, plattform->window_height);
    free_picture_when_hidden(this);
    make_widgets();
    place_widgets();
    connect_widgets();
    setWindowTitle(tr("Speaker WLAN Settings"));
    save_button->setEnabled(true);
}

void Client_Conf::make_widgets()
{
    name_edit = new QLineEdit(device->name, this);
    passwd_edit = new QLineEdit(this);
    passwd_edit->setEchoMode(QLineEdit::Password);
    ip_label = make_value_label(device->ip); // without the mode: meant
    hint_label = new QLabel(is_phone() ? tr("SAVE will reboot\nyour Speakers!")
                                       : tr("Clicking on SAVE will reboot your\nVIRELO Air-Speakers!"),
                            this);
    back_button = new QPushButton(tr("<< Back"), this);
    save_button = new QPushButton(tr("SAVE"), this);
    save_button->setDefault(true);
    save_button->setEnabled(false);
    dhcp_button = new QPushButton(tr("DHCP/Static"), this);
}

void Client_Conf::place_widgets()
{
    const int span = is_phone() ? 1 : 3;
    const int columns = 1 + span;
    auto *grid = new QGridLayout;
    grid->addWidget(make_banner("Deko_WLAN"), 0, 0, 1, columns);
    add_row(grid, 1, tr("Model:"), make_value_label(device->model), span);
    add_row(grid, 2, tr("Name:"), name_edit, span);
    add_row(grid, 3, tr("WLAN:"), make_value_label(device->ssid), span);
    add_row(grid, 4, tr("Passwd:"), passwd_edit, span);
    add_row(grid, 6, tr("IP Addr:"), ip_label, 1);
    grid->addWidget(dhcp_button, 7, 1);
    add_row(grid, 8, tr("MAC:"), make_value_label(device->mac), span);
    add_row(grid, 9, tr("Vers:"), make_value_label(device->firmware), span);
    grid->addWidget(hint_label, 10, 0, 1, columns);
    grid->addWidget(back_button, 11, is_phone() ? 0 : 2);
    grid->addWidget(save_button, 11, is_phone() ? 1 : 3);
    setLayout(grid);
    order_tabs(grid);
}

void Client_Conf::connect_widgets()
{
    connect(dhcp_button, &QPushButton::clicked, this, &Client_Conf::dhcpStatic);
    connect(save_button, &QPushButton::clicked, this, &Client_Conf::commit_settings);
    connect(back_button, &QPushButton::clicked, this, &Client_Conf::close);
}

void Client_Conf::update()
{
    if (!device)
        return;
    ip_label->setText(device->static_network ? device->static_ip + " (static)" : device->ip + " (DHCP)");
}

void Client_Conf::dhcpStatic()
{
    if (!device)
        return;
    conf_statip_dialog = new Client_Conf_StatIP(device, nullptr);
    connect(conf_statip_dialog, &Client_Conf_StatIP::update, this, &Client_Conf::update);
    conf_statip_dialog->show();
}

void Client_Conf::commit_settings()
{
    if (!device)
        return;
    if (name_edit->text() == device->name)
        addNetwork();
    else
        setDeviceName(name_edit->text());
}

void Client_Conf::post(const QString &url, const QString &body, const char *slot)
{
    qDebug() << "CONFIG STRING: >>>" << body << "<<<\n\n";
    post_json(this, url, body, "text/plain", slot);
}

void Client_Conf::setDeviceName(QString name)
{
    if (!device)
        return;
    post(device->device_url, set_device_name_body(name), SLOT(replyFinishedC(QNetworkReply *)));
}

void Client_Conf::replyFinishedC(QNetworkReply *reply)
{
    const QJsonObject object = read_json_reply(reply, "setDeviceName reply received");
    if (object.isEmpty())
        return;
    if (is_success(object))
        addNetwork();
    else
        show_info_box(this, tr("Info"), tr("DeviceName could not be set"), tr("OK"));
}

void Client_Conf::addNetwork()
{
    if (!device)
        return;
    post(device->wifi_url, add_network_body(*device, passwd_edit->text()),
         SLOT(replyFinishedA(QNetworkReply *)));
}

void Client_Conf::replyFinishedA(QNetworkReply *reply)
{
    const QJsonObject object = read_json_reply(reply, "AddNetwork / AddStaticNetwork reply received");
    if (object.isEmpty())
        return;
    if (is_success(object))
        selectNetwork(QString::number(object.value("id").toInt()));
    else
        show_info_box(this, tr("Add/Static/Network"),
                      "Result " + returncode_of(object) + " something went wrong...", tr("OK"));
}

void Client_Conf::selectNetwork(QString id)
{
    if (!device)
        return;
    post(device->wifi_url, select_network_body(id), SLOT(replyFinishedB(QNetworkReply *)));
}

void Client_Conf::replyFinishedB(QNetworkReply *reply)
{
    if (read_json_reply(reply, "selecetNetwork reply received").isEmpty())
        return;

    // Any object counts as success, whatever its returncode: meant.
    conf_dialog->hide(); // what the global names, whichever dialog that is: meant
    show_info_box(
        this, tr("Info"),
        tr("Successfully added Device to WiFi Network.\n\n Please get back to your WiFi Network and start "
           "VIRELOv2 App again!"),
        tr("OK"));
    overview->disable_all_buttons();
    overview->deleteRecords();
    client->close();
}
