// SPDX-License-Identifier: MIT
#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/update/flash_world.h"

// The transfer with its real times.
class tst_client_update_host_slow : public QObject
{
    Q_OBJECT

private slots:
    void the_host_has_5_s_to_enter_flash_mode_and_a_silent_one_costs_5_s_a_line();
};

void tst_client_update_host_slow::the_host_has_5_s_to_enter_flash_mode_and_a_silent_one_costs_5_s_a_line()
{
    plattform = new rzplattform;
    Flash_World world;
    world.speaker.change([](Speaker_Config &config) { config.flash_answer_ms = -1; });
    world.open(":10\n:20\n");
    Box_Reader box;
    world.dialog->flash_button->click();
    QTRY_VERIFY_WITH_TIMEOUT(box.met(), 30000);
    QCOMPARE(box.text, QString("Flashing HOST completed!"));

    const QList<Recorded_Line> lines = world.speaker.timed_host_lines();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(0).line, QByteArray("RZ!FL\n"));
    QCOMPARE(lines.at(1).line, QByteArray(":10\r\n"));
    QCOMPARE(lines.at(2).line, QByteArray(":20\r\n"));
    constexpr qint64 about_5_s = 4950000;
    QVERIFY(lines.at(1).us - lines.at(0).us >= about_5_s);
    QVERIFY(lines.at(2).us - lines.at(1).us >= about_5_s);
    QCOMPARE(own_warnings(world.log), QStringList());
}

QTEST_MAIN(tst_client_update_host_slow)
#include "tst_client_update_host_slow.moc"
