// SPDX-License-Identifier: MIT
#include <QTest>
#include <climits>

#include "device/speaker_types.h"

class tst_speaker_types : public QObject
{
    Q_OBJECT

private slots:
    void each_row_has_its_name_code_and_acceptance_data();
    void each_row_has_its_name_code_and_acceptance();
    void a_code_without_a_row_is_unknown_and_refused_data();
    void a_code_without_a_row_is_unknown_and_refused();
    void the_codes_13_to_19_and_37_to_44_are_accepted_and_no_other();
};

void tst_speaker_types::each_row_has_its_name_code_and_acceptance_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("13") << 13 << "Cadre 3.2 Air"
                        << "vc3w" << true;
    QTest::newRow("14") << 14 << "Cadre 5.2 Air"
                        << "vc5w" << true;
    QTest::newRow("15") << 15 << "Cadre 7.2 Air"
                        << "vc7w" << true;
    QTest::newRow("16") << 16 << "Cadre 8.2 Air"
                        << "vc8w" << true;
    QTest::newRow("17") << 17 << "Cadre 9.2 Air"
                        << "vc9w" << true;
    QTest::newRow("18") << 18 << "Sub 12 Air"
                        << "vs12w" << true;
    QTest::newRow("19") << 19 << "Center.2 Air"
                        << "vccw" << true;
    QTest::newRow("22, named and refused") << 22 << "Cadre 11.2 Air"
                                           << "vc11w" << false;
    QTest::newRow("37") << 37 << "Cadre 3.3 Air"
                        << "vc3.3w" << true;
    QTest::newRow("38") << 38 << "Cadre 5.3 Air"
                        << "vc5.3w" << true;
    QTest::newRow("39") << 39 << "Cadre 7.3 Air"
                        << "vc7.3w" << true;
    QTest::newRow("40") << 40 << "Cadre 8.3 Air"
                        << "vc8.3w" << true;
    QTest::newRow("41") << 41 << "Cadre 9.3 Air"
                        << "vc9.3w" << true;
    QTest::newRow("42") << 42 << "Sub 12.3 Air"
                        << "vs12.3w" << true;
    QTest::newRow("43") << 43 << "Center.3 Air"
                        << "vcc.3w" << true;
    QTest::newRow("44") << 44 << "Cadre 11.3 Air"
                        << "vc11.3w" << true;
    QTest::newRow("255") << 255 << "Unknown Speaker :-("
                         << "xxx" << false;
}

void tst_speaker_types::each_row_has_its_name_code_and_acceptance()
{
    QFETCH(int, type);
    QTEST(model_name(type), "name");
    QTEST(model_code(type), "code");
    QTEST(accepted_type(type), "accepted");
}

void tst_speaker_types::a_code_without_a_row_is_unknown_and_refused_data()
{
    QTest::addColumn<int>("type");
    for (int type : {INT_MIN, -1, 0, 1, 12, 20, 21, 23, 30, 36, 45, 100, 254, 256, INT_MAX})
        QTest::newRow(qPrintable(QString::number(type))) << type;
}

void tst_speaker_types::a_code_without_a_row_is_unknown_and_refused()
{
    QFETCH(int, type);
    QCOMPARE(model_name(type), QString("Unknown Speaker :-("));
    QCOMPARE(model_code(type), QString("xxx"));
    QVERIFY(!accepted_type(type));
}

void tst_speaker_types::the_codes_13_to_19_and_37_to_44_are_accepted_and_no_other()
{
    QList<int> accepted;
    for (int type = -1000; type <= 1000; type++) {
        if (accepted_type(type))
            accepted += type;
    }
    const QList<int> expected = {13, 14, 15, 16, 17, 18, 19, 37, 38, 39, 40, 41, 42, 43, 44};
    QCOMPARE(accepted, expected);
}

QTEST_GUILESS_MAIN(tst_speaker_types)
#include "tst_speaker_types.moc"
