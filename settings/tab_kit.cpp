// SPDX-License-Identifier: MIT
#include "settings/tab_kit.h"

#include <QComboBox>
#include <QDial>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <limits>

#include "control/virelos.h"
#include "device/speaker_types.h"
#include "settings/rzslider.h"
#include "settings/volume_steps.h"

namespace
{
constexpr qint64 ms_per_second = 1000;

void start_mute_timer(QTimer *timer, int seconds)
{
    const qint64 ms = seconds * ms_per_second;
    if (ms > 0)
        timer->start(static_cast<int>(qMin<qint64>(ms, std::numeric_limits<int>::max())));
}
} // namespace

QString bold(const QString &text)
{
    return "<b>" + text.toHtmlEscaped() + "</b>";
}

QString speaker_title(const Virelos *speaker)
{
    return bold(speaker->name) + " (" + model_name(speaker->type) + ")";
}

int letter_index(std::string_view letters, char letter)
{
    const auto found = letters.find(letter);
    return static_cast<int>(found == std::string_view::npos ? letters.size() : found);
}

void add_caption(QGridLayout *grid, int row, const QString &text, QWidget *control, Qt::Alignment alignment)
{
    auto *caption = new QLabel(text);
    caption->setBuddy(control);
    grid->addWidget(caption, row, 0, alignment);
}

void add_spacer(QGridLayout *grid, int row, const QString &text)
{
    grid->addWidget(new QLabel(text), row, 0);
}

QLabel *make_value_label(const QString &value)
{
    auto *label = new QLabel(value);
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(1);
    return label;
}

RZSlider *make_slider(int minimum, int maximum, int tick_interval)
{
    auto *slider = new RZSlider(Qt::Horizontal, nullptr);
    slider->setRange(minimum, maximum);
    slider->setSingleStep(1);
    slider->setPageStep(10);
    slider->setTracking(true);
    slider->setTickPosition(QSlider::TicksBothSides);
    slider->setTickInterval(tick_interval);
    return slider;
}

QDial *make_volume_dial()
{
    auto *dial = new QDial;
    dial->setRange(0, dial_max);
    dial->setWrapping(true);
    dial->setTracking(true);
    return dial;
}

QComboBox *make_combo(const QStringList &entries)
{
    auto *combo = new QComboBox;
    combo->addItems(entries);
    return combo;
}

QPushButton *make_checkable(const QString &text)
{
    auto *button = new QPushButton(text);
    button->setCheckable(true);
    return button;
}

void toggle_timed_mute(bool state, Virelos *target, int mt, QTimer *&timer, QWidget *tab)
{
    if (!state) {
        if (timer)
            timer->stop();
        target->MUTE_OFF();
        return;
    }

    target->MUTE_ON();
    if (mt == 0)
        return;
    timer = new QTimer(tab);
    timer->setSingleShot(true);
    QObject::connect(timer, SIGNAL(timeout()), tab, SLOT(muteTimer()));
    start_mute_timer(timer, mt);
}
