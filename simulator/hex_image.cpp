// SPDX-License-Identifier: MIT
#include "simulator/hex_image.h"

namespace
{
// Intel HEX record types
enum Record_Type {
    data_record,
    end_record,
    segment_record,
    start_segment_record,
    linear_record,
    start_linear_record
};

// Payload lengths that a type demands; -1 for any.
constexpr int demanded_length[] = {-1, 0, 2, 4, 2, 4};
constexpr int bytes_a_line = 16;
constexpr int smallest_record = 5; // length, address (2), type, checksum

bool all_hex_digits(const QByteArray &text)
{
    for (const char c : text)
        if (!((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f')))
            return false;
    return true;
}

quint8 sum_of(const QByteArray &record)
{
    quint8 sum = 0;
    for (const char byte : record)
        sum = quint8(sum + quint8(byte));
    return sum;
}

int at(const QByteArray &record, int index)
{
    return quint8(record.at(index));
}

QByteArray record_line(int address, Record_Type type, const QByteArray &payload, const QByteArray &line_end)
{
    QByteArray record;
    record += char(payload.size());
    record += char(address >> 8 & 0xff);
    record += char(address & 0xff);
    record += char(type);
    record += payload;
    record += char(-sum_of(record));
    return ':' + record.toHex().toUpper() + line_end;
}
} // namespace

bool Hex_Image::take(const QByteArray &line)
{
    taken++;
    if (end_seen)
        return refuse("behind the end-of-file record");
    const QByteArray digits = line.mid(1);
    if (!line.startsWith(':') || digits.size() % 2 != 0 || !all_hex_digits(digits))
        return refuse("no record");
    return take_record(QByteArray::fromHex(digits));
}

bool Hex_Image::take_record(const QByteArray &record)
{
    if (record.size() < smallest_record || record.size() != at(record, 0) + smallest_record)
        return refuse("wrong length");
    if (sum_of(record) != 0) {
        const quint8 expected = quint8(-sum_of(record.chopped(1)));
        return refuse(QString("checksum 0x%1, expected 0x%2")
                          .arg(at(record, record.size() - 1), 2, 16, QLatin1Char('0'))
                          .arg(expected, 2, 16, QLatin1Char('0')));
    }
    const int type = at(record, 3);
    const int length = at(record, 0);
    if (type > start_linear_record || (demanded_length[type] >= 0 && demanded_length[type] != length))
        return refuse(QString("record type %1 with %2 bytes").arg(type).arg(length));
    const int first_word = length >= 2 ? at(record, 4) << 8 | at(record, 5) : 0;
    if (type == data_record) {
        const int address = at(record, 1) << 8 | at(record, 2);
        for (int i = 0; i < length; i++)
            image.insert(base + quint32(address + i), record.at(4 + i));
    } else if (type == end_record) {
        end_seen = true;
    } else if (type == segment_record) {
        base = quint32(first_word) << 4;
    } else if (type == linear_record) {
        base = quint32(first_word) << 16;
    }
    return true; // start addresses say where to run; there is nothing to keep of them
}

bool Hex_Image::refuse(const QString &why)
{
    said += QString("line %1: %2").arg(taken).arg(why);
    return false;
}

bool Hex_Image::whole() const
{
    return end_seen && said.isEmpty();
}

bool Hex_Image::ended() const
{
    return end_seen;
}

int Hex_Image::lines() const
{
    return taken;
}

int Hex_Image::bad() const
{
    return said.size();
}

QStringList Hex_Image::complaints() const
{
    return said;
}

QString Hex_Image::summary() const
{
    const char *verdict = whole()    ? "the image is whole"
                          : end_seen ? "the image is not whole"
                                     : "the image is not whole, its end is missing";
    return QString("%1 lines, %2 bad, %3 bytes: %4").arg(taken).arg(bad()).arg(image.size()).arg(verdict);
}

QByteArray Hex_Image::data() const
{
    QByteArray all;
    all.reserve(image.size());
    for (const char byte : image)
        all += byte;
    return all;
}

QMap<quint32, char> Hex_Image::bytes() const
{
    return image;
}

QByteArray make_hex_text(int lines, int seed, const QByteArray &line_end)
{
    QByteArray text;
    quint32 state = quint32(seed) * 2654435761U + 1;
    int address = 0;
    bool page_due = false;
    for (int line = 1; line < lines; line++) {
        if (page_due) { // addresses have 16 bits: the next page starts by a record of its own
            const int page = address >> 16;
            text +=
                record_line(0, linear_record, QByteArray(1, char(page >> 8)) + char(page & 0xff), line_end);
            page_due = false;
            continue;
        }
        QByteArray payload;
        for (int i = 0; i < bytes_a_line; i++) {
            state = state * 1664525U + 1013904223U;
            payload += char(state >> 24);
        }
        text += record_line(address & 0xffff, data_record, payload, line_end);
        address += bytes_a_line;
        page_due = (address & 0xffff) == 0;
    }
    return text + record_line(0, end_record, QByteArray(), line_end);
}
