// SPDX-License-Identifier: MIT
#include "fuzz/memory_socket.h"

#include <algorithm>
#include <cstring>

Memory_Socket::Memory_Socket(const QByteArrayList &parts, End end)
    : to_come(parts)
    , end(end)
{
    setSocketState(ConnectedState);
    setOpenMode(QIODevice::ReadWrite | QIODevice::Unbuffered);
}

// There is no connection that the base class could close.
Memory_Socket::~Memory_Socket()
{
    setSocketState(UnconnectedState);
}

bool Memory_Socket::waitForReadyRead(int)
{
    if (to_come.isEmpty()) {
        if (end == End::closed)
            setSocketState(UnconnectedState);
        return false;
    }
    arrived += to_come.takeFirst();
    return true;
}

qint64 Memory_Socket::bytesAvailable() const
{
    return arrived.size();
}

qint64 Memory_Socket::bytesToWrite() const
{
    return 0;
}

qint64 Memory_Socket::readData(char *data, qint64 max_size)
{
    const int size = static_cast<int>(std::min<qint64>(max_size, arrived.size()));
    std::memcpy(data, arrived.constData(), static_cast<size_t>(size));
    arrived.remove(0, size);
    return size;
}

qint64 Memory_Socket::writeData(const char *data, qint64 size)
{
    written.append(data, static_cast<int>(size));
    return size;
}
