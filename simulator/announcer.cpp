// SPDX-License-Identifier: MIT
#include "simulator/announcer.h"

#include <QHostAddress>
#include <QMap>
#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/address.h>
#include <avahi-common/error.h>
#include <avahi-common/thread-watch.h>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <net/if.h>

namespace
{
struct Entry {
    Speaker_Config speaker;
    quint16 http_port = 0;
    AvahiEntryGroup *group = nullptr;
    bool established = false;
};

QString host_name(const Speaker_Config &speaker)
{
    const QString name = speaker.host_name.isEmpty() ? "virelo-" + QString(speaker.address).replace('.', '-')
                                                     : speaker.host_name;
    return name + ".local";
}

AvahiStringList *txt_list(const QMap<QString, QString> &entries)
{
    AvahiStringList *list = nullptr;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
        list = avahi_string_list_add_pair(list, entry.key().toUtf8().constData(),
                                          entry.value().toUtf8().constData());
    return list;
}

// A loopback address means nothing to another machine, so it is announced on the loopback device alone.
AvahiIfIndex interface_of(const Speaker_Config &speaker)
{
    if (!speaker.interface.isEmpty())
        return static_cast<AvahiIfIndex>(if_nametoindex(speaker.interface.toLocal8Bit().constData()));
    const unsigned loopback = if_nametoindex("lo");
    return QHostAddress(speaker.address).isLoopback() && loopback != 0 ? static_cast<AvahiIfIndex>(loopback)
                                                                       : AVAHI_IF_UNSPEC;
}

int fill_group(AvahiEntryGroup *group, const Entry &entry)
{
    const QByteArray host = host_name(entry.speaker).toUtf8();
    AvahiAddress address;
    if (!avahi_address_parse(entry.speaker.address.toLatin1().constData(), AVAHI_PROTO_INET, &address))
        return AVAHI_ERR_INVALID_ADDRESS;
    const AvahiIfIndex interface = interface_of(entry.speaker);
    if (interface == 0)
        return AVAHI_ERR_INVALID_INTERFACE;
    int error = avahi_entry_group_add_address(group, interface, AVAHI_PROTO_INET, AVAHI_PUBLISH_NO_REVERSE,
                                              host.constData(), &address);
    if (error != AVAHI_OK)
        return error;
    AvahiStringList *txt = txt_list(entry.speaker.txt);
    error = avahi_entry_group_add_service_strlst(
        group, interface, AVAHI_PROTO_INET, AvahiPublishFlags(0), entry.speaker.name.toUtf8().constData(),
        entry.speaker.service_type.toUtf8().constData(), nullptr, host.constData(), entry.http_port, txt);
    avahi_string_list_free(txt);
    return error == AVAHI_OK ? avahi_entry_group_commit(group) : error;
}
} // namespace

// What stands behind an Announcer. Everything but the wait happens under the poll thread's lock, and
// callbacks come on that thread with the lock held; `mutex` guards the count for the wait alone.
class Avahi_Session
{
public:
    explicit Avahi_Session(const std::function<void(const QString &)> &sink)
        : sink(sink)
        , poll(avahi_threaded_poll_new())
    {
        avahi_threaded_poll_start(poll);
        const Lock lock(poll);
        connect_to_daemon();
    }

    ~Avahi_Session()
    {
        avahi_threaded_poll_stop(poll);
        if (client)
            avahi_client_free(client);
        avahi_threaded_poll_free(poll);
    }

    void announce(const QString &key, const Speaker_Config &speaker, quint16 http_port)
    {
        const Lock lock(poll);
        Entry &entry = entries[key];
        drop_group(entry);
        entry = {speaker, http_port, nullptr, false};
        publish(entry);
        count_waiting();
    }

    void withdraw(const QString &key)
    {
        const Lock lock(poll);
        const auto found = entries.find(key);
        if (found == entries.end())
            return;
        drop_group(*found);
        entries.erase(found);
        count_waiting();
    }

    bool wait_until_established(int timeout_ms)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return changed.wait_for(lock, std::chrono::milliseconds(timeout_ms), [this] { return waiting == 0; });
    }

private:
    struct Lock {
        explicit Lock(AvahiThreadedPoll *poll)
            : poll(poll)
        {
            avahi_threaded_poll_lock(poll);
        }
        ~Lock() { avahi_threaded_poll_unlock(poll); }
        AvahiThreadedPoll *poll;
    };

    void connect_to_daemon()
    {
        int error = AVAHI_OK;
        client = avahi_client_new(avahi_threaded_poll_get(poll), AVAHI_CLIENT_NO_FAIL, client_changed, this,
                                  &error);
        if (!client)
            say(QString("no way to the DNS-SD daemon: %1").arg(avahi_strerror(error)));
    }

    // Comes for the first time from within avahi_client_new, when the member is not set yet.
    static void client_changed(AvahiClient *client, AvahiClientState state, void *context)
    {
        auto *session = static_cast<Avahi_Session *>(context);
        session->client = client;
        if (state == AVAHI_CLIENT_S_RUNNING) {
            for (Entry &entry : session->entries)
                session->publish(entry);
        } else if (state == AVAHI_CLIENT_FAILURE) {
            session->say(
                QString("the DNS-SD daemon is gone: %1").arg(avahi_strerror(avahi_client_errno(client))));
            session->forget_groups();
            session->client = nullptr;
            avahi_client_free(client);
            session->connect_to_daemon();
        } else {
            for (Entry &entry : session->entries)
                session->drop_group(entry);
        }
        session->count_waiting();
    }

    static void group_changed(AvahiEntryGroup *group, AvahiEntryGroupState state, void *context)
    {
        auto *session = static_cast<Avahi_Session *>(context);
        for (Entry &entry : session->entries) {
            if (entry.group != group)
                continue;
            entry.established = state == AVAHI_ENTRY_GROUP_ESTABLISHED;
            if (entry.established)
                session->say(
                    QString("announced \"%1\" at %2").arg(entry.speaker.name, entry.speaker.address));
            else if (state == AVAHI_ENTRY_GROUP_COLLISION)
                session->say_failure(entry, "the name is taken");
            else if (state == AVAHI_ENTRY_GROUP_FAILURE)
                session->say_failure(entry, avahi_strerror(avahi_client_errno(session->client)));
        }
        session->count_waiting();
    }

    void publish(Entry &entry)
    {
        if (entry.group || !client || avahi_client_get_state(client) != AVAHI_CLIENT_S_RUNNING)
            return;
        entry.group = avahi_entry_group_new(client, group_changed, this);
        const int error = entry.group ? fill_group(entry.group, entry) : avahi_client_errno(client);
        if (error != AVAHI_OK)
            say_failure(entry, avahi_strerror(error));
    }

    void drop_group(Entry &entry)
    {
        if (entry.group)
            avahi_entry_group_free(entry.group);
        entry.group = nullptr;
        entry.established = false;
    }

    // They go with their client.
    void forget_groups()
    {
        for (Entry &entry : entries) {
            entry.group = nullptr;
            entry.established = false;
        }
    }

    void count_waiting()
    {
        int count = 0;
        for (const Entry &entry : qAsConst(entries))
            count += entry.established ? 0 : 1;
        const std::lock_guard<std::mutex> lock(mutex);
        waiting = count;
        changed.notify_all();
    }

    void say_failure(const Entry &entry, const char *why) const
    {
        say(QString("cannot announce \"%1\": %2").arg(entry.speaker.name, why));
    }

    void say(const QString &text) const
    {
        if (sink)
            sink(text);
    }

    const std::function<void(const QString &)> sink;
    AvahiThreadedPoll *poll;
    AvahiClient *client = nullptr;
    QMap<QString, Entry> entries; // by the caller's keys
    std::mutex mutex;
    std::condition_variable changed;
    int waiting = 0;
};

Announcer::Announcer(const std::function<void(const QString &)> &sink)
    : session(std::make_unique<Avahi_Session>(sink))
{
}

Announcer::~Announcer() = default;

void Announcer::announce(const QString &key, const Speaker_Config &speaker, quint16 http_port)
{
    session->announce(key, speaker, http_port);
}

void Announcer::withdraw(const QString &key)
{
    session->withdraw(key);
}

bool Announcer::wait_until_established(int timeout_ms) const
{
    return session->wait_until_established(timeout_ms);
}
