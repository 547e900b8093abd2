// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/probe_process.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace kortools::platform {
namespace {

constexpr unsigned int start_limit_ms = 20000; // on a machine that is very busy

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    FileActions(FileActions const &) = delete;
    FileActions &operator=(FileActions const &) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }

    // The channel, /dev/null for the standard streams, and nothing else.
    void pass_only(int channel)
    {
        posix_spawn_file_actions_adddup2(&m_actions, channel, probe_channel);
        for (int stream = 0; stream < probe_channel; ++stream)
            posix_spawn_file_actions_addopen(&m_actions, stream, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, probe_channel + 1);
    }
    posix_spawn_file_actions_t const *get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

// A group of its own, so that Ctrl+C does not reach it, and signals as after the start of a system.
class Attributes {
public:
    Attributes()
    {
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
    }
    Attributes(Attributes const &) = delete;
    Attributes &operator=(Attributes const &) = delete;
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }

    posix_spawnattr_t const *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

std::string describe_end(int status)
{
    if (WIFEXITED(status))
        return "exit with code " + std::to_string(WEXITSTATUS(status));
    char const *const name = sigdescr_np(WTERMSIG(status));
    return "signal " + std::to_string(WTERMSIG(status))
        + (name ? std::string(" (") + name + ')' : "");
}

} // namespace

bool ProbeProcess::start(std::string const &program)
{
    int channels[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, channels) != 0)
        return false;
    FileActions actions;
    actions.pass_only(channels[1]);
    Attributes const attributes;
    std::string name = program;
    char *const words[] = { name.data(), nullptr };
    int const error
        = posix_spawn(&m_pid, program.c_str(), actions.get(), attributes.get(), words, environ);
    close(channels[1]);
    m_channel = channels[0];
    if (error != 0)
        m_pid = 0;
    ProbeReply ready;
    if (error == 0 && receive(start_limit_ms, ready) == Outcome::Replied)
        return true;
    stop();
    return false;
}

ProbeProcess::Outcome ProbeProcess::ask(
    std::string const &request, unsigned int limit_ms, ProbeReply &reply)
{
    ssize_t sent;
    do {
        sent = send(m_channel, request.data(), request.size(), MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? Outcome::Ended : receive(limit_ms, reply);
}

ProbeProcess::Outcome ProbeProcess::receive(unsigned int limit_ms, ProbeReply &reply)
{
    using Clock = std::chrono::steady_clock;
    auto const end = Clock::now() + std::chrono::milliseconds(limit_ms);
    while (true) {
        auto const left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting { m_channel, POLLIN, 0 };
        int const ready
            = poll(&waiting, 1, static_cast<int>(std::clamp<long long>(left, 0, INT_MAX)));
        if (ready == 0 && left <= 0) {
            stop();
            return Outcome::Late;
        }
        if (ready <= 0) // a signal, most likely
            continue;
        ssize_t const size = recv(m_channel, &reply, sizeof reply, 0);
        if (size < 0 && errno == EINTR)
            continue;
        reply.text[sizeof reply.text - 1] = 0;
        return size == sizeof reply ? Outcome::Replied : Outcome::Ended;
    }
}

std::string ProbeProcess::stop()
{
    if (m_channel >= 0)
        close(std::exchange(m_channel, -1));
    pid_t const process = std::exchange(m_pid, 0);
    if (process <= 0)
        return {};
    // A process that has ended is not changed by this, nor can its number belong to another before
    // it has been waited for.
    kill(-process, SIGKILL);
    kill(process, SIGKILL);
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return "it ended"; // somebody else waits for all children
    }
    return describe_end(status);
}

} // namespace kortools::platform
