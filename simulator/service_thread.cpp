// SPDX-License-Identifier: MIT
#include "simulator/service_thread.h"

Service_Thread::Service_Thread(const QString &name)
    : context(new QObject)
{
    thread.setObjectName(name);
    context->moveToThread(&thread);
    QObject::connect(&thread, &QThread::finished, context, &QObject::deleteLater);
    thread.start();
}

Service_Thread::~Service_Thread()
{
    thread.quit();
    thread.wait();
}

void Service_Thread::call(const std::function<void()> &work)
{
    if (QThread::currentThread() == &thread) {
        work();
        return;
    }
    Task task{&work, false};
    {
        const std::lock_guard<std::mutex> lock(mutex);
        tasks.push_back(&task);
    }
    QMetaObject::invokeMethod(
        context, [this] { drain(); }, Qt::QueuedConnection);
    std::unique_lock<std::mutex> lock(mutex);
    finished.wait(lock, [&] { return task.done; });
}

void Service_Thread::drain()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (!tasks.empty()) {
        Task *task = tasks.front();
        tasks.pop_front();
        lock.unlock();
        (*task->work)();
        lock.lock();
        task->done = true;
        finished.notify_all();
    }
}
