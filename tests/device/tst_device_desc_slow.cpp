// SPDX-License-Identifier: MIT
#include <QElapsedTimer>
#include <QPointer>
#include <QTest>

#include "app/globals.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"

class tst_device_desc_slow : public QObject
{
    Q_OBJECT

private slots:
    void a_silent_host_costs_5_seconds_a_query_and_ends_as_unknown();
    void a_discarded_record_goes_though_the_type_reply_never_ends();
};

void tst_device_desc_slow::a_silent_host_costs_5_seconds_a_query_and_ends_as_unknown()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.cell = "W";
    Virtual_Speaker speaker(config);
    QVERIFY2(speaker.start(), qPrintable(speaker.error()));
    Speaker_Faults faults;
    faults.host_silent = true;
    speaker.set_faults(faults);

    Device_Desc record(nullptr, false, "");
    record.set_ip(speaker.address());
    record.resolve_started();
    QElapsedTimer timer;
    timer.start();
    record.start();
    QVERIFY(record.wait());
    QVERIFY(timer.elapsed() >= 5 * 5000 - 100);

    QVERIFY(qobject_cast<Virelo_Unknown *>(record.control));
    QCOMPARE(record.control->type, 255);
    QVERIFY(!record.cell_master);
    QCOMPARE(resolves_running, 0);
    const QList<QByteArray> expected = {"RZ?STm\n", "RZ?STm\n", "RZ?STm\n", "RZ?STm\n", "RZ?QO\n"};
    QCOMPARE(speaker.host_lines(), expected);
    QVERIFY(speaker.wait_until([&] { return speaker.at_connections().accepted == 5; }));
    delete record.control;
}

// 5 s from the word, and a read of 5 s that was under way.
void tst_device_desc_slow::a_discarded_record_goes_though_the_type_reply_never_ends()
{
    Speaker_Config config;
    config.address = own_loopback(1);
    Virtual_Speaker speaker(config);
    QVERIFY2(speaker.start(), qPrintable(speaker.error()));
    Speaker_Faults faults;
    faults.host_no_cr = true;
    speaker.set_faults(faults);

    const QPointer<Device_Desc> record = new Device_Desc(nullptr, false, "");
    record->set_ip(speaker.address());
    record->resolve_started();
    record->start();
    QVERIFY(speaker.wait_for_host_line("RZ?STm\n"));
    record->discard();
    QVERIFY(record);
    QTRY_VERIFY_WITH_TIMEOUT(!record, 20000);
    QCOMPARE(resolves_running, 0);
    QCOMPARE(speaker.host_lines(), QList<QByteArray>({"RZ?STm\n"}));
}

QTEST_GUILESS_MAIN(tst_device_desc_slow)
#include "tst_device_desc_slow.moc"
