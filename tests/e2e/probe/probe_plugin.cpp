// SPDX-License-Identifier: MIT
#include "tests/e2e/probe/probe_server.h"

#include <QCoreApplication>
#include <QGenericPlugin>
#include <QTimer>

// There only where the program is built with a sanitizer that looks for leaks. Ends the process if it finds
// some.
extern "C" void __lsan_do_leak_check() __attribute__((weak));

namespace
{
// The program leaves without the routines of the process's end, by which the sanitizer would look by itself.
void look_for_leaks()
{
    if (__lsan_do_leak_check)
        __lsan_do_leak_check();
}
} // namespace

// The door through which Qt brings the probe into the program (QT_QPA_GENERIC_PLUGINS=virelo_probe). It is
// made while the application object is still being built, so the server waits for the event loop.
class Probe_Plugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "virelo_probe.json")

public:
    QObject *create(const QString &key, const QString &specification) override
    {
        (void)specification;
        if (key.compare(QLatin1String("virelo_probe"), Qt::CaseInsensitive) != 0)
            return nullptr;
        qAddPostRoutine(look_for_leaks);
        auto *server = new Probe_Server(qEnvironmentVariable("VIRELO_PROBE_SOCKET"));
        QTimer::singleShot(0, server, &Probe_Server::listen);
        return server;
    }
};

#include "probe_plugin.moc"
