// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

class Event_Log;
class House;

// The typed commands of virelo-sim, one a line. A command that was carried out is answered by "ok" or by what
// it asks for; what cannot be done is said in one line that begins with "? ", and nothing else happens. One
// thread, that of the house.
class Sim_Console : public QObject
{
    Q_OBJECT

public:
    Sim_Console(House &house, Event_Log &log);

    void obey(const QString &line);
    static QStringList help(); // one line for each command

signals:
    void quit_asked();

private:
    struct Command;
    static const std::vector<Command> &commands();

    void do_list(const QStringList &words);
    void do_set(const QStringList &words);
    void do_fault(const QStringList &words);
    void do_faults(const QStringList &words);
    void do_leave(const QStringList &words);
    void do_join(const QStringList &words);
    void do_move(const QStringList &words);
    void do_cut(const QStringList &words);
    void do_send(const QStringList &words);
    void do_download(const QStringList &words);
    void do_help(const QStringList &words);
    void do_quit(const QStringList &words);
    void say(const QStringList &lines);
    void refuse(const QString &why);
    void answer(bool done); // by "ok" or by what the house complains of

    House &house;
    Event_Log &log;
};

// The words of a line: split at blanks, a part in double quotes is one word. Nothing if a quote is not
// closed. Pure.
std::optional<QStringList> split_words(const QString &line);
