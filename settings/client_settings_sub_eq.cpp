// SPDX-License-Identifier: MIT
#include "settings/client_settings_sub_eq.h"

#include <QCheckBox>
#include <QDebug>
#include <QGridLayout>
#include <QLabel>
#include <QTabWidget>

#include "app/client.h"
#include "control/virelo_sub.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"

namespace
{
constexpr int frequency_min = 20; // Hz
constexpr int frequency_max = 200;
constexpr int gain_min = -24; // dB
constexpr int gain_max = 6;
constexpr int q_min = 1;
constexpr int q_max = 10;
} // namespace

Client_Settings_Sub_EQ::Client_Settings_Sub_EQ(Client *client, Virelo_Sub *sub)
    : Client_Settings(client, sub)
    , sub(sub)
    , grid(new QGridLayout)
{
    build_rows();
    if (sub)
        show_values();

    // Last, so that nothing set above is taken for a change by the user.
    connect(gain_slider, SIGNAL(valueChanged(int)), this, SLOT(gainSliderValueChanged(int)));
    connect(freq_slider, SIGNAL(valueChanged(int)), this, SLOT(frequSliderValueChanged(int)));
    connect(q_slider, SIGNAL(valueChanged(int)), this, SLOT(QSliderValueChanged(int)));
    connect(eq_check, SIGNAL(stateChanged(int)), this, SLOT(checkChanged(int)));
    setLayout(grid);
    order_tabs(grid);
}

void Client_Settings_Sub_EQ::build_rows()
{
    grid->addWidget(make_banner("Deko_Sub"), 0, 0, 1, 7);
    add_caption(grid, 1, tr("Device:"));
    speaker_label = new QLabel("<b>Name</b> (Model)");
    grid->addWidget(speaker_label, 1, 1, 1, 2);

    freq_slider = make_slider(frequency_min, frequency_max, 10);
    gain_slider = make_slider(gain_min, gain_max, 3);
    q_slider = make_slider(q_min, q_max, 1);
    q_slider->setPageStep(1);
    freq_label = new QLabel("Hz");
    gain_label = new QLabel("dB");
    q_label = new QLabel("Q / 1");

    const struct {
        QString caption;
        RZSlider *slider;
        QLabel *read_out;
        Qt::Alignment alignment;
    } rows[] = {
        {tr("Freq:"), freq_slider, freq_label, {}},
        {"Gain:", gain_slider, gain_label, Qt::AlignLeft}, // this one and the next are not translated: meant
        {"Q:", q_slider, q_label, Qt::AlignLeft},
    };
    int row = 2;
    for (const auto &entry : rows) {
        add_caption(grid, row, entry.caption, entry.slider, {});
        grid->addWidget(entry.slider, row, 1);
        grid->addWidget(entry.read_out, row, 2, entry.alignment);
        ++row;
    }

    eq_check = new QCheckBox("EQ active");
    grid->addWidget(eq_check, row, 0, 1, 2);
}

void Client_Settings_Sub_EQ::show_values()
{
    speaker_label->setText(speaker_title(sub));
    freq_slider->setValue(sub->eq_frequ);
    show_frequency();
    gain_slider->setValue(sub->eq_gain);
    show_gain();
    q_slider->setValue(sub->eq_q);
    show_q();
    eq_check->setChecked(sub->eq_enabled != 0);
}

void Client_Settings_Sub_EQ::refresh(Virelo_Sub *sub)
{
    this->sub = sub;
    show_values();
}

void Client_Settings_Sub_EQ::show_frequency()
{
    freq_label->setText(QString::number(sub->eq_frequ) + " Hz");
}

void Client_Settings_Sub_EQ::show_gain()
{
    gain_label->setText(QString::number(sub->eq_gain) + " dB");
}

void Client_Settings_Sub_EQ::show_q()
{
    q_label->setText(QString::number(sub->eq_q));
}

void Client_Settings_Sub_EQ::store(int Virelo_Sub::*field, int value, int minimum, int maximum)
{
    if (value < minimum || value > maximum)
        return;
    sub->*field = value;
    sub->wake();
}

void Client_Settings_Sub_EQ::frequSliderValueChanged(int value)
{
    if (!sub)
        return;
    store(&Virelo_Sub::eq_frequ, value, frequency_min, frequency_max);
    show_frequency();
}

void Client_Settings_Sub_EQ::gainSliderValueChanged(int value)
{
    if (!sub)
        return;
    store(&Virelo_Sub::eq_gain, value, gain_min, gain_max);
    show_gain();
}

void Client_Settings_Sub_EQ::QSliderValueChanged(int value)
{
    if (!sub)
        return;
    store(&Virelo_Sub::eq_q, value, q_min, q_max);
    show_q();
}

void Client_Settings_Sub_EQ::checkChanged(int state)
{
    qDebug() << "void Client_Settings_Sub_EQ::checkChanged()" << state;
    if (!sub)
        return;
    sub->eq_enabled = state == 0 ? 0 : 1;
    sub->wake();
}

int Client::show_eq(Virelo_Sub *sub)
{
    if (eq_tab) {
        tabs->setTabText(eq_tab_index, "EQ "); // the trailing blank is meant
        tabs->setTabEnabled(eq_tab_index, true);
        eq_tab->refresh(sub);
        tabs->repaint();
    } else if (eq_tab_index == 0) {
        // eq_tab stays null on this way: a further call only selects the tab that is there.
        eq_tab_index = tabs->addTab(new Client_Settings_Sub_EQ(this, sub), "EQ");
    }
    tabs->setCurrentIndex(eq_tab_index);
    return eq_tab_index;
}
