// SPDX-License-Identifier: MIT
// The part of Client_Update that brings firmware to the amplifier processor, the host: a file of text lines,
// sent one by one as they stand. Nothing of it is understood here, and no answer of the host is looked at.
#include <QDebug>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include "control/virelos.h"
#include "device/device_desc.h"
#include "settings/info_box.h"
#include "update/client_update.h"
#include "update/web_file.h"

namespace
{
// In which the host enters flash mode. The window freezes meanwhile, which is meant.
constexpr unsigned long flash_mode_ms = 5000;
constexpr int line_pause_ms = 10; // in which the window answers
} // namespace

void Client_Update::updateFirmwareHOST()
{
    if (flash_file)
        return; // lines go out, and the buttons stay enabled meanwhile
    Web_File *const file = new_job();
    // downloadFileError is left alone: a failed download reaches the same slot, which is meant.
    connect(file, &Web_File::downloadFileFinished, this, &Client_Update::hostDownloadFilefinished);
    file->download(host_file_url());
}

void Client_Update::hostDownloadFilefinished(QString filename, int lines)
{
    qDebug() << "HOST Firmware downloaded " << filename << "with" << lines << "lines";
    if (flash_file || !device || !device->control || device->is_group)
        return;

    status_label->setText(tr("Downloading...")); // throughout the transfer: meant
    flash_total = lines;
    flash_control = device->control;
    flash_control->terminate();
    flash_control->flash_open();
    flash_control->flash();
    QThread::msleep(flash_mode_ms);

    qDebug() << "\n\n\nflashing HEX File...";
    flash_file = new QFile(filename);
    flash_done = 0;
    if (!flash_file->open(QIODevice::ReadOnly)) {
        delete flash_file;
        flash_file = nullptr;
        return;
    }
    // All of it now: another download may write over the file while lines go out.
    flash_stream = new QTextStream(flash_file->readAll());
    flashLineTimer();
}

// Of a file of one line or none there is no part to tell.
double Client_Update::flash_percentage() const
{
    return flash_total > 0 ? static_cast<double>(flash_done) / flash_total * 100 : 0;
}

void Client_Update::flashLineTimer()
{
    const QString line = flash_stream->readLine();
    flash_control->flash_line(line + "\r\n");

    const double percentage = flash_percentage();
    progress_bar->setValue(static_cast<int>(percentage));
    qDebug() << "Client_Update::flashLineTimer() HEX " << flash_done << " " << percentage << "% " << line;
    ++flash_done;
    if (flash_stream->atEnd())
        hostFlashFilefinished();
    else
        QTimer::singleShot(line_pause_ms, this, SLOT(flashLineTimer()));
}

void Client_Update::hostFlashFilefinished()
{
    delete flash_stream;
    flash_stream = nullptr;
    flash_file->close();
    delete flash_file;
    flash_file = nullptr;

    progress_bar->setValue(progress_bar->maximum());
    qDebug() << "FLASHING file finished - Total " << flash_done << " lines";
    show_info_box(this, "Info", "Flashing HOST completed!", tr("OK"));
}

void Client_Update::hostDownloadFileError(QString filename)
{
    show_info_box(this, "Error", "File " + filename + " does not exist!", tr("OK"));
}
