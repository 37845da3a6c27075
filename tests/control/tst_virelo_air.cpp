// SPDX-License-Identifier: MIT
#include <QTest>
#include <climits>
#include <memory>

#include "control/virelo_air.h"
#include "tests/control/control_fixture.h"
#include "tests/control/volume_checks.h"

using Number = int Virelo_Air::*;
using Letter = char Virelo_Air::*;
Q_DECLARE_METATYPE(Number)
Q_DECLARE_METATYPE(Letter)

namespace
{
const QMap<QString, QString> reported = {{"IN", "B"},  {"vo", "37"},  {"ba", "2"}, {"pl", "W"},
                                         {"ro", "n"},  {"ga", "-5"},  {"gw", "3"}, {"g1", "-1"},
                                         {"g2", "12"}, {"td", "8000"}};
const Lines reads = {"RZ?IN\n", "RZ?vo\n", "RZ?ba\n", "RZ?pl\n", "RZ?ro\n",
                     "RZ?ga\n", "RZ?gw\n", "RZ?g1\n", "RZ?g2\n", "RZ?td\n"};

// A speaker that nobody answers for: its object is made at once and starts with zeroes.
std::unique_ptr<Virelo_Air> unreachable_air()
{
    return std::make_unique<Virelo_Air>(13, own_loopback(2), "Kitchen");
}
} // namespace

// The values of a full-range speaker: start-up reads, setters and what goes out for them.
class tst_Virelo_Air : public QObject, private Control_Holder<Virelo_Air>
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void slots_stand_in_their_order();
    void the_constructor_reads_in_the_order_of_the_table();
    void the_constructor_takes_numbers_as_wanted_and_sent_data();
    void the_constructor_takes_numbers_as_wanted_and_sent();
    void the_constructor_takes_letters_as_wanted_and_sent_data();
    void the_constructor_takes_letters_as_wanted_and_sent();
    void the_constructor_opens_one_link_and_closes_it();
    void events_are_processed_before_each_read_but_bass();
    void a_speaker_that_cannot_be_reached_reads_as_0();
    void a_refused_letter_reads_as_NUL();

    void a_letter_is_taken_by_its_index_data();
    void a_letter_is_taken_by_its_index();
    void volume_is_clamped_data();
    void volume_is_clamped();
    void a_volume_change_is_clamped_data();
    void a_volume_change_is_clamped();
    void a_number_out_of_range_has_no_effect_data();
    void a_number_out_of_range_has_no_effect();
    void setters_log_what_they_were_given();

    void each_value_is_written_in_its_format_data();
    void each_value_is_written_in_its_format();
    void one_pass_sends_in_the_order_of_the_table();
    void the_gains_of_the_inputs_are_written_as_the_main_gain_data();
    void the_gains_of_the_inputs_are_written_as_the_main_gain();
    void a_volume_frame_is_logged();
    void ten_volumes_while_the_worker_is_busy_are_one_frame();
    void a_pass_serves_one_wake();
    void the_last_of_many_values_is_the_one_that_counts();

private:
    using Control_Holder::make;
    void make() { make(13, "Kitchen", reported); }
    Lines written() const { return speaker->host_lines().mid(reads.size() + start_up_reads.size()); }
};

void tst_Virelo_Air::slots_stand_in_their_order()
{
    const QStringList expected = {"set_volume(int)", "change_volume(int)", "get_volume()", "Input(int)",
                                  "Bass(int)",       "Position(int)",      "Room(int)",    "Gain(int)",
                                  "Gain_Wifi(int)",  "Gain_1(int)",        "Gain_2(int)",  "TimeDelay(int)"};
    QCOMPARE(own_slots(Virelo_Air::staticMetaObject), expected);
}

void tst_Virelo_Air::the_constructor_reads_in_the_order_of_the_table()
{
    make();
    QCOMPARE(speaker->host_lines(), reads);
    QCOMPARE(control->type, 13);
    QCOMPARE(control->host, own_loopback(1));
    QCOMPARE(control->name, QString("Kitchen"));
}

void tst_Virelo_Air::the_constructor_takes_numbers_as_wanted_and_sent_data()
{
    QTest::addColumn<Number>("wanted");
    QTest::addColumn<Number>("sent");
    QTest::addColumn<int>("value");
    QTest::newRow("vo") << &Virelo_Air::volume << &Virelo_Air::volume_sent << 37;
    QTest::newRow("ba") << &Virelo_Air::bass << &Virelo_Air::bass_sent << 2;
    QTest::newRow("ga") << &Virelo_Air::gain << &Virelo_Air::gain_sent << -5;
    QTest::newRow("gw") << &Virelo_Air::gain_wifi << &Virelo_Air::gain_wifi_sent << 3;
    QTest::newRow("g1") << &Virelo_Air::gain_1 << &Virelo_Air::gain_1_sent << -1;
    QTest::newRow("g2") << &Virelo_Air::gain_2 << &Virelo_Air::gain_2_sent << 12;
    QTest::newRow("td") << &Virelo_Air::time_delay << &Virelo_Air::time_delay_sent << 8000;
}

void tst_Virelo_Air::the_constructor_takes_numbers_as_wanted_and_sent()
{
    QFETCH(Number, wanted);
    QFETCH(Number, sent);
    QFETCH(int, value);
    make();
    QCOMPARE((*control).*wanted, value);
    QCOMPARE((*control).*sent, value);
}

void tst_Virelo_Air::the_constructor_takes_letters_as_wanted_and_sent_data()
{
    QTest::addColumn<Letter>("wanted");
    QTest::addColumn<Letter>("sent");
    QTest::addColumn<char>("value");
    QTest::newRow("IN") << &Virelo_Air::input << &Virelo_Air::input_sent << 'B';
    QTest::newRow("IN, third copy") << &Virelo_Air::input << &Virelo_Air::input_initial << 'B';
    QTest::newRow("pl") << &Virelo_Air::position << &Virelo_Air::position_sent << 'W';
    QTest::newRow("ro") << &Virelo_Air::room << &Virelo_Air::room_sent << 'n';
}

void tst_Virelo_Air::the_constructor_takes_letters_as_wanted_and_sent()
{
    QFETCH(Letter, wanted);
    QFETCH(Letter, sent);
    QFETCH(char, value);
    make();
    QCOMPARE((*control).*wanted, value);
    QCOMPARE((*control).*sent, value);
}

void tst_Virelo_Air::the_constructor_opens_one_link_and_closes_it()
{
    make();
    QVERIFY(!control->link);
    QVERIFY(!control->isRunning());
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(speaker->host_connections().accepted, 1);
}

void tst_Virelo_Air::events_are_processed_before_each_read_but_bass()
{
    QCOMPARE(queries_sent_at_events([this] { make(); }), (QSet<int>{0, 1, 3, 4, 5, 6, 7, 8, 9, 10}));
}

void tst_Virelo_Air::a_speaker_that_cannot_be_reached_reads_as_0()
{
    control = unreachable_air();
    QCOMPARE(control->volume, 0);
    QCOMPARE(control->volume_sent, 0);
    QCOMPARE(control->time_delay, 0);
    QCOMPARE(control->input, '\0');
    QCOMPARE(control->input_sent, '\0');
    QCOMPARE(control->input_initial, '\0');
    QCOMPARE(control->room, '\0');
}

void tst_Virelo_Air::a_refused_letter_reads_as_NUL()
{
    speaker = std::make_unique<Virtual_Speaker>(speaker_at_home(13, reported));
    QVERIFY2(speaker->start(), qPrintable(speaker->error()));
    speaker->set_host_reply("IN", "RZ00B\r");
    speaker->set_host_reply("pl", "RZ#00\r");
    speaker->set_host_reply("ro", "RZ#00nothing\r");
    control = std::make_unique<Virelo_Air>(13, own_loopback(1), "Kitchen");
    QCOMPARE(control->input, '\0');
    QCOMPARE(control->position, '\r'); // the payload as it stands
    QCOMPARE(control->room, 'n');      // the first byte
}

void tst_Virelo_Air::a_letter_is_taken_by_its_index_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<Letter>("field");
    QTest::addColumn<int>("index");
    QTest::addColumn<char>("letter"); // '?' for none

    const auto add = [](const char *slot, Letter field, const QByteArray &letters) {
        for (int i = 0; i < letters.size(); ++i)
            QTest::addRow("%s %d", slot, i) << QByteArray(slot) << field << i << letters.at(i);
        for (int i : {-1, letters.size(), 1000, INT_MAX, INT_MIN})
            QTest::addRow("%s %d", slot, i) << QByteArray(slot) << field << i << '?';
    };
    add("Input", &Virelo_Air::input, "WDdBA????");
    add("Position", &Virelo_Air::position, "FWC???");
    add("Room", &Virelo_Air::room, "RrndD???");
}

void tst_Virelo_Air::a_letter_is_taken_by_its_index()
{
    QFETCH(QByteArray, slot);
    QFETCH(Letter, field);
    QFETCH(int, index);
    QFETCH(char, letter);
    control = unreachable_air();
    (*control).*field = '?';
    QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection, Q_ARG(int, index)));
    QCOMPARE((*control).*field, letter);
    QCOMPARE(control->pending, letter == '?' ? 0 : 1);
}

void tst_Virelo_Air::volume_is_clamped_data()
{
    volumes_to_clamp();
}

void tst_Virelo_Air::volume_is_clamped()
{
    control = unreachable_air();
    check_clamped_volume(*control);
}

void tst_Virelo_Air::a_volume_change_is_clamped_data()
{
    volume_changes_to_clamp();
}

void tst_Virelo_Air::a_volume_change_is_clamped()
{
    control = unreachable_air();
    check_clamped_volume_change(*control);
}

void tst_Virelo_Air::a_number_out_of_range_has_no_effect_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<Number>("field");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("taken");

    const auto add = [](const char *slot, Number field, const QList<int> &good, const QList<int> &bad) {
        for (int value : good)
            QTest::addRow("%s %d", slot, value) << QByteArray(slot) << field << value << true;
        for (int value : bad)
            QTest::addRow("%s %d", slot, value) << QByteArray(slot) << field << value << false;
    };
    const QList<int> gains = {-12, -1, 0, 12};
    const QList<int> no_gains = {-13, 13, INT_MIN, INT_MAX};
    add("Bass", &Virelo_Air::bass, {0, 1, 2, 3}, {-1, 4, INT_MIN, INT_MAX});
    add("Gain", &Virelo_Air::gain, gains, no_gains);
    add("Gain_Wifi", &Virelo_Air::gain_wifi, gains, no_gains);
    add("Gain_1", &Virelo_Air::gain_1, gains, no_gains);
    add("Gain_2", &Virelo_Air::gain_2, gains, no_gains);
    add("TimeDelay", &Virelo_Air::time_delay, {0, 8191, -1, INT_MIN}, {8192, INT_MAX});
}

void tst_Virelo_Air::a_number_out_of_range_has_no_effect()
{
    QFETCH(QByteArray, slot);
    QFETCH(Number, field);
    QFETCH(int, value);
    QFETCH(bool, taken);
    constexpr int before = 4711;
    control = unreachable_air();
    (*control).*field = before;
    QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection, Q_ARG(int, value)));
    QCOMPARE((*control).*field, taken ? value : before);
    QCOMPARE(control->pending, taken ? 1 : 0);
}

void tst_Virelo_Air::setters_log_what_they_were_given()
{
    control = unreachable_air();
    const int before = log->debug_lines().size();
    control->set_volume(150);
    control->Bass(9);
    QCOMPARE(log->debug_lines().mid(before), (QStringList{"Virelos_Air::set_volume( 150 )", "BASS"}));
}

void tst_Virelo_Air::each_value_is_written_in_its_format_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("input") << QByteArray("Input") << 2 << QByteArray("RZ!INd\n");
    QTest::newRow("volume") << QByteArray("set_volume") << 7 << QByteArray("RZ!vo007\n");
    QTest::newRow("full volume") << QByteArray("set_volume") << 100 << QByteArray("RZ!vo100\n");
    QTest::newRow("bass") << QByteArray("Bass") << 3 << QByteArray("RZ!ba3\n");
    QTest::newRow("position") << QByteArray("Position") << 2 << QByteArray("RZ!plC\n");
    QTest::newRow("room") << QByteArray("Room") << 4 << QByteArray("RZ!roD\n");
    QTest::newRow("gain") << QByteArray("Gain") << 5 << QByteArray("RZ!ga005\n");
    QTest::newRow("lowest gain") << QByteArray("Gain") << -12 << QByteArray("RZ!ga-12\n");
    QTest::newRow("gain_wifi") << QByteArray("Gain_Wifi") << -6 << QByteArray("RZ!gw-06\n");
    QTest::newRow("gain_1") << QByteArray("Gain_1") << 4 << QByteArray("RZ!ga004\n");
    QTest::newRow("gain_2") << QByteArray("Gain_2") << -4 << QByteArray("RZ!ga-04\n");
    QTest::newRow("time_delay") << QByteArray("TimeDelay") << 9 << QByteArray("RZ!td009\n");
    QTest::newRow("longest delay") << QByteArray("TimeDelay") << 8191 << QByteArray("RZ!td8191\n");
    QTest::newRow("delay below 0") << QByteArray("TimeDelay") << -5 << QByteArray("RZ!td-05\n");
}

void tst_Virelo_Air::each_value_is_written_in_its_format()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, value);
    QFETCH(QByteArray, line);
    make();
    QVERIFY(start_worker(*control));
    QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection, Q_ARG(int, value)));
    QVERIFY(speaker->wait_for_host_line(line));
    QCOMPARE(written(), Lines{line});
}

void tst_Virelo_Air::one_pass_sends_in_the_order_of_the_table()
{
    make();
    QVERIFY(start_worker(*control));
    control->mute = 1;
    control->time_delay = 8191;
    control->gain_2 = 2;
    control->gain_1 = 1;
    control->gain_wifi = -12;
    control->gain = 12;
    control->room = 'D';
    control->position = 'C';
    control->bass = 0;
    control->volume = 5;
    control->input = 'A';
    control->wake();
    end_worker();
    const Lines expected = {"RZ!INA\n",   "RZ!vo005\n", "RZ!ba0\n",   "RZ!plC\n",    "RZ!roD\n", "RZ!ga012\n",
                            "RZ!gw-12\n", "RZ!ga001\n", "RZ!ga002\n", "RZ!td8191\n", "RZ!MO\n"};
    QCOMPARE(written(), expected);
    QCOMPARE(control->input_sent, 'A');
    QCOMPARE(control->input_initial, 'B');
    QCOMPARE(control->time_delay_sent, 8191);
}

void tst_Virelo_Air::the_gains_of_the_inputs_are_written_as_the_main_gain_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<Number>("sent");
    QTest::newRow("gain_1") << QByteArray("Gain_1") << &Virelo_Air::gain_1_sent;
    QTest::newRow("gain_2") << QByteArray("Gain_2") << &Virelo_Air::gain_2_sent;
}

void tst_Virelo_Air::the_gains_of_the_inputs_are_written_as_the_main_gain()
{
    QFETCH(QByteArray, slot);
    QFETCH(Number, sent);
    make();
    QVERIFY(start_worker(*control));
    QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection, Q_ARG(int, 7)));
    end_worker();
    QCOMPARE(written(), Lines{"RZ!ga007\n"});
    QCOMPARE((*control).*sent, 7);
    QCOMPARE(control->gain, -5);
    QCOMPARE(control->gain_sent, -5);
}

void tst_Virelo_Air::a_volume_frame_is_logged()
{
    make();
    QVERIFY(start_worker(*control));
    control->set_volume(5);
    control->Bass(1);
    end_worker();
    QCOMPARE(log->debug_lines().filter("Virelo_Air::transmit_function()"),
             QStringList("Virelo_Air::transmit_function() 005"));
}

void tst_Virelo_Air::ten_volumes_while_the_worker_is_busy_are_one_frame()
{
    make();
    QVERIFY(start_worker(*control));
    control->Bass(0);
    QVERIFY(speaker->wait_for_host_line("RZ!ba0\n"));
    for (int volume = 41; volume <= 50; ++volume)
        control->set_volume(volume);
    end_worker();
    QCOMPARE(written(), (Lines{"RZ!ba0\n", "RZ!vo050\n"}));
}

void tst_Virelo_Air::a_pass_serves_one_wake()
{
    control = unreachable_air();
    control->wake();
    control->wake();
    control->transmit_function();
    QCOMPARE(control->pending, 1);
    control->transmit_function();
    QCOMPARE(control->pending, 0);
    control->transmit_function();
    QCOMPARE(control->pending, 0);
}

// A link that was never connected makes passes quick, so that they meet the stores at every point.
void tst_Virelo_Air::the_last_of_many_values_is_the_one_that_counts()
{
    control = unreachable_air();
    QVERIFY(start_worker(*control));
    for (int i = 0; i <= 2000; ++i) {
        control->set_volume(i % 101);
        control->Room(i % 5);
        control->Gain_1(i % 13);
    }
    control->terminate();
    QCOMPARE(control->volume_sent, 2000 % 101);
    QCOMPARE(control->room_sent, 'R');
    QCOMPARE(control->gain_1_sent, 2000 % 13);
    QCOMPARE(control->pending, 0);
}

QTEST_GUILESS_MAIN(tst_Virelo_Air)
#include "tst_virelo_air.moc"
