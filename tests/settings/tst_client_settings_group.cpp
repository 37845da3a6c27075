// SPDX-License-Identifier: MIT
#include <QDial>
#include <QGridLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "settings/client_settings_group.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/group_world.h"
#include "tests/settings/marking_translator.h"

namespace
{
QList<QPushButton *> sources(const Client_Settings_Group &tab)
{
    return {tab.source0_button, tab.source1_button, tab.source2_button, tab.source_auto_button};
}

QList<bool> checked(const Client_Settings_Group &tab)
{
    QList<bool> result;
    for (const QPushButton *button : sources(tab))
        result.append(button->isChecked());
    return result;
}
} // namespace

// How the tab is built; what it does is told in tst_client_settings_group_slots.
class tst_client_settings_group : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void the_banner_is_the_palette();
    void group_and_sender_are_named();
    void what_looks_like_markup_stands_as_it_is();
    void slider_and_dial_are_set_up_for_a_volume();
    void volume_and_mute_start_at_nothing_whatever_the_speakers_have();
    void input_buttons_are_exclusive_and_the_upper_ones_grow();
    void the_senders_letter_checks_its_button_data();
    void the_senders_letter_checks_its_button();
    void a_subwoofer_as_sender_has_two_inputs_data();
    void a_subwoofer_as_sender_has_two_inputs();
    void construction_asks_nothing_of_any_speaker();
    void texts_are_translated_in_the_context_of_the_class();
    void the_slots_stand_in_order();

private:
    void make_tab();

    std::unique_ptr<Group_World> world;
    std::unique_ptr<Client_Settings_Group> tab;
};

void tst_client_settings_group::init()
{
    tab.reset();
    world.reset();
    plattform->device_class = DEVICE_DESKTOP;
    plattform->desktop_width = 1920;
    world = std::make_unique<Group_World>();
    make_tab();
}

void tst_client_settings_group::make_tab()
{
    tab = std::make_unique<Client_Settings_Group>(nullptr, &world->group);
    world->forget();
}

void tst_client_settings_group::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_settings_group::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    make_tab();
    QGridLayout *grid = tab->grid;
    QCOMPARE(tab->layout(), grid);
    QLabel *banner = label_at(grid, 0, 0);
    QVERIFY(qobject_cast<RZPixmapLabel *>(banner));
    QCOMPARE(place_of(grid, banner), (QList<int>{0, 0, 1, 6}));
    QCOMPARE(place_of(grid, label_at(grid, 1, 0)), (QList<int>{1, 0, 1, 1}));
    QCOMPARE(alignment_of(grid, label_at(grid, 1, 0)), Qt::AlignRight);
    QCOMPARE(place_of(grid, label_at(grid, 1, 1)), (QList<int>{1, 1, 1, 1}));
    QCOMPARE(place_of(grid, label_at(grid, 2, 0)), (QList<int>{2, 0, 1, 2}));
    QCOMPARE(alignment_of(grid, label_at(grid, 2, 0)), Qt::AlignLeft);
    QCOMPARE(place_of(grid, tab->source0_button), (QList<int>{3, 0, 2, 1}));
    QCOMPARE(place_of(grid, tab->source1_button), (QList<int>{3, 1, 2, 1}));
    QCOMPARE(place_of(grid, tab->source2_button), (QList<int>{3, 2, 2, 1}));
    QCOMPARE(place_of(grid, tab->source_auto_button), (QList<int>{5, 0, 1, 3}));
    QCOMPARE(place_of(grid, tab->vol_dial), (QList<int>{1, 3, 6, 3}));
    QCOMPARE(place_of(grid, tab->vol_slider), (QList<int>{8, 3, 1, 3}));
    QCOMPARE(place_of(grid, tab->quit_button), (QList<int>{9, 0, 1, 1}));
    QCOMPARE(place_of(grid, tab->mute_button), (QList<int>{9, 3, 1, 1}));
    QCOMPARE(place_of(grid, tab->vol_label), (QList<int>{9, 4, 1, 3}));
    QCOMPARE(alignment_of(grid, tab->vol_label), Qt::AlignCenter);
    QCOMPARE(grid->count(), 13);
}

void tst_client_settings_group::the_banner_is_the_palette()
{
    const auto picture = [this] {
        make_tab();
        return qobject_cast<RZPixmapLabel *>(label_at(tab->grid, 0, 0))->source_pixmap.toImage();
    };
    QCOMPARE(picture(), QPixmap(":/GRAFX/Deko_Palette_640.png").toImage());
    plattform->desktop_width = 2001;
    QCOMPARE(picture(), QPixmap(":/GRAFX/Deko_Palette_2k.png").toImage());
}

void tst_client_settings_group::group_and_sender_are_named()
{
    QCOMPARE(text_at(tab->grid, 1, 0), QString("Selected Group:"));
    QCOMPARE(text_at(tab->grid, 1, 1), QString("<b>Party</b>"));
    QCOMPARE(text_at(tab->grid, 2, 0), QString("Selected Input (at Kitchen left):"));
    QCOMPARE(tab->source0_button->text(), QString("WiFi"));
    QCOMPARE(tab->source1_button->text(), QString("Coax SPDIF"));
    QCOMPARE(tab->source2_button->text(), QString("Optical SPDIF"));
    QCOMPARE(tab->source_auto_button->text(), QString("Automatic"));
    QCOMPARE(tab->quit_button->text(), QString("Quit"));
    QCOMPARE(tab->mute_button->text(), QString("Mute"));
    QCOMPARE(tab->vol_label->text(), QString("Volume: 0 / 100"));
    QCOMPARE(tab->control, &world->group);
    QCOMPARE(tab->group_control, &world->group);
    QCOMPARE(tab->master_air, &world->kitchen);
    QVERIFY(!tab->master_sub);
    QVERIFY(!tab->is_sub);
    QCOMPARE(tab->master_input, 'W');
}

void tst_client_settings_group::what_looks_like_markup_stands_as_it_is()
{
    world->group.name = "<i>Party</i>";
    make_tab();
    QCOMPARE(text_at(tab->grid, 1, 1), QString("<b>&lt;i&gt;Party&lt;/i&gt;</b>"));
    QCOMPARE(label_at(tab->grid, 2, 0)->textFormat(), Qt::PlainText);
}

void tst_client_settings_group::slider_and_dial_are_set_up_for_a_volume()
{
    QCOMPARE(tab->vol_slider->orientation(), Qt::Horizontal);
    QCOMPARE(tab->vol_slider->minimum(), 0);
    QCOMPARE(tab->vol_slider->maximum(), 100);
    QCOMPARE(tab->vol_slider->singleStep(), 1);
    QCOMPARE(tab->vol_slider->pageStep(), 10);
    QVERIFY(tab->vol_slider->hasTracking());
    QCOMPARE(tab->vol_slider->tickInterval(), 10);
    QCOMPARE(tab->vol_slider->tickPosition(), QSlider::TicksBothSides);
    QCOMPARE(tab->vol_dial->minimum(), 0);
    QCOMPARE(tab->vol_dial->maximum(), 50);
    QVERIFY(tab->vol_dial->wrapping());
    QVERIFY(tab->vol_dial->hasTracking());
}

void tst_client_settings_group::volume_and_mute_start_at_nothing_whatever_the_speakers_have()
{
    world->kitchen.mute = world->cellar.mute = 1;
    world->group.group_volume = 70;
    make_tab();
    QCOMPARE(tab->vol_slider->value(), 0);
    QCOMPARE(tab->vol_dial->value(), 0);
    QCOMPARE(tab->slider_last, 0);
    QCOMPARE(tab->dial_last, 0);
    QCOMPARE(tab->dial_spare, 0);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 0 / 100"));
    QVERIFY(tab->mute_button->isCheckable());
    QVERIFY(!tab->mute_button->isChecked());
    QVERIFY(!tab->mute_timer);
}

void tst_client_settings_group::input_buttons_are_exclusive_and_the_upper_ones_grow()
{
    for (const QPushButton *button : sources(*tab)) {
        QVERIFY(button->isCheckable());
        QVERIFY(button->autoExclusive());
    }
    for (QPushButton *button : sources(*tab).mid(0, 3))
        QCOMPARE(button->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(tab->source_auto_button->sizePolicy().verticalPolicy(),
             QPushButton().sizePolicy().verticalPolicy());
    for (QPushButton *button : sources(*tab)) {
        button->click();
        QCOMPARE(checked(*tab).count(true), 1);
        QVERIFY(button->isChecked());
    }
}

void tst_client_settings_group::the_senders_letter_checks_its_button_data()
{
    QTest::addColumn<char>("letter");
    QTest::addColumn<int>("button");
    QTest::newRow("W") << 'W' << 0;
    QTest::newRow("D") << 'D' << 1;
    QTest::newRow("d") << 'd' << 2;
    QTest::newRow("A") << 'A' << 3;
    QTest::newRow("Bluetooth") << 'B' << -1;
    QTest::newRow("unknown") << '?' << -1;
    QTest::newRow("never answered") << '\0' << -1;
}

void tst_client_settings_group::the_senders_letter_checks_its_button()
{
    QFETCH(char, letter);
    QFETCH(int, button);
    world->kitchen.input = letter;
    make_tab();
    QCOMPARE(tab->master_input, letter);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(sources(*tab).at(i)->isChecked(), i == button);
        QVERIFY(sources(*tab).at(i)->isEnabled());
    }
}

void tst_client_settings_group::a_subwoofer_as_sender_has_two_inputs_data()
{
    QTest::addColumn<char>("letter");
    QTest::addColumn<int>("button");
    QTest::newRow("W") << 'W' << 0;
    QTest::newRow("D") << 'D' << 1;
    QTest::newRow("LFE") << 'C' << -1;
}

void tst_client_settings_group::a_subwoofer_as_sender_has_two_inputs()
{
    QFETCH(char, letter);
    QFETCH(int, button);
    sender_device = world->record(1);
    world->cellar.input = letter;
    make_tab();
    QVERIFY(tab->is_sub);
    QCOMPARE(tab->master_sub, &world->cellar);
    QVERIFY(!tab->master_air);
    QCOMPARE(text_at(tab->grid, 2, 0), QString("Selected Input (at Cellar):"));
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(sources(*tab).at(i)->isChecked(), i == button);
        QCOMPARE(sources(*tab).at(i)->isEnabled(), i < 2);
    }
}

void tst_client_settings_group::construction_asks_nothing_of_any_speaker()
{
    world->forget();
    const Client_Settings_Group another(nullptr, &world->group);
    QCOMPARE(world->pending(), 0);
    QCOMPARE(world->volumes(), (QList<int>{33, 42, 0}));
}

void tst_client_settings_group::texts_are_translated_in_the_context_of_the_class()
{
    Marking_Translator translator("Client_Settings_Group");
    QCoreApplication::installTranslator(&translator);
    make_tab();
    QCOMPARE(text_at(tab->grid, 1, 0), QString("#Selected Group:"));
    QCOMPARE(text_at(tab->grid, 1, 1), QString("<b>Party</b>"));
    QCOMPARE(text_at(tab->grid, 2, 0), QString("#Selected Input (at Kitchen left):"));
    for (const QPushButton *button : sources(*tab) + QList<QPushButton *>{tab->quit_button, tab->mute_button})
        QVERIFY2(button->text().startsWith('#'), qPrintable(button->text()));
    QCOMPARE(tab->vol_label->text(), QString("#Volume: 0 / 100"));
}

void tst_client_settings_group::the_slots_stand_in_order()
{
    const QMetaObject &meta = Client_Settings_Group::staticMetaObject;
    QStringList slot_names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(index).access(), QMetaMethod::Private);
        slot_names.append(meta.method(index).methodSignature());
    }
    QCOMPARE(slot_names, (QStringList{"dialValueChanged(int)", "sliderValueChanged(int)",
                                      "source0Toggled(bool)", "source1Toggled(bool)", "source2Toggled(bool)",
                                      "sourceAutoToggled(bool)", "muteToggled(bool)", "muteTimer()"}));
}

QTEST_MAIN(tst_client_settings_group)
#include "tst_client_settings_group.moc"
