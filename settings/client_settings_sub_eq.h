// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class RZSlider;
class Virelo_Sub;

// The tab that edits the one parametric equaliser band of a subwoofer. The control object has no slots for
// it: the tab stores into the wanted fields after its own range check, and wakes the worker.
//
// GUI thread only. `sub` may be null: the read-outs then show placeholders and the slots do nothing.
class Client_Settings_Sub_EQ : public Client_Settings
{
    Q_OBJECT

public:
    Client_Settings_Sub_EQ(Client *client, Virelo_Sub *sub);

    // Shows another subwoofer, with all signals connected: a value outside a slider's range is replaced by
    // the clamped one, and sent.
    void refresh(Virelo_Sub *sub);

    Virelo_Sub *sub;
    QGridLayout *grid;
    QLabel *speaker_label = nullptr;
    QCheckBox *eq_check = nullptr;
    RZSlider *freq_slider = nullptr;
    RZSlider *gain_slider = nullptr;
    RZSlider *q_slider = nullptr;
    QLabel *freq_label = nullptr;
    QLabel *gain_label = nullptr;
    QLabel *q_label = nullptr;

private slots:
    void frequSliderValueChanged(int value);
    void gainSliderValueChanged(int value);
    void QSliderValueChanged(int value);
    void checkChanged(int state);

private:
    void build_rows();
    void show_values();
    void show_frequency();
    void show_gain();
    void show_q();
    void store(int Virelo_Sub::*field, int value, int minimum, int maximum);
};
