// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class Device_Desc;
class QComboBox;
class QDial;
class QGridLayout;
class QLabel;
class QPushButton;
class QTimer;
class RZSlider;
class Virelo_Air;

// The tab that operates one full-range speaker: volume, input, position, bass, room, beep, mute and lock. A
// phone shows a volume slider; other devices a wrapping dial as well, an endless relative control that drives
// the slider. Both are fenced, so that no single input moves the volume by more than 10.
//
// GUI thread only. A fixed tab is built with two null pointers and enabled only after refresh has given it a
// speaker.
class Client_Settings_Air : public Client_Settings
{
    Q_OBJECT

public:
    // `air` and `device` may both be null: the controls then show their defaults and a volume of 0.
    Client_Settings_Air(Client *client, Virelo_Air *air, Device_Desc *device);

    // Shows another speaker. Signals stay connected: the slots store back what was read, which sends nothing,
    // except that a Bluetooth input asks for Bluetooth and a changed mute runs its timer, both meant.
    void refresh(Virelo_Air *air, Device_Desc *device);

    QTimer *mute_timer = nullptr; // the latest timed mute; null when none ran or after it expired
    Device_Desc *device;          // for the Bluetooth request
    Virelo_Air *air;              // the speaker shown; `control` keeps the constructor's argument
    QGridLayout *grid = nullptr;
    QPushButton *mute_button = nullptr;
    QPushButton *lock_button = nullptr;
    QPushButton *beep_button = nullptr;
    QLabel *name_label = nullptr; // null until a speaker is shown, as the next one
    QLabel *model_label = nullptr;
    RZSlider *vol_slider = nullptr;
    QDial *vol_dial = nullptr; // null on a phone
    QLabel *vol_label = nullptr;
    QComboBox *input_combo = nullptr;
    QComboBox *position_combo = nullptr;
    QComboBox *bass_combo = nullptr;
    QComboBox *room_combo = nullptr;
    int slider_last = 0; // last value accepted from the slider
    int dial_last = 0;   // last position of the dial
    int dial_spare = 0;  // never read

private slots:
    void inputChanged(int value);
    void dialValueChanged(int value);
    void sliderValueChanged(int value);
    void sliderPressed();
    void beepClicked();
    void lockToggled(bool state);
    void muteToggled(bool state);
    void muteTimer();
    void bassClicked(int p);
    void positionClicked(int p);
    void roomClicked(int p);

private:
    void add_speaker_labels();
    void build_volume();
    void build_combos();
    void build_buttons();
    void connect_controls();
    void show_states(); // combos, mute and lock as the speaker's wanted values stand
    void show_volume(int volume, const QString &before, const QString &after);
};
