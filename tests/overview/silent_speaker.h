// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTcpServer>
#include <memory>
#include <vector>

// A speaker that takes every connection, for commands and for HTTP, and never answers: what is asked of it
// stays in flight until it ends. Then all connections are cut, and further ones are refused.
class Silent_Speaker
{
public:
    explicit Silent_Speaker(const QString &address);
    void end();

    quint16 http_port() const { return http; }

private:
    std::vector<std::unique_ptr<QTcpServer>> servers;
    quint16 http = 0;
};
