// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <Qt>
#include <string_view>

class QComboBox;
class QDial;
class QGridLayout;
class QLabel;
class QPushButton;
class QTimer;
class QWidget;
class RZSlider;
class Virelos;

// What the settings tabs and the dialogs build alike. The widgets are new and have no parent: the layout
// gives them one. GUI thread only.

// The text in bold; what looks like markup in it stands as it is.
QString bold(const QString &text);

// "<b>NAME</b> (MODEL)" of the speaker.
QString speaker_title(const Virelos *speaker);

// Index of the entry with that letter. A letter that no entry has gives the index behind the last of
// `letters`; a combo without such an entry then shows none.
int letter_index(std::string_view letters, char letter);

// In column 0. `control` is what it is the caption of: that takes its accessible name from it.
void add_caption(QGridLayout *grid, int row, const QString &text, QWidget *control = nullptr,
                 Qt::Alignment alignment = Qt::AlignRight);
void add_spacer(QGridLayout *grid, int row, const QString &text); // a label alone in its row

// What a speaker or its surroundings told stands as it is, also where it looks like markup. A long value is
// cut at its right end: it must not push the buttons off a small screen.
QLabel *make_value_label(const QString &value);

RZSlider *make_slider(int minimum, int maximum, int tick_interval); // horizontal, steps of 1 and 10
QDial *make_volume_dial();                                          // endless, see dial_step
QComboBox *make_combo(const QStringList &entries);
QPushButton *make_checkable(const QString &text);

// What a Mute button does. On: mutes `target`, and where `mt` is not 0 sets `timer` to a new one-shot timer,
// a child of `tab`, that calls the tab's slot muteTimer() after `mt` seconds; the timer before it stays as it
// is until the tab goes. Off: stops `timer` if there is one, and ends the mute. `mt` is whatever a speaker
// reported: too long a time is cut to the longest that a timer takes (24 days), and with a negative one the
// timer is made and never fires.
void toggle_timed_mute(bool state, Virelos *target, int mt, QTimer *&timer, QWidget *tab);
