// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/operation.h"

#include <avahi-client/client.h>
#include <avahi-common/error.h>
#include <utility>

Operation::Operation(Mailbox::ErrorReply error_reply)
    : mailbox(std::make_shared<Mailbox>(std::move(error_reply)))
{
}

void Operation::fail(AvahiClient *client)
{
    mailbox->fail(dns_sd_error(avahi_client_errno(client)));
}

DNSServiceErrorType dns_sd_error(int avahi_error)
{
    static constexpr struct {
        int avahi;
        DNSServiceErrorType dns_sd;
    } table[] = {
        {AVAHI_OK, kDNSServiceErr_NoError},
        {AVAHI_ERR_TIMEOUT, kDNSServiceErr_Timeout},
        {AVAHI_ERR_COLLISION, kDNSServiceErr_NameConflict},
        {AVAHI_ERR_DBUS_ERROR, kDNSServiceErr_ServiceNotRunning},
        {AVAHI_ERR_DISCONNECTED, kDNSServiceErr_ServiceNotRunning},
        {AVAHI_ERR_NO_DAEMON, kDNSServiceErr_ServiceNotRunning},
        {AVAHI_ERR_NO_MEMORY, kDNSServiceErr_NoMemory},
        {AVAHI_ERR_TOO_MANY_CLIENTS, kDNSServiceErr_NoMemory},
        {AVAHI_ERR_TOO_MANY_OBJECTS, kDNSServiceErr_NoMemory},
        {AVAHI_ERR_TOO_MANY_ENTRIES, kDNSServiceErr_NoMemory},
        {AVAHI_ERR_INVALID_HOST_NAME, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_DOMAIN_NAME, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_SERVICE_NAME, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_SERVICE_TYPE, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_PORT, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_INTERFACE, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_RECORD, kDNSServiceErr_BadParam},
        {AVAHI_ERR_INVALID_ARGUMENT, kDNSServiceErr_BadParam},
    };
    for (const auto &row : table) {
        if (row.avahi == avahi_error)
            return row.dns_sd;
    }
    return kDNSServiceErr_Unknown;
}

int avahi_interface(uint32_t interfaceIndex)
{
    return interfaceIndex == 0 ? AVAHI_IF_UNSPEC : static_cast<int>(interfaceIndex);
}
