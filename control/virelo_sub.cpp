// SPDX-License-Identifier: MIT
#include "control/virelo_sub.h"

#include <QDebug>

#include "control/wire_value.h"

namespace
{
// The input is read under other letters than it is written under: meant so. The switch of the high-pass has
// no letters of its own: "fh" goes out a second time for it, with 0 for off, and the later of the two
// decides.
constexpr Wire_Value<Virelo_Sub> wire_values[] = {
    {"ai", true, "IN", "%c", &Virelo_Sub::input, &Virelo_Sub::input_sent},
    {"vo", false, "vo", "%03d", &Virelo_Sub::volume, &Virelo_Sub::volume_sent},
    {"fg", true, "fg", "%03d", &Virelo_Sub::frequ_fg, &Virelo_Sub::frequ_fg_sent},
    {"fs", true, "fs", "%02d", &Virelo_Sub::steilh_fg, &Virelo_Sub::steilh_fg_sent},
    {"fh", true, "fh", "%02d", &Virelo_Sub::frequ_hp, &Virelo_Sub::frequ_hp_sent},
    {nullptr, false, "fh", "%02d", &Virelo_Sub::hp_enabled, &Virelo_Sub::hp_enabled_sent},
    {"ph", true, "ph", "%03d", &Virelo_Sub::phase, &Virelo_Sub::phase_sent},
    {"po", true, "po", "%d", &Virelo_Sub::polarity, &Virelo_Sub::polarity_sent},
    {"eq", true, "eq", "%01d", &Virelo_Sub::eq_enabled, &Virelo_Sub::eq_enabled_sent},
    {"ef", true, "ef", "%03d", &Virelo_Sub::eq_frequ, &Virelo_Sub::eq_frequ_sent},
    {"eQ", true, "eQ", "%01d", &Virelo_Sub::eq_q, &Virelo_Sub::eq_q_sent},
    {"eg", true, "eg", "%02d", &Virelo_Sub::eq_gain, &Virelo_Sub::eq_gain_sent},
};

// What the index of the selector stands for, "-" for nothing, and what a speaker takes.
constexpr char input_letters[] = "WDCXL----";
constexpr char inputs[] = "CXLDW";

constexpr int crossover_min = 30; // Hz
constexpr int crossover_max = 180;
constexpr int slope_step = 6; // dB per octave
constexpr int slope_index_max = 4;
constexpr int high_pass_min = 20; // Hz
constexpr int high_pass_max = 40;

bool within(int number, int min, int max)
{
    return number >= min && number <= max;
}
} // namespace

Virelo_Sub::Virelo_Sub(int type, QString host, QString name)
    : Virelos(type, host, name)
{
    link = new serial_wifi(host, name + " initial values", 57600, 8, 0, 1);
    for (const auto &value : wire_values) {
        if (value.read_as)
            value.read(*this);
        else
            derive_high_pass();
    }
    delete link;
    link = nullptr;
}

// The speaker tells "off" by the frequency 0; the slider then opens at the lowest frequency.
void Virelo_Sub::derive_high_pass()
{
    qDebug() << " %%%%%%%%%%%%%%%%%%%%%%%%%%\n\n\n" << frequ_hp;
    hp_enabled = hp_enabled_sent = frequ_hp != 0;
    if (!hp_enabled)
        frequ_hp = frequ_hp_sent = high_pass_min;
}

void Virelo_Sub::set_volume(int vol)
{
    store(&Virelo_Sub::volume, clamped_volume(vol));
}

void Virelo_Sub::change_volume(int vol_diff)
{
    store(&Virelo_Sub::volume, clamped_volume(qint64(volume) + vol_diff));
}

int Virelo_Sub::get_volume()
{
    return volume;
}

void Virelo_Sub::Input(int idx)
{
    const char letter = letter_at(input_letters, idx, inputs);
    if (!letter)
        return;
    input = letter;
    wake();
}

void Virelo_Sub::frequFg(int f)
{
    if (within(f, crossover_min, crossover_max))
        store(&Virelo_Sub::frequ_fg, f);
}

void Virelo_Sub::steilhFg(int s)
{
    if (within(s, 0, slope_index_max))
        store(&Virelo_Sub::steilh_fg, slope_step * s);
}

void Virelo_Sub::frequHp(int f)
{
    if (f == 0 || within(f, high_pass_min, high_pass_max))
        store(&Virelo_Sub::frequ_hp, f);
}

void Virelo_Sub::hpChanged(int state)
{
    store(&Virelo_Sub::hp_enabled, state != 0);
}

void Virelo_Sub::Phase(int ph)
{
    store(&Virelo_Sub::phase, ph);
}

void Virelo_Sub::Polarity(int po)
{
    if (within(po, 0, 1))
        store(&Virelo_Sub::polarity, po);
}

void Virelo_Sub::store(int Virelo_Sub::*field, int number)
{
    this->*field = number;
    wake();
}

void Virelo_Sub::send_profile_request(const char *letters, int &request)
{
    if (!request)
        return;
    send(letters, Wire_Argument("%2d", request).text);
    request = 0;
}

void Virelo_Sub::transmit_function()
{
    all_wakes_served();
    send_profile_request("Pl", profile_load);
    send_profile_request("Ps", profile_save);

    int value = 0;
    for (const auto &row : wire_values) {
        if (!row.take_change(*this, value))
            continue;
        if (row.wanted == &Virelo_Sub::hp_enabled && value)
            value = frequ_hp;
        send(row.written_as, Wire_Argument(row.format, value).text);
    }
    Virelos::transmit_function();
}
