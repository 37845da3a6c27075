// SPDX-License-Identifier: MIT
#include "tests/overview/silent_speaker.h"

#include <QHostAddress>

Silent_Speaker::Silent_Speaker(const QString &address)
{
    for (const quint16 port : {8990, 8991, 0}) {
        servers.push_back(std::make_unique<QTcpServer>());
        if (!servers.back()->listen(QHostAddress(address), port))
            qFatal("%s:%u cannot be opened", qPrintable(address), port);
    }
    http = servers.back()->serverPort();
}

void Silent_Speaker::end()
{
    servers.clear(); // with the connections
}
