// SPDX-License-Identifier: MIT
#include <QtTest>
#include <functional>

#include "simulator/speaker_faults.h"

using Check = std::function<bool(const Speaker_Faults &)>;
Q_DECLARE_METATYPE(Check)

// The key table of the faults: what virelo-sim and scenes set them by.
class tst_Speaker_Faults : public QObject
{
    Q_OBJECT

private slots:
    void a_key_sets_its_fault_data();
    void a_key_sets_its_fault();
    void what_is_no_value_is_refused_with_what_is_data();
    void what_is_no_value_is_refused_with_what_is();
    void every_key_stands_in_the_help_with_its_values();
};

void tst_Speaker_Faults::a_key_sets_its_fault_data()
{
    using F = Speaker_Faults;
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Check>("check");
    const auto row = [](const char *key, const char *text, const Check &check) {
        QTest::addRow("%s %s", key, text) << QString(key) << QString(text) << check;
    };
    row("host-refused", "on", [](const F &f) { return f.host_refused; });
    row("at-refused", "on", [](const F &f) { return f.at_refused; });
    row("http-refused", "on", [](const F &f) { return f.http_refused; });
    row("host-silent", "on", [](const F &f) { return f.host_silent; });
    row("host-deaf", "on", [](const F &f) { return f.host_deaf; });
    row("host-bytewise", "on", [](const F &f) { return f.host_bytewise; });
    row("host-byte-gap", "12", [](const F &f) { return f.host_byte_gap_ms == 12; });
    row("host-no-cr", "on", [](const F &f) { return f.host_no_cr; });
    row("host-no-hash", "on", [](const F &f) { return f.host_no_hash; });
    row("host-size", "1500", [](const F &f) { return f.host_answer_size == 1500; });
    row("host-slow", "250", [](const F &f) { return f.host_slow_ms == 250; });
    row("host-answers-commands", "on", [](const F &f) { return f.host_answers_commands; });
    row("host-cut", "on-connect", [](const F &f) { return f.host_cut == Cut::on_connect; });
    row("host-cut", "before", [](const F &f) { return f.host_cut == Cut::before; });
    row("host-cut", "within", [](const F &f) { return f.host_cut == Cut::within; });
    row("host-cut", "after", [](const F &f) { return f.host_cut == Cut::after; });
    row("host-cut-how", "rst", [](const F &f) { return f.host_cut_how == Cut_How::rst; });
    row("host-cut-left", "1", [](const F &f) { return f.host_cut_left == 1; });
    row("at-silent", "on", [](const F &f) { return f.at_silent; });
    row("http", "silent", [](const F &f) { return f.http == Http_Fault::silent; });
    row("http", "hold", [](const F &f) { return f.http == Http_Fault::hold; });
    row("http", "reset", [](const F &f) { return f.http == Http_Fault::reset; });
    row("http", "error-page", [](const F &f) { return f.http == Http_Fault::error_page; });
    row("http", "empty", [](const F &f) { return f.http == Http_Fault::empty; });
    row("http", "empty-object", [](const F &f) { return f.http == Http_Fault::empty_object; });
    row("http", "half", [](const F &f) { return f.http == Http_Fault::half; });
    row("http", "too-long", [](const F &f) { return f.http == Http_Fault::too_long; });
    row("http", "too-short", [](const F &f) { return f.http == Http_Fault::too_short; });
    row("http", "huge", [](const F &f) { return f.http == Http_Fault::huge; });
    row("http", "bulky", [](const F &f) { return f.http == Http_Fault::bulky; });
    row("http-size", "50000000", [](const F &f) { return f.http_size == 50000000; });
    row("http", "wrong-types", [](const F &f) { return f.http == Http_Fault::wrong_types; });
    row("http", "wrong-members", [](const F &f) { return f.http == Http_Fault::wrong_members; });
    row("http-slow", "40", [](const F &f) { return f.http_slow_ms == 40; });
    row("http-returncode", "no way", [](const F &f) { return f.http_returncode == "no way"; });
    row("http-only", "addnetwork", [](const F &f) { return f.http_only == "addnetwork"; });
    row("upgrade-errinfo", "3", [](const F &f) { return f.upgrade_errinfo == "3"; });
}

void tst_Speaker_Faults::a_key_sets_its_fault()
{
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(Check, check);
    Speaker_Faults faults;
    QVERIFY(!check(faults));
    QString error;
    QVERIFY2(set_fault(faults, key, text, &error), qPrintable(error));
    QVERIFY(check(faults));
    const QString off = text == "on"                               ? "off"
                        : key == "host-cut"                        ? "never"
                        : key == "host-cut-how"                    ? "fin"
                        : key == "host-cut-left"                   ? "-1"
                        : key == "http"                            ? "none"
                        : key.endsWith("returncode")               ? "-"
                        : key == "http-only" || key.endsWith("fo") ? "-"
                                                                   : "0";
    QVERIFY2(set_fault(faults, key, off, &error), qPrintable(error));
    QVERIFY(!check(faults));
    QCOMPARE(error, QString());
}

void tst_Speaker_Faults::what_is_no_value_is_refused_with_what_is_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *key, const char *text, const char *error) {
        QTest::addRow("%s %s", key, text) << QString(key) << QString(text) << QString(error);
    };
    row("host-silent", "yes", "host-silent takes on|off, not \"yes\"");
    row("host-silent", "", "host-silent takes on|off, not \"\"");
    row("host-slow", "fast", "host-slow takes NUMBER, not \"fast\"");
    row("host-slow", "1.5", "host-slow takes NUMBER, not \"1.5\"");
    row("host-cut", "Before", "host-cut takes never|on-connect|before|within|after, not \"Before\"");
    row("host-cut-how", "hard", "host-cut-how takes fin|rst, not \"hard\"");
    row("http", "404",
        "http takes "
        "none|silent|hold|reset|error-page|empty|empty-object|half|too-long|too-short|huge|bulky|wrong-types"
        "|wrong-members, not \"404\"");
    row("host", "on", "no fault is called \"host\"");
    row("", "on", "no fault is called \"\"");
}

void tst_Speaker_Faults::what_is_no_value_is_refused_with_what_is()
{
    QFETCH(QString, key);
    QFETCH(QString, text);
    Speaker_Faults faults;
    faults.host_silent = true;
    faults.host_slow_ms = 5;
    QString error;
    QVERIFY(!set_fault(faults, key, text, &error));
    QTEST(error, "error");
    QVERIFY(faults.host_silent);
    QCOMPARE(faults.host_slow_ms, 5);
    QCOMPARE(faults.host_cut, Cut::never);
}

void tst_Speaker_Faults::every_key_stands_in_the_help_with_its_values()
{
    QStringList keys;
    for (const QString &line : fault_help()) {
        keys += line.section(' ', 0, 0);
        QVERIFY2(QRegularExpression("^[a-z-]+ +[^ ].* \\([^ ]+\\)$").match(line).hasMatch(),
                 qPrintable(line));
    }
    QCOMPARE(keys, (QStringList{"host-refused", "at-refused",     "http-refused",  "host-silent",
                                "host-deaf",    "host-bytewise",  "host-byte-gap", "host-no-cr",
                                "host-no-hash", "host-size",      "host-slow",     "host-answers-commands",
                                "host-cut",     "host-cut-how",   "host-cut-left", "at-silent",
                                "http",         "http-size",      "http-slow",     "http-returncode",
                                "http-only",    "upgrade-errinfo"}));
}

QTEST_GUILESS_MAIN(tst_Speaker_Faults)
#include "tst_speaker_faults.moc"
