// SPDX-License-Identifier: MIT
#include <QtTest>

#include "simulator/hex_image.h"

class tst_Hex_Image : public QObject
{
    Q_OBJECT

private slots:
    void records_that_stand_in_books_are_taken();
    void addresses_above_16_bits_come_from_extension_records();
    void a_bad_line_is_refused_with_its_number_and_reason_data();
    void a_bad_line_is_refused_with_its_number_and_reason();
    void nothing_is_taken_behind_the_end();
    void the_summary_tells_whether_the_image_is_whole();
    void made_texts_are_whole_and_of_that_many_lines_data();
    void made_texts_are_whole_and_of_that_many_lines();
    void made_texts_repeat_by_their_seed();
    void a_made_text_goes_on_behind_64_kib();
};

void tst_Hex_Image::records_that_stand_in_books_are_taken()
{
    Hex_Image image;
    QVERIFY(image.take(":0300300002337A1E"));
    QVERIFY(image.take(":10246200464C5549442050524F46494C4500464C33"));
    QVERIFY(image.take(":02003c00abcd4a")); // small digits are digits
    QVERIFY(image.take(":0400000500000000F7"));
    QVERIFY(!image.ended());
    QVERIFY(image.take(":00000001FF"));
    QVERIFY(image.ended());
    QVERIFY(image.whole());
    QCOMPARE(image.lines(), 5);
    QCOMPARE(image.bad(), 0);
    QCOMPARE(image.complaints(), QStringList());
    // In order of their addresses, not of their coming.
    QCOMPARE(image.data(), QByteArray::fromHex("02337a abcd") + QByteArray("FLUID PROFILE\0FL", 16));
    QCOMPARE(image.bytes().value(0x0030), '\x02');
    QCOMPARE(image.bytes().value(0x2462), 'F');
}

void tst_Hex_Image::addresses_above_16_bits_come_from_extension_records()
{
    Hex_Image image;
    QVERIFY(image.take(":02000004FFFFFC"));
    QVERIFY(image.take(":01000000AA55"));
    QVERIFY(image.take(":020000021200EA"));
    QVERIFY(image.take(":01000100BB43"));
    QCOMPARE(image.bytes().keys(), (QList<quint32>{0x12001, 0xffff0000}));
}

void tst_Hex_Image::a_bad_line_is_refused_with_its_number_and_reason_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *line, const char *reason) {
        QTest::newRow(line) << QByteArray(line) << reason;
    };
    row("", "no record");
    row(":", "wrong length");
    row("0300300002337A1E", "no record");
    row(" :00000001FF", "no record");
    row(":00000001FF ", "no record");
    row(":00000001FF\r", "no record");
    row(":00000001F", "no record");
    row(":0000000GFF", "no record");
    row("<html>", "no record");
    row(":000000FF", "wrong length");
    row(":0400300002337A1E", "wrong length");
    row(":0200300002337A1E", "wrong length");
    row(":0300300002337A1F", "checksum 0x1f, expected 0x1e");
    row(":0300300003337A1E", "checksum 0x1e, expected 0x1d");
    row(":01000001AA54", "record type 1 with 1 bytes");
    row(":00000004FC", "record type 4 with 0 bytes");
    row(":00000006FA", "record type 6 with 0 bytes");
}

void tst_Hex_Image::a_bad_line_is_refused_with_its_number_and_reason()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, reason);
    Hex_Image image;
    QVERIFY(image.take(":0300300002337A1E"));
    QVERIFY(!image.take(line));
    QCOMPARE(image.complaints(), QStringList("line 2: " + reason));
    QCOMPARE(image.bad(), 1);
    QCOMPARE(image.data(), QByteArray::fromHex("02337a"));
    QVERIFY(image.take(":00000001FF"));
    QVERIFY(image.ended());
    QVERIFY(!image.whole());
}

void tst_Hex_Image::nothing_is_taken_behind_the_end()
{
    Hex_Image image;
    QVERIFY(image.take(":00000001FF"));
    QVERIFY(!image.take(":0300300002337A1E"));
    QCOMPARE(image.complaints(), QStringList("line 2: behind the end-of-file record"));
    QVERIFY(image.data().isEmpty());
    QVERIFY(!image.whole());
}

void tst_Hex_Image::the_summary_tells_whether_the_image_is_whole()
{
    Hex_Image image;
    QCOMPARE(image.summary(), QString("0 lines, 0 bad, 0 bytes: the image is not whole, its end is missing"));
    image.take(":0300300002337A1E");
    QCOMPARE(image.summary(), QString("1 lines, 0 bad, 3 bytes: the image is not whole, its end is missing"));
    Hex_Image spoilt = image;
    image.take(":00000001FF");
    QCOMPARE(image.summary(), QString("2 lines, 0 bad, 3 bytes: the image is whole"));
    spoilt.take(":00");
    spoilt.take(":00000001FF");
    QCOMPARE(spoilt.summary(), QString("3 lines, 1 bad, 3 bytes: the image is not whole"));
}

void tst_Hex_Image::made_texts_are_whole_and_of_that_many_lines_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<QByteArray>("line_end");
    for (const int lines : {1, 2, 100, 500, 5000}) {
        QTest::addRow("%d, CR LF", lines) << lines << QByteArray("\r\n");
        QTest::addRow("%d, LF", lines) << lines << QByteArray("\n");
    }
}

void tst_Hex_Image::made_texts_are_whole_and_of_that_many_lines()
{
    QFETCH(int, lines);
    QFETCH(QByteArray, line_end);
    const QByteArray text = make_hex_text(lines, 7, line_end);
    QVERIFY(text.endsWith(":00000001FF" + line_end));
    Hex_Image image;
    for (const QByteArray &line : text.chopped(1).split('\n'))
        image.take(line.endsWith('\r') ? line.chopped(1) : line);
    QCOMPARE(image.lines(), lines);
    QCOMPARE(text.count('\n'), lines);
    QCOMPARE(text.count('\r'), line_end.count('\r') * lines);
    QVERIFY2(image.whole(), qPrintable(image.summary()));
}

void tst_Hex_Image::made_texts_repeat_by_their_seed()
{
    QCOMPARE(make_hex_text(50, 1), make_hex_text(50, 1));
    QVERIFY(make_hex_text(50, 1) != make_hex_text(50, 2));
}

void tst_Hex_Image::a_made_text_goes_on_behind_64_kib()
{
    Hex_Image image;
    for (const QByteArray &line : make_hex_text(4200, 3, "\n").chopped(1).split('\n'))
        QVERIFY(image.take(line));
    // 4096 lines of 16 bytes fill the first 64 KiB; a record of its own leads on, and the end is a line too.
    const int data_lines = 4200 - 2;
    QCOMPARE(image.data().size(), data_lines * 16);
    QCOMPARE(image.bytes().lastKey(), quint32(data_lines * 16 - 1));
}

QTEST_GUILESS_MAIN(tst_Hex_Image)
#include "tst_hex_image.moc"
