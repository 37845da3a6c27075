// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QStringList>

// Takes an Intel HEX text line by line, checks every record and keeps the image. A plain value without lock.
class Hex_Image
{
public:
    // One line without its line end. False, with a complaint kept, if it is no good record, also if it comes
    // behind the end-of-file record.
    bool take(const QByteArray &line);

    bool whole() const;                // the end-of-file record came and no record was bad
    bool ended() const;                // the end-of-file record came
    int lines() const;                 // all, good and bad
    int bad() const;                   // bad ones
    QStringList complaints() const;    // "line 3: checksum 0x1F, expected 0x20"
    QString summary() const;           // "500 lines, 0 bad, 7984 bytes: the image is whole"
    QByteArray data() const;           // the bytes of all good data records in order of their addresses
    QMap<quint32, char> bytes() const; // the same with their addresses

private:
    bool refuse(const QString &why);
    bool take_record(const QByteArray &record);

    QMap<quint32, char> image;
    QStringList said;
    quint32 base = 0; // from the last extended address record
    int taken = 0;
    bool end_seen = false;
};

// A valid Intel HEX text with exactly that many lines (at least 1, the end-of-file record), each ended by
// line_end. Deterministic in its arguments: another seed, other data.
QByteArray make_hex_text(int lines, int seed, const QByteArray &line_end = "\r\n");
