// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QList>
#include <QTest>

#include "tests/zeroconf/avahi/readable.h"
#include "zeroconf/avahi/mailbox.h"

class tst_Mailbox_slow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void without_a_reply_the_ref_times_out_after_5_s();
    void a_reply_lifts_the_limit_of_5_s();
    void a_failure_lifts_the_limit_of_5_s();
};

namespace
{
constexpr int limit_ms = 5000;
// Long enough for a limit still in force to show.
constexpr int past_limit_ms = limit_ms + 500;
} // namespace

void tst_Mailbox_slow::without_a_reply_the_ref_times_out_after_5_s()
{
    QList<int> codes;
    Mailbox box([&](DNSServiceErrorType code) { codes << code; });
    QElapsedTimer taken;
    taken.start();
    box.limit_time();
    QVERIFY(is_readable(box.descriptor(), 2 * limit_ms));
    QVERIFY(taken.elapsed() >= limit_ms - 10);
    box.deliver();
    QCOMPARE(codes, QList<int>({kDNSServiceErr_Timeout}));

    // That was the last of it.
    QVERIFY(!is_readable(box.descriptor(), 0));
    box.put([&](DNSServiceFlags) { codes << 0; });
    box.fail(kDNSServiceErr_Unknown);
    box.deliver();
    QCOMPARE(codes.size(), 1);
}

void tst_Mailbox_slow::a_reply_lifts_the_limit_of_5_s()
{
    QList<int> codes;
    Mailbox box([&](DNSServiceErrorType code) { codes << code; });
    box.limit_time();
    box.put([&](DNSServiceFlags) { codes << 0; });
    box.deliver();
    QVERIFY(!is_readable(box.descriptor(), past_limit_ms));
    box.deliver();
    QCOMPARE(codes, QList<int>({0}));
}

void tst_Mailbox_slow::a_failure_lifts_the_limit_of_5_s()
{
    QList<int> codes;
    Mailbox box([&](DNSServiceErrorType code) { codes << code; });
    box.limit_time();
    box.fail(kDNSServiceErr_ServiceNotRunning);
    box.deliver();
    QVERIFY(!is_readable(box.descriptor(), past_limit_ms));
    QCOMPARE(codes, QList<int>({kDNSServiceErr_ServiceNotRunning}));
}

QTEST_APPLESS_MAIN(tst_Mailbox_slow)
#include "tst_mailbox_slow.moc"
