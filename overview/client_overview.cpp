// SPDX-License-Identifier: MIT
#include "overview/client_overview.h"

#include <QDebug>
#include <QGridLayout>
#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSettings>
#include <algorithm>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelos.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "network/client_wlans.h"
#include "overview/busy_label.h"
#include "overview/client_group.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzpushbutton.h"
#include "settings/rztreewidget.h"
#include "settings/tab_order.h"
#include "update/client_update.h"

namespace
{
enum Column { column_picture, column_name, column_status, column_model, column_count };

constexpr int row_height = 100;
constexpr int hood_hold_ms = 2000;

struct Picture {
    int type;
    const char *path;
};

constexpr Picture pictures[] = {
    {13, ":/GRAFX/vc3.jpg"},  {37, ":/GRAFX/vc3.jpg"}, //
    {14, ":/GRAFX/vc5.jpg"},  {38, ":/GRAFX/vc5.jpg"}, //
    {15, ":/GRAFX/vc7.jpg"},  {39, ":/GRAFX/vc7.jpg"}, //
    {16, ":/GRAFX/vc8.jpg"},  {40, ":/GRAFX/vc8.jpg"}, //
    {17, ":/GRAFX/vc9.jpg"},  {41, ":/GRAFX/vc9.jpg"}, //
    {18, ":/GRAFX/vs12.jpg"}, {42, ":/GRAFX/vs12.jpg"},
};

// Null for a type without a picture.
const char *picture_path(int type)
{
    const auto *found = std::find_if(std::begin(pictures), std::end(pictures),
                                     [type](const Picture &picture) { return picture.type == type; });
    return found == std::end(pictures) ? nullptr : found->path;
}

bool is_phone()
{
    return plattform->device_class == DEVICE_PHONE;
}

Device_Desc *record_of(const QTreeWidgetItem *item)
{
    return item->data(column_picture, Qt::UserRole).value<Device_Desc *>();
}

bool belongs_to_group(const Device_Desc *device)
{
    return device == sender_device ||
           (device->receiver_state != 0 && device->receiver_sender == sender_device->uuid);
}
} // namespace

Client_Overview::Client_Overview(QWidget *parent)
    : QDialog(parent)
    , client_window(parent)
{
    overview = this;
    make_tree();
    make_labels();
    make_buttons();
    place_widgets();
    connect_widgets();
    spinner_label->show();
    start_discovery();
    tree->setFocus();
}

void Client_Overview::make_tree()
{
    const auto f = static_cast<float>((plattform->window_width - 100) / plattform->ratio);
    const float x = f / 650;
    const float widths[column_count] = {std::max(100.0F, 100 * x), 200 * x, 200 * x, 150 * x};
    qDebug() << "Column sizes:" << widths[0] << widths[1] << widths[2] << widths[3];

    auto *rows = new RZTreeWidget(this);
    rows->keys_open = true;
    connect(rows, &RZTreeWidget::rowOpened, this, &Client_Overview::item_clicked);
    tree = rows;
    tree->setIconSize(QSize(row_height, row_height));
    delegate.row_height = row_height;
    tree->setItemDelegate(&delegate);
    tree->setColumnCount(column_count);
    for (int column = 0; column < column_count; ++column)
        tree->setColumnWidth(column, static_cast<int>(widths[column]));
    const QString speakers = tr("Loudspeaker / Group");
    tree->setHeaderLabels({"", speakers, tr("Status"), tr("Model")});
    tree->setAccessibleName(speakers);
    tree->setStyleSheet("QTreeWidget { font-size: " +
                        QString::number(tree->headerItem()->font(column_picture).pointSize() + 3) + "pt; }");
}

void Client_Overview::make_labels()
{
    hint_label = new QLabel(tr("The Speakers and your device have to be in the same WLAN!"), this);
    hint_label->setVisible(!is_phone());
    const QString searching = is_phone() ? tr("<b>Searching...</b>") : tr("<b>Searching Speakers...</b>");
    status_label = new QLabel(searching, this);
    spinner_label = new Busy_Label(this);
    spinner_movie = spinner_label->movie();
}

void Client_Overview::make_buttons()
{
    update_button = new QPushButton(tr("Update >>"), this);
    group_button = new QPushButton(tr("Group >>"), this);
    back_button = new QPushButton(tr("<< Back"), this);
    wifi_button = new QPushButton(tr("WiFi >>"), this);
    quit_button = new RZPushButton(tr("Quit"), this);

    back_button->setEnabled(false);
    back_button->hide();
    update_button->setEnabled(false);
    group_button->setEnabled(false);
    wifi_button->setEnabled(false);
}

void Client_Overview::place_widgets()
{
    const int span = is_phone() ? 2 : 4;
    const int button_column = is_phone() ? 1 : 3;

    grid = new QGridLayout;
    grid->addWidget(make_banner("Deko_Palette"), 0, 0, 1, span);
    grid->addWidget(tree, 1, 0, 1, span);
    if (!is_phone())
        grid->addWidget(hint_label, 3, 0, 1, span);
    grid->addWidget(status_label, 4, 0);
    grid->addWidget(update_button, 4, button_column);
    grid->addWidget(spinner_label, 5, 1, 1, 3, Qt::AlignCenter);
    grid->addWidget(group_button, 5, button_column);
    grid->addWidget(wifi_button, 6, button_column);
    grid->addWidget(quit_button, 6, 0);
    setLayout(grid);
    order_tabs(grid);

    // On a phone the busy sign shares its place with a button, and reaches over columns that hold nothing
    // else.
    spinner_label->raise();
    if (is_phone()) {
        grid->setColumnStretch(0, 1);
        grid->setColumnStretch(button_column, 1);
    }

    update_button->setDefault(false);
    wifi_button->setFocus();
}

void Client_Overview::connect_widgets()
{
    connect(tree, &QTreeWidget::itemClicked, this, &Client_Overview::item_clicked);
    connect(update_button, &QPushButton::clicked, this, &Client_Overview::UpdateClicked);
    connect(group_button, &QPushButton::clicked, this, &Client_Overview::GroupClicked);
    connect(wifi_button, &QPushButton::clicked, this, &Client_Overview::WlansClicked);
    connect(quit_button, &QPushButton::clicked, this, &Client_Overview::quitClicked);
    connect(quit_button, &QPushButton::pressed, this, &Client_Overview::quitPressed);
    connect(quit_button, &QPushButton::released, this, &Client_Overview::quitReleased);
    connect(quit_button, &RZPushButton::Hold, this, &Client_Overview::quitHold);
}

void Client_Overview::reject() {}

// The tree

QString Client_Overview::status_text(const Device_Desc *device)
{
    // The name is always that of sender_device, whichever group the member really belongs to: meant.
    const auto of_group = [](const QString &role) {
        return role + " of \"" + sender_device->groupname + "\"";
    };

    if (device->sender_enabled && sender_device)
        return of_group(tr("is group Master"));
    if (device->receiver_state != 0 && sender_device)
        return of_group(tr("is a Member"));
    if (device->wlan_mode == "AP")
        return "Access-Point"; // not translated: meant
    if (device->cell_master)
        return tr("is Cell Master");
    return tr("in ") + device->ssid;
}

// Each redraw shows the same few pictures in all rows: one that is shared is read and decoded once.
QIcon Client_Overview::picture(const QString &path)
{
    const auto known = known_pictures.constFind(path);
    return known != known_pictures.constEnd() ? *known : *known_pictures.insert(path, QIcon(path));
}

QTreeWidgetItem *Client_Overview::_make_tree_item(Device_Desc *device)
{
    const Virelos *control = device->control;
    const int type = control ? control->type : TYPE_UNKNOWN;

    auto *item = new QTreeWidgetItem;
    if (const char *path = picture_path(type))
        item->setIcon(column_picture, picture(path));
    item->setData(column_picture, Qt::AccessibleTextRole, device->name); // a picture tells nothing by itself
    item->setText(column_name, device->name);
    item->setText(column_status, status_text(device));
    item->setText(column_model, model_name(type));
    item->setData(column_picture, Qt::UserRole, QVariant::fromValue(device));
    device->tree_row = item;
    return item;
}

void Client_Overview::update_tree_widget()
{
    qDebug() << "Client_Overview::update_tree_widget()";
    status_label->setText("");
    tree->clear();

    QTreeWidgetItem *group = nullptr;
    if (sender_device) {
        group = make_group_item();
        tree->addTopLevelItem(group);
    } else {
        qDebug() << "Client_Overview::update_tree_widget(): NO group master";
    }

    const QList<Device_Desc *> devices = device_list;
    int position = 1;
    for (Device_Desc *device : devices) {
        log_device(position++, device);
        QTreeWidgetItem *item = _make_tree_item(device);
        if (group)
            item->setFlags(item->flags() & ~Qt::ItemIsEditable);
        if (group && belongs_to_group(device))
            group->addChild(item);
        else
            tree->addTopLevelItem(item);
    }

    tree->expandAll();
    spinner_label->hide();
}

QTreeWidgetItem *Client_Overview::make_group_item()
{
    const QString groupname = sender_device->groupname;
    auto *item = new QTreeWidgetItem;
    item->setData(column_picture, Qt::AccessibleTextRole, groupname);
    item->setText(column_name, groupname);
    item->setText(column_status, tr("Is your Group"));
    // It joins no list and is never deleted: a tab may show it after the next redraw has made another one.
    auto *device = new Device_Desc(nullptr, true, groupname);
    item->setData(column_picture, Qt::UserRole, QVariant::fromValue(device));
    return item;
}

void Client_Overview::log_device(int position, const Device_Desc *device)
{
    // Each arrival logs the whole list, twice: with debug off, the texts would be built for nobody.
    if (QLoggingCategory::defaultCategory()->isDebugEnabled())
        qDebug() << "Device #" << position << ": " << device->name;
}

// Navigation

Device_Desc *Client_Overview::selected_device() const
{
    const QList<QTreeWidgetItem *> items = tree->selectedItems();
    if (items.isEmpty())
        return nullptr;
    Device_Desc *device = record_of(items.first());
    qDebug() << "selected air:" << device->name;
    return device;
}

void Client_Overview::item_clicked(QTreeWidgetItem *item, int column)
{
    // Read first: should the list change while the tab opens, the redraw takes the row away.
    const bool access_point = item->text(column_name) == "Access-Point"; // the name, not the status: meant
    const bool group = item->text(column_status) == tr("Group");         // no row carries it: meant

    selected = record_of(item);
    open_tab(selected);

    group_button->setEnabled(!access_point);
    update_button->setEnabled(!access_point && !group);
    wifi_button->setEnabled(true);
    group_button->repaint();
    update_button->repaint();
    wifi_button->repaint();
}

void Client_Overview::open_tab(Device_Desc *device)
{
    const Virelos *control = device->control;
    if (!control)
        return;
    if (device->is_group)
        client->show_group(device);
    else if (control->type == TYPE_SUB)
        client->show_sub(device);
    else if (control->type == TYPE_UNKNOWN)
        client->show_empty(device);
    else
        client->show_air(device);
}

void Client_Overview::UpdateClicked()
{
    if (Device_Desc *device = selected_device()) {
        update_dialog = new Client_Update(device, nullptr);
        update_dialog->show();
    }
}

void Client_Overview::GroupClicked()
{
    if (Device_Desc *device = selected_device()) {
        group_dialog = new Client_Group(device, nullptr);
        group_dialog->show();
    }
}

void Client_Overview::WlansClicked()
{
    if (Device_Desc *device = selected_device()) {
        wlans_dialog = new Client_WLANs(device, nullptr);
        wlans_dialog->show();
    }
}

void Client_Overview::disable_all_buttons()
{
    for (QPushButton *button : {update_button, group_button, wifi_button}) {
        button->setEnabled(false);
        button->repaint();
    }
}

void Client_Overview::enableNextButton()
{
    wifi_button->setEnabled(tree->topLevelItemCount() > 0);
}

// The Quit gesture: pressed, released, clicked come in this order.

void Client_Overview::quitClicked()
{
    qDebug() << "quitClicked";
}

void Client_Overview::quitPressed()
{
    qDebug() << "quitPressed";
    hood_timer = new QTimer(this);
    hood_timer->setSingleShot(true);
    connect(hood_timer, &QTimer::timeout, this, &Client_Overview::hoodTimer);
    hood_timer->start(hood_hold_ms);
    quit_blocked = false;
}

void Client_Overview::quitReleased()
{
    qDebug() << "quitReleased";
    if (quit_blocked)
        return;
    if (input_query_seen) {
        input_query_seen = false; // the timer goes on and the service tab still opens: meant
        return;
    }
    qInstallMessageHandler(nullptr);
    settings->sync();
    client_window->close();
}

void Client_Overview::quitHold()
{
    quit_blocked = true;
}

void Client_Overview::hoodTimer()
{
    qDebug() << "quit Hold Timer expired!";
    // Before the tab shows: the change of tab takes the focus, and that releases the button.
    quit_blocked = true;
    client->show_hood(selected);
}
