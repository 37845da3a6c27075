// SPDX-License-Identifier: MIT
#pragma once

#include <QMutexLocker>

#include "app/globals.h"

// The activities that are counted; from any thread, but not from a slot that is connected directly to
// all_resolves_completed.
inline int in_flight()
{
    const QMutexLocker lock(&resolves_mutex);
    return resolves_running;
}
