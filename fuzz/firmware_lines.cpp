// SPDX-License-Identifier: MIT
// A downloaded file of host firmware: written, counted, and sent line by line.
#include <QNetworkAccessManager>
#include <QThread>
#include <cstdint>

#include "control/serial_wifi.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "fuzz/box_answerer.h"
#include "fuzz/memory_reply.h"
#include "fuzz/memory_socket.h"
#include "fuzz/require.h"
#include "fuzz/start_up.h"
#include "update/client_update.h"
#include "update/web_file.h"

namespace
{
struct Download {
    QString path;
    int lines = 0;
};

Download downloaded(const QByteArray &body)
{
    Download download;
    Web_File file;
    file.manager = new QNetworkAccessManager;
    file.reply = new Memory_Reply(body);
    QObject::connect(&file, &Web_File::downloadFileFinished, [&download](const QString &path, int lines) {
        download = {path, lines};
    });
    require(QMetaObject::invokeMethod(&file, "finished", Qt::DirectConnection), "the handler is there");
    settle();
    return download;
}

// The speaker, at an address where nobody listens.
Device_Desc *speaker()
{
    static Device_Desc record(nullptr, false, "");
    if (!record.control)
        record.control = new Virelo_Unknown(TYPE_UNKNOWN, "127.0.0.0", "fuzz");
    return &record;
}

Memory_Socket *host = nullptr;

void enter_flash_mode(serial_wifi *link)
{
    delete link->host_socket;
    host = new Memory_Socket({}, Memory_Socket::End::silent);
    link->host_socket = host;
}
} // namespace

// In front of the library's own: the pause in which the host enters flash mode is not waited for. There the
// host comes into the place of the connection that failed.
void QThread::msleep(unsigned long)
{
    enter_flash_mode(speaker()->control->link);
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Box_Answerer boxes;
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const Download download = downloaded(body);

    Client_Update dialog(speaker(), nullptr);
    require(QMetaObject::invokeMethod(&dialog, "hostDownloadFilefinished", Qt::DirectConnection,
                                      Q_ARG(QString, download.path), Q_ARG(int, download.lines)),
            "the slot is there");
    while (dialog.flash_file)
        require(fire_single_shot_timers() == 1, "one line is behind the other");
    settle();

    require(boxes.take_count() == 1, "the end of the transfer is told");
    require(dialog.flash_done == qMax(1, download.lines + 1), "as many lines are sent as were counted");
    if (!body.contains('\0')) // which cuts a line
        require(host->written.count('\n') == dialog.flash_done, "each line ends once");
    return 0;
}
