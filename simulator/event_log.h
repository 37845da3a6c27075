// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <mutex>

// One readable line for each event: seconds since the start, who, what. Written at once to standard output,
// and to a file where one is named; what cannot be written is lost without a word. On a terminal a line has
// a colour by what it is, unless the environment holds NO_COLOR. Any thread, but for open_file, which comes
// before all else.
class Event_Log
{
public:
    Event_Log();

    bool open_file(const QString &path); // false if it cannot be written; error() says why
    QString error() const;

    void event(const QString &who, const QString &what);
    void line(const QString &text); // without time and name

private:
    void write(const QString &text, const char *colour);

    QElapsedTimer clock;
    bool colourful;
    QFile file;
    std::mutex mutex; // guards both outputs
};
