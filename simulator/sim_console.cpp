// SPDX-License-Identifier: MIT
#include "simulator/sim_console.h"

#include <algorithm>

#include "simulator/event_log.h"
#include "simulator/house.h"

struct Sim_Console::Command {
    const char *word;
    int words;       // that it takes, itself included
    bool on_speaker; // its second word names a speaker
    void (Sim_Console::*run)(const QStringList &words);
    const char *help;
};

const Sim_Console::Command *Sim_Console::commands_begin()
{
    using S = Sim_Console;
    static const Command commands[] = {
        {"list", 1, false, &S::do_list, "list: the speakers, where they are, and whether they are there"},
        {"set", 4, true, &S::do_set,
         "set NAME LETTERS VALUE: a value of the host, as turned at the speaker itself"},
        {"fault", 4, true, &S::do_fault, "fault NAME KEY VALUE: switches a fault, see below"},
        {"leave", 2, true, &S::do_leave, "leave NAME: the speaker goes, with its ports and its announcement"},
        {"join", 2, true, &S::do_join, "join NAME: it comes back"},
        {"move", 3, true, &S::do_move, "move NAME ADDRESS: it changes its address"},
        {"cut", 3, true, &S::do_cut, "cut NAME fin|rst: cuts its open host links"},
        {"send", 3, true, &S::do_send,
         "send NAME TEXT: unasked bytes on its host links, with a carriage return"},
        {"download", 2, false, &S::do_download,
         "download WORD: what the download server does, \"none\" for serving"},
        {"help", 1, false, &S::do_help, "help: this list"},
        {"quit", 1, false, &S::do_quit, "quit: everybody leaves, and the program ends"},
        {nullptr, 0, false, nullptr, nullptr},
    };
    return commands;
}

const Sim_Console::Command *Sim_Console::commands_end()
{
    const Command *command = commands_begin();
    while (command->word)
        ++command;
    return command;
}

Sim_Console::Sim_Console(House &house, Event_Log &log)
    : house(house)
    , log(log)
{
}

void Sim_Console::obey(const QString &line)
{
    const QStringList words = split_words(line);
    if (words.isEmpty())
        return;
    const Command *command = std::find_if(commands_begin(), commands_end(), [&words](const Command &entry) {
        return words.first() == QLatin1String(entry.word);
    });
    if (command == commands_end())
        refuse(QString("there is no command \"%1\"; \"help\" lists them").arg(words.first()));
    else if (words.size() != command->words)
        refuse(QString::fromUtf8(command->help));
    else if (command->on_speaker && !house.speaker(words.at(1)))
        refuse(QString("there is no speaker \"%1\"").arg(words.at(1)));
    else
        (this->*command->run)(words);
}

QStringList Sim_Console::help()
{
    QStringList lines;
    for (const Command *command = commands_begin(); command != commands_end(); ++command)
        lines.append(QString::fromUtf8(command->help));
    lines.append("Names with blanks stand in double quotes. Faults:");
    for (const QString &line : fault_help())
        lines.append("  " + line);
    lines.append("Faults of the download server: " + download_fault_words().join(", "));
    return lines;
}

void Sim_Console::refuse(const QString &why)
{
    log.line("? " + why);
}

void Sim_Console::done()
{
    log.line("ok");
}

void Sim_Console::do_help(const QStringList &)
{
    for (const QString &line : help())
        log.line(line);
}

void Sim_Console::do_list(const QStringList &)
{
    for (const QString &name : house.names()) {
        const Virtual_Speaker *speaker = house.speaker(name);
        log.line(QString("%1  type %2  %3  HTTP %4  %5")
                     .arg(name, -24)
                     .arg(speaker->config().type, 3)
                     .arg(speaker->address(), -15)
                     .arg(speaker->http_port(), 5)
                     .arg(speaker->running() ? "there" : "away"));
    }
}

void Sim_Console::do_fault(const QStringList &words)
{
    Virtual_Speaker *speaker = house.speaker(words.at(1));
    Speaker_Faults faults = speaker->faults();
    QString error;
    if (!set_fault(faults, words.at(2), words.at(3), &error))
        return refuse(error);
    speaker->set_faults(faults);
    done();
}

void Sim_Console::do_set(const QStringList &words)
{
    Virtual_Speaker *speaker = house.speaker(words.at(1));
    if (speaker->value(words.at(2)).isNull())
        return refuse(QString("it has no value \"%1\"").arg(words.at(2)));
    speaker->set_value(words.at(2), words.at(3));
    done();
}

void Sim_Console::do_leave(const QStringList &words)
{
    house.leave(words.at(1));
    done();
}

void Sim_Console::do_join(const QStringList &words)
{
    if (house.join(words.at(1)))
        done();
    else
        refuse(house.error());
}

void Sim_Console::do_move(const QStringList &words)
{
    if (house.move(words.at(1), words.at(2)))
        done();
    else
        refuse("the address cannot be taken");
}

void Sim_Console::do_cut(const QStringList &words)
{
    const bool reset = words.at(2) == "rst";
    if (!reset && words.at(2) != "fin")
        return refuse("cut by \"fin\" or \"rst\"");
    house.speaker(words.at(1))->cut_link(reset ? Cut_How::rst : Cut_How::fin);
    done();
}

void Sim_Console::do_send(const QStringList &words)
{
    house.speaker(words.at(1))->send_host(words.at(2).toUtf8() + '\r');
    done();
}

void Sim_Console::do_download(const QStringList &words)
{
    Download_Faults faults;
    if (!house.download_server())
        return refuse("the scene has no download server");
    if (!set_download_fault(faults, words.at(1)))
        return refuse("one of " + download_fault_words().join(", "));
    house.download_server()->set_faults(faults);
    done();
}

void Sim_Console::do_quit(const QStringList &)
{
    emit quit_asked();
}

QStringList split_words(const QString &line)
{
    QStringList words;
    QString word;
    bool quoted = false;
    bool begun = false;
    for (const QChar c : line) {
        if (c == QLatin1Char('"')) {
            quoted = !quoted;
            begun = true;
        } else if (c.isSpace() && !quoted) {
            if (begun)
                words.append(word);
            word.clear();
            begun = false;
        } else {
            word.append(c);
            begun = true;
        }
    }
    if (begun)
        words.append(word);
    return words;
}
