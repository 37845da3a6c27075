// SPDX-License-Identifier: MIT
#include "overview/client_group.h"

#include <QDebug>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "overview/busy_label.h"
#include "overview/client_overview.h"
#include "settings/banner.h"
#include "settings/info_box.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rztreewidget.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/window_picture.h"

namespace
{
enum Column { column_name, column_status };

constexpr int columns = 4;
constexpr int living_role = Qt::UserRole + 1; // the record too, as a pointer that knows when it is gone

// Null for an item without one, and once the record is gone.
Device_Desc *record_of(const QTreeWidgetItem *item)
{
    return item->data(column_name, living_role).value<QPointer<Device_Desc>>();
}

bool is_member(const Device_Desc *device)
{
    return sender_device && device->receiver_state != 0 && device->receiver_sender == sender_device->uuid;
}
} // namespace

Client_Group::Client_Group(Device_Desc *device, QWidget *parent)
    : QDialog(parent)
    , device(device)
{
    resize(plattform->window_width, plattform->window_height);
    free_picture_when_hidden(this);
    make_widgets();
    place_widgets();
    show_group_state();
    QTreeWidgetItem *own_item = fill_tree();
    connect_widgets();

    setWindowTitle(tr("VIRELO Air Group Configuration"));
    if (own_item) {
        own_item->setSelected(true);
        item_clicked(own_item, 0);
    }
    tree->setFocus();
}

void Client_Group::make_widgets()
{
    auto *rows = new RZTreeWidget(this);
    connect(rows, &RZTreeWidget::rowSelected, this, &Client_Group::item_clicked);
    tree = rows;
    const QString speakers = tr("Other Air Speakers:");
    tree->setHeaderLabels({speakers, tr("Status")});
    tree->setAccessibleName(speakers);
    tree->setColumnWidth(column_name, plattform->window_width / 2);

    master_label = make_value_label(tr("-"));
    group_label = make_value_label(tr("-"));
    hint_label = new QLabel(tr("Click \"Create Group\"!"), this);
    busy_label = new Busy_Label(this);

    add_button = new QPushButton(tr("Add to Group"), this);
    remove_button = new QPushButton(tr("Remove from Group"), this);
    dissolve_button = new QPushButton(this);
    back_button = new QPushButton(tr("<< Back"), this);
    back_button->setDefault(true);
    add_button->setEnabled(false);
    remove_button->setEnabled(false);
}

void Client_Group::place_widgets()
{
    grid = new QGridLayout;
    grid->addWidget(make_banner("Deko_Palette"), 0, 0, 1, columns);
    grid->addWidget(new QLabel(tr("Master:"), this), 1, 0, Qt::AlignRight);
    grid->addWidget(master_label, 1, 1);
    grid->addWidget(new QLabel(tr("Group:"), this), 2, 0, Qt::AlignRight);
    grid->addWidget(group_label, 2, 1);
    grid->addWidget(hint_label, 2, 2);
    grid->addWidget(dissolve_button, 1, 3);
    grid->addWidget(busy_label, 2, 3, Qt::AlignCenter);
    grid->addWidget(tree, 3, 0, 1, columns);
    grid->addWidget(add_button, 4, 2);
    grid->addWidget(remove_button, 4, 3);
    grid->addWidget(back_button, 5, 0);
    setLayout(grid);
    order_tabs(grid);
}

void Client_Group::show_group_state()
{
    hint_label->setVisible(!sender_device);
    dissolve_button->setText(sender_device ? tr("Dissolve Group") : tr("Create Group"));
    if (sender_device) {
        master_label->setText(sender_device->name);
        group_label->setText(sender_device->groupname);
    } else {
        master_label->setText(device->name);
    }
}

QTreeWidgetItem *Client_Group::fill_tree()
{
    const Device_Desc *master = sender_device ? sender_device : device.data();
    QTreeWidgetItem *own_item = nullptr;
    for (Device_Desc *listed : qAsConst(device_list)) {
        if (listed == master)
            continue;
        QTreeWidgetItem *item = _make_tree_item(listed);
        item->setText(column_status, is_member(listed) ? tr("Group member") : tr("Available"));
        tree->addTopLevelItem(item);
        if (listed->name == device->name)
            own_item = item;
    }
    return own_item;
}

void Client_Group::connect_widgets()
{
    connect(tree, &QTreeWidget::itemClicked, this, &Client_Group::item_clicked);
    connect(add_button, &QPushButton::clicked, this, &Client_Group::AddClicked);
    connect(remove_button, &QPushButton::clicked, this, &Client_Group::RemoveClicked);
    connect(dissolve_button, &QPushButton::clicked, this, &Client_Group::DissolveClicked);
    connect(back_button, &QPushButton::clicked, this, &Client_Group::close);
}

QTreeWidgetItem *Client_Group::_make_tree_item(Device_Desc *device)
{
    auto *item = new QTreeWidgetItem;
    item->setText(column_name, device->name);
    item->setData(column_name, Qt::UserRole, QVariant::fromValue(device));
    item->setData(column_name, living_role, QVariant::fromValue(QPointer<Device_Desc>(device)));
    return item;
}

QTreeWidgetItem *Client_Group::selected_air()
{
    const QList<QTreeWidgetItem *> items = tree->selectedItems();
    return items.isEmpty() ? nullptr : items.first();
}

void Client_Group::item_clicked(QTreeWidgetItem *item, int column)
{
    const Device_Desc *clicked = record_of(item);
    if (!sender_device || !clicked)
        return;
    if (clicked->receiver_state == 0) {
        remove_button->setEnabled(false);
        add_button->setEnabled(true);
    } else if (is_member(clicked)) {
        add_button->setEnabled(false);
        remove_button->setEnabled(true);
    } // linked to another sender: both stay as they are
}

void Client_Group::AddClicked()
{
    // The button is enabled when a group is created, selection or not.
    QTreeWidgetItem *item = selected_air();
    if (!item || !sender_device)
        return;
    if (Device_Desc *joining = record_of(item)) {
        // Before the reply to "enable" came the uuid is still empty, and is sent so: meant.
        joining->request_receiver_link(sender_device->uuid);
        joining->receiver_state = 1;
        joining->receiver_sender = sender_device->uuid;
        item->setText(column_status, tr("Group member"));
    }
    show_membership(item, true);
}

void Client_Group::RemoveClicked()
{
    QTreeWidgetItem *item = selected_air();
    if (!item)
        return;
    if (Device_Desc *leaving = record_of(item)) {
        leaving->request_receiver_unlink();
        leaving->receiver_state = 0; // receiver_sender stays as it is: meant
        item->setText(column_status, tr("Available"));
    }
    show_membership(item, false);
}

void Client_Group::show_membership(QTreeWidgetItem *item, bool member)
{
    tree->repaint();
    add_button->setEnabled(!member);
    remove_button->setEnabled(member);
    add_button->repaint();
    remove_button->repaint();
    overview->update_tree_widget();
    overview->disable_all_buttons();
}

void Client_Group::DissolveClicked()
{
    if (sender_device)
        dissolve_group();
    else
        create_group();
}

void Client_Group::create_group()
{
    if (!device)
        return;
    bool accepted = false;
    const QString name = QInputDialog::getText(this, tr("Create Group"), tr("Group name:"), QLineEdit::Normal,
                                               tr("VIRELO Group"), &accepted);
    if (!accepted || name.isEmpty() || !device) // it may have gone while the box was open
        return;

    device->request_sender_enable(name, 0);
    sender_device = device;
    group_label->setText(name);
    dissolve_button->setText(tr("Dissolve Group"));
    hint_label->hide();
    add_button->setEnabled(true);
    add_button->repaint();
}

void Client_Group::dissolve_group()
{
    qDebug() << "Client_Group::DissolveClicked() DISSOLVE GROUP";
    busy_label->show();
    for (Device_Desc *listed : qAsConst(device_list)) {
        if (listed == sender_device) {
            qDebug() << "disable group master" << listed->name << "...";
            listed->request_sender_disable();
            listed->request_receiver_unlink();
            listed->sender_enabled = false;
            listed->receiver_state = 0;
        } else if (is_member(listed)) {
            qDebug() << "disable receiver" << listed->name << "...";
            listed->request_receiver_unlink();
            listed->receiver_state = 0;
        }
    }
    sender_device = nullptr;
    overview->update_tree_widget();
    overview->disable_all_buttons();
    close();
}

void Client_Group::dissolve_completed()
{
    show_info_box(this, tr("Info"), tr("Group dissolved"), tr("OK"));
    close();
}
