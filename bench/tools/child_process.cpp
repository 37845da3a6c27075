// SPDX-License-Identifier: MIT
#include "bench/tools/child_process.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "simulator/monotonic.h"

namespace
{
// The strings as exec wants them; they live as long as the bytes that are given.
std::vector<char *> pointers(QList<QByteArray> &texts)
{
    std::vector<char *> result;
    for (QByteArray &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

QList<QByteArray> in_bytes(const QStringList &texts)
{
    QList<QByteArray> result;
    for (const QString &text : texts)
        result.append(text.toLocal8Bit());
    return result;
}
} // namespace

Child_Process::Child_Process(const QString &program, const QStringList &arguments,
                             const QMap<QString, QString> &environment)
{
    QProcessEnvironment whole = QProcessEnvironment::systemEnvironment();
    for (auto entry = environment.begin(); entry != environment.end(); ++entry)
        whole.insert(entry.key(), entry.value());
    QList<QByteArray> words = in_bytes(QStringList(program) + arguments);
    QList<QByteArray> variables = in_bytes(whole.toStringList());

    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        give_up("there is no pipe to be had");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    begin = monotonic_us();
    const int error = posix_spawnp(&process, words.first().constData(), &actions, nullptr,
                                   pointers(words).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output = ends[0];
    if (error != 0)
        give_up("cannot start " + program);
}

Child_Process::~Child_Process()
{
    if (process > 0) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    close(output);
}

QByteArray Child_Process::read_line()
{
    for (;;) {
        const int end = unread.indexOf('\n');
        if (end >= 0) {
            const QByteArray line = unread.left(end);
            unread.remove(0, end + 1);
            return line;
        }
        pollfd readable = {output, POLLIN, 0};
        if (poll(&readable, 1, patience_ms) <= 0)
            give_up("a program that was started says nothing");
        char buffer[4096];
        const ssize_t count = read(output, buffer, sizeof buffer);
        if (count <= 0)
            return {};
        unread.append(buffer, static_cast<int>(count));
    }
}

QList<QByteArray> Child_Process::read_fields()
{
    const QByteArray line = read_line();
    if (line.isEmpty())
        give_up("a program that was started ended before it said what it had to");
    return line.split(' ');
}

void Child_Process::ask_to_end()
{
    kill(process, SIGTERM);
}

void Child_Process::wait()
{
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        give_up(QString("a program that was started ended with status %1").arg(status));
}

QString built_program(const QString &path)
{
    return QCoreApplication::applicationDirPath() + '/' + path;
}

void give_up(const QString &why)
{
    std::fprintf(stderr, "%s\n", why.toUtf8().constData());
    std::exit(1);
}
