// SPDX-License-Identifier: MIT
#include "bench/tools/bare_link.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "bench/tools/child_process.h"

int connect_bare(const QString &address, quint16 port)
{
    sockaddr_in peer = {};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    inet_pton(AF_INET, qPrintable(address), &peer.sin_addr);
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    if (descriptor < 0 || connect(descriptor, reinterpret_cast<sockaddr *>(&peer), sizeof peer) != 0)
        give_up("the bare socket cannot connect");
    return descriptor;
}

void write_bare(int descriptor, const QByteArray &frame)
{
    if (write(descriptor, frame.constData(), static_cast<size_t>(frame.size())) != frame.size())
        give_up("the bare socket cannot write");
}

QByteArray volume_frame(int volume)
{
    return "RZ!vo" + QByteArray::number(volume).rightJustified(3, '0') + '\n';
}
