// SPDX-License-Identifier: MIT
#include "network/client_conf_statip.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/window_picture.h"

namespace
{
constexpr QRgb dimmed_text = 0xff5a5a5a;

// The style sheets fix the background. A desktop's own colour of text may vanish on it.
void make_readable(QLineEdit *edit)
{
    QPalette palette = edit->palette();
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(dimmed_text));
    edit->setPalette(palette);
}
} // namespace

Client_Conf_StatIP::Client_Conf_StatIP(Device_Desc *device, QWidget *parent)
    : QDialog(parent)
    , device(device)
{
    resize(plattform->window_width, plattform->window_height);
    free_picture_when_hidden(this);
    make_widgets();
    place_widgets();
    connect(dhcp_radio, &QRadioButton::pressed, this, &Client_Conf_StatIP::dhcp_pressed);
    connect(static_radio, &QRadioButton::pressed, this, &Client_Conf_StatIP::static_pressed);
    connect(save_button, &QPushButton::clicked, this, &Client_Conf_StatIP::set_IP);
    connect(back_button, &QPushButton::clicked, this, &Client_Conf_StatIP::close);
    setWindowTitle(tr("Speaker WLAN Settings"));
    if (device->static_network)
        static_pressed();
    else
        dhcp_pressed();
}

void Client_Conf_StatIP::make_widgets()
{
    mode_box = new QGroupBox(this);
    dhcp_radio = new QRadioButton("DHCP");
    static_radio = new QRadioButton("Static");
    auto *modes = new QHBoxLayout;
    modes->addWidget(dhcp_radio);
    modes->addWidget(static_radio);
    modes->addStretch(1);
    mode_box->setLayout(modes);

    ip_edit = new QLineEdit("192.168.1.1", this);
    netmask_edit = new QLineEdit(this);
    gateway_edit = new QLineEdit(this);
    domain_edit = new QLineEdit(this);
    dns1_edit = new QLineEdit(this);
    dns2_edit = new QLineEdit(this);
    for (QLineEdit *edit : findChildren<QLineEdit *>())
        make_readable(edit);
    hint_label = new QLabel(tr("* is mandatory!"), this);
    back_button = new QPushButton(tr("<< Back"), this);
    save_button = new QPushButton(tr("SAVE"), this);
    save_button->setDefault(true);
}

void Client_Conf_StatIP::place_widgets()
{
    const struct {
        int row;
        QString caption;
        QWidget *input;
    } rows[] = {
        {1, tr("Adress Mode:"), mode_box},
        {2, tr("IP Address: *"), ip_edit},
        {3, tr("Netmask: *"), netmask_edit},
        {4, tr("Gateway:"), gateway_edit},
        {5, QString(), nullptr}, // a spacer
        {6, tr("Domain:"), domain_edit},
        {7, tr("DNS No. 1:"), dns1_edit},
        {8, tr("DNS No. 2:"), dns2_edit},
    };
    auto *grid = new QGridLayout;
    grid->addWidget(make_banner("Deko_WLAN"), 0, 0, 1, 4);
    for (const auto &entry : rows) {
        add_caption(grid, entry.row, entry.caption, entry.input, {});
        if (entry.input)
            grid->addWidget(entry.input, entry.row, 1, 1, 3);
    }
    grid->addWidget(hint_label, 9, 0, 1, 4);
    grid->addWidget(back_button, 10, 2);
    grid->addWidget(save_button, 10, 3);
    setLayout(grid);
    order_tabs(grid);
}

void Client_Conf_StatIP::set_edits_enabled(bool enabled)
{
    for (QLineEdit *edit : {ip_edit, netmask_edit, gateway_edit, domain_edit, dns1_edit, dns2_edit}) {
        edit->setEnabled(enabled);
        edit->setStyleSheet(enabled ? "QLineEdit {background-color: white;}"
                                    : "QLineEdit {background-color: lightgrey;}");
    }
}

void Client_Conf_StatIP::dhcp_pressed()
{
    dhcp_radio->setChecked(true);
    set_edits_enabled(false);
}

// Each press fills the edits anew: what was typed and not saved is replaced, which is meant.
void Client_Conf_StatIP::static_pressed()
{
    if (!device)
        return;
    const struct {
        QLineEdit *edit;
        QString stored;
        QString otherwise;
    } fields[] = {
        {ip_edit, device->static_ip, device->ip},
        {netmask_edit, device->static_netmask, "255.255.255.0"},
        {gateway_edit, device->static_gateway, device->ip},
        {domain_edit, device->static_domain, VIRELO_MAKER_DOMAIN},
        {dns1_edit, device->static_dns1, "8.8.8.8"},
        {dns2_edit, device->static_dns2, "8.8.4.4"},
    };
    static_radio->setChecked(true);
    for (const auto &field : fields)
        field.edit->setText(field.stored.isEmpty() ? field.otherwise : field.stored);
    set_edits_enabled(true);
}

void Client_Conf_StatIP::store()
{
    if (static_radio->isChecked())
        device->set_static_network(ip_edit->text(), netmask_edit->text(), gateway_edit->text(),
                                   domain_edit->text(), dns1_edit->text(), dns2_edit->text());
    else
        device->clear_static_network();
}

void Client_Conf_StatIP::set_IP()
{
    if (device)
        store();
    emit update();
    close();
}
