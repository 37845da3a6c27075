// SPDX-License-Identifier: MIT
// The replies of the chain that moves a speaker into a WLAN: name set, network added, network selected. Each
// input is the reply to all three.
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <cstdint>
#include <memory>

#include "app/globals.h"
#include "device/device_desc.h"
#include "fuzz/box_answerer.h"
#include "fuzz/dialog_reply.h"
#include "fuzz/require.h"
#include "fuzz/start_up.h"
#include "network/client_conf.h"

namespace
{
enum class Verdict { unreadable, success, failure };

Verdict verdict_of(const QByteArray &body)
{
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    if (object.isEmpty())
        return Verdict::unreadable;
    return object.value("returncode").toString() == "success" ? Verdict::success : Verdict::failure;
}

// A step that goes on by a request if it was a success, and tells a failure.
void take_step(Client_Conf *dialog, Box_Answerer &boxes, const char *handler, const QByteArray &body)
{
    boxes.take_count();
    hand_reply(dialog, handler, body);
    const Verdict verdict = verdict_of(body);
    require(requests_of(dialog) == (verdict == Verdict::success ? 1 : 0),
            "a success goes on, nothing else does");
    require(boxes.take_count() == (verdict == Verdict::failure ? 1 : 0),
            "a failure is told, nothing else is");
    // Without an address the request fails at once.
    settle();
    require(requests_of(dialog) == 0 && boxes.take_count() == 0, "a reply without an object ends the chain");
}

void take_last_step(Client_Conf *dialog, Box_Answerer &boxes, const QByteArray &body)
{
    const bool readable = verdict_of(body) != Verdict::unreadable;
    hand_reply(dialog, "replyFinishedB", body);
    require(boxes.take_count() == (readable ? 1 : 0), "the end of the chain is told");
    require(device_list.isEmpty() == readable, "the end of the chain clears the list");
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    make_application();
    make_main_window();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Box_Answerer boxes;
    const QByteArray body(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QPointer<Device_Desc> record(new Device_Desc(nullptr, false, ""));
    device_list = {record};
    const auto dialog = std::make_unique<Client_Conf>(record, nullptr);

    take_step(dialog.get(), boxes, "replyFinishedC", body);
    take_step(dialog.get(), boxes, "replyFinishedA", body);
    take_last_step(dialog.get(), boxes, body);
    settle();

    delete record;
    device_list.clear();
    return 0;
}
