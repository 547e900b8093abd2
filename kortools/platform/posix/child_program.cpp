// SPDX-License-Identifier: MIT
#include "kortools/platform/child_program.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/program.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

bool is_program(std::string const &path)
{
    struct stat status { };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
        && access(path.c_str(), X_OK) == 0;
}

// Ctrl+C and its like reach every process of the terminal; whoever waits for one leaves them to it.
class IgnoredSignals {
public:
    IgnoredSignals()
    {
        struct sigaction ignore { };
        ignore.sa_handler = SIG_IGN;
        sigaction(SIGINT, &ignore, &m_interrupt);
        sigaction(SIGQUIT, &ignore, &m_quit);
    }
    IgnoredSignals(IgnoredSignals const &) = delete;
    IgnoredSignals &operator=(IgnoredSignals const &) = delete;
    ~IgnoredSignals()
    {
        sigaction(SIGINT, &m_interrupt, nullptr);
        sigaction(SIGQUIT, &m_quit, nullptr);
    }

    // Those that the other program shall not ignore; handlers go with the change of programs.
    sigset_t GetDefaults() const
    {
        sigset_t signals;
        sigemptyset(&signals);
        if (m_interrupt.sa_handler != SIG_IGN)
            sigaddset(&signals, SIGINT);
        if (m_quit.sa_handler != SIG_IGN)
            sigaddset(&signals, SIGQUIT);
        return signals;
    }

private:
    struct sigaction m_interrupt { };
    struct sigaction m_quit { };
};

// 0, or the cause in errno's numbers.
int start(std::string const &program, std::vector<std::string> const &arguments,
    sigset_t const &defaults, pid_t &process)
{
    std::vector<char const *> words { program.c_str() };
    for (std::string const &argument : arguments)
        words.push_back(argument.c_str());
    words.push_back(nullptr);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    int const error = posix_spawn(&process, program.c_str(), nullptr, &attributes,
        const_cast<char *const *>(words.data()), environ);
    posix_spawnattr_destroy(&attributes);
    return error;
}

} // namespace

std::wstring find_program(std::string const &name)
{
    std::string own = to_native_path(get_program_path());
    own.resize(own.rfind('/') + 1);
    if (!own.empty() && is_program(own + name))
        return from_native_path(own + name);
    char const *const variable = std::getenv("PATH");
    std::string_view folders = variable ? variable : "";
    while (!folders.empty()) {
        std::size_t const end = std::min(folders.find(':'), folders.size());
        std::string const path = std::string(folders.substr(0, end)) + '/' + name;
        if (path.starts_with('/') && end > 0 && is_program(path))
            return from_native_path(path);
        folders.remove_prefix(std::min(end + 1, folders.size()));
    }
    return {};
}

std::optional<int> run_program(std::wstring const &path, std::vector<std::string> const &arguments)
{
    IgnoredSignals const ignored;
    pid_t process = 0;
    int status = 0;
    if (int const error = start(to_native_path(path), arguments, ignored.GetDefaults(), process)) {
        errno = error;
        return std::nullopt;
    }
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) // somebody else waits for all children
            return std::nullopt;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace kortools::platform
