// SPDX-License-Identifier: MIT
#include <QSignalSpy>
#include <QtTest>

#include "simulator/download_server.h"
#include "simulator/loopback.h"
#include "simulator/module_upgrade.h"

// The upgrade of the Wi-Fi module against a real download server: the way of the status numbers, and how each
// failure is told.
class tst_Module_Upgrade : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void without_an_upgrade_it_says_that_none_runs();
    void it_walks_through_the_numbers();
    void it_fetches_the_file_by_its_name();
    void a_number_may_last_for_several_polls();
    void the_download_lasts_as_long_as_it_needs();
    void a_failed_download_is_told_data();
    void a_failed_download_is_told();
    void a_server_that_is_not_there_is_a_download_error();
    void another_size_is_a_checksum_error_data();
    void another_size_is_a_checksum_error();
    void a_forced_error_comes_where_it_belongs_data();
    void a_forced_error_comes_where_it_belongs();
    void a_new_start_begins_anew();
    void forgetting_gives_a_download_up();

private:
    static constexpr int size = 5000;
    using Walk = QStringList; // "status/errinfo/downprogress" of each poll
    QString poll(int polls_a_stage = 1, const QString &forced = QString());
    bool fetched() const;

    std::unique_ptr<Download_Server> server;
    std::unique_ptr<Module_Upgrade> upgrade;
    std::unique_ptr<QSignalSpy> events;
};

void tst_Module_Upgrade::init()
{
    Download_Config config;
    config.address = own_loopback(1);
    config.swu_size = size;
    server = std::make_unique<Download_Server>(config);
    QVERIFY2(server->start(), qPrintable(server->error()));
    upgrade = std::make_unique<Module_Upgrade>(nullptr);
    events = std::make_unique<QSignalSpy>(upgrade.get(), &Module_Upgrade::event);
}

void tst_Module_Upgrade::cleanup()
{
    upgrade.reset();
    server.reset();
}

QString tst_Module_Upgrade::poll(int polls_a_stage, const QString &forced)
{
    const QJsonObject reply = upgrade->poll(polls_a_stage, forced);
    QStringList values;
    for (const char *key : {"status", "errinfo", "downprogress"})
        values += reply.value(key).isString() ? reply.value(key).toString() : "no text";
    return values.join('/');
}

// True when the download came to its end, good or bad: that is its second event.
bool tst_Module_Upgrade::fetched() const
{
    return events->size() >= 2;
}

void tst_Module_Upgrade::without_an_upgrade_it_says_that_none_runs()
{
    QCOMPARE(poll(), QString("5/-1/0"));
    QCOMPARE(poll(), QString("5/-1/0"));
    QCOMPARE(upgrade->poll(1, "3").value("errinfo").toString(), QString("-1"));
}

void tst_Module_Upgrade::it_walks_through_the_numbers()
{
    upgrade->start(server->url(), size);
    QTRY_VERIFY(fetched());
    Walk walk;
    for (int i = 0; i < 6; i++)
        walk += poll();
    QCOMPARE(walk, Walk({"1/0/100", "2/0/100", "3/0/100", "4/0/100", "6/0/100", "6/0/100"}));
}

void tst_Module_Upgrade::it_fetches_the_file_by_its_name()
{
    upgrade->start(server->url(), size);
    QTRY_VERIFY(fetched());
    QCOMPARE(server->requests().size(), 1);
    QCOMPARE(server->requests().first().method, QByteArray("GET"));
    QCOMPARE(server->requests().first().path, QByteArray("/current/ventaro.swu"));
    QCOMPARE(server->requests().first().header("User-Agent"), QByteArray("VIRELO Air module"));
    QCOMPARE(events->last().first().toString(), QString("-- module upgrade got all 5000 bytes"));
}

void tst_Module_Upgrade::a_number_may_last_for_several_polls()
{
    upgrade->start(server->url(), size);
    QTRY_VERIFY(fetched());
    Walk walk;
    for (int i = 0; i < 9; i++)
        walk += poll(2);
    // The progress of a download that was too fast to be seen is spread over its polls.
    QCOMPARE(walk, Walk({"1/0/50", "1/0/100", "2/0/100", "2/0/100", "3/0/100", "3/0/100", "4/0/100",
                         "4/0/100", "6/0/100"}));
}

void tst_Module_Upgrade::the_download_lasts_as_long_as_it_needs()
{
    Download_Faults faults;
    faults.fault = Download_Fault::silent;
    server->set_faults(faults);
    upgrade->start(server->url(), size);
    QTRY_COMPARE(server->requests().size(), 1);
    for (int i = 0; i < 20; i++)
        QCOMPARE(poll(), QString("1/0/0"));
}

void tst_Module_Upgrade::a_failed_download_is_told_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("errinfo");
    QTest::addRow("not-found") << "not-found"
                               << "1";
    QTest::addRow("reset") << "reset"
                           << "2";
    QTest::addRow("redirect") << "redirect"
                              << "2";
    QTest::addRow("empty") << "empty"
                           << "3";
    QTest::addRow("error-page") << "error-page"
                                << "3";
}

void tst_Module_Upgrade::a_failed_download_is_told()
{
    QFETCH(QString, fault);
    QFETCH(QString, errinfo);
    Download_Faults faults;
    QVERIFY(set_download_fault(faults, fault));
    server->set_faults(faults);
    upgrade->start(server->url(), size);
    QTRY_VERIFY(events->last().first().toString().startsWith("-- module upgrade failed"));
    for (int i = 0; i < 3; i++)
        QVERIFY2(poll().startsWith("5/" + errinfo + '/'), qPrintable(poll()));
}

void tst_Module_Upgrade::a_server_that_is_not_there_is_a_download_error()
{
    const QString url = server->url();
    server->stop();
    upgrade->start(url, size);
    QTRY_VERIFY(fetched());
    QCOMPARE(poll(), QString("5/2/0"));
}

void tst_Module_Upgrade::another_size_is_a_checksum_error_data()
{
    QTest::addColumn<qint64>("expected");
    QTest::addRow("one byte less") << qint64(size - 1);
    QTest::addRow("one byte more") << qint64(size + 1);
    QTest::addRow("none") << qint64(0);
}

void tst_Module_Upgrade::another_size_is_a_checksum_error()
{
    QFETCH(qint64, expected);
    upgrade->start(server->url(), expected);
    QTRY_VERIFY(events->last().first().toString().startsWith("-- module upgrade failed"));
    QCOMPARE(poll().left(4), QString("5/3/"));
}

void tst_Module_Upgrade::a_forced_error_comes_where_it_belongs_data()
{
    QTest::addColumn<QString>("errinfo");
    QTest::addColumn<QStringList>("before"); // numbers that are seen first
    QTest::addRow("not running") << "-1" << QStringList();
    QTest::addRow("other") << "0" << QStringList();
    QTest::addRow("no file") << "1" << QStringList();
    QTest::addRow("download") << "2" << QStringList();
    QTest::addRow("checksum") << "3" << QStringList({"1", "2", "3", "4"});
    QTest::addRow("flash") << "4" << QStringList({"1", "2", "3"});
    QTest::addRow("update") << "5" << QStringList();
    QTest::addRow("unknown") << "77" << QStringList();
}

void tst_Module_Upgrade::a_forced_error_comes_where_it_belongs()
{
    QFETCH(QString, errinfo);
    QFETCH(QStringList, before);
    upgrade->start(server->url(), size);
    QTRY_VERIFY(fetched());
    for (const QString &status : before)
        QCOMPARE(poll(1, errinfo).section('/', 0, 1), status + "/0");
    QCOMPARE(poll(1, errinfo).section('/', 0, 1), "5/" + errinfo);
    QCOMPARE(poll(1, QString()).section('/', 0, 1), "5/" + errinfo); // it stays failed
}

void tst_Module_Upgrade::a_new_start_begins_anew()
{
    upgrade->start(server->url(), size - 1);
    QTRY_VERIFY(events->last().first().toString().startsWith("-- module upgrade failed"));
    QCOMPARE(poll().left(4), QString("5/3/"));
    events->clear();
    upgrade->start(server->url(), size);
    QCOMPARE(poll(), QString("1/0/0"));
    QTRY_VERIFY(fetched());
    QCOMPARE(poll(), QString("2/0/100"));
}

void tst_Module_Upgrade::forgetting_gives_a_download_up()
{
    Download_Faults faults;
    faults.fault = Download_Fault::slow;
    faults.slow_chunk = 10;
    server->set_faults(faults);
    upgrade->start(server->url(), size);
    QTRY_COMPARE(server->requests().size(), 1);
    upgrade->forget();
    QCOMPARE(poll(), QString("5/-1/0"));
    QCOMPARE(events->size(), 1); // no failure of a download that nobody waits for
}

QTEST_GUILESS_MAIN(tst_Module_Upgrade)
#include "tst_module_upgrade.moc"
