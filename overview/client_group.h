// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

class Device_Desc;
class QGridLayout;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

// The dialog that makes one speaker the master of the group, adds and removes other speakers, and dissolves
// the group. There is at most one group: sender_device is its master, and a speaker is a member while its
// receiver is linked to the master's uuid. The records are adjusted at once, ahead of the replies, so that
// the overview is right without a new scan; no reply is awaited and no failure is told.
//
// GUI thread only. Opened without blocking, never deleted; the overview stays usable meanwhile. It may
// outlive its records: of those that are gone nothing is asked.
class Client_Group : public QDialog
{
    Q_OBJECT

public:
    Client_Group(Device_Desc *device,
                 QWidget *parent); // `device` is the master-to-be while there is no group

    QPointer<Device_Desc> device; // null once the record is gone
    QGridLayout *grid = nullptr;
    QTreeWidget *tree = nullptr; // columns: name (holds the Device_Desc* under Qt::UserRole), status
    QPushButton *add_button = nullptr;
    QPushButton *remove_button = nullptr;
    QPushButton *dissolve_button = nullptr; // creates the group where there is none
    QPushButton *back_button = nullptr;
    QLabel *master_label = nullptr;
    QLabel *group_label = nullptr;
    QLabel *hint_label = nullptr; // shown while there is no group
    QLabel *busy_label = nullptr; // shown while dissolving

private slots:
    void AddClicked();
    void RemoveClicked();
    void DissolveClicked();
    QTreeWidgetItem *selected_air();
    QTreeWidgetItem *_make_tree_item(Device_Desc *device);
    void item_clicked(QTreeWidgetItem *item, int column);
    void dissolve_completed(); // connected to nothing: meant

private:
    void make_widgets();
    void place_widgets();
    void show_group_state();
    QTreeWidgetItem *fill_tree(); // the row of `device`, or null
    void connect_widgets();
    void create_group();
    void dissolve_group();
    void show_membership(QTreeWidgetItem *item, bool member);
};
