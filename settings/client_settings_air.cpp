// SPDX-License-Identifier: MIT
#include "settings/client_settings_air.h"

#include <QComboBox>
#include <QDebug>
#include <QDial>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <string_view>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_air.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/volume_steps.h"

namespace
{
constexpr int none = -1;

// The letters of a combo's entries, in the order of the entries.
constexpr std::string_view input_letters = "WDdB"; // every other letter counts as the fifth, "Automatic"
constexpr std::string_view position_letters = "FWC";
constexpr std::string_view room_letters = "RrndD";
constexpr int bluetooth_index = 3;

struct Place {
    int row; // `none` leaves the item out
    int column;
    int row_span;
    int column_span;
};

struct Combo_Row {
    int row;
    int spacer; // row of the spacer behind it, or `none`
};

// What the device class changes in the grid.
struct Air_Layout {
    int banner_columns;
    Place dial;
    Place vol_label;
    Combo_Row input;
    Combo_Row position;
    Combo_Row bass;
    Combo_Row room;
    int button_row;
    int button_column; // of the first of three
};

// clang-format off
constexpr Air_Layout phone_layout = {
    3, {none, 0, 0, 0}, {3, 1, 1, 1},
    {4, 5}, {6, none}, {7, none}, {8, 9},
    10, 0
};
constexpr Air_Layout tablet_layout = {
    6, {1, 3, 9, 3}, {10, 3, 1, 3},
    {4, 5}, {6, 7}, {8, 9}, {10, 11},
    12, 3
};
constexpr Air_Layout desktop_layout = {
    6, {1, 3, 6, 3}, {7, 3, 1, 3},
    {4, none}, {5, none}, {6, none}, {7, none},
    8, 3
};
// clang-format on

const Air_Layout &air_layout()
{
    switch (plattform->device_class) {
    case DEVICE_PHONE:
        return phone_layout;
    case DEVICE_TABLET:
        return tablet_layout;
    default:
        return desktop_layout;
    }
}

void add_widget(QGridLayout *grid, QWidget *widget, const Place &place, Qt::Alignment alignment = {})
{
    grid->addWidget(widget, place.row, place.column, place.row_span, place.column_span, alignment);
}
} // namespace

Client_Settings_Air::Client_Settings_Air(Client *client, Virelo_Air *air, Device_Desc *device)
    : Client_Settings(client, air)
    , device(device)
    , air(air)
    , grid(new QGridLayout)
{
    const Air_Layout &layout = air_layout();
    grid->addWidget(make_banner("Deko_Air"), 0, 0, 1, layout.banner_columns);
    add_caption(grid, 1, tr("Speaker:"));
    if (air)
        add_speaker_labels();
    build_volume();
    build_combos();
    build_buttons();
    if (air)
        show_states();

    // Last, so that nothing set above is taken for a change by the user.
    connect_controls();
    setLayout(grid);
    order_tabs(grid);
}

void Client_Settings_Air::add_speaker_labels()
{
    name_label = new QLabel(bold(air->name));
    model_label = new QLabel("(" + model_name(air->type) + ")");
    grid->addWidget(name_label, 1, 1);
    grid->addWidget(model_label, 1, 2);
}

void Client_Settings_Air::build_volume()
{
    const Air_Layout &layout = air_layout();
    if (layout.dial.row != none) {
        vol_dial = make_volume_dial();
        dial_last = vol_dial->value();
        dial_spare = 0;
        add_widget(grid, vol_dial, layout.dial);
    }

    // The slider is captioned so on every device class, and no catalogue has the text: meant.
    const QString caption = tr("SPDIF Vol:");
    slider_last = air ? air->get_volume() : 0;
    vol_slider = make_slider(0, volume_max, 10);
    vol_slider->setValue(slider_last);
    add_caption(grid, 2, caption, vol_slider);
    if (vol_dial)
        vol_dial->setAccessibleName(caption);
    grid->addWidget(vol_slider, 2, 1, 1, 2);

    vol_label = new QLabel;
    show_volume(slider_last, "", "  / 100");
    add_widget(grid, vol_label, layout.vol_label, Qt::AlignCenter);
}

void Client_Settings_Air::build_combos()
{
    const Air_Layout &layout = air_layout();
    const auto add_row = [this](const Combo_Row &place, const QString &caption, const QStringList &entries) {
        QComboBox *combo = make_combo(entries);
        add_caption(grid, place.row, caption, combo);
        grid->addWidget(combo, place.row, 1);
        if (place.spacer != none)
            add_spacer(grid, place.spacer, tr(" "));
        return combo;
    };

    input_combo =
        add_row(layout.input, tr("Active Input:"),
                {tr("WiFi"), tr("Coaxial (1)"), tr("Optical (2)"), tr("Bluetooth"), tr("Automatic")});
    position_combo =
        add_row(layout.position, tr("Speaker Position:"), {tr("Free"), tr("Wall"), tr("Corner")});
    bass_combo = add_row(layout.bass, tr("Bass Level:"),
                         {tr("Bass -1"), tr("Bass Normal"), tr("Bass +1"), tr("Bass +2")});
    room_combo = add_row(
        layout.room, tr("Room Type:"),
        {tr("Strong Reverb"), tr("Reverb"), tr("Normal Room"), tr("Dampened"), tr("Strongly Dampened")});
}

void Client_Settings_Air::build_buttons()
{
    const Air_Layout &layout = air_layout();
    beep_button = new QPushButton(tr("Beep!"));
    mute_button = make_checkable(tr("Mute"));
    lock_button = make_checkable(tr("Lock"));

    int column = layout.button_column;
    for (QPushButton *button : {beep_button, mute_button, lock_button})
        grid->addWidget(button, layout.button_row, column++);
}

void Client_Settings_Air::connect_controls()
{
    connect(vol_slider, SIGNAL(valueChanged(int)), this, SLOT(sliderValueChanged(int)));
    connect(vol_slider, SIGNAL(sliderPressed()), this, SLOT(sliderPressed()));
    if (vol_dial)
        connect(vol_dial, SIGNAL(valueChanged(int)), this, SLOT(dialValueChanged(int)));
    connect(input_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(inputChanged(int)));
    connect(position_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(positionClicked(int)));
    connect(bass_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(bassClicked(int)));
    connect(room_combo, SIGNAL(currentIndexChanged(int)), this, SLOT(roomClicked(int)));
    connect(beep_button, SIGNAL(clicked()), this, SLOT(beepClicked()));
    connect(mute_button, SIGNAL(toggled(bool)), this, SLOT(muteToggled(bool)));
    connect(lock_button, SIGNAL(toggled(bool)), this, SLOT(lockToggled(bool)));
}

void Client_Settings_Air::refresh(Virelo_Air *air, Device_Desc *device)
{
    this->air = air;
    this->device = device;

    // The labels of the speaker before stay in their cells, out of sight.
    for (QLabel *label : {name_label, model_label})
        if (label)
            label->hide();
    add_speaker_labels();

    slider_last = air->get_volume(); // first, so that the fence leaves the new volume alone
    vol_slider->setValue(air->get_volume());
    show_volume(air->get_volume(), "", " / 100");
    show_states();
}

void Client_Settings_Air::show_states()
{
    input_combo->setCurrentIndex(letter_index(input_letters, air->input));
    position_combo->setCurrentIndex(letter_index(position_letters, air->position));
    bass_combo->setCurrentIndex(air->bass); // as reported: no entry is selected where there is none
    room_combo->setCurrentIndex(letter_index(room_letters, air->room));
    mute_button->setChecked(air->mute != 0);
    lock_button->setChecked(air->lock != 0);
}

void Client_Settings_Air::show_volume(int volume, const QString &before, const QString &after)
{
    const QString caption = vol_dial ? tr("SPDIF Vol:") + before : QString();
    vol_label->setText(caption + QString::number(volume) + after);
}

void Client_Settings_Air::inputChanged(int value)
{
    if (value == bluetooth_index) {
        qDebug() << "******* Client_Settings_Air::inputChanged(" << value << ") => BLUETOOTH ENABLE!";
        device->request_bluetooth_enable();
    }
    air->Input(value);
}

void Client_Settings_Air::dialValueChanged(int value)
{
    air->change_volume(dial_step(value, dial_last));
    dial_last = value;
    vol_label->setText("Volume: " + QString::number(air->get_volume()) + " / 100"); // not translated: meant
    // Where the slider moves, its slot runs, fences the volume and writes the read-out in its own form.
    vol_slider->setValue(air->get_volume());
}

void Client_Settings_Air::sliderValueChanged(int value)
{
    const int fenced = fenced_volume(value, slider_last);
    if (fenced != value)
        vol_slider->setSliderPosition(fenced); // comes back here at once, within the fence
    slider_last = fenced;
    air->set_volume(fenced);
    show_volume(air->get_volume(), " ", " / 100");
}

// Connected and without effect, which is meant.
void Client_Settings_Air::sliderPressed() {}

void Client_Settings_Air::beepClicked()
{
    air->Beep();
}

void Client_Settings_Air::lockToggled(bool state)
{
    air->lockToggled(state);
}

void Client_Settings_Air::muteToggled(bool state)
{
    toggle_timed_mute(state, air, air->mt, mute_timer, this);
}

void Client_Settings_Air::muteTimer()
{
    mute_button->setChecked(false);
    mute_timer = nullptr;
}

void Client_Settings_Air::bassClicked(int p)
{
    air->Bass(p);
}

void Client_Settings_Air::positionClicked(int p)
{
    air->Position(p);
}

void Client_Settings_Air::roomClicked(int p)
{
    air->Room(p);
}

void Client::show_air(Device_Desc *device)
{
    auto *air = static_cast<Virelo_Air *>(device->control);
    if (air_tab_index > 0) {
        tabs->setTabText(air_tab_index, device->name);
        tabs->setTabEnabled(air_tab_index, true);
        air_tab->refresh(air, device);
        tabs->repaint();
        tabs->setCurrentIndex(air_tab_index);
        return;
    }
    if (device->tab_index <= 0)
        device->tab_index = tabs->addTab(new Client_Settings_Air(this, air, device), device->name);
    tabs->setCurrentIndex(device->tab_index);
}
