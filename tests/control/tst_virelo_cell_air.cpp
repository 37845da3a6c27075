// SPDX-License-Identifier: MIT
#include <QTest>
#include <type_traits>

#include "control/virelo_cell_air.h"
#include "tests/control/control_fixture.h"

namespace
{
// With what the class leaves open.
class Complete_Cell_Air : public Virelo_Cell_Air
{
public:
    using Virelo_Cell_Air::Virelo_Cell_Air;

    void set_volume(int) override {}
    void change_volume(int) override {}
    int get_volume() override { return 0; }
};
} // namespace

class tst_Virelo_Cell_Air : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void the_class_is_abstract_and_adds_no_slots();
    void the_constructor_stores_its_arguments_and_clears_its_numbers();
};

void tst_Virelo_Cell_Air::the_class_is_abstract_and_adds_no_slots()
{
    QVERIFY(std::is_abstract_v<Virelo_Cell_Air>);
    QCOMPARE(own_slots(Virelo_Cell_Air::staticMetaObject), QStringList());
}

void tst_Virelo_Cell_Air::the_constructor_stores_its_arguments_and_clears_its_numbers()
{
    const Complete_Cell_Air control(14, "Home");
    QCOMPARE(control.type, 14);
    QCOMPARE(control.host, QString());
    QCOMPARE(control.name, QString("Home"));
    QCOMPARE(control.spare_1, 0);
    QCOMPARE(control.spare_2, 0);
    QCOMPARE(control.spare_3, 0);
    QVERIFY(!control.link);
    QVERIFY(!control.isRunning());
}

QTEST_GUILESS_MAIN(tst_Virelo_Cell_Air)
#include "tst_virelo_cell_air.moc"
