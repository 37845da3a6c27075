// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

class Device_Desc;
class QJsonValue;
class QLabel;
class QNetworkReply;
class QPushButton;
class QTreeWidget;

// First of the two steps that move a speaker into the user's own WLAN: it asks the speaker for the networks
// that it can see, at once and only once, lists them, and hands the chosen name on to the WLAN settings. A
// failure of the network gives no message: the list stays empty and "Next >>" disabled.
//
// GUI thread only. Not deleted when it closes or hides, so it may outlive the record: nothing can be chosen
// then.
class Client_WLANs : public QDialog
{
    Q_OBJECT

public:
    Client_WLANs(Device_Desc *device, QWidget *parent);
    ~Client_WLANs() override;

    QPointer<Device_Desc> device; // null once the record is gone
    QTreeWidget *tree = nullptr;  // columns: name (holds the QJsonValue under Qt::UserRole), signal
    QLabel *hint_label = nullptr;
    QPushButton *reset_button = nullptr; // made, connected and never shown: meant
    QPushButton *back_button = nullptr;
    QPushButton *next_button = nullptr;

private slots:
    void replyFinished(QNetworkReply *reply);
    void setSSID();
    void enableNextButton();
    void reset(); // does nothing: meant

private:
    void make_tree();
    void make_buttons();
    void place_widgets();
    void add_network(int number, const QJsonValue &network);
};
