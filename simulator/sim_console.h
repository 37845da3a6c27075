// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class Event_Log;
class House;

// The typed commands of virelo-sim, one a line. What cannot be done is said in one line, and nothing else
// happens. One thread.
class Sim_Console : public QObject
{
    Q_OBJECT

public:
    Sim_Console(House &house, Event_Log &log);

    void obey(const QString &line);
    static QStringList help();

signals:
    void quit_asked();

private:
    struct Command;
    static const Command *commands_begin();
    static const Command *commands_end();

    void do_help(const QStringList &words);
    void do_list(const QStringList &words);
    void do_fault(const QStringList &words);
    void do_set(const QStringList &words);
    void do_leave(const QStringList &words);
    void do_join(const QStringList &words);
    void do_move(const QStringList &words);
    void do_cut(const QStringList &words);
    void do_send(const QStringList &words);
    void do_download(const QStringList &words);
    void do_quit(const QStringList &words);
    void refuse(const QString &why);
    void done();

    House &house;
    Event_Log &log;
};

// The words of a line: split at blanks, a part in double quotes is one word. Pure.
QStringList split_words(const QString &line);
