// SPDX-License-Identifier: MIT
#include "simulator/speaker_faults.h"

#include <variant>
#include <vector>

namespace
{
using F = Speaker_Faults;
using Field = std::variant<bool F::*, int F::*, QString F::*, Cut F::*, Cut_How F::*, Http_Fault F::*>;

struct Fault_Row {
    const char *key;
    Field field;
    const char *help;
};

// The manual page packaging/virelo-sim.1.in has a paragraph for each.
const Fault_Row rows[] = {
    {"host-refused", &F::host_refused, "port 8990 refuses; open links stay"},
    {"at-refused", &F::at_refused, "port 8991 refuses; open links stay"},
    {"http-refused", &F::http_refused, "the HTTP port refuses; open connections stay"},
    {"host-silent", &F::host_silent, "host frames are carried out and never answered"},
    {"host-deaf", &F::host_deaf, "the host accepts links and never reads"},
    {"host-bytewise", &F::host_bytewise, "answers leave byte by byte"},
    {"host-byte-gap", &F::host_byte_gap_ms, "ms between two such bytes"},
    {"host-no-cr", &F::host_no_cr, "answers end without the carriage return"},
    {"host-no-hash", &F::host_no_hash, "answers come without the \"#\""},
    {"host-size", &F::host_answer_size, "bytes to which answers are stretched, such as 150, 1500 or 1000000"},
    {"host-slow", &F::host_slow_ms, "ms by which answers are late"},
    {"host-answers-commands", &F::host_answers_commands, "commands are answered too, which nobody expects"},
    {"host-cut", &F::host_cut, "when the host link is cut, seen from a frame"},
    {"host-cut-how", &F::host_cut_how, "in order or by a reset"},
    {"host-cut-left", &F::host_cut_left, "how many cuts are still to come; -1 for no end"},
    {"at-silent", &F::at_silent, "the AT channel does not answer"},
    {"http", &F::http, "what becomes of the answer to an HTTP request"},
    {"http-size", &F::http_size, "bytes by which a huge or bulky answer is longer"},
    {"http-slow", &F::http_slow_ms, "ms by which HTTP answers are late"},
    {"http-returncode", &F::http_returncode, "text given instead of \"success\"; \"-\" for none"},
    {"http-only", &F::http_only, "path or action that the HTTP faults are limited to; \"-\" for all"},
    {"upgrade-errinfo", &F::upgrade_errinfo, "errinfo with which a module upgrade ends; \"-\" for none"},
};

template<class Value>
struct Word {
    const char *word;
    Value value;
};

const Word<bool> bool_words[] = {{"on", true}, {"off", false}};
const Word<Cut> cut_words[] = {{"never", Cut::never},
                               {"on-connect", Cut::on_connect},
                               {"before", Cut::before},
                               {"within", Cut::within},
                               {"after", Cut::after}};
const Word<Cut_How> how_words[] = {{"fin", Cut_How::fin}, {"rst", Cut_How::rst}};
const Word<Http_Fault> http_words[] = {{"none", Http_Fault::none},
                                       {"silent", Http_Fault::silent},
                                       {"hold", Http_Fault::hold},
                                       {"reset", Http_Fault::reset},
                                       {"error-page", Http_Fault::error_page},
                                       {"empty", Http_Fault::empty},
                                       {"empty-object", Http_Fault::empty_object},
                                       {"half", Http_Fault::half},
                                       {"too-long", Http_Fault::too_long},
                                       {"too-short", Http_Fault::too_short},
                                       {"huge", Http_Fault::huge},
                                       {"bulky", Http_Fault::bulky},
                                       {"wrong-types", Http_Fault::wrong_types},
                                       {"wrong-members", Http_Fault::wrong_members}};

template<class Value, size_t N>
bool read_word(const Word<Value> (&words)[N], const QString &text, Value &value)
{
    for (const Word<Value> &word : words) {
        if (text == QLatin1String(word.word)) {
            value = word.value;
            return true;
        }
    }
    return false;
}

bool read(const QString &text, bool &value)
{
    return read_word(bool_words, text, value);
}

bool read(const QString &text, Cut &value)
{
    return read_word(cut_words, text, value);
}

bool read(const QString &text, Cut_How &value)
{
    return read_word(how_words, text, value);
}

bool read(const QString &text, Http_Fault &value)
{
    return read_word(http_words, text, value);
}

bool read(const QString &text, int &value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (ok)
        value = number;
    return ok;
}

bool read(const QString &text, QString &value)
{
    value = text == QLatin1String("-") ? QString() : text;
    return true;
}

template<class Value, size_t N>
QString listed(const Word<Value> (&words)[N])
{
    QStringList all;
    for (const Word<Value> &word : words)
        all += QString::fromLatin1(word.word);
    return all.join(QLatin1Char('|'));
}

QString values_of(bool F::*)
{
    return listed(bool_words);
}

QString values_of(Cut F::*)
{
    return listed(cut_words);
}

QString values_of(Cut_How F::*)
{
    return listed(how_words);
}

QString values_of(Http_Fault F::*)
{
    return listed(http_words);
}

QString values_of(int F::*)
{
    return "NUMBER";
}

QString values_of(QString F::*)
{
    return "TEXT";
}
} // namespace

bool set_fault(Speaker_Faults &faults, const QString &key, const QString &text, QString *error)
{
    for (const Fault_Row &row : rows) {
        if (key != QLatin1String(row.key))
            continue;
        if (std::visit([&](auto field) { return read(text, faults.*field); }, row.field))
            return true;
        const QString values = std::visit([](auto field) { return values_of(field); }, row.field);
        *error = QString("%1 takes %2, not \"%3\"").arg(key, values, text);
        return false;
    }
    *error = QString("no fault is called \"%1\"").arg(key);
    return false;
}

QStringList fault_help()
{
    QStringList all;
    for (const Fault_Row &row : rows) {
        const QString values = std::visit([](auto field) { return values_of(field); }, row.field);
        all += QString("%1 %2 (%3)").arg(QString(row.key).leftJustified(21), row.help, values);
    }
    return all;
}
