// SPDX-License-Identifier: MIT
#include "tests/support/child_process.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#endif
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace kor_test {
namespace {

constexpr char const *child_option = "--child-part";

std::string s_program;

std::map<std::string, ChildFunction> &get_parts()
{
    static std::map<std::string, ChildFunction> s_parts;
    return s_parts;
}

} // namespace

ChildPart::ChildPart(char const *name, ChildFunction function)
{
    get_parts()[name] = function;
}

#ifdef _WIN32

ChildProcess::ChildProcess(std::string const &name, std::vector<std::string> const &arguments)
{
    std::string command = '"' + s_program + "\" " + child_option + ' ' + name;
    for (std::string const &argument : arguments)
        command += " \"" + argument + '"';
    STARTUPINFOA startup {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started {};
    CreateProcessA(
        nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started);
    CloseHandle(started.hThread);
    m_process = started.hProcess;
}

void ChildProcess::interrupt()
{
    // What the console does, also for processes without one, as they are in most test runs: system
    // libraries lie at the same address in every process.
    auto const routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void *>(
        GetProcAddress(GetModuleHandleA("kernelbase.dll"), "CtrlRoutine")));
    CloseHandle(CreateRemoteThread(m_process, nullptr, 0, routine,
        reinterpret_cast<void *>(std::uintptr_t { CTRL_BREAK_EVENT }), 0, nullptr));
}

void ChildProcess::kill()
{
    TerminateProcess(m_process, 1);
    wait();
}

int ChildProcess::wait()
{
    HANDLE const process = std::exchange(m_process, nullptr);
    DWORD result = 1;
    WaitForSingleObject(process, INFINITE);
    GetExitCodeProcess(process, &result);
    CloseHandle(process);
    return static_cast<int>(result);
}

#else

namespace {

pid_t to_pid(void *process)
{
    return static_cast<pid_t>(reinterpret_cast<std::intptr_t>(process));
}

} // namespace

ChildProcess::ChildProcess(std::string const &name, std::vector<std::string> const &arguments)
{
    std::vector<char const *> words { s_program.c_str(), child_option, name.c_str() };
    for (std::string const &argument : arguments)
        words.push_back(argument.c_str());
    words.push_back(nullptr);
    pid_t process = 0;
    posix_spawn(&process, s_program.c_str(), nullptr, nullptr,
        const_cast<char *const *>(words.data()), environ);
    m_process = reinterpret_cast<void *>(static_cast<std::intptr_t>(process));
}

void ChildProcess::interrupt()
{
    ::kill(to_pid(m_process), SIGINT);
}

void ChildProcess::kill()
{
    ::kill(to_pid(m_process), SIGKILL);
    wait();
}

int ChildProcess::wait()
{
    int result = 1;
    waitpid(to_pid(std::exchange(m_process, nullptr)), &result, 0);
    return WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
}

#endif

ChildProcess::~ChildProcess()
{
    if (m_process)
        kill();
}

int run_child(std::string const &name, std::vector<std::string> const &arguments)
{
    return ChildProcess(name, arguments).wait();
}

void kill_this_process()
{
#ifdef _WIN32
    TerminateProcess(GetCurrentProcess(), 9);
#else
    std::raise(SIGKILL);
#endif
    std::abort();
}

bool is_child(int argc, char **argv, int &result)
{
    s_program = std::filesystem::absolute(argv[0]).make_preferred().string();
    if (argc < 3 || argv[1] != std::string(child_option))
        return false;
    auto const part = get_parts().find(argv[2]);
    result = part == get_parts().end() ? 127 : part->second({ argv + 3, argv + argc });
    return true;
}

} // namespace kor_test
