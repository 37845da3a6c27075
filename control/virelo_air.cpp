// SPDX-License-Identifier: MIT
#include "control/virelo_air.h"

#include <QDebug>
#include <climits>

#include "control/wire_value.h"

namespace
{
// The last two gains are read under letters of their own and written under those of the main gain: meant so.
constexpr Wire_Value<Virelo_Air> wire_values[] = {
    {"IN", true, "IN", "%c", &Virelo_Air::input, &Virelo_Air::input_sent},
    {"vo", true, "vo", "%03d", &Virelo_Air::volume, &Virelo_Air::volume_sent},
    {"ba", false, "ba", "%1d", &Virelo_Air::bass, &Virelo_Air::bass_sent},
    {"pl", true, "pl", "%c", &Virelo_Air::position, &Virelo_Air::position_sent},
    {"ro", true, "ro", "%c", &Virelo_Air::room, &Virelo_Air::room_sent},
    {"ga", true, "ga", "%03d", &Virelo_Air::gain, &Virelo_Air::gain_sent},
    {"gw", true, "gw", "%03d", &Virelo_Air::gain_wifi, &Virelo_Air::gain_wifi_sent},
    {"g1", true, "ga", "%03d", &Virelo_Air::gain_1, &Virelo_Air::gain_1_sent},
    {"g2", true, "ga", "%03d", &Virelo_Air::gain_2, &Virelo_Air::gain_2_sent},
    {"td", true, "td", "%03d", &Virelo_Air::time_delay, &Virelo_Air::time_delay_sent},
};

// What the index of a selector stands for, "-" for nothing, and what a speaker takes.
constexpr char input_letters[] = "WDdBA----";
constexpr char inputs[] = "WDdBA";
constexpr char position_letters[] = "FWC---";
constexpr char positions[] = "FWC";
constexpr char room_letters[] = "RrndD---";
constexpr char rooms[] = "RrndD";

constexpr int bass_max = 3;
constexpr int gain_min = -12;
constexpr int gain_max = 12;
constexpr int delay_max = 8191;
} // namespace

Virelo_Air::Virelo_Air(int type, QString host, QString name)
    : Virelos(type, host, name)
{
    link = new serial_wifi(host, name + " initial values", 57600, 8, 0, 1);
    for (const auto &value : wire_values)
        value.read(*this);
    input_initial = input;
    QCoreApplication::processEvents();
    delete link;
    link = nullptr;
}

void Virelo_Air::set_volume(int vol)
{
    qDebug() << "Virelos_Air::set_volume(" << vol << ")";
    volume = clamped_volume(vol);
    wake();
}

void Virelo_Air::change_volume(int vol_diff)
{
    volume = clamped_volume(qint64(volume) + vol_diff);
    wake();
}

int Virelo_Air::get_volume()
{
    return volume;
}

void Virelo_Air::Input(int input)
{
    store_letter(&Virelo_Air::input, letter_at(input_letters, input, inputs));
}

void Virelo_Air::Bass(int bass)
{
    qDebug() << "BASS";
    store_number(&Virelo_Air::bass, bass, 0, bass_max);
}

void Virelo_Air::Position(int place)
{
    store_letter(&Virelo_Air::position, letter_at(position_letters, place, positions));
}

void Virelo_Air::Room(int room)
{
    store_letter(&Virelo_Air::room, letter_at(room_letters, room, rooms));
}

void Virelo_Air::Gain(int gain)
{
    store_number(&Virelo_Air::gain, gain, gain_min, gain_max);
}

void Virelo_Air::Gain_Wifi(int gain)
{
    store_number(&Virelo_Air::gain_wifi, gain, gain_min, gain_max);
}

void Virelo_Air::Gain_1(int gain)
{
    store_number(&Virelo_Air::gain_1, gain, gain_min, gain_max);
}

void Virelo_Air::Gain_2(int gain)
{
    store_number(&Virelo_Air::gain_2, gain, gain_min, gain_max);
}

// Only the upper bound is tested: meant so.
void Virelo_Air::TimeDelay(int delay)
{
    store_number(&Virelo_Air::time_delay, delay, INT_MIN, delay_max);
}

void Virelo_Air::store_letter(char Virelo_Air::*field, char letter)
{
    if (!letter)
        return;
    this->*field = letter;
    wake();
}

void Virelo_Air::store_number(int Virelo_Air::*field, int number, int min, int max)
{
    if (number < min || number > max)
        return;
    this->*field = number;
    wake();
}

void Virelo_Air::transmit_function()
{
    wake_served();

    int value = 0;
    for (const auto &row : wire_values) {
        if (!row.take_change(*this, value))
            continue;
        const Wire_Argument argument(row.format, value);
        send(row.written_as, argument.text);
        if (row.wanted == &Virelo_Air::volume)
            qDebug() << "Virelo_Air::transmit_function()" << argument.text;
    }
    Virelos::transmit_function();
}
