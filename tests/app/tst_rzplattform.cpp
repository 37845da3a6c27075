// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QProcess>
#include <QScreen>
#include <QTest>
#include <cmath>
#include <sys/resource.h>

#include "app/rzplattform.h"
#include "tests/fakes/log_capture.h"

// Run once on the core of this system and once on the "ios" core (TEST_OS_WORD); the same program runs itself
// again on other screens.
class tst_rzplattform : public QObject
{
    Q_OBJECT

    static int run_again(const char *platform, const char *scale, const QString &function);

private slots:
    void os_name_is_the_word_of_the_build();
    void class_follows_word_width_and_diagonal_data();
    void class_follows_word_width_and_diagonal();
    void fields_hold_the_metrics_of_the_first_screen();
    void fields_hold_device_pixels_on_a_scaled_screen();
    void window_size_is_the_same_on_a_small_screen();
    void class_is_that_of_word_and_screen();
    void class_is_that_of_word_and_small_screen();
    void measurement_is_logged_in_order();
    void as_many_descriptors_as_allowed_may_be_open();
    void opengl_stays_out_unless_it_is_asked_for();
};

int tst_rzplattform::run_again(const char *platform, const char *scale, const QString &function)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", platform);
    environment.insert("QT_SCALE_FACTOR", scale);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {function});
    if (!child.waitForFinished() || child.exitStatus() != QProcess::NormalExit)
        return -1;
    if (child.exitCode() != 0)
        qWarning("%s", child.readAllStandardOutput().constData());
    return child.exitCode();
}

void tst_rzplattform::os_name_is_the_word_of_the_build()
{
    QCOMPARE(rzplattform::os_name(), QString(TEST_OS_WORD));
}

void tst_rzplattform::class_follows_word_width_and_diagonal_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("diagonal");
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("log");
    const double just_below_7 = std::nextafter(7.0, 0.0);

    QTest::newRow("macos") << "macos" << 2560 << 13.3 << 3 << "Device is MacOS Desktop";
    QTest::newRow("macos, tiny") << "macos" << 320 << 3.0 << 3 << "Device is MacOS Desktop";
    QTest::newRow("windows") << "windows" << 1920 << 24.0 << 3 << "Device is Windows Desktop";
    QTest::newRow("windows, tiny") << "windows" << 320 << 3.0 << 3 << "Device is Windows Desktop";
    for (const char *word : {"android", "ios"}) {
        const auto row = [word](const char *name, int width, double diagonal, int device_class,
                                const char *log) {
            QTest::addRow("%s, %s", word, name) << word << width << diagonal << device_class << log;
        };
        row("narrow, small", 640, 4.7, 1, "Device is Phone (wx  640  <= 750)");
        row("narrow, large", 640, 9.7, 1, "Device is Phone (wx  640  <= 750)");
        row("750 wide", 750, 9.7, 1, "Device is Phone (wx  750  <= 750)");
        row("751 wide, large", 751, 9.7, 2, "Device is Tablet");
        row("751 wide, small", 751, 4.7, 1, "Device is Phone (diagonal  4.7  < 7.0inch)");
        row("wide, 7 inches", 2000, 7.0, 2, "Device is Tablet");
        row("wide, just below 7 inches", 2000, just_below_7, 1, "Device is Phone (diagonal  7  < 7.0inch)");
        row("wide, no physical size", 2000, 0.0, 1, "Device is Phone (diagonal  0  < 7.0inch)");
    }
    QTest::newRow("linux") << "linux" << 1920 << 24.0 << 0 << QString();
    QTest::newRow("linux, tiny") << "linux" << 320 << 3.0 << 0 << QString();
    QTest::newRow("no word") << "" << 320 << 3.0 << 0 << QString();
    QTest::newRow("upper case is another word") << "Windows" << 1920 << 24.0 << 0 << QString();
}

void tst_rzplattform::class_follows_word_width_and_diagonal()
{
    QFETCH(QString, word);
    QFETCH(int, width);
    QFETCH(double, diagonal);
    QFETCH(int, device_class);
    QFETCH(QString, log);
    Log_Capture capture;
    QCOMPARE(classify_device(word, width, diagonal), device_class);
    QCOMPARE(capture.texts(), log.isEmpty() ? QStringList() : QStringList{log});
}

void tst_rzplattform::fields_hold_the_metrics_of_the_first_screen()
{
    const QScreen *screen = QGuiApplication::screens().first();
    const rzplattform metrics;
    QCOMPARE(metrics.ratio, qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble());
    QCOMPARE(metrics.ratio, screen->devicePixelRatio());
    QCOMPARE(metrics.physical_width, screen->physicalSize().width());
    QCOMPARE(metrics.physical_height, screen->physicalSize().height());
    QVERIFY(metrics.physical_width > 0);
    QCOMPARE(metrics.dpi, screen->physicalDotsPerInch());
    QCOMPARE(metrics.diagonal, std::hypot(metrics.physical_width, metrics.physical_height) / 25.4);
    QCOMPARE(metrics.desktop_width, int(screen->geometry().width() * metrics.ratio));
    QCOMPARE(metrics.desktop_height, int(screen->geometry().height() * metrics.ratio));
    QCOMPARE(metrics.available_width, int(screen->availableGeometry().width() * metrics.ratio));
    QCOMPARE(metrics.available_height, int(screen->availableGeometry().height() * metrics.ratio));
    QCOMPARE(metrics.window_width, 726);
    QCOMPARE(metrics.window_height, 660);
}

void tst_rzplattform::fields_hold_device_pixels_on_a_scaled_screen()
{
    // 800 pixels make 533 logical ones at 1.5, and 799.5, cut to 799, when they are counted back.
    QCOMPARE(run_again("offscreen", "1.5", "fields_hold_the_metrics_of_the_first_screen"), 0);
}

void tst_rzplattform::window_size_is_the_same_on_a_small_screen()
{
    QCOMPARE(run_again("minimal", "1", "fields_hold_the_metrics_of_the_first_screen"), 0);
}

void tst_rzplattform::class_is_that_of_word_and_screen()
{
    const rzplattform metrics;
    QCOMPARE(metrics.device_class,
             classify_device(rzplattform::os_name(), metrics.desktop_width, metrics.diagonal));
    const bool mobile = rzplattform::os_name() == "ios";
    const bool narrow = QGuiApplication::screens().first()->geometry().width() <= 750;
    const int mobile_class = narrow ? DEVICE_PHONE : DEVICE_TABLET;
    QCOMPARE(metrics.device_class, mobile ? mobile_class : 0);
}

void tst_rzplattform::class_is_that_of_word_and_small_screen()
{
    QCOMPARE(run_again("minimal", "1", "class_is_that_of_word_and_screen"), 0);
}

void tst_rzplattform::measurement_is_logged_in_order()
{
    const QSizeF size = QGuiApplication::screens().first()->physicalSize();
    const double diagonal = std::hypot(size.width(), size.height()) / 25.4;
    QStringList expected{"rzplattform::rzplattform()", "RATIO:  1"};
    expected << QString("Physical:  %1 mm x  %2 mm  @ %3  DPI =>  %4 \" diagonal (ESTIMATED)")
                    .arg(size.width())
                    .arg(size.height())
                    .arg(QGuiApplication::screens().first()->physicalDotsPerInch())
                    .arg(diagonal);
    expected << QString("OS:  \"%1\"").arg(TEST_OS_WORD);
    if (rzplattform::os_name() == "ios")
        expected << "Device is Tablet";
    expected << "Desktop:  800  px x  600 px"
             << "Available:  800  px x 600 px"
             << "Window:  726  px x 660 px";

    Log_Capture capture;
    const rzplattform metrics;
    QCOMPARE(capture.texts(), expected);
}

void tst_rzplattform::as_many_descriptors_as_allowed_may_be_open()
{
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit usual = {std::min<rlim_t>(1024, before.rlim_max), before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);

    rzplattform::set_up_process();
    rlimit after = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &after), 0);
    QCOMPARE(after.rlim_cur, std::min<rlim_t>(65536, before.rlim_max));
    QCOMPARE(after.rlim_max, before.rlim_max);

    QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
    rzplattform::set_up_process(); // never lowers it
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &after), 0);
    QVERIFY(after.rlim_cur >= before.rlim_cur);
}

void tst_rzplattform::opengl_stays_out_unless_it_is_asked_for()
{
    qunsetenv("QT_XCB_GL_INTEGRATION");
    rzplattform::set_up_process();
    QCOMPARE(qgetenv("QT_XCB_GL_INTEGRATION"), QByteArray("none"));

    qputenv("QT_XCB_GL_INTEGRATION", "xcb_egl");
    rzplattform::set_up_process();
    QCOMPARE(qgetenv("QT_XCB_GL_INTEGRATION"), QByteArray("xcb_egl"));
}

QTEST_MAIN(tst_rzplattform)
#include "tst_rzplattform.moc"
