// SPDX-License-Identifier: MIT
#include <QTest>
#include <algorithm>
#include <memory>

#include "zeroconf/resolver.h"

using Entries = QMap<QByteArray, QByteArray>;
Q_DECLARE_METATYPE(Entries)

class tst_txt_record : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void a_record_becomes_entries_data();
    void a_record_becomes_entries();
    void entries_of_an_earlier_record_stay();
    void no_record_is_read_past_its_end();
};

namespace
{
// From a block of exactly its size, so that the address sanitizer sees a read past the end.
Entries parsed(const QByteArray &record, Entries entries = {})
{
    const std::unique_ptr<unsigned char[]> block(new unsigned char[size_t(record.size())]);
    std::copy(record.cbegin(), record.cend(), block.get());
    parse_txt_record(block.get(), quint16(record.size()), entries);
    return entries;
}

// A string as the wire has it: behind its length byte.
QByteArray wire(const QByteArray &text)
{
    return char(text.size()) + text;
}
} // namespace

void tst_txt_record::a_record_becomes_entries_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<Entries>("entries");
    const auto row = [](const char *name, const QByteArray &record, const Entries &entries) {
        QTest::newRow(name) << record << entries;
    };
    const QByteArray a = wire("a=1");
    const Entries only_a = {{"a", "1"}};

    row("empty", "", {});
    row("key and value", a, only_a);
    row("two entries", a + wire("b=2"), {{"a", "1"}, {"b", "2"}});
    row("no equals sign: key with empty value", wire("flag"), {{"flag", ""}});
    row("empty value", wire("a="), {{"a", ""}});
    row("empty key", wire("=1"), {{"", "1"}});
    row("two equals signs: the value is lost", wire("a=b=c"), {{"a", ""}});
    row("equals signs alone", wire("=="), {{"", ""}});
    row("empty string", wire(""), {{"", ""}});
    row("empty string between others", a + wire("") + wire("b"), {{"", ""}, {"a", "1"}, {"b", ""}});
    row("the later of equal keys", a + wire("a=2"), {{"a", "2"}});
    row("any bytes", wire(QByteArray("\x00\xff=\xc3\x00", 5)),
        {{QByteArray("\x00\xff", 2), QByteArray("\xc3\x00", 2)}});
    row("127 bytes", wire("k=" + QByteArray(125, 'v')), {{"k", QByteArray(125, 'v')}});
    row("128 bytes end the parse", a + wire("k=" + QByteArray(126, 'v')) + wire("b=2"), only_a);
    row("255 bytes end the parse", a + wire("k=" + QByteArray(253, 'v')) + wire("b=2"), only_a);
    row("a length of 255 with nothing behind it", a + "\xff", only_a);
    row("a length of 128 with nothing behind it", a + "\x80", only_a);
    row("a length past the end ends the parse",
        a + "\x05"
            "b=2",
        only_a);
    row("a length just past the end",
        a + "\x04"
            "b=2",
        only_a);
    row("a length with nothing behind it", a + "\x01", only_a);
}

void tst_txt_record::a_record_becomes_entries()
{
    QFETCH(QByteArray, record);
    QFETCH(Entries, entries);
    QCOMPARE(parsed(record), entries);
}

void tst_txt_record::entries_of_an_earlier_record_stay()
{
    QCOMPARE(parsed(wire("b=2"), {{"a", "1"}, {"b", "1"}}), (Entries{{"a", "1"}, {"b", "2"}}));
}

void tst_txt_record::no_record_is_read_past_its_end()
{
    // Each length byte before each number of bytes that may follow it.
    for (int length = 0; length < 256; ++length) {
        for (int following = 0; following < 260; following += following < 4 ? 1 : 42) {
            const Entries entries = parsed(char(length) + QByteArray(following, '\x7f'));
            QVERIFY(!entries.isEmpty() == (length <= 127 && length <= following));
        }
    }
}

QTEST_APPLESS_MAIN(tst_txt_record)
#include "tst_txt_record.moc"
