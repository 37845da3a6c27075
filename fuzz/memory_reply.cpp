// SPDX-License-Identifier: MIT
#include "fuzz/memory_reply.h"

#include <algorithm>
#include <cstring>

Memory_Reply::Memory_Reply(const QByteArray &body)
    : unread(body)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    setFinished(true);
}

bool Memory_Reply::isSequential() const
{
    return true;
}

qint64 Memory_Reply::bytesAvailable() const
{
    return unread.size() + QNetworkReply::bytesAvailable();
}

void Memory_Reply::abort() {}

qint64 Memory_Reply::readData(char *data, qint64 max_size)
{
    const int size = static_cast<int>(std::min<qint64>(max_size, unread.size()));
    std::memcpy(data, unread.constData(), static_cast<size_t>(size));
    unread.remove(0, size);
    return size;
}
