// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <sys/types.h>

// A program that a benchmark starts and measures from outside, with its begin on the clock of monotonic_us().
// Its standard output is read line by line. Whatever goes wrong with it ends the benchmark with one sentence.
// One thread.
class Child_Process
{
public:
    static constexpr int patience_ms = 120000;

    // `environment` goes over the caller's own.
    Child_Process(const QString &program, const QStringList &arguments,
                  const QMap<QString, QString> &environment = {});
    ~Child_Process(); // kills it if it has not ended yet
    Child_Process(const Child_Process &) = delete;
    Child_Process &operator=(const Child_Process &) = delete;

    pid_t pid() const { return process; }
    qint64 begin_us() const { return begin; }

    QByteArray read_line();          // without the line feed; null once it has closed its end
    QList<QByteArray> read_fields(); // the words of the next line, which must come
    void ask_to_end();               // by the signal that asks for it
    void wait();                     // until it has ended, which it must do with 0

private:
    pid_t process = -1;
    qint64 begin = 0;
    int output = -1;
    QByteArray unread;
};

// The file of a program that was built with this one, by its path from this one's folder.
QString built_program(const QString &path);

// Ends the benchmark: standard error takes the sentence.
[[noreturn]] void give_up(const QString &why);
