// SPDX-License-Identifier: MIT
#include <QTest>
#include <climits>
#include <memory>

#include "control/virelo_sub.h"
#include "tests/control/control_fixture.h"
#include "tests/control/volume_checks.h"

using Number = int Virelo_Sub::*;
Q_DECLARE_METATYPE(Number)

namespace
{
const QMap<QString, QString> reported = {{"ai", "X"},   {"vo", "37"}, {"fg", "80"}, {"fs", "18"},
                                         {"fh", "25"},  {"ph", "90"}, {"po", "1"},  {"eq", "1"},
                                         {"ef", "120"}, {"eQ", "4"},  {"eg", "-7"}};
const Lines reads = {"RZ?ai\n", "RZ?vo\n", "RZ?fg\n", "RZ?fs\n", "RZ?fh\n", "RZ?ph\n",
                     "RZ?po\n", "RZ?eq\n", "RZ?ef\n", "RZ?eQ\n", "RZ?eg\n"};

// A speaker that nobody answers for: its object is made at once and starts with zeroes.
std::unique_ptr<Virelo_Sub> unreachable_sub()
{
    return std::make_unique<Virelo_Sub>(18, own_loopback(2), "Cellar");
}
} // namespace

// The values of a subwoofer: start-up reads, setters and what goes out for them.
class tst_Virelo_Sub : public QObject, private Control_Holder<Virelo_Sub>
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void slots_stand_in_their_order();
    void the_constructor_reads_in_the_order_of_the_table();
    void the_constructor_takes_numbers_as_wanted_and_sent_data();
    void the_constructor_takes_numbers_as_wanted_and_sent();
    void the_constructor_takes_the_input_letter();
    void the_constructor_opens_one_link_and_closes_it();
    void events_are_processed_before_each_read_but_volume();
    void a_high_pass_of_0_is_off_and_opens_at_20();
    void the_high_pass_frequency_is_logged();
    void a_speaker_that_cannot_be_reached_reads_as_0();

    void an_input_is_taken_by_its_index_data();
    void an_input_is_taken_by_its_index();
    void volume_is_clamped_data();
    void volume_is_clamped();
    void a_volume_change_is_clamped_data();
    void a_volume_change_is_clamped();
    void a_setter_takes_its_range_alone_data();
    void a_setter_takes_its_range_alone();

    void each_value_is_written_in_its_format_data();
    void each_value_is_written_in_its_format();
    void a_stored_value_is_written_in_its_format_data();
    void a_stored_value_is_written_in_its_format();
    void one_pass_sends_in_the_order_of_the_table();
    void switching_the_high_pass_sends_0_and_the_frequency_again();
    void frequency_and_switch_of_the_high_pass_send_fh_twice();
    void profile_requests_are_cleared_when_they_have_been_sent();
    void ten_volumes_while_the_worker_is_busy_are_one_frame();
    void one_pass_serves_all_wakes();
    void the_last_of_many_values_is_the_one_that_counts();

private:
    using Control_Holder::make;
    void make() { make(18, "Cellar", reported); }
    Lines written() const { return speaker->host_lines().mid(reads.size() + start_up_reads.size()); }
};

void tst_Virelo_Sub::slots_stand_in_their_order()
{
    const QStringList expected = {"set_volume(int)", "change_volume(int)", "get_volume()", "Input(int)",
                                  "frequFg(int)",    "steilhFg(int)",      "frequHp(int)", "hpChanged(int)",
                                  "Phase(int)",      "Polarity(int)"};
    QCOMPARE(own_slots(Virelo_Sub::staticMetaObject), expected);
}

// The input is asked for as "ai", though it is written as "IN".
void tst_Virelo_Sub::the_constructor_reads_in_the_order_of_the_table()
{
    make();
    QCOMPARE(speaker->host_lines(), reads);
    QCOMPARE(control->type, 18);
    QCOMPARE(control->host, own_loopback(1));
    QCOMPARE(control->name, QString("Cellar"));
}

void tst_Virelo_Sub::the_constructor_takes_numbers_as_wanted_and_sent_data()
{
    QTest::addColumn<Number>("wanted");
    QTest::addColumn<Number>("sent");
    QTest::addColumn<int>("value");
    QTest::newRow("vo") << &Virelo_Sub::volume << &Virelo_Sub::volume_sent << 37;
    QTest::newRow("fg") << &Virelo_Sub::frequ_fg << &Virelo_Sub::frequ_fg_sent << 80;
    QTest::newRow("fs") << &Virelo_Sub::steilh_fg << &Virelo_Sub::steilh_fg_sent << 18;
    QTest::newRow("fh") << &Virelo_Sub::frequ_hp << &Virelo_Sub::frequ_hp_sent << 25;
    QTest::newRow("fh as a switch") << &Virelo_Sub::hp_enabled << &Virelo_Sub::hp_enabled_sent << 1;
    QTest::newRow("ph") << &Virelo_Sub::phase << &Virelo_Sub::phase_sent << 90;
    QTest::newRow("po") << &Virelo_Sub::polarity << &Virelo_Sub::polarity_sent << 1;
    QTest::newRow("eq") << &Virelo_Sub::eq_enabled << &Virelo_Sub::eq_enabled_sent << 1;
    QTest::newRow("ef") << &Virelo_Sub::eq_frequ << &Virelo_Sub::eq_frequ_sent << 120;
    QTest::newRow("eQ") << &Virelo_Sub::eq_q << &Virelo_Sub::eq_q_sent << 4;
    QTest::newRow("eg") << &Virelo_Sub::eq_gain << &Virelo_Sub::eq_gain_sent << -7;
    QTest::newRow("load") << &Virelo_Sub::profile_load << &Virelo_Sub::profile_load << 0;
    QTest::newRow("save") << &Virelo_Sub::profile_save << &Virelo_Sub::profile_save << 0;
}

void tst_Virelo_Sub::the_constructor_takes_numbers_as_wanted_and_sent()
{
    QFETCH(Number, wanted);
    QFETCH(Number, sent);
    QFETCH(int, value);
    make();
    QCOMPARE((*control).*wanted, value);
    QCOMPARE((*control).*sent, value);
}

void tst_Virelo_Sub::the_constructor_takes_the_input_letter()
{
    make();
    QCOMPARE(control->input, 'X');
    QCOMPARE(control->input_sent, 'X');
}

void tst_Virelo_Sub::the_constructor_opens_one_link_and_closes_it()
{
    make();
    QVERIFY(!control->link);
    QVERIFY(!control->isRunning());
    QVERIFY(speaker->wait_for_host_open(0));
    QCOMPARE(speaker->host_connections().accepted, 1);
}

void tst_Virelo_Sub::events_are_processed_before_each_read_but_volume()
{
    QCOMPARE(queries_sent_at_events([this] { make(); }), (QSet<int>{0, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

void tst_Virelo_Sub::a_high_pass_of_0_is_off_and_opens_at_20()
{
    auto values = reported;
    values["fh"] = "0";
    make(18, "Cellar", values);
    QCOMPARE(control->hp_enabled, 0);
    QCOMPARE(control->hp_enabled_sent, 0);
    QCOMPARE(control->frequ_hp, 20);
    QCOMPARE(control->frequ_hp_sent, 20);
    QVERIFY(start_worker(*control));
    control->wake();
    end_worker();
    QCOMPARE(written(), Lines());
}

void tst_Virelo_Sub::the_high_pass_frequency_is_logged()
{
    make();
    QVERIFY(log->debug_lines().contains(" %%%%%%%%%%%%%%%%%%%%%%%%%%\n\n\n 25"));
}

void tst_Virelo_Sub::a_speaker_that_cannot_be_reached_reads_as_0()
{
    control = unreachable_sub();
    QCOMPARE(control->input, '\0');
    QCOMPARE(control->input_sent, '\0');
    QCOMPARE(control->volume, 0);
    QCOMPARE(control->eq_gain, 0);
    QCOMPARE(control->hp_enabled, 0);
    QCOMPARE(control->frequ_hp, 20);
}

void tst_Virelo_Sub::an_input_is_taken_by_its_index_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<char>("letter"); // '?' for none
    const QByteArray letters = "WDCXL????";
    for (int i = 0; i < letters.size(); ++i)
        QTest::addRow("%d", i) << i << letters.at(i);
    for (int i : {-1, letters.size(), 1000, INT_MAX, INT_MIN})
        QTest::addRow("%d", i) << i << '?';
}

void tst_Virelo_Sub::an_input_is_taken_by_its_index()
{
    QFETCH(int, index);
    QFETCH(char, letter);
    control = unreachable_sub();
    control->input = '?';
    control->Input(index);
    QCOMPARE(control->input, letter);
    QCOMPARE(control->pending, letter == '?' ? 0 : 1);
}

void tst_Virelo_Sub::volume_is_clamped_data()
{
    volumes_to_clamp();
}

void tst_Virelo_Sub::volume_is_clamped()
{
    control = unreachable_sub();
    check_clamped_volume(*control);
}

void tst_Virelo_Sub::a_volume_change_is_clamped_data()
{
    volume_changes_to_clamp();
}

void tst_Virelo_Sub::a_volume_change_is_clamped()
{
    control = unreachable_sub();
    check_clamped_volume_change(*control);
}

void tst_Virelo_Sub::a_setter_takes_its_range_alone_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<Number>("field");
    QTest::addColumn<int>("argument");
    QTest::addColumn<int>("stored"); // INT_MAX: nothing

    const auto add = [](const char *slot, Number field, const QMap<int, int> &rows) {
        for (auto row = rows.cbegin(); row != rows.cend(); ++row)
            QTest::addRow("%s %d", slot, row.key()) << QByteArray(slot) << field << row.key() << row.value();
    };
    constexpr int none = INT_MAX;
    add("frequFg", &Virelo_Sub::frequ_fg,
        {{INT_MIN, none}, {0, none}, {29, none}, {30, 30}, {180, 180}, {181, none}, {INT_MAX, none}});
    add("steilhFg", &Virelo_Sub::steilh_fg,
        {{INT_MIN, none}, {-1, none}, {0, 0}, {1, 6}, {2, 12}, {3, 18}, {4, 24}, {5, none}, {INT_MAX, none}});
    add("frequHp", &Virelo_Sub::frequ_hp,
        {{INT_MIN, none}, {-1, none}, {0, 0}, {1, none}, {19, none}, {20, 20}, {40, 40}, {41, none}});
    add("hpChanged", &Virelo_Sub::hp_enabled, {{0, 0}, {1, 1}, {2, 1}, {-1, 1}, {INT_MIN, 1}});
    add("Phase", &Virelo_Sub::phase, {{INT_MIN, INT_MIN}, {-1, -1}, {0, 0}, {180, 180}, {99999, 99999}});
    add("Polarity", &Virelo_Sub::polarity,
        {{INT_MIN, none}, {-1, none}, {0, 0}, {1, 1}, {2, none}, {INT_MAX, none}});
}

void tst_Virelo_Sub::a_setter_takes_its_range_alone()
{
    QFETCH(QByteArray, slot);
    QFETCH(Number, field);
    QFETCH(int, argument);
    QFETCH(int, stored);
    constexpr int none = INT_MAX;
    control = unreachable_sub();
    (*control).*field = none;
    QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection, Q_ARG(int, argument)));
    QCOMPARE((*control).*field, stored);
    QCOMPARE(control->pending, stored == none ? 0 : 1);
}

void tst_Virelo_Sub::each_value_is_written_in_its_format_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("argument");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("input") << QByteArray("Input") << 2 << QByteArray("RZ!INC\n");
    QTest::newRow("volume") << QByteArray("set_volume") << 7 << QByteArray("RZ!vo007\n");
    QTest::newRow("crossover") << QByteArray("frequFg") << 30 << QByteArray("RZ!fg030\n");
    QTest::newRow("slope") << QByteArray("steilhFg") << 4 << QByteArray("RZ!fs24\n");
    QTest::newRow("flat slope") << QByteArray("steilhFg") << 1 << QByteArray("RZ!fs06\n");
    QTest::newRow("high-pass") << QByteArray("frequHp") << 40 << QByteArray("RZ!fh40\n");
    QTest::newRow("no high-pass") << QByteArray("frequHp") << 0 << QByteArray("RZ!fh00\n");
    QTest::newRow("phase") << QByteArray("Phase") << 5 << QByteArray("RZ!ph005\n");
    QTest::newRow("phase below 0") << QByteArray("Phase") << -5 << QByteArray("RZ!ph-05\n");
    QTest::newRow("polarity") << QByteArray("Polarity") << 0 << QByteArray("RZ!po0\n");
}

void tst_Virelo_Sub::each_value_is_written_in_its_format()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, argument);
    QFETCH(QByteArray, line);
    make();
    QVERIFY(start_worker(*control));
    QVERIFY(QMetaObject::invokeMethod(control.get(), slot, Qt::DirectConnection, Q_ARG(int, argument)));
    end_worker();
    QCOMPARE(written(), Lines{line});
}

void tst_Virelo_Sub::a_stored_value_is_written_in_its_format_data()
{
    QTest::addColumn<Number>("field");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("equaliser off") << &Virelo_Sub::eq_enabled << 0 << QByteArray("RZ!eq0\n");
    QTest::newRow("frequency") << &Virelo_Sub::eq_frequ << 20 << QByteArray("RZ!ef020\n");
    QTest::newRow("quality") << &Virelo_Sub::eq_q << 1 << QByteArray("RZ!eQ1\n");
    QTest::newRow("quality of two digits") << &Virelo_Sub::eq_q << 10 << QByteArray("RZ!eQ10\n");
    QTest::newRow("gain") << &Virelo_Sub::eq_gain << 6 << QByteArray("RZ!eg06\n");
    QTest::newRow("gain below 0") << &Virelo_Sub::eq_gain << -5 << QByteArray("RZ!eg-5\n");
    QTest::newRow("lowest gain") << &Virelo_Sub::eq_gain << -24 << QByteArray("RZ!eg-24\n");
    QTest::newRow("load profile") << &Virelo_Sub::profile_load << 1 << QByteArray("RZ!Pl 1\n");
    QTest::newRow("save profile") << &Virelo_Sub::profile_save << 12 << QByteArray("RZ!Ps12\n");
}

void tst_Virelo_Sub::a_stored_value_is_written_in_its_format()
{
    QFETCH(Number, field);
    QFETCH(int, value);
    QFETCH(QByteArray, line);
    make();
    QVERIFY(start_worker(*control));
    (*control).*field = value;
    control->wake();
    end_worker();
    QCOMPARE(written(), Lines{line});
}

void tst_Virelo_Sub::one_pass_sends_in_the_order_of_the_table()
{
    make();
    QVERIFY(start_worker(*control));
    control->mute = 1;
    control->eq_gain = -24;
    control->eq_q = 10;
    control->eq_frequ = 200;
    control->eq_enabled = 0;
    control->polarity = 0;
    control->phase = 180;
    control->frequ_hp = 30;
    control->steilh_fg = 6;
    control->frequ_fg = 180;
    control->volume = 0;
    control->input = 'L';
    control->profile_save = 2;
    control->profile_load = 1;
    control->wake();
    end_worker();
    const Lines expected = {"RZ!Pl 1\n",  "RZ!Ps 2\n", "RZ!INL\n",   "RZ!vo000\n", "RZ!fg180\n",
                            "RZ!fs06\n",  "RZ!fh30\n", "RZ!ph180\n", "RZ!po0\n",   "RZ!eq0\n",
                            "RZ!ef200\n", "RZ!eQ10\n", "RZ!eg-24\n", "RZ!MO\n"};
    QCOMPARE(written(), expected);
    QCOMPARE(control->input_sent, 'L');
    QCOMPARE(control->eq_gain_sent, -24);
}

void tst_Virelo_Sub::switching_the_high_pass_sends_0_and_the_frequency_again()
{
    make();
    QVERIFY(start_worker(*control));
    control->hpChanged(0);
    QVERIFY(speaker->wait_for_host_line("RZ!fh00\n"));
    control->hpChanged(2);
    QVERIFY(speaker->wait_for_host_line("RZ!fh25\n"));
    end_worker();
    QCOMPARE(written(), (Lines{"RZ!fh00\n", "RZ!fh25\n"}));
    QCOMPARE(control->frequ_hp, 25);
}

void tst_Virelo_Sub::frequency_and_switch_of_the_high_pass_send_fh_twice()
{
    make();
    QVERIFY(start_worker(*control));
    control->frequ_hp = 30;
    control->hp_enabled = 0;
    control->wake();
    end_worker();
    QCOMPARE(written(), (Lines{"RZ!fh30\n", "RZ!fh00\n"}));
}

void tst_Virelo_Sub::profile_requests_are_cleared_when_they_have_been_sent()
{
    make();
    QVERIFY(start_worker(*control));
    control->profile_load = 1;
    control->profile_save = 2;
    control->wake();
    end_worker();
    QCOMPARE(control->profile_load, 0);
    QCOMPARE(control->profile_save, 0);
    QCOMPARE(written(), (Lines{"RZ!Pl 1\n", "RZ!Ps 2\n"}));
}

void tst_Virelo_Sub::ten_volumes_while_the_worker_is_busy_are_one_frame()
{
    make();
    QVERIFY(start_worker(*control));
    control->Polarity(0);
    QVERIFY(speaker->wait_for_host_line("RZ!po0\n"));
    for (int volume = 41; volume <= 50; ++volume)
        control->set_volume(volume);
    end_worker();
    QCOMPARE(written(), (Lines{"RZ!po0\n", "RZ!vo050\n"}));
}

void tst_Virelo_Sub::one_pass_serves_all_wakes()
{
    control = unreachable_sub();
    control->wake();
    control->wake();
    control->wake();
    control->transmit_function();
    QCOMPARE(control->pending, 0);
}

// A link that was never connected makes passes quick, so that they meet the stores at every point.
void tst_Virelo_Sub::the_last_of_many_values_is_the_one_that_counts()
{
    control = unreachable_sub();
    QVERIFY(start_worker(*control));
    for (int i = 0; i <= 2000; ++i) {
        control->set_volume(i % 101);
        control->frequHp(20 + i % 21);
        control->hpChanged(i % 2);
    }
    control->terminate();
    QCOMPARE(control->volume_sent, 2000 % 101);
    QCOMPARE(control->frequ_hp_sent, 20 + 2000 % 21);
    QCOMPARE(control->hp_enabled_sent, 0);
    QCOMPARE(control->pending, 0);
}

QTEST_GUILESS_MAIN(tst_Virelo_Sub)
#include "tst_virelo_sub.moc"
