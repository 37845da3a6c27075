// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>
#include <climits>

// Rows and checks of the tests of a volume, which every control object that has one clamps alike. The checks
// fetch a row of theirs; they are for a speaker that nobody answers for.

inline void volumes_to_clamp()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("stored");
    for (int volume : {0, 1, 37, 99, 100})
        QTest::addRow("%d", volume) << volume << volume;
    for (int volume : {-1, -3, INT_MIN})
        QTest::addRow("%d", volume) << volume << 0;
    for (int volume : {101, 120, 150, INT_MAX})
        QTest::addRow("%d", volume) << volume << 100;
}

inline void volume_changes_to_clamp()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("difference");
    QTest::addColumn<int>("after");
    QTest::newRow("up") << 37 << 3 << 40;
    QTest::newRow("down") << 37 << -3 << 34;
    QTest::newRow("to the top") << 99 << 5 << 100;
    QTest::newRow("to the bottom") << 5 << -10 << 0;
    QTest::newRow("far down") << 37 << -200 << 0;
    QTest::newRow("as far down as can be") << 0 << INT_MIN << 0;
    QTest::newRow("as far up as can be") << 100 << INT_MAX << 100;
    QTest::newRow("from a reported value beyond all range") << INT_MAX << INT_MAX << 100;
}

template<class Speaker>
void check_clamped_volume(Speaker &control)
{
    QFETCH(int, asked);
    QFETCH(int, stored);
    control.set_volume(asked);
    QCOMPARE(control.volume, stored);
    QCOMPARE(control.get_volume(), stored);
    QCOMPARE(control.volume_sent, 0);
    QCOMPARE(control.pending, 1);
}

template<class Speaker>
void check_clamped_volume_change(Speaker &control)
{
    QFETCH(int, before);
    QFETCH(int, difference);
    QFETCH(int, after);
    control.volume = before;
    control.change_volume(difference);
    QCOMPARE(control.volume, after);
    QCOMPARE(control.pending, 1);
}
