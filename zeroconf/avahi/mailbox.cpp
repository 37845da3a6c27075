// SPDX-License-Identifier: MIT
#include "zeroconf/avahi/mailbox.h"

#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace
{
constexpr int time_limit_s = 5;

bool is_past(const timespec &moment)
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec != moment.tv_sec ? now.tv_sec > moment.tv_sec : now.tv_nsec >= moment.tv_nsec;
}
} // namespace

Mailbox::Mailbox(ErrorReply error_reply)
    : fd(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    , error_reply(std::move(error_reply))
{
}

Mailbox::~Mailbox()
{
    close();
}

void Mailbox::limit_time()
{
    const std::lock_guard<std::mutex> lock(mutex);
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += time_limit_s;
    limited = true;
    show_state();
}

void Mailbox::put(Reply reply)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (failed || fd == -1)
        return;
    limited = false;
    replies.push_back(std::move(reply));
    show_state();
}

void Mailbox::fail(DNSServiceErrorType code)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (failed || fd == -1)
        return;
    failed = true;
    limited = false;
    replies.push_back([report = error_reply, code](DNSServiceFlags) { report(code); });
    show_state();
}

int Mailbox::descriptor() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return fd;
}

bool Mailbox::closed() const
{
    return descriptor() == -1;
}

void Mailbox::deliver()
{
    const Reply reply = take();
    // Nothing of the mailbox is touched from here on: the callback may have let go of it.
    if (reply)
        reply(0);
}

void Mailbox::close()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (fd != -1)
        ::close(fd);
    fd = -1;
    replies.clear();
}

// The next reply with its flag bound, or none.
Mailbox::Reply Mailbox::take()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (fd == -1)
        return {};
    Reply reply;
    if (!replies.empty()) {
        const DNSServiceFlags more = replies.size() > 1 ? kDNSServiceFlagsMoreComing : 0;
        reply = [oldest = std::move(replies.front()), more](DNSServiceFlags) { oldest(more); };
        replies.pop_front();
    } else if (limited && is_past(deadline)) {
        failed = true;
        limited = false;
        reply = [report = error_reply](DNSServiceFlags) { report(kDNSServiceErr_Timeout); };
    }
    show_state();
    return reply;
}

// Makes the descriptor readable now, at the deadline, or never. Setting the timer also takes back an earlier
// expiry.
void Mailbox::show_state()
{
    itimerspec setting = {};
    if (!replies.empty())
        setting.it_value.tv_nsec = 1; // a moment long past; all zero would stop the timer
    else if (limited)
        setting.it_value = deadline;
    timerfd_settime(fd, TFD_TIMER_ABSTIME, &setting, nullptr);
}
