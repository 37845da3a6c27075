// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>
#include <memory>

#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "simulator/download_server.h"
#include "simulator/loopback.h"
#include "tests/device/http_peer.h"
#include "tests/fakes/log_capture.h"
#include "tests/update/box_reader.h"
#include "tests/update/own_warnings.h"
#include "update/client_update.h"

// A speaker as a record without service and threads, its JSON API as a scripted peer, and the dialog on it.
struct Update_World {
    explicit Update_World(int type = 13)
    {
        control = std::make_unique<Virelo_Unknown>(type, own_loopback(1), "Kitchen");
        record->control = control.get();
        record->firmware = "1.4.2";
        peer.point_at_me(*record);
    }

    void open() { dialog = std::make_unique<Client_Update>(record.get(), nullptr); }

    void call(const char *slot) { QVERIFY(QMetaObject::invokeMethod(dialog.get(), slot)); }

    // "FLASH!", with the check of a file of 4321 bytes behind it.
    void press_flash()
    {
        QVERIFY(QMetaObject::invokeMethod(dialog.get(), "fileSize", Q_ARG(int, 4321)));
        dialog->flash_button->click();
        QTRY_COMPARE(peer.requests.size(), 1);
    }

    // The buttons that may be pressed, in the order in which they are declared.
    QStringList enabled() const
    {
        QStringList names;
        if (dialog->check_button->isEnabled())
            names += "check";
        if (dialog->flash_button->isEnabled())
            names += "flash";
        if (dialog->back_button->isEnabled())
            names += "back";
        return names;
    }

    void answer(const QByteArray &body) { peer.answer_now(peer.requests.constLast(), http_answer(body)); }

    std::unique_ptr<Virelos> control;
    std::unique_ptr<Device_Desc> record = std::make_unique<Device_Desc>(nullptr, false, "");
    Http_Peer peer{QHostAddress(own_loopback(1))};
    std::unique_ptr<Client_Update> dialog;
};

inline const QStringList unchecked = {"check", "back"};
inline const QStringList checked = {"check", "flash", "back"};
inline const QStringList done = {"back"};
inline const QStringList stuck = {};

// "METHOD PATH" of each request, in order.
inline QStringList asked_for(const Download_Server &server)
{
    QStringList requests;
    for (const Http_Request &request : server.requests())
        requests += QString::fromLatin1(request.method + ' ' + request.path);
    return requests;
}
