// SPDX-License-Identifier: MIT
#include "simulator/black_hole.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
// A queue of length 0 still takes one connection, and some kernels one more; the rest hang as strangers
// would.
constexpr int filler_count = 4;
} // namespace

Black_Hole::Black_Hole(const QString &address, quint16 port)
{
    if (!open(address, port))
        close_all();
}

Black_Hole::~Black_Hole()
{
    close_all();
}

bool Black_Hole::open(const QString &address, quint16 port)
{
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    if (inet_pton(AF_INET, address.toLatin1().constData(), &where.sin_addr) != 1)
        return false;
    listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    if (listener < 0 || setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0)
        return false;
    socklen_t size = sizeof where;
    if (bind(listener, reinterpret_cast<sockaddr *>(&where), sizeof where) != 0 || listen(listener, 0) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr *>(&where), &size) != 0)
        return false;
    bound_port = ntohs(where.sin_port);
    for (int i = 0; i < filler_count; i++) {
        const int filler = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (filler < 0)
            return false;
        fillers.push_back(filler);
        // Not to succeed is what the later ones are for.
        (void)connect(filler, reinterpret_cast<sockaddr *>(&where), sizeof where);
    }
    return true;
}

void Black_Hole::close_all()
{
    for (const int filler : fillers)
        close(filler);
    fillers.clear();
    if (listener >= 0)
        close(listener);
    listener = -1;
    bound_port = 0;
}
