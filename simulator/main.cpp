// SPDX-License-Identifier: MIT
//
// virelo-sim: the speakers of a scene, alive until it is told to end. Exit code 0 after "quit", the end of
// the input or a signal that asks for the end; 1 if the speakers cannot be; 2 if it was called wrongly.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <unistd.h>

#include "simulator/event_log.h"
#include "simulator/house.h"
#include "simulator/many_descriptors.h"
#include "simulator/scene.h"
#include "simulator/sim_console.h"

namespace
{
constexpr int start_error = 1;
constexpr int usage_error = 2;

int signal_pipe[2];

extern "C" void end_asked(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signal_pipe[1], &byte, 1);
}

// A signal handler may do next to nothing; the byte that it writes ends the event loop.
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

// Commands come as they are typed or piped in. The end of the input ends the program only if there was any,
// or if somebody types: started with an empty input, as in the background, it goes on.
class Command_Input : public QObject
{
public:
    Command_Input(Sim_Console &console, Event_Log &log)
        : console(console)
        , log(log)
        , notifier(STDIN_FILENO, QSocketNotifier::Read)
        , awaited(isatty(STDIN_FILENO) != 0)
    {
        connect(&notifier, &QSocketNotifier::activated, this, [this] { read_some(); });
    }

private:
    void read_some()
    {
        char buffer[4096];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count > 0) {
            awaited = true;
            text.append(buffer, static_cast<int>(count));
        } else {
            notifier.setEnabled(false);
            text.append('\n'); // the last line may lack its end
        }
        for (int end = text.indexOf('\n'); end >= 0; end = text.indexOf('\n')) {
            const QString line = QString::fromUtf8(text.left(end));
            text.remove(0, end + 1);
            console.obey(line);
        }
        if (count > 0)
            return;
        if (awaited)
            QCoreApplication::quit();
        else
            log.line("there is no input; a signal ends this");
    }

    Sim_Console &console;
    Event_Log &log;
    QSocketNotifier notifier;
    QByteArray text;
    bool awaited;
};

int fail(int code, const QString &why)
{
    std::fprintf(stderr, "virelo-sim: %s\n", why.toUtf8().constData());
    return code;
}

int print(const QStringList &lines)
{
    for (const QString &line : lines)
        std::printf("%s\n", line.toUtf8().constData());
    return 0;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        "\nVirtual VIRELO Air speakers. Each stands on a loopback address of its own and speaks the real\n"
        "protocols: the host protocol on TCP 8990 and 8991, the JSON API over HTTP, announcements by "
        "DNS-SD.\n"
        "What happens to them is printed, one line an event; \"ready\" stands there once all are up.");
    parser.addOptions({
        {{"h", "help"}, "Print this."},
        {{"v", "version"}, "Print the version."},
        {"scene", "Which speakers: the name of a scene that comes along, or the path of a file.", "scene",
         "home"},
        {"list-scenes", "Print the scenes that come along."},
        {"list-keys", "Print the keys of a scene file."},
        {"list-faults", "Print the faults that a speaker can be given."},
        {"no-announce", "Do not announce the speakers; no DNS-SD daemon is needed then."},
        {"log", "Write what is printed to this file too.", "file"},
    });
}

QStringList scene_list()
{
    QStringList lines;
    for (const QString &name : scene_names()) {
        Scene scene;
        QString error;
        load_scene(name, scene, &error);
        lines += name.leftJustified(14) + ' ' + scene.about;
    }
    return lines;
}

QStringList help(const QCommandLineParser &parser)
{
    const QString indent = "  ";
    QStringList lines = {parser.helpText(), "Scenes that come along:"};
    for (const QString &line : scene_list())
        lines += indent + line;
    lines += {"", "Commands on standard input, one a line; a NAME with blanks stands in double quotes:"};
    for (const QString &line : Sim_Console::help())
        lines += indent + line;
    lines += {
        "",
        "An event is told with seconds since the start and who. \"<-\" was heard, \"->\" was said, \"--\" "
        "happened",
        "to links or firmware, \"!!\" is wrong with what was heard or cannot be.",
        "",
        "To try the application on them, without a packet on your network, in the source tree:",
        "  scripts/lab -- bash -c 'build/release/simulator/virelo-sim & build/release/VireloApp'",
        "To type commands to speakers that nobody sees announced:",
        "  virelo-sim --no-announce --scene group",
        "  fault \"Salon links\" http error-page",
        "The manual page virelo-sim(1) tells more.",
    };
    return lines;
}

int run(QCoreApplication &application, const QCommandLineParser &parser)
{
    Event_Log log;
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
    const Command_Input input(console, log);
    return QCoreApplication::exec();
}
} // namespace

int main(int argc, char *argv[])
{
    allow_many_descriptors();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("virelo-sim");
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(usage_error, parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return fail(usage_error, "it takes options only; --help lists them");
    if (parser.isSet("help"))
        return print(help(parser));
    if (parser.isSet("version"))
        return print({"virelo-sim " VIRELO_VERSION});
    if (parser.isSet("list-scenes"))
        return print(scene_list());
    if (parser.isSet("list-keys"))
        return print(scene_help());
    if (parser.isSet("list-faults"))
        return print(fault_help());
    return run(application, parser);
}
