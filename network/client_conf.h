// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

class Device_Desc;
class QLabel;
class QLineEdit;
class QNetworkReply;
class QPushButton;

// Second step of the move into the user's WLAN: it shows what is known of the speaker, takes a new name and
// the password, and sends a chain of up to three requests: name, add the network, select it. A finished chain
// clears the list and closes the program, since the speaker has left the network. A failed step never undoes
// an earlier one; a reply that is no JSON ends the chain with a log line, and the dialog stays usable.
//
// Further presses of "SAVE" start further chains beside the first. GUI thread only. Not deleted when it
// closes, so it may outlive the record: no request goes out then.
class Client_Conf : public QDialog
{
    Q_OBJECT

public:
    Client_Conf(Device_Desc *device, QWidget *parent); // becomes conf_dialog

    QPointer<Device_Desc> device; // null once the record is gone
    QLineEdit *name_edit = nullptr;
    QLineEdit *passwd_edit = nullptr;
    QLabel *ip_label = nullptr;
    QLabel *hint_label = nullptr;
    QPushButton *save_button = nullptr;
    QPushButton *back_button = nullptr;
    QPushButton *dhcp_button = nullptr;

public slots:
    void update(); // the static address dialog was saved: only this adds the mode to the address

private slots:
    void dhcpStatic();
    void commit_settings();
    void addNetwork();
    void replyFinishedA(QNetworkReply *reply);
    void selectNetwork(QString id);
    void replyFinishedB(QNetworkReply *reply);
    void setDeviceName(QString name);
    void replyFinishedC(QNetworkReply *reply);

private:
    void make_widgets();
    void place_widgets();
    void connect_widgets();
    void post(const QString &url, const QString &body, const char *slot);
};
