// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/poll_thread.h"

#include <avahi-client/client.h>
#include <avahi-common/simple-watch.h>
#include <csignal>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

PollThread *PollThread::instance()
{
    // Never deleted: the thread may be anywhere when the process ends.
    static PollThread *const the_thread = [] {
        auto *made = new PollThread;
        return made->start() ? made : nullptr;
    }();
    return the_thread;
}

bool PollThread::start()
{
    poll = avahi_simple_poll_new();
    wake_fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (!poll || wake_fd == -1)
        return false;

    const AvahiPoll *api = avahi_simple_poll_get(poll);
    const auto drain = [](AvahiWatch *, int fd, AvahiWatchEvent, void *) {
        eventfd_t count;
        eventfd_read(fd, &count);
    };
    if (!api->watch_new(api, wake_fd, AVAHI_WATCH_IN, drain, nullptr))
        return false;

    // The program's signals are for its own threads.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_t thread;
    const auto main = [](void *self) -> void * {
        static_cast<PollThread *>(self)->run();
        return nullptr;
    };
    const bool started = pthread_create(&thread, nullptr, main, this) == 0;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (started)
        pthread_detach(thread);
    return started;
}

void PollThread::begin(std::unique_ptr<Operation> operation)
{
    post({std::move(operation), nullptr});
}

void PollThread::end(std::shared_ptr<Mailbox> mailbox)
{
    post({nullptr, std::move(mailbox)});
}

void PollThread::post(Task task)
{
    const std::lock_guard<std::mutex> lock(mutex);
    const bool first = task.begin && task.begin->goes_first();
    (first ? first_tasks : tasks).push_back(std::move(task));
    eventfd_write(wake_fd, 1);
}

void PollThread::run()
{
    bool more = false;
    while (look_what_has_come(more)) {
        if (lost)
            disconnect();
        more = run_next_task();
    }
}

// With tasks waiting it only looks, a few times: each look takes one message, and the daemon answers a browse
// with all services at once. The poll fails only where memory runs out. Discovery falls silent then, and the
// program goes on.
bool PollThread::look_what_has_come(bool tasks_wait)
{
    constexpr int looks = 4;
    bool good = avahi_simple_poll_iterate(poll, tasks_wait ? 0 : -1) >= 0;
    for (int look = 1; look < looks && good && tasks_wait && !lost; ++look)
        good = avahi_simple_poll_iterate(poll, 0) >= 0;
    return good;
}

bool PollThread::run_next_task()
{
    std::unique_lock<std::mutex> lock(mutex);
    std::deque<Task> &next = first_tasks.empty() ? tasks : first_tasks;
    if (!next.empty()) {
        Task task = std::move(next.front());
        next.pop_front();
        lock.unlock();
        run_task(std::move(task));
        lock.lock();
    } else if (!answered.empty()) {
        lock.unlock();
        start_operation(std::move(answered.front()));
        answered.pop_front();
        lock.lock();
    }
    return !first_tasks.empty() || !tasks.empty() || !answered.empty();
}

void PollThread::run_task(Task task)
{
    if (!task.begin)
        operations.erase(task.end.get());
    else if (task.begin->answer_early(addresses))
        answered.push_back(std::move(task.begin));
    else
        start_operation(std::move(task.begin));
}

void PollThread::start_operation(std::unique_ptr<Operation> operation)
{
    Mailbox *mailbox = operation->mailbox.get();
    // Released while it stood in the queue. Behind a hanging daemon that saves a long wait for nothing.
    if (mailbox->closed())
        return;
    if (!client && !connect())
        mailbox->fail(dns_sd_error(connect_error));
    else if (!operation->start({client, avahi_simple_poll_get(poll), &addresses}))
        mailbox->fail(dns_sd_error(avahi_client_errno(client)));
    else
        operations.emplace(mailbox, std::move(operation));
}

bool PollThread::connect()
{
    const auto state_changed = [](AvahiClient *, AvahiClientState state, void *self) {
        if (state == AVAHI_CLIENT_FAILURE)
            static_cast<PollThread *>(self)->lost = true;
    };
    client = avahi_client_new(avahi_simple_poll_get(poll), AvahiClientFlags(0), state_changed, this,
                              &connect_error);
    if (!client)
        lost = false;
    return client;
}

void PollThread::disconnect()
{
    lost = false;
    for (const auto &entry : operations)
        entry.first->fail(kDNSServiceErr_ServiceNotRunning);
    operations.clear();
    for (const auto &operation : answered)
        operation->mailbox->fail(kDNSServiceErr_ServiceNotRunning);
    answered.clear();
    avahi_client_free(client);
    client = nullptr;
}
