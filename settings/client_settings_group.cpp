// SPDX-License-Identifier: MIT
#include "settings/client_settings_group.h"

#include <QDebug>
#include <QDial>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "app/client.h"
#include "app/globals.h"
#include "control/virelo_air.h"
#include "control/virelo_group.h"
#include "control/virelo_sub.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/volume_steps.h"

Client_Settings_Group::Client_Settings_Group(Client *client, Virelo_Group *group)
    : Client_Settings(client, group)
    , group_control(sender_device ? group : nullptr) // a group without a sender is none to operate
    , grid(new QGridLayout)
{
    take_sender();
    grid->addWidget(make_banner("Deko_Palette"), 0, 0, 1, 6);
    build_names();
    build_sources();
    build_volume();

    // Last, so that nothing set above is taken for a change by the user.
    connect_controls(client);
    setLayout(grid);
    order_tabs(grid);
}

void Client_Settings_Group::take_sender()
{
    Virelos *sender = group_control ? sender_device->control : nullptr;
    if (!sender)
        return;
    is_sub = sender->type == TYPE_SUB;
    if (is_sub) {
        master_sub = static_cast<Virelo_Sub *>(sender);
        master_input = master_sub->input;
    } else {
        // A sender of unknown type has no input to choose.
        master_air = qobject_cast<Virelo_Air *>(sender);
        master_input = master_air ? master_air->input : '\0';
    }
}

void Client_Settings_Group::build_names()
{
    const QString group_name = group_control ? group_control->name : QString();
    const QString sender_name = group_control ? sender_device->name : QString();
    add_caption(grid, 1, tr("Selected Group:"));
    grid->addWidget(new QLabel(bold(group_name)), 1, 1);
    auto *input_label = new QLabel(tr("Selected Input") + " (at " + sender_name + "):");
    input_label->setTextFormat(Qt::PlainText);
    grid->addWidget(input_label, 2, 0, 1, 2, Qt::AlignLeft);
}

void Client_Settings_Group::build_sources()
{
    const auto make_source = [this](const QString &text, char letter) {
        QPushButton *button = make_checkable(text);
        button->setAutoExclusive(true);
        button->setChecked(master_input == letter);
        return button;
    };
    source0_button = make_source(tr("WiFi"), 'W');
    source1_button = make_source(tr("Coax SPDIF"), 'D');
    source2_button = make_source(tr("Optical SPDIF"), 'd');
    source_auto_button = make_source(tr("Automatic"), 'A');
    source2_button->setEnabled(!is_sub);
    source_auto_button->setEnabled(!is_sub);

    int column = 0;
    for (QPushButton *button : {source0_button, source1_button, source2_button}) {
        button->setSizePolicy(button->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        grid->addWidget(button, 3, column++, 2, 1);
    }
    grid->addWidget(source_auto_button, 5, 0, 1, 3);
}

void Client_Settings_Group::build_volume()
{
    vol_dial = make_volume_dial();
    vol_slider = make_slider(0, volume_max, 10);
    quit_button = new QPushButton(tr("Quit"));
    mute_button = make_checkable(tr("Mute"));
    const QString volume = tr("Volume: 0 / 100");
    vol_label = new QLabel(volume);
    // Neither has a caption, and the read-out changes.
    for (QWidget *control : {static_cast<QWidget *>(vol_dial), static_cast<QWidget *>(vol_slider)})
        control->setAccessibleName(volume.section(':', 0, 0));
    grid->addWidget(vol_dial, 1, 3, 6, 3);
    grid->addWidget(vol_slider, 8, 3, 1, 3);
    grid->addWidget(quit_button, 9, 0);
    grid->addWidget(mute_button, 9, 3);
    grid->addWidget(vol_label, 9, 4, 1, 3, Qt::AlignCenter);
}

void Client_Settings_Group::connect_controls(Client *client)
{
    connect(vol_dial, SIGNAL(valueChanged(int)), this, SLOT(dialValueChanged(int)));
    connect(vol_slider, SIGNAL(valueChanged(int)), this, SLOT(sliderValueChanged(int)));
    connect(source0_button, SIGNAL(toggled(bool)), this, SLOT(source0Toggled(bool)));
    connect(source1_button, SIGNAL(toggled(bool)), this, SLOT(source1Toggled(bool)));
    connect(source2_button, SIGNAL(toggled(bool)), this, SLOT(source2Toggled(bool)));
    connect(source_auto_button, SIGNAL(toggled(bool)), this, SLOT(sourceAutoToggled(bool)));
    connect(mute_button, SIGNAL(toggled(bool)), this, SLOT(muteToggled(bool)));
    if (client)
        connect(quit_button, SIGNAL(clicked()), client, SLOT(close()));
}

void Client_Settings_Group::show_volume()
{
    vol_label->setText("Volume: " + QString::number(group_control->get_volume()) +
                       " / 100"); // not translated: meant
}

void Client_Settings_Group::dialValueChanged(int value)
{
    if (!group_control)
        return;
    group_control->change_volume(dial_step(value, dial_last));
    dial_last = value;
    show_volume();
    // Where the slider moves, its slot runs and fences the volume.
    vol_slider->setValue(group_control->get_volume());
}

void Client_Settings_Group::sliderValueChanged(int value)
{
    if (!group_control)
        return;
    const int fenced = fenced_volume(value, slider_last);
    if (fenced != value)
        vol_slider->setSliderPosition(fenced); // comes back here at once, within the fence
    slider_last = fenced;
    group_control->set_volume(fenced);
    show_volume();
}

// Stores the letter in the sender's wanted input. Of exclusive buttons the one that lost reports false, and
// that does nothing; a subwoofer has no input for two of them.
void Client_Settings_Group::choose_input(const char *log_text, bool state, char letter, bool for_sub)
{
    qDebug() << log_text << (state ? "true" : "false") << ")";
    if (!state)
        return;
    if (master_air) {
        master_air->input = letter;
        master_air->wake();
    } else if (master_sub && for_sub) {
        master_sub->input = letter;
        master_sub->wake();
    }
}

void Client_Settings_Group::source0Toggled(bool state)
{
    choose_input("Client_Settings_Group::source0Toggled(", state, 'W', true);
}

void Client_Settings_Group::source1Toggled(bool state)
{
    choose_input("Client_Settings_Group::source1Toggled(", state, 'D', true);
}

void Client_Settings_Group::source2Toggled(bool state)
{
    choose_input("Client_Settings_Group::source2Toggled(", state, 'd', false);
}

void Client_Settings_Group::sourceAutoToggled(bool state)
{
    choose_input("Client_Settings_Group::sourceAutoToggled(", state, 'A', false);
}

void Client_Settings_Group::muteToggled(bool state)
{
    if (!group_control)
        return;
    const Virelos *sender = is_sub ? static_cast<Virelos *>(master_sub) : master_air;
    toggle_timed_mute(state, group_control, sender ? sender->mt : 0, mute_timer, this);
}

void Client_Settings_Group::muteTimer()
{
    mute_button->setChecked(false);
    mute_timer = nullptr;
}

void Client::show_group(Device_Desc *device)
{
    if (!device) {
        tabs->setCurrentIndex(tabs->addTab(new Client_Settings_Group(this, nullptr), "GROUP"));
        return;
    }
    if (device->tab_index <= 0) {
        auto *group = static_cast<Virelo_Group *>(device->control);
        device->tab_index = tabs->addTab(new Client_Settings_Group(this, group), device->groupname);
    }
    tabs->setCurrentIndex(device->tab_index);
}
