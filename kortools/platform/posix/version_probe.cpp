// SPDX-License-Identifier: MIT
#include "kortools/platform/version_probe.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/posix/loader_text.h"
#include "kortools/platform/posix/probe_process.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <mutex>
#include <stdlib.h>
#include <string_view>
#include <unistd.h>

namespace kortools::platform {
namespace {

constexpr char const *program_name = "kortools-plugin-probe";
constexpr int max_lent_libraries = 64; // for one library

std::mutex s_program_mutex;
std::string s_program; // guarded by it

// The directory of the file that this code is in: the library's, or that of a program that has it
// built in.
std::string get_own_directory()
{
    Dl_info info {};
    char resolved[PATH_MAX];
    if (dladdr(reinterpret_cast<void *>(&get_own_directory), &info) == 0
        || !realpath(info.dli_fname, resolved))
        return {};
    std::string const path = resolved;
    return path.substr(0, path.rfind('/') + 1);
}

// As it was set; else beside the library, as in a build folder, or where it is installed.
std::string find_program()
{
    {
        std::lock_guard const lock(s_program_mutex);
        if (!s_program.empty())
            return s_program;
    }
    if (char const *const path = secure_getenv("KORTOOLS_PLUGIN_PROBE"))
        return path;
    std::string const own = get_own_directory();
    for (char const *const place : { "", KORTOOLS_LIBEXEC "/", "../libexec/", "../../libexec/" }) {
        std::string path = own + place + program_name;
        if (access(path.c_str(), X_OK) == 0)
            return path;
    }
    return own + program_name;
}

// The path of a library of this name that the process has loaded, or nothing.
std::string find_loaded(std::string const &name)
{
    struct Search {
        std::string const &name;
        std::string path;
    } search { name, {} };
    auto const visit = [](dl_phdr_info *info, std::size_t, void *data) {
        auto &wanted = *static_cast<Search *>(data);
        std::string_view const path = info->dlpi_name;
        if (!path.ends_with('/' + wanted.name))
            return 0;
        wanted.path = path;
        return 1;
    };
    dl_iterate_phdr(visit, &search);
    return search.path;
}

ProbeAnswer to_answer(ProbeReply const &reply, std::string const &path)
{
    ProbeAnswer answer { ProbeResult::NotLoaded, reply.number, without_path(reply.text, path) };
    if (reply.kind == ProbeReplyKind::Number)
        answer.result = ProbeResult::Answered;
    else if (reply.kind == ProbeReplyKind::NoFunction)
        answer.result = ProbeResult::NoFunction;
    else if (reply.kind == ProbeReplyKind::MissingLibrary)
        answer.result = ProbeResult::MissingLibrary;
    return answer;
}

ProbeAnswer to_answer(ProbeProcess::Outcome outcome, ProbeProcess &process)
{
    if (outcome == ProbeProcess::Outcome::Late)
        return { ProbeResult::Hung, 0, {} };
    return { ProbeResult::Crashed, 0, process.stop() };
}

} // namespace

struct VersionProbe::State {
    ProbeAnswer ask(std::string const &path, char const *function, unsigned int limit_ms);

    ProbeProcess m_process;
    int m_answers = 0; // of the process
};

// What a library needs, the host may have loaded from where the helper's loader does not look: it
// is lent to the helper then.
ProbeAnswer VersionProbe::State::ask(
    std::string const &path, char const *function, unsigned int limit_ms)
{
    std::string const request
        = static_cast<char>(ProbeRequest::Call) + path + std::string(1, '\0') + function;
    if (request.size() > max_probe_request)
        return { ProbeResult::NotLoaded, 0, "the path is too long" };
    std::string const program = find_program();
    if (!m_process.is_running()) {
        m_answers = 0;
        if (!m_process.start(program))
            return { ProbeResult::NoHelper, 0, program };
    }
    ProbeReply reply;
    std::string last_lent;
    for (int lent = 0;; ++lent) {
        auto outcome = m_process.ask(request, limit_ms, reply);
        if (outcome != ProbeProcess::Outcome::Replied)
            return to_answer(outcome, m_process);
        if (reply.kind != ProbeReplyKind::MissingLibrary || lent == max_lent_libraries)
            break;
        std::string const loaded = find_loaded(reply.text);
        if (loaded.empty() || loaded == last_lent)
            break;
        last_lent = loaded;
        ProbeReply ignored;
        outcome = m_process.ask(static_cast<char>(ProbeRequest::Load) + loaded, limit_ms, ignored);
        if (outcome != ProbeProcess::Outcome::Replied)
            return to_answer(outcome, m_process);
    }
    ++m_answers;
    return to_answer(reply, path);
}

VersionProbe::VersionProbe()
    : m_state(std::make_unique<State>())
{
}

VersionProbe::~VersionProbe() = default;

// A crash may be the work of a library that was asked before, so it only counts in a helper that
// has seen no other.
ProbeAnswer VersionProbe::ask(wchar_t const *path, char const *function, unsigned int limit_ms)
{
    std::string const native = to_native_path(path);
    ProbeAnswer answer = m_state->ask(native, function, limit_ms);
    if (answer.result == ProbeResult::Crashed && m_state->m_answers > 0)
        answer = m_state->ask(native, function, limit_ms);
    return answer;
}

void set_probe_program(std::string const &native_path)
{
    std::lock_guard const lock(s_program_mutex);
    s_program = native_path;
}

} // namespace kortools::platform
