// SPDX-License-Identifier: MIT
//
// How many lines a second reach a host that answers at once: by the update dialog, as it is shown and
// clicked, beside a bare blocking socket that sends a line, waits for the answer and rests for 10 ms, and
// beside an event loop that does nothing but arm its next 10 ms. These 10 ms between two lines are the
// dialog's own and limit it to 100 lines a second. Wished for: 85 % of that and more.
//
//   build/release/bench/bench_host_flashing
//
// takes some 40 s; 5 of them are the host's time to enter flash mode.
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <functional>
#include <unistd.h>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "bench/tools/bare_link.h"
#include "bench/tools/child_process.h"
#include "bench/tools/table.h"
#include "control/virelo_air.h"
#include "device/device_desc.h"
#include "simulator/download_server.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "update/client_update.h"

namespace
{
constexpr int lines = 1000;
constexpr int pause_ms = 10;
constexpr double limit = 1000.0 / pause_ms;
constexpr int patience_ms = 60000;

void run_until(const std::function<bool()> &condition, const char *what)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > patience_ms)
            give_up(what);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

// Between the first firmware line that reached the speaker and the last one.
double lines_a_second(const Virtual_Speaker &speaker)
{
    QList<Recorded_Line> came = speaker.timed_host_lines();
    while (!came.isEmpty() && !came.first().line.startsWith(':'))
        came.removeFirst();
    if (came.size() != lines || !speaker.flash_image().whole())
        give_up("the image did not arrive whole");
    return (lines - 1) * 1e6 / static_cast<double>(came.last().us - came.first().us);
}

// All that a user does, the answer to the box at the end included.
void flash_by_dialog(Client_Update &dialog, const QString &url)
{
    bool completed = false;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, &user, [&completed] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            completed = true;
            box->accept();
        }
    });
    user.start(100);
    dialog.show();
    dialog.url_edit->setText(url);
    dialog.host_radio->click();
    dialog.check_button->click();
    run_until([&dialog] { return dialog.flash_button->isEnabled(); }, "the check does not come to an end");
    dialog.flash_button->click();
    run_until([&completed] { return completed; }, "the transfer does not come to an end");
}

double by_dialog(Virtual_Speaker &speaker, const QString &url)
{
    const Speaker_Config config = speaker.config();
    Device_Desc device(nullptr, false, config.name);
    device.control = new Virelo_Air(config.type, config.address, config.name);
    device.control->start();
    if (!speaker.wait_for_host_line("RZ?MT\n"))
        give_up("the worker does not start");
    Client_Update dialog(&device, nullptr);
    flash_by_dialog(dialog, url);
    return lines_a_second(speaker);
}

double by_bare_socket(Virtual_Speaker &speaker, const QByteArray &file)
{
    const Speaker_Config config = speaker.config();
    const int bare = connect_bare(config.address, config.host_port);
    speaker.clear_record();
    write_bare(bare, "RZ!FL\n");
    for (const QByteArray &line : file.trimmed().split('\n')) {
        char answer[16];
        write_bare(bare, line + '\n');
        if (read(bare, answer, sizeof answer) <= 0)
            give_up("the bare socket gets no answer");
        QThread::msleep(pause_ms);
    }
    close(bare);
    return lines_a_second(speaker);
}

double by_empty_loop()
{
    QEventLoop loop;
    int left = lines;
    std::function<void()> next = [&] {
        if (--left > 0)
            QTimer::singleShot(pause_ms, &loop, next);
        else
            loop.quit();
    };
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(pause_ms, &loop, next);
    loop.exec();
    return lines * 1e9 / static_cast<double>(clock.nsecsElapsed());
}

void add_row(Table &table, const char *name, double rate)
{
    table.add_row({name, QString::number(rate, 'f', 1), QString::number(100 * rate / limit, 'f', 0) + " %"});
}
} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir temporary; // for the file that the dialog downloads
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", temporary.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // as the program does with debug off
    plattform = new rzplattform;

    Speaker_Config config;
    config.address = own_loopback(1);
    Virtual_Speaker speaker(config);
    Download_Config download;
    download.address = config.address;
    download.hex_lines = lines;
    Download_Server server(download);
    if (!speaker.start() || !server.start())
        give_up(speaker.error() + server.error());

    const double dialog = by_dialog(speaker, server.url());
    const double socket = by_bare_socket(speaker, server.file("vc3w_host.hex"));
    const double loop = by_empty_loop();

    Table table({"1,000 lines", "lines a second", "of the limit"});
    add_row(table, "10 ms between two lines: the limit", limit);
    add_row(table, "event loop that sends nothing", loop);
    add_row(table, "bare blocking socket", socket);
    add_row(table, "update dialog", dialog);
    table.print();
    return 0;
}
