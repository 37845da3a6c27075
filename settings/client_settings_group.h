// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QDial;
class QGridLayout;
class QLabel;
class QPushButton;
class QTimer;
class RZSlider;
class Virelo_Air;
class Virelo_Group;
class Virelo_Sub;

// The tab that operates the group as one: volume and mute of all through the group's control object, and the
// input of the sender alone. The sender is the master as it stood when the tab was built; the tab keeps
// reading that one.
//
// GUI thread only. Without a group or a sender the tab names nothing, checks no input, and its slots do
// nothing.
class Client_Settings_Group : public Client_Settings
{
    Q_OBJECT

public:
    Client_Settings_Group(Client *client, Virelo_Group *group);

    QTimer *mute_timer = nullptr;     // the latest timed mute; null when none ran or after it expired
    Virelo_Group *group_control;      // null also where there was no sender
    bool is_sub = false;              // the sender is a subwoofer
    Virelo_Air *master_air = nullptr; // the sender's control object, by its kind
    Virelo_Sub *master_sub = nullptr;
    char master_input = '\0'; // the sender's wanted input letter at construction
    QPushButton *source0_button = nullptr;
    QPushButton *source1_button = nullptr;
    QPushButton *source2_button = nullptr;
    QPushButton *source_auto_button = nullptr;
    QGridLayout *grid;
    QPushButton *quit_button = nullptr;
    QPushButton *mute_button = nullptr;
    RZSlider *vol_slider = nullptr; // starts at 0 whatever the speakers have: meant, as for the dial
    QDial *vol_dial = nullptr;
    QLabel *vol_label = nullptr;
    int slider_last = 0; // last value accepted from the slider
    int dial_last = 0;   // last position of the dial
    int dial_spare = 0;  // never read

private slots:
    void dialValueChanged(int value);
    void sliderValueChanged(int value);
    void source0Toggled(bool state);
    void source1Toggled(bool state);
    void source2Toggled(bool state);
    void sourceAutoToggled(bool state);
    void muteToggled(bool state);
    void muteTimer();

private:
    void take_sender();
    void build_names();
    void build_sources();
    void build_volume();
    void connect_controls(Client *client);
    void choose_input(const char *log_text, bool state, char letter, bool for_sub);
    void show_volume();
};
