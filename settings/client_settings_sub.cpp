// SPDX-License-Identifier: MIT
#include "settings/client_settings_sub.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_sub.h"
#include "device/device_desc.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/volume_steps.h"

namespace
{
constexpr std::string_view input_letters = "WDCXL"; // in the order of the combo's entries
constexpr int slope_step = 6;                       // dB per octave from one entry to the next

// The items of the tab from top to bottom, one row each.
enum Item { speaker = 1, input, volume, frequency, slope, high_pass, phase, polarity };

// What the device class changes in the grid.
struct Sub_Layout {
    int last_column;
    int rows_per_item; // 2: a spacer stands before each item
    int button_row;
    int button_column; // of the first of three
};

const Sub_Layout &sub_layout()
{
    static constexpr Sub_Layout phone = {3, 2, 2 * polarity + 1, 0};
    static constexpr Sub_Layout tablet = {6, 2, 2 * polarity, 4};
    static constexpr Sub_Layout desktop = {6, 1, polarity, 4};
    switch (plattform->device_class) {
    case DEVICE_PHONE:
        return phone;
    case DEVICE_TABLET:
        return tablet;
    default:
        return desktop;
    }
}

int row_of(Item item)
{
    return item * sub_layout().rows_per_item;
}

QString hertz(int value)
{
    return QString::number(value) + " Hz";
}

QString percent(int value)
{
    return QString::number(value) + " %";
}

QString degrees(int value)
{
    return QString::number(value) + QString::fromUtf8("°");
}
} // namespace

Client_Settings_Sub::Client_Settings_Sub(Client *client, Virelo_Sub *sub)
    : Client_Settings(client, sub)
    , sub(sub)
    , grid(new QGridLayout)
{
    build_controls();
    place_controls();
    if (sub) {
        slider_last = sub->get_volume();
        show_speaker();
        show_values();
    }
    // Last, so that nothing set above is taken for a change by the user.
    connect_controls();
    setLayout(grid);
    order_tabs(grid);
}

void Client_Settings_Sub::build_controls()
{
    speaker_label = new QLabel("<b>Name</b> (Model)");
    eq_button = new QPushButton("EQ");
    input_combo = make_combo({tr("WiFi/LAN"), tr("Coax"), tr("LFE/Line"), tr("XLR"), tr("Speaker")});
    vol_slider = make_slider(0, volume_max, 10);
    vol_label = new QLabel("0 %");
    fg_slider = make_slider(30, 180, 10);
    fg_label = new QLabel("- Hz");
    slope_combo =
        make_combo({tr("Filter Off"), tr("6 dB/oct"), tr("12 dB/oct"), tr("18 dB/oct"), tr("24 dB/oct")});
    hp_check = new QCheckBox("Enabled");
    hp_slider = make_slider(20, 40, 10);
    hp_label = new QLabel("- Hz");
    phase_slider = make_slider(0, 180, 30);
    phase_label = new QLabel(QString::fromUtf8("- °"));
    polarity_combo = make_combo({tr("Normal"), tr("Inverse")});
    beep_button = new QPushButton(tr("Beep!"));
    mute_button = make_checkable(tr("Mute"));
    lock_button = make_checkable(tr("Lock"));
}

void Client_Settings_Sub::place_controls()
{
    const Sub_Layout &layout = sub_layout();
    const int last = layout.last_column;
    const auto add_row = [this](Item item, const QString &caption, QWidget *control) {
        if (sub_layout().rows_per_item > 1)
            add_spacer(grid, row_of(item) - 1, tr(" "));
        add_caption(grid, row_of(item), caption, control);
    };
    const auto add_slider = [this, last](Item item, RZSlider *slider, QLabel *read_out, int first_column) {
        grid->addWidget(slider, row_of(item), first_column, 1, last - first_column);
        grid->addWidget(read_out, row_of(item), last);
    };

    grid->addWidget(make_banner("Deko_Sub"), 0, 0, 1, last + 1);
    add_row(speaker, tr("Speaker:"), nullptr);
    grid->addWidget(speaker_label, row_of(speaker), 1, 1, 2);
    grid->addWidget(eq_button, row_of(speaker), last);
    add_row(input, tr("Input:"), input_combo);
    grid->addWidget(input_combo, row_of(input), 1);
    add_row(volume, tr("Volume:"), vol_slider);
    add_slider(volume, vol_slider, vol_label, 1);
    add_row(frequency, tr("Frequency:"), fg_slider);
    add_slider(frequency, fg_slider, fg_label, 1);
    add_row(slope, tr("Slope:"), slope_combo);
    grid->addWidget(slope_combo, row_of(slope), 1);
    const QString high_pass_caption = tr("HighPass:");
    add_row(high_pass, high_pass_caption, hp_slider);
    hp_check->setAccessibleName(high_pass_caption + ' ' + hp_check->text());
    grid->addWidget(hp_check, row_of(high_pass), 1);
    add_slider(high_pass, hp_slider, hp_label, 2);
    add_row(phase, tr("Phase:"), phase_slider);
    add_slider(phase, phase_slider, phase_label, 1);
    add_row(polarity, tr("Polarity:"), polarity_combo);
    grid->addWidget(polarity_combo, row_of(polarity), 1);

    int column = layout.button_column;
    for (QPushButton *button : {beep_button, mute_button, lock_button})
        grid->addWidget(button, layout.button_row, column++);
}

void Client_Settings_Sub::show_speaker()
{
    speaker_label->setText(speaker_title(sub));
}

void Client_Settings_Sub::show_values()
{
    input_combo->setCurrentIndex(letter_index(input_letters, sub->input));
    vol_slider->setValue(sub->volume);
    vol_label->setText(percent(sub->get_volume()));
    fg_slider->setValue(sub->frequ_fg);
    fg_label->setText(hertz(sub->frequ_fg));
    slope_combo->setCurrentIndex(sub->steilh_fg / slope_step);
    hp_slider->setValue(sub->frequ_hp);
    // By now a moved slider may have turned the high-pass on: meant.
    hp_check->setChecked(sub->hp_enabled != 0);
    hp_label->setText(hertz(sub->frequ_hp));
    phase_slider->setValue(sub->phase);
    phase_label->setText(degrees(sub->phase));
    polarity_combo->setCurrentIndex(sub->polarity);
    mute_button->setChecked(sub->mute != 0);
    lock_button->setChecked(sub->lock != 0);
}

void Client_Settings_Sub::connect_controls()
{
    connect(input_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(inputChanged(int)));
    connect(vol_slider, SIGNAL(valueChanged(int)), this, SLOT(volSliderValueChanged(int)));
    connect(fg_slider, SIGNAL(valueChanged(int)), this, SLOT(fgSliderValueChanged(int)));
    connect(slope_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(steilheitChanged(int)));
    connect(hp_slider, SIGNAL(valueChanged(int)), this, SLOT(hpSliderValueChanged(int)));
    connect(hp_check, SIGNAL(stateChanged(int)), this, SLOT(hpChanged(int)));
    connect(phase_slider, SIGNAL(valueChanged(int)), this, SLOT(phaseSliderValueChanged(int)));
    connect(polarity_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(polarityChanged(int)));
    connect(lock_button, SIGNAL(toggled(bool)), this, SLOT(lockToggled(bool)));
    connect(mute_button, SIGNAL(toggled(bool)), this, SLOT(muteToggled(bool)));
    connect(eq_button, SIGNAL(clicked()), this, SLOT(eqPressed()));
    connect(beep_button, SIGNAL(clicked()), this, SLOT(beepPressed()));
}

void Client_Settings_Sub::refresh(Virelo_Sub *sub)
{
    this->sub = sub;
    show_speaker();
    show_values();
}

void Client_Settings_Sub::inputChanged(int input)
{
    if (sub)
        sub->Input(input);
}

void Client_Settings_Sub::volSliderValueChanged(int value)
{
    const int fenced = fenced_volume(value, slider_last);
    if (fenced != value)
        vol_slider->setSliderPosition(fenced); // comes back here at once, within the fence
    slider_last = fenced;
    if (!sub)
        return;
    sub->set_volume(fenced);
    vol_label->setText(percent(sub->get_volume()));
}

void Client_Settings_Sub::fgSliderValueChanged(int value)
{
    if (!sub)
        return;
    sub->frequFg(value);
    fg_label->setText(hertz(sub->frequ_fg));
}

void Client_Settings_Sub::steilheitChanged(int value)
{
    if (sub)
        sub->steilhFg(value);
}

void Client_Settings_Sub::hpSliderValueChanged(int value)
{
    if (!sub)
        return;
    sub->frequHp(value);
    if (hp_check->checkState() != Qt::PartiallyChecked)
        hp_check->setChecked(true);
    hp_label->setText(hertz(sub->frequ_hp));
}

void Client_Settings_Sub::hpChanged(int value)
{
    if (sub)
        sub->hpChanged(value);
}

void Client_Settings_Sub::phaseSliderValueChanged(int val)
{
    if (!sub)
        return;
    sub->Phase(val);
    phase_label->setText(degrees(sub->phase));
}

void Client_Settings_Sub::polarityChanged(int value)
{
    if (sub)
        sub->Polarity(value);
}

void Client_Settings_Sub::lockToggled(bool state)
{
    if (sub)
        sub->lockToggled(state);
}

void Client_Settings_Sub::muteToggled(bool state)
{
    if (sub)
        toggle_timed_mute(state, sub, sub->mt, mute_timer, this);
}

void Client_Settings_Sub::muteTimer()
{
    mute_button->setChecked(false);
    mute_timer = nullptr;
}

void Client_Settings_Sub::eqPressed()
{
    if (sub)
        client->show_eq(sub);
}

void Client_Settings_Sub::beepPressed()
{
    if (sub)
        sub->Beep();
}

void Client::show_sub(Device_Desc *device)
{
    auto *sub = static_cast<Virelo_Sub *>(device->control);
    if (sub_tab_index > 0) {
        tabs->setTabText(sub_tab_index, device->name);
        tabs->setTabEnabled(sub_tab_index, true);
        sub_tab->refresh(sub);
        tabs->repaint();
        tabs->setCurrentIndex(sub_tab_index);
        return;
    }
    if (device->tab_index <= 0)
        device->tab_index = tabs->addTab(new Client_Settings_Sub(this, sub), device->name);
    tabs->setCurrentIndex(device->tab_index);
}
