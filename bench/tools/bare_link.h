// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// What the program is measured beside: the plainest way to a speaker's link. Each gives up where it fails.
// Any thread.

int connect_bare(const QString &address, quint16 port); // the descriptor of a blocking socket
void write_bare(int descriptor, const QByteArray &frame);

// The frame of a volume, 0 to 100, as everybody must put it on the wire.
QByteArray volume_frame(int volume);
