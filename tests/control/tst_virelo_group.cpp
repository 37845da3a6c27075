// SPDX-License-Identifier: MIT
#include <QTest>

#include "control/virelo_group.h"
#include "tests/control/fan_out_test.h"

// What is asked of a group reaches every listed speaker.
class tst_Virelo_Group : public Fan_Out_Test
{
    Q_OBJECT

private:
    std::unique_ptr<Virelos> make() const override { return std::make_unique<Virelo_Group>("Home"); }
    int &own_volume(Virelos &control) const override
    {
        return static_cast<Virelo_Group &>(control).group_volume;
    }

private Q_SLOTS:
    void the_constructor_stores_its_arguments();
};

void tst_Virelo_Group::the_constructor_stores_its_arguments()
{
    const Virelo_Group control("Home");
    QCOMPARE(control.type, 0);
    QCOMPARE(control.host, QString());
    QCOMPARE(control.name, QString("Home"));
    QCOMPARE(control.group_volume, 0);
    QVERIFY(!control.link);
    QVERIFY(!control.isRunning());
}

QTEST_GUILESS_MAIN(tst_Virelo_Group)
#include "tst_virelo_group.moc"
