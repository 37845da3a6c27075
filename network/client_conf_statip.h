// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

class Device_Desc;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

// Lets the user choose between DHCP and a static address for the speaker's WLAN. It sends nothing: it stores
// the values in the record, and nothing is validated. GUI thread only; not deleted when it closes, so it may
// outlive the record: it stores nothing then, and "Static" fills nothing in.
class Client_Conf_StatIP : public QDialog
{
    Q_OBJECT

public:
    Client_Conf_StatIP(Device_Desc *device, QWidget *parent);

    QPointer<Device_Desc> device; // null once the record is gone
    QGroupBox *mode_box = nullptr;
    QRadioButton *dhcp_radio = nullptr;
    QRadioButton *static_radio = nullptr;
    QLineEdit *ip_edit = nullptr;
    QLineEdit *netmask_edit = nullptr;
    QLineEdit *gateway_edit = nullptr;
    QLineEdit *domain_edit = nullptr;
    QLineEdit *dns1_edit = nullptr;
    QLineEdit *dns2_edit = nullptr;
    QLabel *hint_label = nullptr;
    QPushButton *save_button = nullptr;
    QPushButton *back_button = nullptr;

signals:
    void update(); // the choice was saved

private slots:
    void dhcp_pressed();
    void static_pressed();
    void set_IP();

private:
    void make_widgets();
    void place_widgets();
    void set_edits_enabled(bool enabled);
    void store();
};
