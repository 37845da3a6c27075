// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/register_operation.h"

#include <arpa/inet.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <utility>

#include "zeroconf/avahi/names.h"

RegisterOperation::RegisterOperation(DNSServiceRef ref, uint32_t interfaceIndex, const char *name,
                                     const char *type, const char *domain, const char *host, uint16_t port,
                                     std::string txt, DNSServiceRegisterReply callback, void *context)
    : Operation([=](DNSServiceErrorType code) { callback(ref, 0, code, nullptr, nullptr, nullptr, context); })
    , ref(ref)
    , interface_index(interfaceIndex)
    , name(or_empty(name))
    , type(type)
    , domain(or_empty(domain))
    , host(or_empty(host))
    , port(port)
    , txt(std::move(txt))
    , callback(callback)
    , context(context)
{
}

RegisterOperation::~RegisterOperation()
{
    if (group)
        avahi_entry_group_free(group);
}

bool RegisterOperation::start(const Daemon &daemon)
{
    if (name.empty())
        name = or_empty(avahi_client_get_host_name(daemon.client));
    const auto on_state = [](AvahiEntryGroup *group, AvahiEntryGroupState state, void *self) {
        static_cast<RegisterOperation *>(self)->state_changed(avahi_entry_group_get_client(group), state);
    };
    group = avahi_entry_group_new(daemon.client, on_state, this);
    if (group)
        announce();
    return group;
}

void RegisterOperation::state_changed(AvahiClient *client, AvahiEntryGroupState state)
{
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
        report();
    } else if (state == AVAHI_ENTRY_GROUP_FAILURE) {
        fail(client);
    } else if (state == AVAHI_ENTRY_GROUP_COLLISION) {
        take_other_name();
        announce();
    }
}

void RegisterOperation::announce()
{
    int error = add_service();
    while (error == AVAHI_ERR_COLLISION) {
        take_other_name();
        error = add_service();
    }
    if (error == AVAHI_OK)
        error = avahi_entry_group_commit(group);
    if (error != AVAHI_OK)
        mailbox->fail(dns_sd_error(error));
}

int RegisterOperation::add_service()
{
    AvahiStringList *strings = nullptr;
    if (avahi_string_list_parse(txt.data(), txt.size(), &strings) < 0)
        return AVAHI_ERR_INVALID_RECORD;
    const int error = avahi_entry_group_add_service_strlst(
        group, avahi_interface(interface_index), AVAHI_PROTO_UNSPEC, AvahiPublishFlags(0), name.c_str(),
        type.c_str(), or_null(domain), or_null(host), ntohs(port), strings);
    avahi_string_list_free(strings);
    return error;
}

void RegisterOperation::take_other_name()
{
    char *other = avahi_alternative_service_name(name.c_str());
    name = or_empty(other);
    avahi_free(other);
    avahi_entry_group_reset(group);
}

void RegisterOperation::report()
{
    const std::string in_domain = domain.empty() ? "local" : domain;
    mailbox->put([=, ref = ref, callback = callback, context = context, name = name,
                  type = type](DNSServiceFlags more) {
        callback(ref, kDNSServiceFlagsAdd | more, kDNSServiceErr_NoError, name.c_str(),
                 with_dot(type).c_str(), with_dot(in_domain).c_str(), context);
    });
}
