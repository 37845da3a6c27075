// SPDX-License-Identifier: MIT
#include <QTest>

#include "control/virelo_group.h"
#include "tests/control/control_fixture.h"
#include "tests/control/fan_out_checks.h"

// What is asked of a group reaches every listed speaker.
class tst_Virelo_Group : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void the_constructor_stores_its_arguments();
    void slots_stand_in_their_order();
    void every_operation_reaches_all_in_the_order_of_the_list();
    void a_volume_is_clamped_before_it_is_passed_on_data();
    void a_volume_is_clamped_before_it_is_passed_on();
    void a_change_is_passed_on_as_an_absolute_volume_data();
    void a_change_is_passed_on_as_an_absolute_volume();
    void an_empty_list_stores_the_volume();
    void a_record_without_control_is_passed_over();
    void slots_call_the_operations();
    void a_list_that_changes_meanwhile_is_walked_as_it_was();
    void a_pass_serves_all_wakes();
};

namespace
{
struct Checked_Control {
    Virelo_Group control{"Home"};
    Fan_Out_Checks<Virelo_Group> checks{control, &Virelo_Group::group_volume, "Virelo_Group"};

    Fan_Out_Checks<Virelo_Group> *operator->() { return &checks; }
};
} // namespace

void tst_Virelo_Group::the_constructor_stores_its_arguments()
{
    const Virelo_Group control("Home");

    QCOMPARE(control.host, QString());
    QCOMPARE(control.name, QString("Home"));
    QCOMPARE(control.group_volume, 0);
    QVERIFY(!control.link);
    QVERIFY(!control.isRunning());
}

void tst_Virelo_Group::slots_stand_in_their_order()
{
    QCOMPARE(own_slots(Virelo_Group::staticMetaObject), Fan_Out_Checks<Virelo_Group>::slot_order());
}

void tst_Virelo_Group::every_operation_reaches_all_in_the_order_of_the_list()
{
    Checked_Control()->every_operation_reaches_all_in_the_order_of_the_list();
}

void tst_Virelo_Group::a_volume_is_clamped_before_it_is_passed_on_data()
{
    Fan_Out_Checks<Virelo_Group>::volumes();
}

void tst_Virelo_Group::a_volume_is_clamped_before_it_is_passed_on()
{
    QFETCH(int, asked);
    QFETCH(int, stored);
    Checked_Control()->a_volume_is_clamped_before_it_is_passed_on(asked, stored);
}

void tst_Virelo_Group::a_change_is_passed_on_as_an_absolute_volume_data()
{
    Fan_Out_Checks<Virelo_Group>::changes();
}

void tst_Virelo_Group::a_change_is_passed_on_as_an_absolute_volume()
{
    QFETCH(int, before);
    QFETCH(int, difference);
    QFETCH(int, after);
    Checked_Control()->a_change_is_passed_on_as_an_absolute_volume(before, difference, after);
}

void tst_Virelo_Group::an_empty_list_stores_the_volume()
{
    Checked_Control()->an_empty_list_stores_the_volume();
}

void tst_Virelo_Group::a_record_without_control_is_passed_over()
{
    Checked_Control()->a_record_without_control_is_passed_over();
}

void tst_Virelo_Group::slots_call_the_operations()
{
    Checked_Control()->slots_call_the_operations();
}

void tst_Virelo_Group::a_list_that_changes_meanwhile_is_walked_as_it_was()
{
    Checked_Control()->a_list_that_changes_meanwhile_is_walked_as_it_was();
}

void tst_Virelo_Group::a_pass_serves_all_wakes()
{
    Checked_Control()->a_pass_serves_all_wakes();
}

QTEST_GUILESS_MAIN(tst_Virelo_Group)
#include "tst_virelo_group.moc"
