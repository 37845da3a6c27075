// SPDX-License-Identifier: MIT
#include "app/rzplattform.h"

#include <QDebug>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace
{
constexpr double mm_per_inch = 25.4;
constexpr int phone_width_max = 750;        // device pixels
constexpr double tablet_diagonal_min = 7.0; // inches
constexpr int start_width = 726;
constexpr int start_height = 660;

constexpr const char *x11_gl_variable = "QT_XCB_GL_INTEGRATION"; // of Qt's, for X11

#ifdef Q_OS_UNIX
constexpr rlim_t descriptors_wanted = 65536; // some systems refuse what they themselves call the maximum
#endif

bool is_mobile(const QString &os_word)
{
    return os_word == "android" || os_word == "ios";
}
} // namespace

QString rzplattform::os_name()
{
    return QStringLiteral(VIRELO_OS_WORD);
}

void rzplattform::set_up_process()
{
#ifdef Q_OS_UNIX
    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < descriptors_wanted) {
        limit.rlim_cur = std::min(limit.rlim_max, descriptors_wanted);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
#endif
    if (!qEnvironmentVariableIsSet(x11_gl_variable))
        qputenv(x11_gl_variable, "none");
}

void rzplattform::give_memory_back()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

int classify_device(const QString &os_word, int desktop_width, double diagonal)
{
    if (os_word == "macos") {
        qDebug() << "Device is MacOS Desktop";
        return DEVICE_DESKTOP;
    }
    if (os_word == "windows") {
        qDebug() << "Device is Windows Desktop";
        return DEVICE_DESKTOP;
    }
    if (!is_mobile(os_word))
        return 0;

    // The width comes first: a phone of high density in landscape is told by its diagonal alone.
    if (desktop_width <= phone_width_max) {
        qDebug() << "Device is Phone (wx " << desktop_width << " <= 750)";
        return DEVICE_PHONE;
    }
    if (diagonal < tablet_diagonal_min) {
        qDebug() << "Device is Phone (diagonal " << diagonal << " < 7.0inch)";
        return DEVICE_PHONE;
    }
    qDebug() << "Device is Tablet";
    return DEVICE_TABLET;
}

rzplattform::rzplattform()
{
    qDebug() << "rzplattform::rzplattform()";
    measure_screen();

    qDebug() << "OS: " << os_name();
    device_class = classify_device(os_name(), desktop_width, diagonal);

    window_width = start_width;
    window_height = start_height;

    qDebug() << "Desktop: " << desktop_width << " px x " << desktop_height << "px";
    qDebug() << "Available: " << available_width << " px x" << available_height << "px";
    qDebug() << "Window: " << window_width << " px x" << window_height << "px";
}

void rzplattform::measure_screen()
{
    const QScreen *screen = QGuiApplication::screens().first();
    ratio = screen->devicePixelRatio();
    qDebug() << "RATIO: " << ratio;

    physical_width = screen->physicalSize().width();
    physical_height = screen->physicalSize().height();
    dpi = screen->physicalDotsPerInch();
    diagonal = std::sqrt(physical_width * physical_width + physical_height * physical_height) / mm_per_inch;
    qDebug() << "Physical: " << physical_width << "mm x " << physical_height << "mm  @" << dpi << " DPI => "
             << diagonal << "\" diagonal (ESTIMATED)";

    const QRect whole = QGuiApplication::primaryScreen()->geometry();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    desktop_width = static_cast<int>(whole.width() * ratio);
    desktop_height = static_cast<int>(whole.height() * ratio);
    available_width = static_cast<int>(available.width() * ratio);
    available_height = static_cast<int>(available.height() * ratio);
}
