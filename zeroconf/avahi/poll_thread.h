// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>

#include "zeroconf/avahi/known_addresses.h"
#include "zeroconf/avahi/operation.h"

struct AvahiClient;
struct AvahiSimplePoll;

// The one thread that talks to Avahi's daemon, over the one bus connection of the process. Everything that
// may wait for the daemon or the bus happens here: the connection, and the start and end of every operation.
//
// Each call to the daemon waits for its answer, so between two of them it looks what has come: with many
// services about, the first of them are through while the last are still asked for. An operation whose answer
// is known without a question waits for all others with its own start.
//
// Thread and object are made at the first call and last until the process ends, at whatever moment that is:
// nothing of them is destroyed by the end of the program. While nothing happens the thread sleeps.
//
// The connection is made when an operation needs one. When it breaks, because the daemon or the bus went
// away, every operation fails once, and the next one begins with a new connection. A daemon that hangs for
// longer than the bus waits for an answer, 25 s, counts as gone for the operation that waited.
class PollThread
{
public:
    // Null if the thread could not be started at the first call.
    static PollThread *instance();

    // Starts an operation; its failure arrives in its mailbox. Returns at once; any thread.
    void begin(std::unique_ptr<Operation> operation);
    // Ends the operation of a mailbox, if it still goes on. Returns at once; any thread.
    void end(std::shared_ptr<Mailbox> mailbox);

private:
    struct Task {
        std::unique_ptr<Operation> begin;
        std::shared_ptr<Mailbox> end;
    };

    PollThread() = default;
    bool start();
    void post(Task task);
    void run();
    bool look_what_has_come(bool tasks_wait);
    bool run_next_task(); // true if there are more
    void run_task(Task task);
    void start_operation(std::unique_ptr<Operation> operation);
    bool connect();
    void disconnect();

    std::mutex mutex;                    // guards the tasks
    std::deque<Task> first_tasks, tasks; // each in the order of the calls
    int wake_fd = -1;                    // readable when a task came

    // For the thread alone.
    AvahiSimplePoll *poll = nullptr;
    AvahiClient *client = nullptr; // null while not connected
    bool lost = false;     // the connection broke; noticed inside a callback, where it cannot be freed
    int connect_error = 0; // Avahi's reason why connect failed
    KnownAddresses addresses;
    std::deque<std::unique_ptr<Operation>> answered; // early; they start when nothing else waits
    std::map<Mailbox *, std::unique_ptr<Operation>> operations;
};
