// SPDX-License-Identifier: MIT
#include "simulator/host_processor.h"

#include <cstring>

#include "simulator/host_commands.h"

namespace
{
constexpr int letters_at = 3;
constexpr int argument_at = 5;

QByteArray reply_frame(const char *status, const QString &payload)
{
    return QByteArray("RZ#") + status + payload.toUtf8() + '\r';
}

// True if value may be told to a speaker that keeps it so.
bool fits(const Host_Value &value, int number)
{
    if (value.also_off && number == 0)
        return true;
    return number >= value.low && number <= value.high && number % value.step == 0;
}
} // namespace

Host_Processor::Host_Processor(Speaker_Config &config)
    : config(config)
{
    for (const Host_Value &value : host_values(host_kind(config.type))) {
        const QString letters = QString::fromLatin1(value.letters);
        if (!config.values.contains(letters))
            config.values.insert(letters, QString::fromLatin1(value.initial));
    }
}

void Host_Processor::restart()
{
    flashing = false;
}

Host_Processor::Line Host_Processor::kind_of(const QByteArray &line) const
{
    if (flashing)
        return Line::flash_line;
    if (line.size() <= argument_at)
        return Line::nonsense;
    return line.startsWith("RZ?") ? Line::query : line.startsWith("RZ!") ? Line::command : Line::nonsense;
}

QByteArray Host_Processor::take(const QByteArray &line)
{
    const QByteArray frame = line.chopped(1);
    const QByteArray letters = frame.mid(letters_at, argument_at - letters_at);
    const QByteArray argument = frame.mid(argument_at);
    switch (kind_of(line)) {
    case Line::flash_line:
        return take_flash_line(frame);
    case Line::query:
        return answer_query(letters, argument);
    case Line::command:
        carry_out(letters, argument);
        break;
    case Line::nonsense:
        complain(frame, "no frame");
        break;
    }
    return QByteArray();
}

QByteArray Host_Processor::answer_query(const QByteArray &letters, const QByteArray &argument)
{
    const auto raw = raw_replies.constFind(letters + argument);
    if (raw != raw_replies.constEnd())
        return *raw;
    if (letters == "ST" && argument == "m")
        return reply_frame("00", QString::number(config.type));
    if (letters == "QO" && argument.isEmpty())
        return reply_frame("00", config.cell);
    if (!find_value(letters) || !argument.isEmpty()) {
        complain("RZ?" + letters + argument, "unknown query");
        return reply_frame("01", QString());
    }
    return reply_frame("00", value(QString::fromLatin1(letters)));
}

void Host_Processor::carry_out(const QByteArray &letters, const QByteArray &argument)
{
    for (const Host_Command &command : host_commands(host_kind(config.type))) {
        if (letters != command.letters)
            continue;
        if (!store(command, argument))
            return;
        beeps += command.deed == Host_Deed::beep;
        pings += command.deed == Host_Deed::ping;
        if (command.deed == Host_Deed::flash) {
            flashing = true;
            image = Hex_Image();
        }
        return;
    }
    complain("RZ!" + letters + argument, "unknown command");
}

bool Host_Processor::store(const Host_Command &command, const QByteArray &argument)
{
    const QByteArray frame = QByteArray("RZ!") + command.letters + argument;
    const Host_Value *value = find_value(command.target);
    QString text = QString::fromLatin1(command.fixed ? command.fixed : argument.constData());
    if (qstrlen(command.format) == 0) {
        if (!argument.isEmpty())
            return complain(frame, "takes no argument");
    } else if (strcmp(command.format, "%c") == 0) {
        if (argument.size() != 1 || (value && !QByteArray(value->allowed).contains(argument.at(0))))
            return complain(frame, "no letter of this value");
    } else {
        const int number = argument.trimmed().toInt();
        if (QString::asprintf(command.format, number).toLatin1() != argument)
            return complain(frame, "not written as " + QString::fromLatin1(command.format));
        if (value && !fits(*value, number))
            return complain(frame, "out of range");
        text = QString::number(number);
    }
    config.values.insert(QString::fromLatin1(command.target), text);
    return true;
}

QByteArray Host_Processor::take_flash_line(const QByteArray &line)
{
    if (!line.endsWith('\r'))
        complain(line, "flash line without a carriage return");
    const QByteArray text = line.endsWith('\r') ? line.chopped(1) : line;
    if (!image.take(text))
        complain(text, image.complaints().last());
    flashing = !image.ended(); // then the new firmware starts
    return config.flash_answer_ms < 0 ? QByteArray() : config.flash_answer.toUtf8();
}

bool Host_Processor::complain(const QByteArray &frame, const QString &why)
{
    complaints += QString::fromUtf8(frame) + ": " + why;
    return false;
}

const Host_Value *Host_Processor::find_value(const QByteArray &letters) const
{
    for (const Host_Value &value : host_values(host_kind(config.type)))
        if (letters == value.letters)
            return &value;
    return nullptr;
}

QString Host_Processor::value(const QString &letters) const
{
    return config.values.value(letters);
}

void Host_Processor::set_value(const QString &letters, const QString &text)
{
    config.values.insert(letters, text);
}

void Host_Processor::set_reply(const QString &query, const QByteArray &raw)
{
    raw_replies.insert(query.toLatin1(), raw);
}

void Host_Processor::clear_reply(const QString &query)
{
    raw_replies.remove(query.toLatin1());
}

bool Host_Processor::raw_reply(const QByteArray &line) const
{
    return kind_of(line) == Line::query && raw_replies.contains(line.mid(letters_at).chopped(1));
}
