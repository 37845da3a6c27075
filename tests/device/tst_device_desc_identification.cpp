// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include "app/globals.h"
#include "control/virelo_air.h"
#include "control/virelo_sub.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/device/in_flight.h"
#include "tests/fakes/log_capture.h"

namespace
{
const QByteArray type_query = "RZ?STm\n";
const QByteArray cell_query = "RZ?QO\n";

// The connections, by number from 1, over which a line came.
QList<int> links_of(const Virtual_Speaker &speaker, const QByteArray &line)
{
    QList<int> links;
    const QList<Recorded_Line> lines = speaker.timed_host_lines();
    for (const Recorded_Line &each : lines) {
        if (each.line == line)
            links += each.link;
    }
    return links;
}
} // namespace

class tst_device_desc_identification : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void each_accepted_type_selects_its_control_data();
    void each_accepted_type_selects_its_control();
    void a_type_reply_is_decoded_as_a_number_data();
    void a_type_reply_is_decoded_as_a_number();
    void type_22_is_refused_four_times_and_the_cell_is_asked_on_the_fifth_link();
    void an_accepted_try_ends_the_asking();
    void a_try_is_logged_with_its_reply();
    void events_of_the_thread_are_run_while_it_reads();
    void a_refused_port_leaves_an_unknown_speaker_data();
    void a_refused_port_leaves_an_unknown_speaker();
    void an_unknown_speaker_is_never_started_and_takes_no_link();
    void the_cell_reply_decides_by_its_first_letter_data();
    void the_cell_reply_decides_by_its_first_letter();
    void the_control_is_whole_when_it_appears();
    void calls_queued_for_the_control_arrive();
    void everything_of_a_speaker_comes_in_and_is_told_once();
    void a_record_may_be_destroyed_between_two_answers();
    void a_discarded_record_at_rest_is_gone_at_once();
    void a_discarded_record_takes_one_answer_more_and_goes_data();
    void a_discarded_record_takes_one_answer_more_and_goes();
    void a_discarded_record_handles_no_late_reply();

private:
    void start_speaker(const std::function<void(Speaker_Config &)> &edit = nullptr);
    QZeroConfService service() const;
    void identify();
    static void end(Virelos *control);

    QScopedPointer<Virtual_Speaker> speaker;
    QScopedPointer<Device_Desc> record;
};

void tst_device_desc_identification::init()
{
    resolves_running = 0;
    sender_device = nullptr;
    last_typed_device = nullptr;
}

void tst_device_desc_identification::cleanup()
{
    QVERIFY(!record || record->wait());
    if (record)
        end(record->control);
    record.reset();
    speaker.reset();
    QCOMPARE(in_flight(), 0);
}

void tst_device_desc_identification::end(Virelos *control)
{
    if (!control)
        return;
    control->terminate();
    delete control;
}

void tst_device_desc_identification::start_speaker(const std::function<void(Speaker_Config &)> &edit)
{
    Speaker_Config config;
    config.address = own_loopback(1);
    config.name = "Left";
    if (edit)
        edit(config);
    speaker.reset(new Virtual_Speaker(config));
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
}

QZeroConfService tst_device_desc_identification::service() const
{
    QZeroConfService service(new QZeroConfServiceData);
    service->name = "Left";
    service->ip = QHostAddress(speaker->address());
    service->port = speaker->http_port();
    return service;
}

// Only the thread, without HTTP, up to its end.
void tst_device_desc_identification::identify()
{
    record.reset(new Device_Desc(nullptr, false, ""));
    QSignalSpy completed(record.data(), &Device_Desc::all_resolves_completed);
    record->set_name("Left");
    record->set_ip(speaker->address());
    record->resolve_started();
    record->start();
    QVERIFY(record->wait());
    QCOMPARE(in_flight(), 0);
    QCOMPARE(completed.count(), 1);
    QVERIFY(record->control);
    QCOMPARE(last_typed_device, record.data());
    QCOMPARE(record->control->host, speaker->address());
    QCOMPARE(record->control->name, QString("Left"));
}

void tst_device_desc_identification::each_accepted_type_selects_its_control_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("control");
    for (int type : {13, 14, 15, 16, 17, 19, 37, 38, 39, 40, 41, 42, 43, 44})
        QTest::newRow(qPrintable(QString::number(type))) << type << QByteArray("Virelo_Air");
    QTest::newRow("18, the one subwoofer") << 18 << QByteArray("Virelo_Sub");
}

void tst_device_desc_identification::each_accepted_type_selects_its_control()
{
    QFETCH(int, type);
    start_speaker([type](Speaker_Config &config) { config.type = type; });
    identify();
    QTEST(QByteArray(record->control->metaObject()->className()), "control");
    QCOMPARE(record->control->type, type);
    QVERIFY(record->control->isRunning());
    // Asked once, and on the same link as the cell; then one link for the values and one for the worker.
    QCOMPARE(links_of(*speaker, type_query), QList<int>({1}));
    QCOMPARE(links_of(*speaker, cell_query), QList<int>({1}));
    QVERIFY(speaker->wait_for_host_line("RZ?MT\n"));
    QCOMPARE(links_of(*speaker, "RZ?MT\n"), QList<int>({3}));
    QVERIFY(speaker->wait_for_host_open(1));
}

void tst_device_desc_identification::a_type_reply_is_decoded_as_a_number_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<int>("type");
    QTest::newRow("as it is") << QByteArray("RZ#0018\r") << 18;
    QTest::newRow("three digits") << QByteArray("RZ#00018\r") << 18;
    QTest::newRow("any status") << QByteArray("RZ#9942\r") << 42;
    QTest::newRow("a status that is no number") << QByteArray("RZ#xx42\r") << 42;
    QTest::newRow("other magic") << QByteArray("xx#0042\r") << 42;
    QTest::newRow("blanks before it") << QByteArray("RZ#00  42\r") << 42;
    QTest::newRow("text behind it") << QByteArray("RZ#0042abc\r") << 42;
    QTest::newRow("no number") << QByteArray("RZ#00x18\r") << 255;
    QTest::newRow("empty payload") << QByteArray("RZ#00\r") << 255;
    QTest::newRow("no mark") << QByteArray("RZ0018\r") << 255;
    QTest::newRow("negative") << QByteArray("RZ#00-18\r") << 255;
    QTest::newRow("beyond the table") << QByteArray("RZ#0045\r") << 255;
    QTest::newRow("255 itself") << QByteArray("RZ#00255\r") << 255;
    QTest::newRow("18 behind 32 bits") << QByteArray("RZ#004294967314\r") << 255;
    QTest::newRow("beyond 64 bits") << QByteArray("RZ#0099999999999999999999\r") << 255;
}

void tst_device_desc_identification::a_type_reply_is_decoded_as_a_number()
{
    QFETCH(QByteArray, reply);
    QFETCH(int, type);
    start_speaker();
    speaker->set_host_reply("STm", reply);
    identify();
    QCOMPARE(record->control->type, type);
    QCOMPARE(links_of(*speaker, type_query).size(), type == 255 ? 4 : 1);
}

void tst_device_desc_identification::type_22_is_refused_four_times_and_the_cell_is_asked_on_the_fifth_link()
{
    start_speaker([](Speaker_Config &config) {
        config.type = 22;
        config.cell = "W";
    });
    identify();
    QVERIFY(qobject_cast<Virelo_Unknown *>(record->control));
    QCOMPARE(record->control->type, 255);
    QVERIFY(record->cell_master);
    QCOMPARE(links_of(*speaker, type_query), QList<int>({1, 2, 3, 4}));
    QCOMPARE(links_of(*speaker, cell_query), QList<int>({5}));
    QCOMPARE(speaker->host_lines().size(), 5);
}

void tst_device_desc_identification::an_accepted_try_ends_the_asking()
{
    start_speaker([](Speaker_Config &config) { config.type = 42; });
    Speaker_Faults faults;
    faults.host_cut = Cut::before;
    faults.host_cut_left = 2;
    speaker->set_faults(faults);
    identify();
    QVERIFY(qobject_cast<Virelo_Air *>(record->control));
    QCOMPARE(record->control->type, 42);
    QCOMPARE(links_of(*speaker, type_query), QList<int>({1, 2, 3}));
    QCOMPARE(links_of(*speaker, cell_query), QList<int>({3}));
}

void tst_device_desc_identification::a_try_is_logged_with_its_reply()
{
    start_speaker([](Speaker_Config &config) { config.type = 42; });
    const Log_Capture log;
    identify();
    const QStringList expected = {"Reading Speaker Type, try # 0", "******** response: 42\r",
                                  "******** Speaker of type found: 42 \"Sub 12.3 Air\""};
    QCOMPARE(log.debug_lines().filter(QRegularExpression("^Reading|^\\*{8} ")), expected);
}

void tst_device_desc_identification::events_of_the_thread_are_run_while_it_reads()
{
    // An unknown type: the other controls run events as they read their values.
    start_speaker([](Speaker_Config &config) { config.type = 45; });
    record.reset(new Device_Desc(nullptr, false, ""));
    record->set_ip(speaker->address());
    QObject resident;
    resident.moveToThread(record.data());
    bool before_the_end = false;
    QMetaObject::invokeMethod(
        &resident, [&] { before_the_end = !record->control && QThread::currentThread() == record.data(); },
        Qt::QueuedConnection);
    record->resolve_started();
    record->start();
    QVERIFY(record->wait());
    QVERIFY(before_the_end);
}

void tst_device_desc_identification::a_refused_port_leaves_an_unknown_speaker_data()
{
    QTest::addColumn<bool>("at_refused");
    QTest::newRow("host port") << false;
    QTest::newRow("AT port") << true;
}

void tst_device_desc_identification::a_refused_port_leaves_an_unknown_speaker()
{
    QFETCH(bool, at_refused);
    start_speaker();
    Speaker_Faults faults;
    faults.host_refused = !at_refused;
    faults.at_refused = at_refused;
    speaker->set_faults(faults);
    identify();
    QVERIFY(qobject_cast<Virelo_Unknown *>(record->control));
    QCOMPARE(record->control->type, 255);
    QVERIFY(!record->cell_master);
    const int at_links = at_refused ? 0 : 5;
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().accepted == at_links; }));
    QCOMPARE(speaker->host_connections().accepted, 0);
}

void tst_device_desc_identification::an_unknown_speaker_is_never_started_and_takes_no_link()
{
    start_speaker([](Speaker_Config &config) { config.type = 45; });
    identify();
    QVERIFY(qobject_cast<Virelo_Unknown *>(record->control));
    QVERIFY(!record->control->isRunning() && !record->control->isFinished());
    QVERIFY(!record->control->link);
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(speaker->host_connections().accepted, 5);
    QVERIFY(speaker->wait_until([&] { return speaker->at_connections().accepted == 5; }));
}

void tst_device_desc_identification::the_cell_reply_decides_by_its_first_letter_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("master");
    QTest::newRow("W") << QByteArray("RZ#00W\r") << true;
    QTest::newRow("W and more") << QByteArray("RZ#00WX\r") << true;
    QTest::newRow("any status") << QByteArray("RZ#17W\r") << true;
    QTest::newRow("N") << QByteArray("RZ#00N\r") << false;
    QTest::newRow("w") << QByteArray("RZ#00w\r") << false;
    QTest::newRow("W behind another") << QByteArray("RZ#00NW\r") << false;
    QTest::newRow("empty") << QByteArray("RZ#00\r") << false;
    QTest::newRow("no mark") << QByteArray("RZ00WW\r") << false;
}

void tst_device_desc_identification::the_cell_reply_decides_by_its_first_letter()
{
    QFETCH(QByteArray, reply);
    start_speaker();
    speaker->set_host_reply("QO", reply);
    identify();
    QTEST(record->cell_master, "master");
}

void tst_device_desc_identification::the_control_is_whole_when_it_appears()
{
    start_speaker([](Speaker_Config &config) { config.values["vo"] = "37"; });
    record.reset(new Device_Desc(nullptr, false, ""));
    record->set_ip(speaker->address());
    record->resolve_started();
    record->start();
    // Looked at as often as possible, as a view would by chance.
    while (!*static_cast<Virelos *volatile *>(&record->control))
        QThread::yieldCurrentThread();
    auto *air = qobject_cast<Virelo_Air *>(record->control);
    QVERIFY(air);
    QCOMPARE(air->get_volume(), 37);
    QCOMPARE(air->type, 13);
    QCOMPARE(air->thread(), QCoreApplication::instance()->thread());
    QVERIFY(record->wait());
}

void tst_device_desc_identification::calls_queued_for_the_control_arrive()
{
    start_speaker();
    identify();
    QCOMPARE(record->control->thread(), QThread::currentThread());
    QVERIFY(QMetaObject::invokeMethod(record->control, "set_volume", Qt::QueuedConnection, Q_ARG(int, 41)));
    QTRY_VERIFY(speaker->host_lines().contains("RZ!vo041\n"));
}

void tst_device_desc_identification::everything_of_a_speaker_comes_in_and_is_told_once()
{
    start_speaker([](Speaker_Config &config) {
        config.type = 18;
        config.cell = "W";
        config.sender_enabled = true;
        config.sender_uuid = "u-1";
        config.groupname = "Party";
        config.receiver_state = 1;
        config.receiver_sender = "u-2";
    });
    record.reset(new Device_Desc(nullptr, false, ""));
    int told = 0;
    connect(record.data(), &Device_Desc::all_resolves_completed, this, [&told] { told++; });
    record->set_QZeroConfService(service());
    QTRY_VERIFY(record->isFinished());
    QTRY_COMPARE(in_flight(), 0);
    QTRY_COMPARE(told, 1);
    QVERIFY(qobject_cast<Virelo_Sub *>(record->control));
    QVERIFY(record->cell_master);

    const Speaker_Config config = speaker->config();
    QCOMPARE(record->model, config.model);
    QCOMPARE(record->firmware, config.firmware);
    QCOMPARE(record->hardware, config.hardware);
    QCOMPARE(record->wlan_mode, config.wlan_mode);
    QCOMPARE(record->ssid, config.ssid);
    QCOMPARE(record->mac, config.mac);
    QCOMPARE(record->signal, config.signal);
    QCOMPARE(record->channelwidth, config.channelwidth);
    QCOMPARE(record->bitrate, float(config.bitrate));
    QCOMPARE(record->uuid, QString("u-1"));
    QCOMPARE(record->groupname, QString("Party"));
    QCOMPARE(record->receiver_state, 1);
    QCOMPARE(record->receiver_sender, QString("u-2"));
    QCOMPARE(sender_device, record.data());
    QVERIFY(config.discoverable && config.pairable);
    QCOMPARE(config.discoverable_timeout, 600);
    QCOMPARE(config.pairable_timeout, 600);
    const QList<Http_Request> requests = speaker->http_requests();
    QCOMPARE(requests.size(), 5);
    for (const Http_Request &request : requests)
        QVERIFY2(request.json_ok, qPrintable(request.json_error));
}

void tst_device_desc_identification::a_record_may_be_destroyed_between_two_answers()
{
    // An unknown type, so that no worker is left behind.
    start_speaker([](Speaker_Config &config) { config.type = 45; });
    Speaker_Faults faults;
    faults.host_slow_ms = 50;
    faults.http = Http_Fault::silent;
    speaker->set_faults(faults);
    record.reset(new Device_Desc(nullptr, false, ""));
    record->set_QZeroConfService(service());
    QVERIFY(speaker->wait_for_host_lines(2));
    QVERIFY(record->isRunning());
    record.reset();
    QCOMPARE(in_flight(), 0);
}

void tst_device_desc_identification::a_discarded_record_at_rest_is_gone_at_once()
{
    QObject parent;
    const QPointer<Device_Desc> never_started = new Device_Desc(&parent, false, "");
    never_started->discard();
    QVERIFY(!never_started);

    start_speaker([](Speaker_Config &config) { config.type = 45; });
    identify();
    const QPointer<Device_Desc> identified = record.take();
    Virelos *const control = identified->control;
    identified->discard();
    QVERIFY(!identified);
    delete control; // stays: a tab may use it
}

void tst_device_desc_identification::a_discarded_record_takes_one_answer_more_and_goes_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("refused") << QByteArray("RZ#0022\r");
    QTest::newRow("accepted") << QByteArray("RZ#0018\r");
}

// No further try, no question for the cell, no values, no worker.
void tst_device_desc_identification::a_discarded_record_takes_one_answer_more_and_goes()
{
    QFETCH(QByteArray, answer);
    start_speaker();
    Speaker_Faults faults;
    faults.host_silent = true;
    speaker->set_faults(faults);
    QObject parent;
    const QPointer<Device_Desc> discarded = new Device_Desc(&parent, false, "");
    int told = 0;
    connect(discarded, &Device_Desc::all_resolves_completed, this, [&told] { told++; });
    discarded->set_ip(speaker->address());
    discarded->resolve_started();
    discarded->start();
    QVERIFY(speaker->wait_for_host_line(type_query));

    discarded->discard();
    QVERIFY(discarded); // not under its running thread, and not by waiting for it
    QVERIFY(!discarded->parent());
    QCOMPARE(in_flight(), 1);
    speaker->send_host(answer);
    QTRY_VERIFY(!discarded);
    QCOMPARE(in_flight(), 0);
    QCOMPARE(told, 0);
    QVERIFY(!last_typed_device);
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(speaker->host_lines(), QList<QByteArray>({type_query}));
    QCOMPARE(speaker->host_connections().accepted, 1);
}

void tst_device_desc_identification::a_discarded_record_handles_no_late_reply()
{
    start_speaker([](Speaker_Config &config) { config.sender_enabled = true; });
    Speaker_Faults faults;
    faults.host_silent = true;
    faults.http = Http_Fault::hold;
    speaker->set_faults(faults);
    const QPointer<Device_Desc> discarded = new Device_Desc(nullptr, false, "");
    discarded->set_QZeroConfService(service());
    // Another one's requests show when the held answers are out.
    record.reset(new Device_Desc(nullptr, false, ""));
    record->set_ip(speaker->address());
    record->set_port(speaker->http_port());
    record->request_device_status();
    QVERIFY(speaker->wait_for_host_line(type_query));
    QTRY_COMPARE(speaker->http_requests().size(), 6);
    QCOMPARE(in_flight(), 7);

    discarded->discard();
    QVERIFY(discarded);
    QCOMPARE(in_flight(), 2);
    faults.http = Http_Fault::none;
    speaker->set_faults(faults);
    QTRY_VERIFY(!record->model.isEmpty());
    record->request_network_status();
    QTRY_VERIFY(!record->ssid.isEmpty());
    QVERIFY(!discarded || !discarded->sender_enabled);
    QVERIFY(!sender_device);

    speaker->send_host("RZ#0022\r");
    QTRY_VERIFY(!discarded);
    QCOMPARE(in_flight(), 0);
    QVERIFY(!sender_device);
}

QTEST_GUILESS_MAIN(tst_device_desc_identification)
#include "tst_device_desc_identification.moc"
