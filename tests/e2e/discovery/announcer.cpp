// SPDX-License-Identifier: MIT
//
// announcer TYPE: announces services of a type for the road tests, in ways that no ordinary tool offers: a
// host with several addresses, a service whose host has none, a pointer to a service that is not there. It
// reads commands from standard input, one a line, the fields separated by tabs, and prints "done ID" when one
// has taken effect, "failed ID REASON" when it cannot:
//
//   service ID NAME HOST PORT [TXT...]   HOST empty: this machine's name
//   address ID HOST ADDRESS...
//   pointer ID NAME                      the service's entry in the type's list and nothing else
//   withdraw ID
//
// It ends, and withdraws everything, with its input. It ends with code 3 when the daemon goes away.

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/error.h>
#include <avahi-common/simple-watch.h>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
using Fields = std::vector<std::string>;

std::string service_type;
AvahiSimplePoll *poll_loop;
AvahiClient *client;

struct Group {
    std::string id;
    AvahiEntryGroup *group = nullptr;
};
std::map<std::string, Group> groups;

void say(const char *what, const std::string &id, const char *reason = "")
{
    std::printf("%s %s%s%s\n", what, id.c_str(), *reason ? " " : "", reason);
    std::fflush(stdout);
}

[[noreturn]] void give_up(const char *reason)
{
    std::fprintf(stderr, "announcer: %s\n", reason);
    std::exit(1);
}

void group_changed(AvahiEntryGroup *, AvahiEntryGroupState state, void *group)
{
    const std::string &id = static_cast<Group *>(group)->id;
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED)
        say("done", id);
    else if (state == AVAHI_ENTRY_GROUP_COLLISION)
        say("failed", id, "collision");
    else if (state == AVAHI_ENTRY_GROUP_FAILURE)
        say("failed", id, "failure");
}

int add_service(AvahiEntryGroup *group, const Fields &fields)
{
    AvahiStringList *txt = nullptr;
    for (size_t i = 5; i < fields.size(); ++i)
        txt = avahi_string_list_add(txt, fields[i].c_str());
    const char *host = fields[3].empty() ? nullptr : fields[3].c_str();
    const int error = avahi_entry_group_add_service_strlst(
        group, AVAHI_IF_UNSPEC, AVAHI_PROTO_INET, AvahiPublishFlags(0), fields[2].c_str(),
        service_type.c_str(), nullptr, host, static_cast<uint16_t>(std::stoi(fields[4])), txt);
    avahi_string_list_free(txt);
    return error;
}

int add_addresses(AvahiEntryGroup *group, const Fields &fields)
{
    int error = AVAHI_OK;
    for (size_t i = 3; i < fields.size() && error == AVAHI_OK; ++i) {
        AvahiAddress address;
        if (!avahi_address_parse(fields[i].c_str(), AVAHI_PROTO_INET, &address))
            return AVAHI_ERR_INVALID_ADDRESS;
        // A plain record: addresses proper are unique, and a second one would collide with the first.
        error = avahi_entry_group_add_record(group, AVAHI_IF_UNSPEC, AVAHI_PROTO_INET, AvahiPublishFlags(0),
                                             fields[2].c_str(), AVAHI_DNS_CLASS_IN, AVAHI_DNS_TYPE_A, 120,
                                             &address.data.ipv4, sizeof address.data.ipv4);
    }
    return error;
}

int add_pointer(AvahiEntryGroup *group, const Fields &fields)
{
    const std::string list = service_type + ".local";
    std::string target;
    for (const std::string &label :
         {fields[2], std::string("_lodeset"), std::string("_tcp"), std::string("local")})
        target += static_cast<char>(label.size()) + label;
    target += '\0';
    return avahi_entry_group_add_record(group, AVAHI_IF_UNSPEC, AVAHI_PROTO_INET, AvahiPublishFlags(0),
                                        list.c_str(), AVAHI_DNS_CLASS_IN, AVAHI_DNS_TYPE_PTR, 120,
                                        target.data(), target.size());
}

struct Command {
    const char *word;
    size_t fields;
    int (*add)(AvahiEntryGroup *group, const Fields &fields);
};
const Command commands[] = {
    {"service", 5, add_service},
    {"address", 4, add_addresses},
    {"pointer", 3, add_pointer},
};

void withdraw(const std::string &id)
{
    const auto found = groups.find(id);
    if (found == groups.end())
        return say("failed", id, "unknown");
    avahi_entry_group_free(found->second.group);
    groups.erase(found);
    say("done", id);
}

void obey(const Fields &fields)
{
    if (fields.size() == 2 && fields[0] == "withdraw")
        return withdraw(fields[1]);
    for (const Command &command : commands) {
        if (fields[0] != command.word || fields.size() < command.fields)
            continue;
        Group &group = groups[fields[1]];
        group.id = fields[1];
        group.group = avahi_entry_group_new(client, group_changed, &group);
        int error = group.group ? command.add(group.group, fields) : avahi_client_errno(client);
        if (error == AVAHI_OK)
            error = avahi_entry_group_commit(group.group);
        if (error != AVAHI_OK)
            say("failed", fields[1], avahi_strerror(error));
        return;
    }
    give_up("a command that it does not know");
}

void obey_line(const std::string &line)
{
    Fields fields(1);
    for (const char c : line) {
        if (c == '\t')
            fields.emplace_back();
        else
            fields.back() += c;
    }
    obey(fields);
}

void input_came(AvahiWatch *, int fd, AvahiWatchEvent, void *)
{
    static std::string text;
    char buffer[4096];
    const ssize_t count = read(fd, buffer, sizeof buffer);
    if (count <= 0)
        return avahi_simple_poll_quit(poll_loop);
    text.append(buffer, static_cast<size_t>(count));
    for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
        obey_line(text.substr(0, end));
        text.erase(0, end + 1);
    }
}

void client_changed(AvahiClient *, AvahiClientState state, void *)
{
    if (state == AVAHI_CLIENT_FAILURE)
        std::exit(3);
}
} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2)
        give_up("no service type given");
    service_type = argv[1];
    poll_loop = avahi_simple_poll_new();
    const AvahiPoll *api = avahi_simple_poll_get(poll_loop);
    int error = 0;
    client = avahi_client_new(api, AvahiClientFlags(0), client_changed, nullptr, &error);
    if (!client)
        give_up(avahi_strerror(error));
    api->watch_new(api, STDIN_FILENO, AvahiWatchEvent(AVAHI_WATCH_IN | AVAHI_WATCH_HUP), input_came, nullptr);
    avahi_simple_poll_loop(poll_loop);
    avahi_client_free(client);
    avahi_simple_poll_free(poll_loop);
    return 0;
}
