// SPDX-License-Identifier: MIT
//
// A plugin that Qt itself loads into a program as it ships (QT_QPA_GENERIC_PLUGINS=virelo_stopwatch): once
// the first window has been drawn it prints what the program has needed until then, and ends it:
//
//   MOMENT CPU PEAK    microseconds of the monotonic clock, microseconds of the processor, peak memory in kB
//
// A program whose window never shows prints nothing and goes on.
#include <QCoreApplication>
#include <QGenericPlugin>
#include <QWindow>
#include <cstdio>
#include <sys/resource.h>

#include "simulator/monotonic.h"

class Stopwatch : public QObject
{
public:
    Stopwatch() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *window = qobject_cast<QWindow *>(object);
        if (event->type() == QEvent::Expose && window && window->isTopLevel() && window->isExposed()) {
            QCoreApplication::instance()->removeEventFilter(this);
            // The window draws itself in its own handler of this event.
            QMetaObject::invokeMethod(
                this, [] { stop(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    static void stop()
    {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        const auto us = [](const timeval &time) { return time.tv_sec * 1000000LL + time.tv_usec; };
        std::printf("%lld %lld %ld\n", static_cast<long long>(monotonic_us()),
                    us(usage.ru_utime) + us(usage.ru_stime), usage.ru_maxrss);
        std::fflush(stdout);
        QCoreApplication::exit(0);
    }
};

class Stopwatch_Plugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "stopwatch.json")

public:
    QObject *create(const QString &key, const QString &specification) override
    {
        (void)specification;
        return key.compare(QLatin1String("virelo_stopwatch"), Qt::CaseInsensitive) == 0 ? new Stopwatch
                                                                                        : nullptr;
    }
};

#include "stopwatch.moc"
