// SPDX-License-Identifier: MIT
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <unistd.h>

#include "simulator/event_log.h"
#include "simulator/house.h"
#include "simulator/scene.h"
#include "simulator/sim_console.h"

namespace
{
constexpr int usage_error = 2;
constexpr int start_error = 1;

int signal_pipe[2];

extern "C" void end_asked(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signal_pipe[1], &byte, 1);
}

void watch_signals(QCoreApplication &application)
{
    if (pipe(signal_pipe) != 0)
        return;
    auto *notifier = new QSocketNotifier(signal_pipe[0], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    std::signal(SIGTERM, end_asked);
    std::signal(SIGINT, end_asked);
    std::signal(SIGPIPE, SIG_IGN);
}

// Commands come as they are typed or piped in. The end of the input ends the program only if there was any:
// started with an empty input, as in the background, it goes on.
class Command_Input : public QObject
{
public:
    Command_Input(Sim_Console &console, QObject *parent)
        : QObject(parent)
        , console(console)
        , notifier(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(&notifier, &QSocketNotifier::activated, this, [this] { read_some(); });
    }

private:
    void read_some()
    {
        char buffer[4096];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) {
            notifier.setEnabled(false);
            if (any)
                emit console.quit_asked();
            return;
        }
        any = true;
        text.append(buffer, static_cast<int>(count));
        for (int end = text.indexOf('\n'); end >= 0; end = text.indexOf('\n')) {
            console.obey(QString::fromUtf8(text.left(end)));
            text.remove(0, end + 1);
        }
    }

    Sim_Console &console;
    QSocketNotifier notifier;
    QByteArray text;
    bool any = false;
};

int fail(int code, const QString &why)
{
    std::fprintf(stderr, "virelo-sim: %s\n", why.toUtf8().constData());
    return code;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QString(
            "Virtual VIRELO Air speakers that speak the real protocols: the host protocol on TCP 8990 and "
            "8991,\n"
            "the JSON API over HTTP, and announcements by DNS-SD. Each stands on a loopback address of its "
            "own.\n"
            "One line is printed for each event. A scene is a JSON file that lists the speakers.\n\n"
            "Commands on standard input, one a line:\n  ") +
        Sim_Console::help().join("\n  "));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"scene", "Name of a scene that comes along, or the path of a file.", "scene", "home"},
        {"list-scenes", "Print the names of the scenes that come along."},
        {"no-announce", "Do not announce the speakers."},
        {"log", "Write the events to this file too.", "file"},
    });
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("virelo-sim");
    QCoreApplication::setApplicationVersion(VIRELO_VERSION);
    QCommandLineParser parser;
    describe(parser);
    parser.process(application);

    Event_Log log;
    if (parser.isSet("list-scenes")) {
        log.line(scene_names().join(QLatin1Char('\n')));
        return 0;
    }
    if (parser.isSet("log") && !log.open_file(parser.value("log")))
        return fail(usage_error, log.error());
    Scene scene;
    QString error;
    if (!load_scene(parser.value("scene"), scene, &error))
        return fail(usage_error, error);

    watch_signals(application);
    House house(scene, !parser.isSet("no-announce"), log);
    if (!house.start())
        return fail(start_error, house.error());
    log.line("ready");

    Sim_Console console(house, log);
    QObject::connect(&console, &Sim_Console::quit_asked, &application, &QCoreApplication::quit);
    const Command_Input input(console, nullptr);
    return QCoreApplication::exec();
}
