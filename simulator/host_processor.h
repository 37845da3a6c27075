// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QStringList>

#include "simulator/hex_image.h"
#include "simulator/speaker_config.h"

struct Host_Command;
struct Host_Value;

// The amplifier processor: it takes one line at a time, keeps the values and gives the answer, if the line
// asks for one. All links of a speaker reach the same one. Plain logic without sockets; belongs to one
// thread.
class Host_Processor
{
public:
    explicit Host_Processor(Speaker_Config &config);

    enum class Line { query, command, flash_line, nonsense };
    Line kind_of(const QByteArray &line) const; // the line with its line feed
    QByteArray take(const QByteArray &line);    // the answer; null for none

    void restart(); // leaves flash mode, as a power cycle does
    QString value(const QString &letters) const;
    void set_value(const QString &letters, const QString &text);
    void set_reply(const QString &query, const QByteArray &raw);
    void clear_reply(const QString &query);
    bool raw_reply(const QByteArray &line) const; // the answer to that line is one of set_reply

    bool flashing = false;
    Hex_Image image; // of the running or last flash
    int beeps = 0;
    int pings = 0;
    QStringList complaints;

private:
    QByteArray answer_query(const QByteArray &letters, const QByteArray &argument);
    void carry_out(const QByteArray &letters, const QByteArray &argument);
    bool store(const Host_Command &command, const QByteArray &argument);
    QByteArray take_flash_line(const QByteArray &line);
    bool complain(const QByteArray &frame, const QString &why);
    const Host_Value *find_value(const QByteArray &letters) const;

    Speaker_Config &config; // values and type
    QMap<QByteArray, QByteArray> raw_replies;
};
