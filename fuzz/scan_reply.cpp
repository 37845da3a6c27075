// SPDX-License-Identifier: MIT
// The reply to the WLAN scan, in the dialog that lists the networks.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>
#include <QTreeWidget>
#include <cstdint>

#include "device/device_desc.h"
#include "fuzz/box_answerer.h"
#include "fuzz/dialog_reply.h"
#include "fuzz/require.h"
#include "fuzz/start_up.h"
#include "network/client_wlans.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Box_Answerer boxes;
    static auto *const record = new Device_Desc(nullptr, false, "");
    // Without an address the request that it posts fails at once.
    static auto *const dialog = new Client_WLANs(record, nullptr);
    settle();
    dialog->tree->clear();
    dialog->next_button->setEnabled(false);
    boxes.take_count();

    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    const int networks = object.value("aplist").toArray().size();
    hand_reply(dialog, "replyFinished", body);

    require(dialog->tree->topLevelItemCount() == networks, "each network has its row");
    require(dialog->next_button->isEnabled() == (networks > 0), "there is a way on with networks only");
    require(boxes.take_count() == (networks == 0 && !object.isEmpty() ? 1 : 0), "an empty list is told");
    return 0;
}
