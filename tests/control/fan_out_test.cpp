// SPDX-License-Identifier: MIT
#include "tests/control/fan_out_test.h"

#include <QMetaObject>
#include <QTest>
#include <vector>

#include "app/globals.h"
#include "device/device_desc.h"
#include "tests/control/control_fixture.h"
#include "tests/control/volume_checks.h"
#include "tests/fakes/log_capture.h"

namespace
{
// Notes down what it is asked to do, with its place among the listed speakers.
class Noting_Control : public Virelos
{
public:
    Noting_Control(int place, QStringList &notes)
        : Virelos(13, QString(), QString())
        , place(place)
        , notes(notes)
    {
    }

    void set_volume(int vol) override { note(QString("volume %1").arg(vol)); }
    void change_volume(int) override { note("change"); }
    int get_volume() override { return 0; }
    void MUTE_ON() override { note("mute"); }
    void MUTE_OFF() override { note("unmute"); }

private:
    void note(const QString &what) { notes.append(QString("%1: %2").arg(place).arg(what)); }

    int place;
    QStringList &notes;
};

// Speakers in device_list as long as it lives.
class Listed_Speakers
{
public:
    explicit Listed_Speakers(int count)
    {
        for (int i = 1; i <= count; ++i)
            add(new Noting_Control(i, notes));
    }

    ~Listed_Speakers()
    {
        qDeleteAll(device_list);
        device_list.clear();
    }

    void add(Virelos *control)
    {
        auto *record = new Device_Desc(nullptr, false, QString());
        record->control = control;
        controls.emplace_back(control);
        device_list.append(record);
    }

    QStringList notes;

private:
    std::vector<std::unique_ptr<Virelos>> controls;
};
} // namespace

void Fan_Out_Test::init()
{
    control = make();
}

void Fan_Out_Test::cleanup()
{
    control.reset();
}

void Fan_Out_Test::slots_stand_in_their_order()
{
    QCOMPARE(own_slots(*control->metaObject()),
             (QStringList{"set_volume(int)", "change_volume(int)", "get_volume()", "muteOn()", "muteOff()"}));
}

void Fan_Out_Test::every_operation_reaches_all_in_the_order_of_the_list()
{
    Listed_Speakers speakers(3);
    control->set_volume(37);
    control->MUTE_ON();
    control->MUTE_OFF();
    QCOMPARE(speakers.notes, (QStringList{"1: volume 37", "2: volume 37", "3: volume 37", "1: mute",
                                          "2: mute", "3: mute", "1: unmute", "2: unmute", "3: unmute"}));
}

void Fan_Out_Test::a_volume_is_clamped_before_it_is_passed_on_data()
{
    volumes_to_clamp();
}

void Fan_Out_Test::a_volume_is_clamped_before_it_is_passed_on()
{
    QFETCH(int, asked);
    QFETCH(int, stored);
    Listed_Speakers speakers(1);
    control->set_volume(asked);
    QCOMPARE(own_volume(*control), stored);
    QCOMPARE(control->get_volume(), stored);
    QCOMPARE(speakers.notes, QStringList(QString("1: volume %1").arg(stored)));
}

void Fan_Out_Test::a_change_is_passed_on_as_an_absolute_volume_data()
{
    volume_changes_to_clamp();
}

void Fan_Out_Test::a_change_is_passed_on_as_an_absolute_volume()
{
    QFETCH(int, before);
    QFETCH(int, difference);
    QFETCH(int, after);
    Listed_Speakers speakers(2);
    own_volume(*control) = before;
    control->change_volume(difference);
    QCOMPARE(own_volume(*control), after);
    QCOMPARE(speakers.notes,
             (QStringList{QString("1: volume %1").arg(after), QString("2: volume %1").arg(after)}));
}

void Fan_Out_Test::an_empty_list_stores_the_volume()
{
    QVERIFY(device_list.isEmpty());
    control->set_volume(5);
    QCOMPARE(control->get_volume(), 5);
    control->change_volume(-10);
    QCOMPARE(control->get_volume(), 0);
    control->MUTE_ON();
    control->MUTE_OFF();
}

void Fan_Out_Test::a_record_without_control_is_passed_over()
{
    Listed_Speakers speakers(1);
    speakers.add(nullptr);
    speakers.add(new Noting_Control(3, speakers.notes));
    control->set_volume(5);
    control->MUTE_ON();
    QCOMPARE(speakers.notes, (QStringList{"1: volume 5", "3: volume 5", "1: mute", "3: mute"}));
}

void Fan_Out_Test::slots_call_the_operations()
{
    Listed_Speakers speakers(1);
    Log_Capture log;
    for (const char *slot : {"muteOn", "muteOff"})
        QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection));
    for (bool checked : {true, false})
        QVERIFY(QMetaObject::invokeMethod(control.get(), "muteToggled", Qt::DirectConnection,
                                          Q_ARG(bool, checked)));
    QCOMPARE(speakers.notes, (QStringList{"1: mute", "1: unmute", "1: mute", "1: unmute"}));
    const QString class_name = control->metaObject()->className();
    const QStringList once = {class_name + "::MUTE_ON()", class_name + "::MUTE_OFF()"};
    QCOMPARE(log.debug_lines(), once + once);
    QCOMPARE(control->mute, 0);
}

// A member whose slot changes the list must not disturb the walk.
void Fan_Out_Test::a_list_that_changes_meanwhile_is_walked_as_it_was()
{
    struct Clearing_Control : Noting_Control {
        using Noting_Control::Noting_Control;
        void set_volume(int vol) override
        {
            Noting_Control::set_volume(vol);
            device_list.clear();
        }
    };
    Listed_Speakers speakers(0);
    speakers.add(new Clearing_Control(1, speakers.notes));
    speakers.add(new Noting_Control(2, speakers.notes));
    const QList<Device_Desc *> records = device_list;
    control->set_volume(5);
    QCOMPARE(speakers.notes, (QStringList{"1: volume 5", "2: volume 5"}));
    qDeleteAll(records);
}

void Fan_Out_Test::a_pass_serves_all_wakes()
{
    control->wake();
    control->wake();
    control->transmit_function();
    QCOMPARE(control->pending, 0);
}
