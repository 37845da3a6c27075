// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QHash>
#include <QIcon>
#include <QList>
#include <QTimer>

#include "settings/itemdelegate.h"
#include "zeroconf/qzeroconfservice.h"

class Device_Desc;
class QGridLayout;
class QLabel;
class QMovie;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class QZeroConf;
class RZPixmapLabel;
class RZPushButton;

// The first tab: the speakers as a tree, with the group as a parent row, and the way into every other view.
// The discovery object lives here; its signals become entries of device_list, and the tree is drawn from that
// list each time all activities of all speakers have ended. The Quit button carries a hidden gesture: held
// for 2 s it opens the service tab.
//
// GUI thread only. A speaker that fails to answer stays away from the tree; a failed browse looks like an
// empty network.
class Client_Overview : public QDialog
{
    Q_OBJECT

public:
    explicit Client_Overview(QWidget *parent); // the main window; starts discovery

    Device_Desc *selected_device() const; // record of the first selected row, or null
    void reject() override;               // does nothing: Escape must not blank a tab

    QWidget *client_window;
    QTimer spare_timer;              // never started
    QList<Device_Desc *> spare_list; // never used
    QGridLayout *grid = nullptr;
    // Columns: picture (holds the Device_Desc* under Qt::UserRole), name, status, model.
    QTreeWidget *tree = nullptr;
    ItemDelegate delegate;
    QLabel *spinner_label = nullptr;
    QMovie *spinner_movie = nullptr;
    QPushButton *update_button = nullptr;
    QPushButton *group_button = nullptr;
    QPushButton *back_button = nullptr; // disabled and never placed
    QPushButton *wifi_button = nullptr;
    RZPushButton *quit_button = nullptr;
    QLabel *hint_label = nullptr;
    QLabel *status_label = nullptr;
    QZeroConf *zeroConf = nullptr;   // no parent, never deleted
    QTimer *hood_timer = nullptr;    // of the last press of Quit
    bool quit_blocked = false;       // releasing Quit does not quit
    Device_Desc *selected = nullptr; // record of the last clicked row

public slots:
    void addService(QZeroConfService zcs);
    void updateService(QZeroConfService zcs);
    // The record is neither deleted nor stopped: its tab may be in use.
    void removeService(QZeroConfService zcs);
    void deleteRecords();
    void ReloadClicked();
    void update_status(int running);
    void setStatusText(QString text);
    void dummy();

    void update_tree_widget();
    void disable_all_buttons();
    QTreeWidgetItem *_make_tree_item(Device_Desc *device);
    void item_clicked(QTreeWidgetItem *item, int column);
    void UpdateClicked();
    void GroupClicked();
    void WlansClicked();
    void enableNextButton();
    void quitClicked();
    void quitPressed();
    void quitReleased();
    void quitHold();
    void hoodTimer();

private:
    void make_tree();
    void make_labels();
    void make_buttons();
    void place_widgets();
    void connect_widgets();
    void start_discovery();
    void open_tab(Device_Desc *device);
    QIcon picture(const QString &path);
    static QTreeWidgetItem *make_group_item();
    static QString status_text(const Device_Desc *device);
    static void log_device(int position, const Device_Desc *device);
    Device_Desc *arriving_record_of(const QZeroConfService &zcs) const;

    // Records that are being made. Events run meanwhile, and one of them may tell of the same speaker on
    // another interface, or that it has left.
    QList<Device_Desc *> arriving;

    QHash<QString, QIcon> known_pictures; // by path
};
