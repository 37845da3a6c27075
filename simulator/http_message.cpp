// SPDX-License-Identifier: MIT
#include "simulator/http_message.h"

#include <iterator>

namespace
{
struct Reason {
    int status;
    const char *phrase;
};

constexpr Reason reasons[] = {
    {200, "OK"},
    {302, "Found"},
    {400, "Bad Request"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {411, "Length Required"},
    {413, "Payload Too Large"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {505, "HTTP Version Not Supported"},
};
} // namespace

QByteArray Http_Request::header(const QByteArray &name) const
{
    for (const auto &header : headers)
        if (header.first.compare(name, Qt::CaseInsensitive) == 0)
            return header.second;
    return QByteArray();
}

QByteArray http_reason(int status)
{
    for (const Reason &reason : reasons)
        if (reason.status == status)
            return reason.phrase;
    return "Unknown";
}
