// SPDX-License-Identifier: MIT
#include <QDial>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_unknown.h"
#include "settings/client_settings_group.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/group_world.h"

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

// What the controls of the tab do.
class tst_client_settings_group_slots : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void every_control_is_connected();
    void the_slider_sets_every_listed_speaker();
    void a_jump_to_100_sends_10_and_the_knob_stays_there();
    void the_dial_moves_the_volume_and_the_slider();
    void the_first_turn_of_the_dial_at_0();
    void the_dial_passes_its_seam();
    void a_long_turn_of_the_dial_is_pulled_back_by_the_fence();
    void the_read_out_loses_its_translation_at_the_first_change();
    void input_buttons_store_the_letter_in_the_sender_alone_data();
    void input_buttons_store_the_letter_in_the_sender_alone();
    void the_two_inputs_that_a_subwoofer_lacks_do_nothing();
    void each_input_slot_logs_its_name_and_state();
    void mute_reaches_every_listed_speaker();
    void mute_is_timed_by_the_sender_alone_data();
    void mute_is_timed_by_the_sender_alone();
    void a_timed_mute_ends_by_itself();
    void unmuting_by_hand_stops_the_timer();
    void without_group_or_sender_nothing_is_named_and_nothing_happens_data();
    void without_group_or_sender_nothing_is_named_and_nothing_happens();
    void a_sender_without_inputs_leaves_the_group_usable_data();
    void a_sender_without_inputs_leaves_the_group_usable();
    void a_change_of_sender_leaves_the_tab_with_the_one_before();

private:
    void make_tab();

    std::unique_ptr<Group_World> world;
    std::unique_ptr<Client_Settings_Group> tab;
};

void tst_client_settings_group_slots::init()
{
    tab.reset();
    world.reset();
    plattform->device_class = DEVICE_DESKTOP;
    plattform->desktop_width = 1920;
    world = std::make_unique<Group_World>();
    make_tab();
}

void tst_client_settings_group_slots::make_tab()
{
    tab = std::make_unique<Client_Settings_Group>(nullptr, &world->group);
    world->forget();
}

void tst_client_settings_group_slots::every_control_is_connected()
{
    Client_Settings_Group *t = tab.get();
    QVERIFY(disconnect(t->vol_dial, SIGNAL(valueChanged(int)), t, SLOT(dialValueChanged(int))));
    QVERIFY(disconnect(t->vol_slider, SIGNAL(valueChanged(int)), t, SLOT(sliderValueChanged(int))));
    QVERIFY(disconnect(t->source0_button, SIGNAL(toggled(bool)), t, SLOT(source0Toggled(bool))));
    QVERIFY(disconnect(t->source1_button, SIGNAL(toggled(bool)), t, SLOT(source1Toggled(bool))));
    QVERIFY(disconnect(t->source2_button, SIGNAL(toggled(bool)), t, SLOT(source2Toggled(bool))));
    QVERIFY(disconnect(t->source_auto_button, SIGNAL(toggled(bool)), t, SLOT(sourceAutoToggled(bool))));
    QVERIFY(disconnect(t->mute_button, SIGNAL(toggled(bool)), t, SLOT(muteToggled(bool))));
}

void tst_client_settings_group_slots::the_slider_sets_every_listed_speaker()
{
    tab->vol_slider->setValue(7);
    QCOMPARE(world->volumes(), (QList<int>{7, 7, 7}));
    QCOMPARE(world->group.group_volume, 7);
    QCOMPARE(tab->slider_last, 7);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 7 / 100"));
    QCOMPARE(tab->vol_dial->value(), 0);
}

void tst_client_settings_group_slots::a_jump_to_100_sends_10_and_the_knob_stays_there()
{
    QTest::keyClick(tab->vol_slider, Qt::Key_End);
    QCOMPARE(world->volumes(), (QList<int>{10, 10, 10}));
    QCOMPARE(world->kitchen.volumes, (QList<int>{10, 10})); // within the fence, and by the call that met it
    QCOMPARE(tab->vol_slider->value(), 10);
    QCOMPARE(tab->vol_slider->sliderPosition(), 10);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 10 / 100"));
    QTest::keyClick(tab->vol_slider, Qt::Key_End);
    QCOMPARE(world->volumes(), (QList<int>{20, 20, 20}));
}

void tst_client_settings_group_slots::the_dial_moves_the_volume_and_the_slider()
{
    tab->vol_dial->setValue(5);
    QCOMPARE(world->volumes(), (QList<int>{5, 5, 5}));
    QCOMPARE(tab->dial_last, 5);
    QCOMPARE(tab->vol_slider->value(), 5);
    QCOMPARE(tab->slider_last, 5);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 5 / 100"));
    tab->vol_dial->setValue(2);
    QCOMPARE(world->volumes(), (QList<int>{2, 2, 2}));
}

void tst_client_settings_group_slots::the_first_turn_of_the_dial_at_0()
{
    tab->vol_dial->setValue(20); // over a part of the dial: the step turns down
    QCOMPARE(world->volumes(), (QList<int>{0, 0, 0}));
    QCOMPARE(tab->vol_label->text(), QString("Volume: 0 / 100"));
    QCOMPARE(tab->dial_last, 20);
}

void tst_client_settings_group_slots::the_dial_passes_its_seam()
{
    tab->vol_dial->setValue(8);
    tab->vol_dial->setValue(48);
    QCOMPARE(world->group.group_volume, 0); // 10 down from 8
    tab->vol_dial->setValue(2);
    QCOMPARE(world->group.group_volume, 4);
    QCOMPARE(world->volumes(), (QList<int>{4, 4, 4}));
}

void tst_client_settings_group_slots::a_long_turn_of_the_dial_is_pulled_back_by_the_fence()
{
    tab->vol_dial->setValue(14);
    QCOMPARE(world->kitchen.volumes, (QList<int>{14, 10, 10}));
    QCOMPARE(world->volumes(), (QList<int>{10, 10, 10}));
    QCOMPARE(tab->vol_slider->sliderPosition(), 10);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 10 / 100"));
}

void tst_client_settings_group_slots::the_read_out_loses_its_translation_at_the_first_change()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    make_tab();
    const QString text = german.translate("Client_Settings_Group", "Volume: 0 / 100");
    QVERIFY(!text.isEmpty() && text != "Volume: 0 / 100");
    QCOMPARE(tab->vol_label->text(), text);
    tab->vol_slider->setValue(1);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 1 / 100"));
    tab->vol_dial->setValue(49);
    QCOMPARE(tab->vol_label->text(), QString("Volume: 0 / 100"));
}

void tst_client_settings_group_slots::input_buttons_store_the_letter_in_the_sender_alone_data()
{
    QTest::addColumn<bool>("by_subwoofer");
    QTest::addColumn<int>("button");
    QTest::addColumn<char>("letter");
    QTest::newRow("WiFi") << false << 0 << 'W';
    QTest::newRow("coax") << false << 1 << 'D';
    QTest::newRow("optical") << false << 2 << 'd';
    QTest::newRow("automatic") << false << 3 << 'A';
    QTest::newRow("WiFi, subwoofer") << true << 0 << 'W';
    QTest::newRow("coax, subwoofer") << true << 1 << 'D';
}

void tst_client_settings_group_slots::input_buttons_store_the_letter_in_the_sender_alone()
{
    QFETCH(bool, by_subwoofer);
    QFETCH(int, button);
    QFETCH(char, letter);
    world->kitchen.input = 'B';
    world->cellar.input = 'X';
    if (by_subwoofer)
        sender_device = world->record(1);
    make_tab();
    QTest::mouseClick(sources(*tab).at(button), Qt::LeftButton);
    QCOMPARE(world->kitchen.input, by_subwoofer ? 'B' : letter);
    QCOMPARE(world->cellar.input, by_subwoofer ? letter : 'X');
    QCOMPARE(world->stranger.input, 'W');
    QCOMPARE(world->kitchen.pending, by_subwoofer ? 0 : 1);
    QCOMPARE(world->cellar.pending, by_subwoofer ? 1 : 0);
    QCOMPARE(world->stranger.pending, 0);
}

void tst_client_settings_group_slots::the_two_inputs_that_a_subwoofer_lacks_do_nothing()
{
    sender_device = world->record(1);
    make_tab();
    for (const char *slot : {"source2Toggled", "sourceAutoToggled"})
        QVERIFY(QMetaObject::invokeMethod(tab.get(), slot, Q_ARG(bool, true)));
    QCOMPARE(world->cellar.input, 'W');
    QCOMPARE(world->cellar.pending, 0);
    QCOMPARE(world->kitchen.pending, 0);
}

void tst_client_settings_group_slots::each_input_slot_logs_its_name_and_state()
{
    for (const char *slot : {"source0Toggled", "source1Toggled", "source2Toggled", "sourceAutoToggled"}) {
        Log_Capture log;
        QVERIFY(QMetaObject::invokeMethod(tab.get(), slot, Q_ARG(bool, true)));
        world->kitchen.pending = 0;
        world->kitchen.input = '?';
        QVERIFY(QMetaObject::invokeMethod(tab.get(), slot, Q_ARG(bool, false)));
        QCOMPARE(world->kitchen.pending, 0); // the button that lost changes nothing
        QCOMPARE(world->kitchen.input, '?');
        const QString head = QString("Client_Settings_Group::") + slot;
        QCOMPARE(log.debug_lines(), (QStringList{head + "( true )", head + "( false )"}));
    }
}

void tst_client_settings_group_slots::mute_reaches_every_listed_speaker()
{
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE((QList<int>{world->kitchen.mute, world->cellar.mute, world->stranger.mute}),
             (QList<int>{1, 1, 1}));
    QVERIFY(!tab->mute_timer); // without a time it lasts until the user ends it
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE((QList<int>{world->kitchen.mute, world->cellar.mute, world->stranger.mute}),
             (QList<int>{0, 0, 0}));
    QCOMPARE(world->kitchen.mutes, (QStringList{"on", "off"}));
    QCOMPARE(world->cellar.mutes, (QStringList{"on", "off"}));
}

void tst_client_settings_group_slots::mute_is_timed_by_the_sender_alone_data()
{
    QTest::addColumn<bool>("by_subwoofer");
    QTest::addColumn<int>("seconds");
    QTest::newRow("full-range speaker") << false << 3;
    QTest::newRow("subwoofer") << true << 9;
}

void tst_client_settings_group_slots::mute_is_timed_by_the_sender_alone()
{
    QFETCH(bool, by_subwoofer);
    QFETCH(int, seconds);
    world->kitchen.mt = 3;
    world->cellar.mt = 9;
    world->stranger.mt = 27;
    if (by_subwoofer)
        sender_device = world->record(1);
    make_tab();
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(tab->mute_timer);
    QVERIFY(tab->mute_timer->isActive());
    QVERIFY(tab->mute_timer->isSingleShot());
    QCOMPARE(tab->mute_timer->interval(), 1000 * seconds);
    QCOMPARE(tab->mute_timer->parent(), tab.get());
}

void tst_client_settings_group_slots::a_timed_mute_ends_by_itself()
{
    world->kitchen.mt = 3;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    tab->mute_timer->setInterval(1); // counts anew
    QTRY_VERIFY(!tab->mute_button->isChecked());
    QVERIFY(!tab->mute_timer);
    QCOMPARE(world->kitchen.mutes, (QStringList{"on", "off"}));
    QCOMPARE(world->stranger.mutes, (QStringList{"on", "off"}));
}

void tst_client_settings_group_slots::unmuting_by_hand_stops_the_timer()
{
    world->kitchen.mt = 3;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    const QTimer *timer = tab->mute_timer;
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(!timer->isActive());
    QCOMPARE(tab->mute_timer, timer);
}

void tst_client_settings_group_slots::without_group_or_sender_nothing_is_named_and_nothing_happens_data()
{
    QTest::addColumn<bool>("with_group");
    QTest::addColumn<bool>("with_sender");
    QTest::newRow("neither") << false << false;
    QTest::newRow("no group") << false << true;
    QTest::newRow("no sender") << true << false;
}

void tst_client_settings_group_slots::without_group_or_sender_nothing_is_named_and_nothing_happens()
{
    QFETCH(bool, with_group);
    QFETCH(bool, with_sender);
    world->kitchen.mt = 3;
    if (!with_sender)
        sender_device = nullptr;
    tab = std::make_unique<Client_Settings_Group>(nullptr, with_group ? &world->group : nullptr);
    world->forget();
    QCOMPARE(text_at(tab->grid, 1, 1), QString("<b></b>"));
    QCOMPARE(text_at(tab->grid, 2, 0), QString("Selected Input (at ):"));
    QCOMPARE(checked(*tab), (QList<bool>{false, false, false, false}));

    tab->vol_slider->setValue(5);
    tab->vol_dial->setValue(5);
    for (QPushButton *button : sources(*tab))
        QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QVERIFY(!tab->mute_timer);
    QCOMPARE(world->pending(), 0);
    QCOMPARE(world->volumes(), (QList<int>{33, 42, 0}));
    QCOMPARE(world->kitchen.mutes, QStringList());
    QCOMPARE(world->kitchen.input, 'W');
    QCOMPARE(tab->vol_label->text(), QString("Volume: 0 / 100"));
}

void tst_client_settings_group_slots::a_sender_without_inputs_leaves_the_group_usable_data()
{
    QTest::addColumn<bool>("identified");
    QTest::newRow("of unknown type") << true;
    QTest::newRow("not identified yet") << false;
}

void tst_client_settings_group_slots::a_sender_without_inputs_leaves_the_group_usable()
{
    QFETCH(bool, identified);
    Virelo_Unknown unknown(255, QString(), "Late");
    unknown.mt = 3;
    sender_device = world->record(3);
    sender_device->control = identified ? &unknown : nullptr;
    make_tab();
    QCOMPARE(text_at(tab->grid, 2, 0), QString("Selected Input (at Late):"));
    QCOMPARE(checked(*tab), (QList<bool>{false, false, false, false}));
    for (QPushButton *button : sources(*tab))
        QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(world->kitchen.pending + world->cellar.pending, 0);
    tab->vol_slider->setValue(5);
    QCOMPARE(world->volumes(), (QList<int>{5, 5, 5}));
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(world->kitchen.mute, 1);
    QVERIFY(!tab->mute_timer);
}

void tst_client_settings_group_slots::a_change_of_sender_leaves_the_tab_with_the_one_before()
{
    world->kitchen.mt = 3;
    sender_device = world->record(1);
    QTest::mouseClick(tab->source1_button, Qt::LeftButton);
    QCOMPARE(world->kitchen.input, 'D');
    QCOMPARE(world->cellar.input, 'W');
    QTest::mouseClick(tab->mute_button, Qt::LeftButton);
    QCOMPARE(tab->mute_timer->interval(), 3000);
}

QTEST_MAIN(tst_client_settings_group_slots)
#include "tst_client_settings_group_slots.moc"
