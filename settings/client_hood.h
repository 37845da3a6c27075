// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class Device_Desc;
class QGridLayout;
class QLabel;
class QPushButton;
class RZSlider;
class Virelo_Air;

// The service tab: it turns the debug setting on or off for the next start, and sets a speaker's time delay.
// Opened by holding Quit, and at start when the debug setting is on.
//
// GUI thread only. The selected record may hold another kind of control object than a full-range speaker's,
// or none yet: then the slider moves and nothing is sent.
class Client_Hood : public Client_Settings
{
    Q_OBJECT

public:
    Client_Hood(Client *client, Device_Desc *device); // `device` may be null

    int spare = 0; // never read
    Device_Desc *device;
    Virelo_Air *air = nullptr; // the record's control object where it is of that kind
    QGridLayout *grid;
    QPushButton *debug_button = nullptr;
    QLabel *restart_label = nullptr;
    RZSlider *delay_slider = nullptr; // ms; starts at 0 whatever the speaker holds: meant
    QLabel *delay_label = nullptr;

private slots:
    void sliderValueChanged(int value);
    void sliderPressed();
    void debugToggled(bool state);

private:
    void build_speaker();
    void build_debug();
    void build_delay();
};
