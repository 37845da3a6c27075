// SPDX-License-Identifier: MIT
#include "simulator/sim_console.h"

#include <algorithm>

#include "simulator/event_log.h"
#include "simulator/house.h"

// The first word of its usage calls a command, and it wants as many words as its usage has. NAME is always
// the second.
struct Sim_Console::Command {
    const char *usage;
    const char *help;
    void (Sim_Console::*run)(const QStringList &words);

    QStringList words() const { return QString(usage).split(' '); }
    bool on_speaker() const { return words().value(1) == "NAME"; }
    QString help_line() const { return QString(usage).leftJustified(24) + ' ' + help; }
};

const std::vector<Sim_Console::Command> &Sim_Console::commands()
{
    using S = Sim_Console;
    static const std::vector<Command> all = {
        {"list", "the speakers, where they are, and whether they are there", &S::do_list},
        {"set NAME LETTERS VALUE", "turns a value of the host, as at the speaker itself", &S::do_set},
        {"fault NAME KEY VALUE", "switches a fault; \"faults\" tells which", &S::do_fault},
        {"faults", "the faults with what they take", &S::do_faults},
        {"leave NAME", "the speaker goes, with its ports and its announcement", &S::do_leave},
        {"join NAME", "it comes back", &S::do_join},
        {"move NAME ADDRESS", "it changes its address", &S::do_move},
        {"cut NAME HOW", "cuts its open host links: \"fin\" in order, \"rst\" by a reset", &S::do_cut},
        {"send NAME TEXT", "unasked bytes on its host links, with a carriage return", &S::do_send},
        {"download FAULT", "what the download server does; \"none\" for serving", &S::do_download},
        {"help", "this list", &S::do_help},
        {"quit", "everybody leaves, and the program ends", &S::do_quit},
    };
    return all;
}

Sim_Console::Sim_Console(House &house, Event_Log &log)
    : house(house)
    , log(log)
{
}

void Sim_Console::obey(const QString &line)
{
    const std::optional<QStringList> words = split_words(line);
    if (!words)
        return refuse("a quote is not closed");
    if (words->isEmpty())
        return;
    const auto command = std::find_if(commands().begin(), commands().end(), [&words](const Command &entry) {
        return words->first() == entry.words().first();
    });
    if (command == commands().end())
        refuse(QString("there is no command \"%1\"; \"help\" lists them").arg(words->first()));
    else if (words->size() != command->words().size())
        refuse(QString("it goes: ") + command->usage);
    else if (command->on_speaker() && !house.speaker(words->at(1)))
        refuse(QString("there is no speaker \"%1\"").arg(words->at(1)));
    else
        (this->*command->run)(*words);
}

QStringList Sim_Console::help()
{
    QStringList lines;
    for (const Command &command : commands())
        lines += command.help_line();
    return lines;
}

void Sim_Console::say(const QStringList &lines)
{
    for (const QString &line : lines)
        log.line(line);
}

void Sim_Console::refuse(const QString &why)
{
    log.line("? " + why);
}

void Sim_Console::answer(bool done)
{
    if (done)
        log.line("ok");
    else
        refuse(house.error());
}

void Sim_Console::do_list(const QStringList &)
{
    for (const QString &name : house.names()) {
        const Virtual_Speaker *speaker = house.speaker(name);
        const QString type = QString::number(speaker->config().type).rightJustified(3);
        const QString place =
            speaker->running() ? QString("there, HTTP port %1").arg(speaker->http_port()) : QString("away");
        log.line(QString("%1  type %2  %3  %4")
                     .arg(name.leftJustified(24), type, speaker->address().leftJustified(15), place));
    }
}

void Sim_Console::do_set(const QStringList &words)
{
    Virtual_Speaker *speaker = house.speaker(words.at(1));
    if (speaker->value(words.at(2)).isNull())
        return refuse(QString("it has no value \"%1\"").arg(words.at(2)));
    speaker->set_value(words.at(2), words.at(3));
    answer(true);
}

void Sim_Console::do_fault(const QStringList &words)
{
    Virtual_Speaker *speaker = house.speaker(words.at(1));
    Speaker_Faults faults = speaker->faults();
    QString error;
    if (!set_fault(faults, words.at(2), words.at(3), &error))
        return refuse(error);
    speaker->set_faults(faults);
    answer(true);
}

void Sim_Console::do_faults(const QStringList &)
{
    say(fault_help());
}

void Sim_Console::do_leave(const QStringList &words)
{
    answer(house.leave(words.at(1)));
}

void Sim_Console::do_join(const QStringList &words)
{
    answer(house.join(words.at(1)));
}

void Sim_Console::do_move(const QStringList &words)
{
    answer(house.move(words.at(1), words.at(2)));
}

void Sim_Console::do_cut(const QStringList &words)
{
    const bool reset = words.at(2) == "rst";
    if (!reset && words.at(2) != "fin")
        return refuse("a link is cut by \"fin\" or \"rst\"");
    house.speaker(words.at(1))->cut_link(reset ? Cut_How::rst : Cut_How::fin);
    answer(true);
}

void Sim_Console::do_send(const QStringList &words)
{
    house.speaker(words.at(1))->send_host(words.at(2).toUtf8() + '\r');
    answer(true);
}

void Sim_Console::do_download(const QStringList &words)
{
    Download_Faults faults;
    if (!house.download_server())
        return refuse("the scene has no download server");
    if (!set_download_fault(faults, words.at(1)))
        return refuse("it takes one of " + download_fault_words().join(", "));
    house.download_server()->set_faults(faults);
    answer(true);
}

void Sim_Console::do_help(const QStringList &)
{
    say(help());
}

void Sim_Console::do_quit(const QStringList &)
{
    emit quit_asked();
}

std::optional<QStringList> split_words(const QString &line)
{
    QStringList words;
    QString word;
    bool quoted = false;
    bool begun = false; // also by an empty pair of quotes
    for (const QChar c : line + ' ') {
        if (c == '"') {
            quoted = !quoted;
            begun = true;
        } else if (quoted || !c.isSpace()) {
            word += c;
            begun = true;
        } else if (begun) {
            words += word;
            word.clear();
            begun = false;
        }
    }
    return quoted ? std::nullopt : std::optional(words);
}
