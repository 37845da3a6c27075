// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "control/virelo_air.h"
#include "tests/control/control_fixture.h"
#include "tests/update/update_world.h"

// A speaker with a running worker, a download server, and the dialog on them with "Host" chosen and checked.
// The download goes to a folder of this process.
class Flash_World
{
public:
    Flash_World()
    {
        qputenv("TMPDIR", folder.path().toLocal8Bit());
        QVERIFY2(speaker.start(), qPrintable(speaker.error()));
        QVERIFY2(server.start(), qPrintable(server.error()));
        control = std::make_unique<Virelo_Air>(13, own_loopback(1), "Kitchen");
        QVERIFY(start_worker(*control));
        record->control = control.get();
        speaker.clear_record();
    }
    ~Flash_World()
    {
        dialog.reset();
        control->terminate();
        delete control->link;
    }
    Flash_World(const Flash_World &) = delete;
    Flash_World &operator=(const Flash_World &) = delete;

    // The dialog, after a good check of a file of that content.
    void open(const QByteArray &content)
    {
        server.set_file("vc3w_host.hex", content);
        dialog = std::make_unique<Client_Update>(record.get(), nullptr);
        dialog->url_edit->setText(server.url());
        dialog->host_radio->click();
        dialog->check_button->click();
        QTRY_VERIFY(dialog->flash_button->isEnabled());
        server.clear_record();
    }

    // From "FLASH!" to the answered box.
    void flash(const QByteArray &content)
    {
        open(content);
        Box_Reader box;
        dialog->flash_button->click();
        QTRY_VERIFY(box.met());
    }

    // What came behind the command for the flash mode.
    QByteArray sent() const
    {
        const QByteArray bytes = speaker.host_bytes();
        const QByteArray command = "RZ!FL\n";
        const int start = bytes.indexOf(command);
        return start < 0 ? QByteArray("no flash mode") : bytes.mid(start + command.size());
    }

    // Runs `action` when the line of that number, from 0, has gone out.
    void at_line(int number, const std::function<void()> &action)
    {
        log.on_debug_line = [number, action](const QString &line) {
            if (line.startsWith(QString("Client_Update::flashLineTimer() HEX  %1 ").arg(number)))
                action();
        };
    }

    QStringList logged(const QString &start) const
    {
        QStringList lines;
        for (const QString &line : log.debug_lines()) {
            if (line.startsWith(start))
                lines += line;
        }
        return lines;
    }

    Log_Capture log{Log_Capture::Own_Thread};
    QTemporaryDir folder;
    Virtual_Speaker speaker{speaker_at_home()};
    Download_Server server{[] {
        Download_Config config;
        config.address = own_loopback(2);
        return config;
    }()};
    std::unique_ptr<Virelo_Air> control;
    std::unique_ptr<Device_Desc> record = std::make_unique<Device_Desc>(nullptr, false, "");
    std::unique_ptr<Client_Update> dialog;
};

inline QByteArray numbered_lines(int count)
{
    QByteArray lines;
    for (int i = 0; i < count; ++i)
        lines += ":" + QByteArray::number(i) + "\r\n";
    return lines;
}
