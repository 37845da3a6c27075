// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class QObject;

// Hands `body` to a handler of a dialog, as a reply of the speaker.
void hand_reply(QObject *dialog, const char *handler, const QByteArray &body);

// Requests that are in flight for the owner.
int requests_of(const QObject *owner);
