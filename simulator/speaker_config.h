// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// Where a speaker stands in a network that gives it no address. Texts as they came; empty members for DHCP.
struct Static_Address {
    QString address;
    QString netmask;
    QString broadcast;
    QString gateway;
    QStringList domains;
    QStringList name_servers;
};

// One wireless network that a speaker sees.
struct Wlan_Network {
    QString ssid;
    QString encrypt_type = "WPA2";
    QString signal_level = "-60"; // the scan reply carries it as text
    QString password;             // null: any is taken. Set, also to "": another one is refused.
};

// Everything that a virtual speaker is and holds, and at the same time its state: requests and commands
// change it. A plain value without lock; a running speaker's own copy belongs to the speaker's thread and is
// reached through Virtual_Speaker::config and Virtual_Speaker::change.
struct Speaker_Config {
    // Where it stands
    QString address = "127.0.0.1";
    quint16 host_port = 8990; // fixed on a real speaker: the program knows no other
    quint16 at_port = 8991;
    quint16 http_port = 0; // 0: any free one
    QString host_name;     // of the announcement, without ".local"; empty: made from the address
    QString service_type = "_lodeset._tcp";
    QString interface; // network device that the announcement goes out on; empty: all, or the address's own
    QMap<QString, QString> txt; // entries of the announcement's TXT record

    // Host
    QString name = "Speaker";      // also the instance name of the announcement
    int type = 13;                 // answer to "STm"; 18 speaks the subwoofer's commands
    QString cell = "N";            // answer to "QO"; "W" for a cell master
    QMap<QString, QString> values; // two letters to text; what is missing starts at its table default
    int flash_answer_ms = 0;       // pace of the answers in flash mode; below 0: no answer at all
    QString flash_answer = "!";

    // Device info reply
    QString model = "VIRELO Air";
    QString firmware = "1.4.2";
    QString hardware = "2.0";

    // Network info reply. In the mode "AP" it has no "stationinfo".
    QString wlan_mode = "STA";
    QString ssid = "Home";
    QString mac = "02:00:00:00:00:01";
    int signal = -52;
    int channelwidth = 40;
    double bitrate = 144.4;

    // Songcast
    bool sender_enabled = false;
    int sender_state = 0;
    int sender_mode = 0;
    QString sender_uuid; // empty: made from the address
    QString groupname;
    int receiver_state = 0; // 0 unlinked, 1 linked, 2 playing
    QString receiver_sender;

    // Bluetooth, as the last "setproperties" left it
    bool discoverable = false;
    bool pairable = false;
    int discoverable_timeout = 0;
    int pairable_timeout = 0;

    // Network setup
    QList<Wlan_Network> networks;  // what "wifiscan" finds
    Static_Address static_address; // as the network that was selected last was added

    // Module upgrade: polls that each status number lasts. The download lasts longer where it needs to.
    int upgrade_polls = 1;
};
