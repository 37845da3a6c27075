// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QTimer;
class RZSlider;
class Virelo_Sub;

// The tab that operates one subwoofer: input, volume, crossover, high-pass, phase, polarity, beep, mute,
// lock, and the way to the equaliser. The volume slider is fenced as on the Air tab.
//
// GUI thread only. A fixed tab is built with a null pointer and enabled only after refresh; without a
// subwoofer the slots do nothing, but that the fence holds the volume slider. A value that the control
// object refuses changes nothing, and the read-out shows what it holds.
class Client_Settings_Sub : public Client_Settings
{
    Q_OBJECT

public:
    Client_Settings_Sub(Client *client, Virelo_Sub *sub);

    // Shows another subwoofer, with all signals connected. slider_last is left alone, so a volume further
    // away than 10 is pulled to within 10 of what the tab held before, and sent: meant.
    void refresh(Virelo_Sub *sub);

    QTimer *mute_timer = nullptr; // the latest timed mute; null when none ran or after it expired
    Virelo_Sub *sub;              // the subwoofer shown; `control` keeps the constructor's argument
    int spare_index = -1;         // never read
    QGridLayout *grid;
    QPushButton *mute_button = nullptr;
    QPushButton *lock_button = nullptr;
    QPushButton *eq_button = nullptr;
    QPushButton *beep_button = nullptr;
    QLabel *speaker_label = nullptr;
    QComboBox *input_combo = nullptr;
    RZSlider *vol_slider = nullptr;
    QLabel *vol_label = nullptr;
    RZSlider *fg_slider = nullptr; // crossover frequency
    QLabel *fg_label = nullptr;
    QComboBox *slope_combo = nullptr;
    RZSlider *hp_slider = nullptr; // high-pass frequency
    QLabel *hp_label = nullptr;
    QCheckBox *hp_check = nullptr;
    RZSlider *phase_slider = nullptr;
    QLabel *phase_label = nullptr;
    QComboBox *polarity_combo = nullptr;
    int slider_last = 0; // last value accepted from vol_slider

private slots:
    void inputChanged(int input);
    void volSliderValueChanged(int value);
    void fgSliderValueChanged(int value);
    void steilheitChanged(int value);
    void hpSliderValueChanged(int value);
    void hpChanged(int value);
    void phaseSliderValueChanged(int val);
    void polarityChanged(int value);
    void lockToggled(bool state);
    void muteToggled(bool state);
    void muteTimer();
    void eqPressed();
    void beepPressed();

private:
    void build_controls();
    void place_controls();
    void show_speaker();
    void show_values(); // every control as the wanted values stand, in the order of the rows
    void connect_controls();
};
