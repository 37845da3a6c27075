// SPDX-License-Identifier: MIT
#include "fuzz/record_reply.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "app/globals.h"
#include "fuzz/memory_reply.h"
#include "fuzz/require.h"

bool take_reply(Device_Desc &record, Record_Handler handler, const QByteArray &body)
{
    int defects = 0;
    int completed = 0;
    QObject here;
    QObject::connect(&record, &Device_Desc::device_defect, &here, [&] { ++defects; });
    QObject::connect(&record, &Device_Desc::all_resolves_completed, &here, [&] { ++completed; });

    const bool readable = !QJsonDocument::fromJson(body).object().isEmpty();
    Memory_Reply reply(body);
    record.resolve_started();
    (record.*handler)(&reply);

    require(resolves_running == 0 && completed == 1, "the activity is counted down once");
    require(defects == (readable ? 0 : 1), "a record is defective where the reply holds no object");
    return readable;
}
