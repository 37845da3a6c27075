// SPDX-License-Identifier: MIT
#include <QtTest>
#include <limits>

#include "settings/volume_steps.h"

class tst_volume_steps : public QObject
{
    Q_OBJECT

private slots:
    void the_fence_lets_pass_up_to_10_data();
    void the_fence_lets_pass_up_to_10();
    void the_dial_steps_by_the_short_way_data();
    void the_dial_steps_by_the_short_way();
};

void tst_volume_steps::the_fence_lets_pass_up_to_10_data()
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("fenced");
    QTest::newRow("still") << 20 << 20 << 20;
    QTest::newRow("10 up") << 30 << 20 << 30;
    QTest::newRow("11 up") << 31 << 20 << 30;
    QTest::newRow("10 down") << 10 << 20 << 10;
    QTest::newRow("11 down") << 9 << 20 << 10;
    QTest::newRow("20 to 90") << 90 << 20 << 30;
    QTest::newRow("100 to 0") << 0 << 100 << 90;
    QTest::newRow("from the lowest number") << 100 << lowest << lowest + 10;
    QTest::newRow("from the highest number") << 0 << highest << highest - 10;
}

void tst_volume_steps::the_fence_lets_pass_up_to_10()
{
    QFETCH(int, value);
    QFETCH(int, last);
    QTEST(fenced_volume(value, last), "fenced");
}

void tst_volume_steps::the_dial_steps_by_the_short_way_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("step");
    QTest::newRow("still") << 7 << 7 << 0;
    QTest::newRow("14 up") << 24 << 10 << 14;
    QTest::newRow("14 down") << 10 << 24 << -14;
    QTest::newRow("15 up counts as over the seam") << 25 << 10 << -15;  // -35
    QTest::newRow("15 down counts as over the seam") << 10 << 25 << 15; // 35
    QTest::newRow("48 to 2") << 2 << 48 << 4;
    QTest::newRow("2 to 48") << 48 << 2 << -4;
    QTest::newRow("0 to 20 falls") << 20 << 0 << -15; // -30
    QTest::newRow("20 to 0 rises") << 0 << 20 << 15;  // 30
    QTest::newRow("over the seam by 10") << 5 << 45 << 10;
    QTest::newRow("over the seam by 11") << 6 << 45 << 15;
    QTest::newRow("back over the seam by 10") << 45 << 5 << -10;
    QTest::newRow("back over the seam by 11") << 45 << 6 << -15;
    QTest::newRow("whole way down") << 0 << 50 << 0;
    QTest::newRow("whole way up") << 50 << 0 << 0;
}

void tst_volume_steps::the_dial_steps_by_the_short_way()
{
    QFETCH(int, value);
    QFETCH(int, last);
    QTEST(dial_step(value, last), "step");
}

QTEST_APPLESS_MAIN(tst_volume_steps)
#include "tst_volume_steps.moc"
