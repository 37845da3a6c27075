// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/globals.h"
#include "network/client_conf.h"
#include "tests/network/wlan_world.h"

// Opens the WLAN settings for the world's record, as the list of WLANs does.
inline Client_Conf *open_conf(const Wlan_World &world)
{
    conf_dialog = new Client_Conf(world.record, nullptr);
    conf_dialog->show();
    if (!QTest::qWaitForWindowExposed(conf_dialog))
        qFatal("the dialog does not show");
    return conf_dialog;
}

inline void save(const Client_Conf *dialog)
{
    QTest::mouseClick(dialog->save_button, Qt::LeftButton);
}

// Waits for the request of that number, from 0, and answers it. False if it does not come.
inline bool answer(const Wlan_World &world, int number, const QByteArray &raw)
{
    if (!QTest::qWaitFor([&world, number] { return world.peer.requests.size() > number; }))
        return false;
    world.peer.answer_now(world.peer.requests.at(number), raw);
    return true;
}

inline bool answer_json(const Wlan_World &world, int number, const QByteArray &body)
{
    return answer(world, number, http_answer(body));
}

const QByteArray success = R"({"returncode": "success"})";
const QByteArray added = R"({"returncode": "success", "id": 3})";
