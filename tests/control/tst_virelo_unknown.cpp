// SPDX-License-Identifier: MIT
#include <QTest>

#include "control/virelo_unknown.h"
#include "tests/control/control_fixture.h"

// A speaker of unknown type keeps what it is told and sends nothing.
class tst_Virelo_Unknown : public QObject, private Control_Holder<Virelo_Unknown>
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        begin();
        make(255, "Attic");
    }
    void cleanup()
    {
        QCOMPARE(speaker->host_connections().accepted, 0);
        end();
    }

    void the_constructor_stores_its_arguments_and_connects_nowhere();
    void slots_stand_in_their_order();
    void volume_operations_log_and_change_nothing();
    void a_pass_logs_and_serves_nothing();
    void mute_and_lock_are_kept();
    void direct_commands_do_nothing();
};

void tst_Virelo_Unknown::the_constructor_stores_its_arguments_and_connects_nowhere()
{
    QCOMPARE(control->type, 255);
    QCOMPARE(control->host, own_loopback(1));
    QCOMPARE(control->name, QString("Attic"));
    QVERIFY(!control->link);
    QVERIFY(!control->isRunning());
    QCOMPARE(log->debug_lines(), QStringList("Virelo_Unknown::Virelo_Unknown()"));
}

void tst_Virelo_Unknown::slots_stand_in_their_order()
{
    QCOMPARE(own_slots(Virelo_Unknown::staticMetaObject),
             (QStringList{"set_volume(int)", "change_volume(int)", "get_volume()"}));
}

void tst_Virelo_Unknown::volume_operations_log_and_change_nothing()
{
    control->set_volume(37);
    control->change_volume(5);
    QCOMPARE(control->get_volume(), 0);
    QCOMPARE(control->pending, 0);
    QCOMPARE(log->debug_lines().mid(1), (QStringList{"set_volume()", "change_volume()"}));
}

void tst_Virelo_Unknown::a_pass_logs_and_serves_nothing()
{
    control->wake();
    control->transmit_function();
    QCOMPARE(control->pending, 1);
    QCOMPARE(log->debug_lines().last(), QString("transmit_function()"));
}

void tst_Virelo_Unknown::mute_and_lock_are_kept()
{
    control->muteOn();
    control->lockOn();
    QCOMPARE(control->mute, 1);
    QCOMPARE(control->lock, 1);
    control->muteOff();
    control->lockOff();
    QCOMPARE(control->mute, 0);
    QCOMPARE(control->lock, 0);
    QCOMPARE(control->pending, 4);
}

void tst_Virelo_Unknown::direct_commands_do_nothing()
{
    control->standby();
    control->powerOn();
    control->flash();
    control->terminate();
}

QTEST_GUILESS_MAIN(tst_Virelo_Unknown)
#include "tst_virelo_unknown.moc"
