// SPDX-License-Identifier: MIT
#include <QTest>

#include "control/virelo_cell.h"
#include "tests/control/fan_out_test.h"

// What is asked of a cell reaches every listed speaker.
class tst_Virelo_Cell : public Fan_Out_Test
{
    Q_OBJECT

private:
    std::unique_ptr<Virelos> make() const override { return std::make_unique<Virelo_Cell>(14, "Home"); }
    int &own_volume(Virelos &control) const override
    {
        return static_cast<Virelo_Cell &>(control).cell_volume;
    }

private Q_SLOTS:
    void the_constructor_stores_its_arguments();
};

void tst_Virelo_Cell::the_constructor_stores_its_arguments()
{
    const Virelo_Cell control(14, "Home");
    QCOMPARE(control.type, 14);
    QCOMPARE(control.host, QString());
    QCOMPARE(control.name, QString("Home"));
    QCOMPARE(control.cell_volume, 0);
    QVERIFY(!control.link);
    QVERIFY(!control.isRunning());
}

QTEST_GUILESS_MAIN(tst_Virelo_Cell)
#include "tst_virelo_cell.moc"
