// SPDX-License-Identifier: MIT
//
// discovery_probe TYPE: the discovery engine on the real daemon, without a window. It browses for that type,
// prints what the engine reports, one JSON object a line, and does what standard input says, one word a line:
//
//   start, stop   the browse
//   state         prints the descriptors and threads of the process, the resolvers and known services of the
//                 engine, and how late the latest beat of a 50 ms timer came since the last such question, on
//                 the thread that runs the engine
//   quit          (or the end of input) destroys the engine and ends

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutexLocker>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <memory>
#include <unistd.h>

#include "zeroconf/qzeroconf.h"
#include "zeroconf/qzeroconfprivate.h"
#include "zeroconf/resolver.h"

namespace
{
constexpr int beat_ms = 50;

class Probe : public QObject
{
public:
    explicit Probe(const QString &service_type);

private:
    void begin_engine();
    void report(const char *event, const QZeroConfService &service);
    void print(QJsonObject line);
    void read_input();
    void obey(const QByteArray &word);
    void print_state();
    void beat();

    const QString service_type;
    std::unique_ptr<QZeroConf> zeroconf;
    QElapsedTimer since_start;
    QSocketNotifier input{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray text;
    QTimer timer;
    QElapsedTimer since_beat;
    qint64 latest_beat_ms = 0;
};

Probe::Probe(const QString &service_type)
    : service_type(service_type)
{
    since_start.start();
    begin_engine();
    connect(&input, &QSocketNotifier::activated, this, &Probe::read_input);
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(beat_ms);
    connect(&timer, &QTimer::timeout, this, &Probe::beat);
    since_beat.start();
    timer.start();
}

void Probe::begin_engine()
{
    zeroconf = std::make_unique<QZeroConf>(nullptr);
    connect(zeroconf.get(), &QZeroConf::serviceAdded, this,
            [this](const QZeroConfService &s) { report("added", s); });
    connect(zeroconf.get(), &QZeroConf::serviceUpdated, this,
            [this](const QZeroConfService &s) { report("updated", s); });
    connect(zeroconf.get(), &QZeroConf::serviceRemoved, this,
            [this](const QZeroConfService &s) { report("removed", s); });
    connect(zeroconf.get(), &QZeroConf::error, this, [this](QZeroConf::error_t error) {
        print({{"event", "error"}, {"code", error}});
    });
}

void Probe::report(const char *event, const QZeroConfService &service)
{
    QJsonObject txt;
    for (auto entry = service->txt.cbegin(); entry != service->txt.cend(); ++entry)
        txt.insert(QString::fromUtf8(entry.key()), QString::fromUtf8(entry.value()));
    QMutexLocker lock(&service->ip_mutex);
    print({{"event", event},
           {"name", service->name},
           {"type", service->type},
           {"domain", service->domain},
           {"host", service->host},
           {"ip", service->ip.toString()},
           {"port", service->port},
           {"interface", static_cast<int>(service->interfaceIndex)},
           {"txt", txt}});
}

void Probe::print(QJsonObject line)
{
    line.insert("ms", since_start.elapsed());
    std::printf("%s\n", QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

void Probe::read_input()
{
    char buffer[256];
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count <= 0)
        return obey("quit");
    text.append(buffer, static_cast<int>(count));
    for (int end = text.indexOf('\n'); end != -1; end = text.indexOf('\n')) {
        const QByteArray word = text.left(end);
        text.remove(0, end + 1);
        obey(word);
    }
}

void Probe::obey(const QByteArray &word)
{
    if (word == "start") {
        QElapsedTimer call;
        call.start();
        zeroconf->startBrowser(service_type, QAbstractSocket::IPv4Protocol);
        print({{"event", "started"}, {"call_ms", call.elapsed()}});
    } else if (word == "stop") {
        zeroconf->stopBrowser();
        print({{"event", "stopped"}});
    } else if (word == "state") {
        print_state();
    } else if (word == "quit") {
        input.setEnabled(false);
        zeroconf.reset();
        QCoreApplication::quit();
    } else {
        qFatal("discovery_probe: no such word: %s", word.constData());
    }
}

void Probe::print_state()
{
    const auto entries = [](const char *path) {
        return QDir(path).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System).size();
    };
    beat();
    print({{"event", "state"},
           {"descriptors", entries("/proc/self/fd")},
           {"threads", entries("/proc/self/task")},
           {"known", zeroconf->services.size()},
           {"resolvers", zeroconf->pri->findChildren<Resolver *>().size()},
           {"latest_beat_ms", latest_beat_ms}});
    latest_beat_ms = 0;
}

void Probe::beat()
{
    latest_beat_ms = qMax(latest_beat_ms, since_beat.restart() - beat_ms);
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        qFatal("discovery_probe: no service type given");
    Probe probe(arguments[1]);
    return QCoreApplication::exec();
}
