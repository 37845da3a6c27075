// SPDX-License-Identifier: MIT
#pragma once

#include "control/virelos.h"

// Control object of a full-range speaker: input, volume, bass, position, room, four gains and a time delay.
// The constructor blocks its caller (the identification thread) while it reads the speaker's values on a link
// of its own; a value that was never answered reads as 0, a letter as NUL. Setters run on the GUI thread; a
// value out of range has no effect and wakes nobody, only the volume is clamped instead.
class Virelo_Air : public Virelos
{
    Q_OBJECT

public:
    Virelo_Air(int type, QString host, QString name);

    char input = '-'; // one of "WDdBA"
    char input_sent = '-';
    char input_initial = '-'; // as read at start-up
    int volume = 0;           // 0 to 100
    int volume_sent = 0;
    int bass = 0; // 0 to 3
    int bass_sent = 0;
    char position = '\0'; // one of "FWC"
    char position_sent = '\0';
    char room = '\0'; // one of "RrndD"
    char room_sent = '\0';
    int gain = 0; // this one and the next three: -12 to 12
    int gain_sent = 0;
    int gain_wifi = 0;
    int gain_wifi_sent = 0;
    int gain_1 = 0;
    int gain_1_sent = 0;
    int gain_2 = 0;
    int gain_2_sent = 0;
    int time_delay = 0; // up to 8191; below 0 is not refused
    int time_delay_sent = 0;

public slots:
    void set_volume(int vol) override;
    void change_volume(int vol_diff) override;
    int get_volume() override;
    void Input(int input); // index into the letter table, as the next two indexed ones
    void Bass(int bass);
    void Position(int place);
    void Room(int room);
    void Gain(int gain);
    void Gain_Wifi(int gain);
    void Gain_1(int gain);
    void Gain_2(int gain);
    void TimeDelay(int delay);

public:
    void transmit_function() override;

private:
    // Both end with wake() if they stored anything: NUL and numbers outside the bounds have no effect.
    void store_letter(char Virelo_Air::*field, char letter);
    void store_number(int Virelo_Air::*field, int number, int min, int max);
};
