// SPDX-License-Identifier: MIT
#pragma once

#include "control/virelos.h"

// Control object of the subwoofer: input, volume, crossover, high-pass, phase, polarity, one equaliser band
// and the profile requests. Threads and failures are those of Virelo_Air.
class Virelo_Sub : public Virelos
{
    Q_OBJECT

public:
    Virelo_Sub(int type, QString host, QString name);

    char input = '-'; // one of "CXLDW"
    char input_sent = '-';
    int volume = 0; // 0 to 100
    int volume_sent = 0;
    int frequ_fg = 0; // crossover, 30 to 180 Hz
    int frequ_fg_sent = 0;
    int steilh_fg = 0; // crossover slope: 0, 6, 12, 18, 24 dB per octave
    int steilh_fg_sent = 0;
    int frequ_hp = 0; // high-pass, 0 or 20 to 40 Hz
    int frequ_hp_sent = 0;
    int hp_enabled = 0; // 0 or 1; the speaker tells "off" by the frequency 0
    int hp_enabled_sent = 0;
    int phase = 0; // degrees; not tested
    int phase_sent = 0;
    int polarity = 0; // 0 or 1
    int polarity_sent = 0;
    int eq_enabled = 0; // 0 or 1; the four equaliser fields have no slots, their tab stores to them
    int eq_enabled_sent = 0;
    int eq_frequ = 0; // 20 to 200 Hz
    int eq_frequ_sent = 0;
    int eq_q = 0; // 1 to 10
    int eq_q_sent = 0;
    int eq_gain = 0; // -24 to 6 dB
    int eq_gain_sent = 0;
    int profile_load = 0; // request flags: the number of the profile; cleared when sent
    int profile_save = 0;

public slots:
    void set_volume(int vol) override;
    void change_volume(int vol_diff) override;
    int get_volume() override;
    void Input(int idx);
    void frequFg(int f);
    void steilhFg(int s); // index; six times it is stored
    void frequHp(int f);
    void hpChanged(int state);
    void Phase(int ph);
    void Polarity(int po);

public:
    void transmit_function() override;

private:
    void derive_high_pass();
    void store(int Virelo_Sub::*field, int number);
    void send_profile_request(const char *letters, int &request);
};
