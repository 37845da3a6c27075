// SPDX-License-Identifier: MIT
#include "fuzz/start_up.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimerEvent>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "fuzz/require.h"

namespace
{
void live_in(const QString &folder)
{
    for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TMPDIR"})
        qputenv(variable, QFile::encodeName(folder));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
}
} // namespace

// What the font library keeps is never freed, and none of ours.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

void make_application()
{
    static QTemporaryDir folder;
    require(folder.isValid(), "there is a folder for this run");
    live_in(folder.path());
    // The messages are still put together, which is work on what came in as well.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    new QApplication(argc, argv);
    QCoreApplication::setOrganizationName("VIRELO");
    QCoreApplication::setApplicationName("VireloApp");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    settings = new QSettings;
    debug_console = new QTextEdit;
    plattform = new rzplattform;
}

void make_main_window()
{
    client = new Client(nullptr);
}

void settle()
{
    // A request that is done goes in the pass behind the one that its handler ran in.
    for (int pass = 0; pass < 2; ++pass) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

int fire_single_shot_timers()
{
    QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    QList<QPointer<QObject>> timers;
    for (QObject *child : dispatcher->children())
        if (child->inherits("QSingleShotTimer"))
            timers.append(child);

    int fired = 0;
    for (const QPointer<QObject> &timer : qAsConst(timers)) {
        if (!timer)
            continue;
        const auto registered = dispatcher->registeredTimers(timer);
        for (const QAbstractEventDispatcher::TimerInfo &info : registered) {
            QTimerEvent event(info.timerId);
            QCoreApplication::sendEvent(timer, &event);
            ++fired;
        }
    }
    return fired;
}
