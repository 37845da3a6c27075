// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <cstdio>
#include <cstring>

#include "control/serial_wifi.h"

// One row of a control object's command table: a pair of a wanted and a sent field, number or letter, the
// letters that it is read and written under, and the format of its argument. The table of a class is in the
// order of its start-up reads, which is the order of transmission as well. Rows hold no state; a row is read
// on the constructing thread and written on the worker.
template<class Control>
struct Wire_Value {
    const char *read_as; // null: not read under letters of its own
    bool events_first;   // events of the thread are processed before the read
    const char *written_as;
    const char *format;
    int Control::*wanted;
    int Control::*sent;
    char Control::*wanted_letter = nullptr; // in place of the two above
    char Control::*sent_letter = nullptr;

    constexpr Wire_Value(const char *read_as, bool events_first, const char *written_as, const char *format,
                         int Control::*wanted, int Control::*sent)
        : read_as(read_as)
        , events_first(events_first)
        , written_as(written_as)
        , format(format)
        , wanted(wanted)
        , sent(sent)
    {
    }

    constexpr Wire_Value(const char *read_as, bool events_first, const char *written_as, const char *format,
                         char Control::*wanted, char Control::*sent)
        : Wire_Value(read_as, events_first, written_as, format, static_cast<int Control::*>(nullptr), nullptr)
    {
        wanted_letter = wanted;
        sent_letter = sent;
    }

    // Stores what the speaker answers as wanted and sent alike, so that nothing is sent later. Without an
    // answer a number is 0 and a letter NUL.
    void read(Control &control) const
    {
        if (events_first)
            QCoreApplication::processEvents();
        if (wanted_letter) {
            char reply[serial_wifi::reply_size] = {};
            control.link->host_query(read_as, "", reply);
            control.*wanted_letter = control.*sent_letter = reply[0];
        } else {
            const long number = control.link->host_query_int(read_as);
            control.*wanted = control.*sent = static_cast<int>(number);
        }
    }

    // Where wanted differs from sent: counts it as sent, puts it into `value` and returns true.
    bool take_change(Control &control, int &value) const
    {
        return wanted_letter ? take(control, wanted_letter, sent_letter, value)
                             : take(control, wanted, sent, value);
    }

private:
    template<class Field>
    static bool take(Control &control, Field Control::*wanted, Field Control::*sent, int &value)
    {
        const Field now = control.*wanted; // once: another thread may store meanwhile
        if (now == control.*sent)
            return false;
        control.*sent = now;
        value = now;
        return true;
    }
};

// An argument of a command as text.
struct Wire_Argument {
    char text[16];

    Wire_Argument(const char *format, int value) { std::snprintf(text, sizeof text, format, value); }
};

// The letter at `index` of `letters`, or NUL when the index leads to none of the `valid` ones.
inline char letter_at(const char *letters, int index, const char *valid)
{
    if (index < 0 || static_cast<size_t>(index) >= std::strlen(letters))
        return '\0';
    const char letter = letters[index];
    return std::strchr(valid, letter) ? letter : '\0';
}
