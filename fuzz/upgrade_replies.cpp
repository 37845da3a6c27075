// SPDX-License-Identifier: MIT
// The replies of a module that is being upgraded: to the start, and to the polls of its status. Each input is
// the reply to both.
#include <QJsonDocument>
#include <QJsonObject>
#include <QProgressBar>
#include <QPushButton>
#include <cstdint>
#include <memory>

#include "device/device_desc.h"
#include "fuzz/dialog_reply.h"
#include "fuzz/require.h"
#include "fuzz/start_up.h"
#include "update/client_update.h"

namespace
{
constexpr int status_error = 5;
constexpr int status_done = 6;
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static auto *const record = new Device_Desc(nullptr, false, "");
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    const auto dialog = std::make_unique<Client_Update>(record, nullptr);

    hand_reply(dialog.get(), "replyFinished", body);
    require(requests_of(dialog.get()) == (object.value("returncode").toString() == "success" ? 1 : 0),
            "a success starts the polling");
    // Without an address the poll fails at once, and that ends the polling.
    settle();
    require(fire_single_shot_timers() == 0, "a reply without an object ends the polling");

    dialog->back_button->setEnabled(false);
    hand_reply(dialog.get(), "replyFinishedUpdateCheck", body);
    const int status = object.value("status").toString().toInt();
    const bool done = !object.isEmpty() && status == status_done;
    require(dialog->back_button->isEnabled() == done, "the way back is open at the end only");
    require(!done || dialog->progress_bar->value() == dialog->progress_bar->maximum(),
            "the end is 100 per cent");
    const bool goes_on = !object.isEmpty() && status != status_error && status != status_done;
    require(fire_single_shot_timers() == (goes_on ? 1 : 0), "polling goes on until the end or an error");
    settle();
    return 0;
}
