// SPDX-License-Identifier: MIT
#include <QStringList>
#include <QTest>
#include <memory>
#include <thread>

#include "tests/zeroconf/avahi/readable.h"
#include "zeroconf/avahi/mailbox.h"

class tst_Mailbox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        heard.clear();
        box = std::make_unique<Mailbox>([this](DNSServiceErrorType code) { heard << QString::number(code); });
    }

    void a_new_mailbox_has_a_descriptor_and_nothing_to_read();
    void a_reply_makes_the_descriptor_readable_until_it_is_delivered();
    void replies_come_in_order_and_all_but_the_last_say_that_more_is_coming();
    void a_reply_from_another_thread_wakes_who_waits();
    void a_failure_is_the_last_reply();
    void only_the_first_failure_counts();
    void a_closed_mailbox_takes_and_gives_nothing();
    void a_callback_may_put_another_reply();
    void a_callback_may_close_the_mailbox();
    void a_callback_may_destroy_the_mailbox();
    void the_time_limit_alone_is_nothing_to_read();

private:
    void put(const QString &text)
    {
        box->put([this, text](DNSServiceFlags more) { heard << text + (more ? "+" : ""); });
    }

    std::unique_ptr<Mailbox> box;
    QStringList heard;
};

void tst_Mailbox::a_new_mailbox_has_a_descriptor_and_nothing_to_read()
{
    QVERIFY(box->descriptor() >= 0);
    QVERIFY(!box->closed());
    QVERIFY(!is_readable(box->descriptor(), 0));
    box->deliver();
    QVERIFY(heard.isEmpty());
}

void tst_Mailbox::a_reply_makes_the_descriptor_readable_until_it_is_delivered()
{
    put("a");
    QVERIFY(is_readable(box->descriptor(), patience_ms));
    QVERIFY(heard.isEmpty());
    // Looking does not take it away.
    QVERIFY(is_readable(box->descriptor(), 0));
    box->deliver();
    QCOMPARE(heard, QStringList({"a"}));
    QVERIFY(!is_readable(box->descriptor(), 0));
    box->deliver();
    QCOMPARE(heard, QStringList({"a"}));
}

void tst_Mailbox::replies_come_in_order_and_all_but_the_last_say_that_more_is_coming()
{
    put("a");
    put("b");
    put("c");
    box->deliver();
    QCOMPARE(heard, QStringList({"a+"}));
    QVERIFY(is_readable(box->descriptor(), patience_ms));
    box->deliver();
    box->deliver();
    QCOMPARE(heard, QStringList({"a+", "b+", "c"}));
    QVERIFY(!is_readable(box->descriptor(), 0));
}

void tst_Mailbox::a_reply_from_another_thread_wakes_who_waits()
{
    std::thread other([this] { put("a"); });
    const bool woken = is_readable(box->descriptor(), patience_ms);
    other.join();
    QVERIFY(woken);
    box->deliver();
    QCOMPARE(heard, QStringList({"a"}));
}

void tst_Mailbox::a_failure_is_the_last_reply()
{
    put("a");
    box->fail(kDNSServiceErr_ServiceNotRunning);
    put("b");
    for (int i = 0; i < 4; ++i)
        box->deliver();
    QCOMPARE(heard, QStringList({"a+", "-65563"}));
    QVERIFY(!is_readable(box->descriptor(), 0));
}

void tst_Mailbox::only_the_first_failure_counts()
{
    box->fail(kDNSServiceErr_BadParam);
    box->fail(kDNSServiceErr_ServiceNotRunning);
    QVERIFY(is_readable(box->descriptor(), patience_ms));
    box->deliver();
    box->fail(kDNSServiceErr_Unknown);
    box->deliver();
    QCOMPARE(heard, QStringList({"-65540"}));
}

void tst_Mailbox::a_closed_mailbox_takes_and_gives_nothing()
{
    put("a");
    box->close();
    QVERIFY(box->closed());
    QCOMPARE(box->descriptor(), -1);
    put("b");
    box->fail(kDNSServiceErr_Unknown);
    box->deliver();
    box->close();
    QVERIFY(heard.isEmpty());
}

void tst_Mailbox::a_callback_may_put_another_reply()
{
    box->put([this](DNSServiceFlags) { put("b"); });
    box->deliver();
    QVERIFY(is_readable(box->descriptor(), patience_ms));
    box->deliver();
    QCOMPARE(heard, QStringList({"b"}));
}

void tst_Mailbox::a_callback_may_close_the_mailbox()
{
    box->put([this](DNSServiceFlags) { box->close(); });
    put("b");
    box->deliver();
    box->deliver();
    QVERIFY(box->closed());
    QVERIFY(heard.isEmpty());
}

void tst_Mailbox::a_callback_may_destroy_the_mailbox()
{
    const QString text = "what the callback holds lives on";
    box->put([this, text](DNSServiceFlags) {
        box.reset();
        heard << text;
    });
    box->deliver();
    QVERIFY(!box);
    QCOMPARE(heard, QStringList({text}));
}

void tst_Mailbox::the_time_limit_alone_is_nothing_to_read()
{
    box->limit_time();
    QVERIFY(!is_readable(box->descriptor(), 0));
    box->deliver();
    QVERIFY(heard.isEmpty());
    put("a");
    QVERIFY(is_readable(box->descriptor(), patience_ms));
    box->deliver();
    QCOMPARE(heard, QStringList({"a"}));
}

QTEST_APPLESS_MAIN(tst_Mailbox)
#include "tst_mailbox.moc"
