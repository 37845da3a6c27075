// SPDX-License-Identifier: MIT
#include <QtTest>

#include "simulator/strict_json.h"

class tst_Strict_Json : public QObject
{
    Q_OBJECT

private slots:
    void what_is_json_is_no_cause_for_complaint_data();
    void what_is_json_is_no_cause_for_complaint();
    void what_is_not_is_told_with_its_place_data();
    void what_is_not_is_told_with_its_place();
    void nesting_has_an_end();
};

void tst_Strict_Json::what_is_json_is_no_cause_for_complaint_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArrayList texts = {
        "{}",
        "[]",
        " { } ",
        "\t\r\n[ 1 , 2 ]\n",
        R"({"a":1,"b":[true,false,null],"c":{"d":"e"}})",
        R"("\" \\ \/ \b \f \n \r \t \u00e4 \uD83D\uDE00")",
        "\"äöü 音\"",
        "0",
        "-0",
        "-12.50e+3",
        "1E9",
        "1e-9",
        R"({"": ""})",
        R"({ "action": "setproperties", "discoverable": true,  "pairableTimeout": 600 })",
        R"({"action": "querystatus"} )",
    };
    for (const QByteArray &text : texts)
        QTest::newRow(text.constData()) << text;
}

void tst_Strict_Json::what_is_json_is_no_cause_for_complaint()
{
    QFETCH(QByteArray, text);
    QCOMPARE(json_complaint(text), QString());
}

void tst_Strict_Json::what_is_not_is_told_with_its_place_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const QByteArray &text, const char *complaint) {
        QTest::newRow(text.constData()) << text << QString(complaint);
    };
    row("", "no value at byte 0");
    row("  ", "no value at byte 2");
    row("{", "missing key at byte 1");
    row("[", "no value at byte 1");
    row("[1", "missing comma or end at byte 2");
    row(R"({"a":1,})", "missing key at byte 7");
    row("[1,]", "no value at byte 3");
    row(R"({"a" 1})", "missing colon at byte 5");
    row(R"({"a":})", "no value at byte 5");
    row("{a:1}", "missing key at byte 1");
    row("{'a':1}", "missing key at byte 1");
    row(R"({"a":1 "b":2})", "missing comma or end at byte 7");
    row("{}{}", "text behind the value at byte 2");
    row("{} x", "text behind the value at byte 3");
    row("[1]]", "text behind the value at byte 3");
    row("\"a", "unterminated string at byte 2");
    row("\"a\nb\"", "control character in a string at byte 2");
    row("\"a\tb\"", "control character in a string at byte 2");
    row(R"("\x")", "bad escape at byte 2");
    row(R"("\u12g4")", "bad escape at byte 5");
    row(R"("\u123")", "bad escape at byte 6");
    row("\"\\", "bad escape at byte 2");
    row("01", "text behind the value at byte 1");
    row("+1", "no value at byte 0");
    row(".5", "no value at byte 0");
    row("1.", "no value at byte 2");
    row("1e", "no value at byte 2");
    row("1e+-2", "no value at byte 3");
    row("-", "no value at byte 1");
    row("tru", "no value at byte 0");
    row("True", "no value at byte 0");
    row("NaN", "no value at byte 0");
    row("// a\n1", "no value at byte 0");
    row("\xef\xbb\xbf{}", "no value at byte 0"); // a byte order mark
    row("\"\xe4\"", "no UTF-8");                 // Latin-1
    row("\"\xc0\xaf\"", "no UTF-8");             // longer than need be
    row("\"\xff\"", "no UTF-8");
    // The body of a group whose name has a quote in it.
    row(R"({"action": "enable", "groupname": "a"b", "mode": 0 })", "missing comma or end at byte 37");
    QTest::newRow("NUL behind") << QByteArray("{}\0", 3) << "text behind the value at byte 2";
    QTest::newRow("NUL in a string") << QByteArray("\"a\0\"", 4) << "control character in a string at byte 2";
}

void tst_Strict_Json::what_is_not_is_told_with_its_place()
{
    QFETCH(QByteArray, text);
    QTEST(json_complaint(text), "complaint");
}

void tst_Strict_Json::nesting_has_an_end()
{
    QCOMPARE(json_complaint(QByteArray(200, '[') + QByteArray(200, ']')), QString());
    QCOMPARE(json_complaint(QByteArray(100000, '[')), QString("too deep at byte 201"));
}

QTEST_GUILESS_MAIN(tst_Strict_Json)
#include "tst_strict_json.moc"
