// SPDX-License-Identifier: MIT
// kortools-plugin-probe: loads libraries and calls a function of each for the process that started
// it, and dies in its place when they crash. See probe_protocol.h.
//
// Libraries stay loaded: what their destructors would do nobody has asked for. They have nothing to
// write to, standard output and error are /dev/null.
#include "kortools/platform/posix/probe_protocol.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <initializer_list>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace kortools::platform;

namespace {

void set_up()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);          // also when a library hangs
    fcntl(probe_channel, F_SETFD, FD_CLOEXEC); // programs that libraries start do not hold it open
    rlimit const none {};
    setrlimit(RLIMIT_CORE, &none);
    for (int const number : { SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP })
        std::signal(number, SIG_DFL); // a sanitizer's handlers would hide how it ended
}

// "libx.so: cannot open shared object file: No such file or directory", with the name of a library
// that another one needs.
ProbeReply explain_failure(char const *path)
{
    char const *const error = dlerror();
    ProbeReply reply { ProbeReplyKind::NotLoaded, 0, {} };
    std::snprintf(reply.text, sizeof reply.text, "%s", error ? error : "unknown error");
    char *const end = std::strstr(reply.text, ": cannot open shared object file: No such file");
    if (end && std::strncmp(reply.text, path, std::strlen(path)) != 0) {
        *end = 0;
        reply.kind = ProbeReplyKind::MissingLibrary;
    }
    return reply;
}

// What is bound lazily here is bound at once by the host, which may have functions that this
// process lacks.
ProbeReply call(char const *path, char const *name)
{
    void *const module = dlopen(path, RTLD_LAZY | RTLD_LOCAL);
    if (!module)
        return explain_failure(path);
    auto const function = reinterpret_cast<unsigned int (*)()>(dlsym(module, name));
    if (!function)
        return { ProbeReplyKind::NoFunction, 0, {} };
    return { ProbeReplyKind::Number, function(), {} };
}

ProbeReply answer(char const *request)
{
    char const *const path = request + 1;
    if (static_cast<ProbeRequest>(*request) == ProbeRequest::Call)
        return call(path, path + std::strlen(path) + 1);
    return dlopen(path, RTLD_LAZY | RTLD_LOCAL) ? ProbeReply() : explain_failure(path);
}

bool send_reply(ProbeReply const &reply)
{
    return send(probe_channel, &reply, sizeof reply, MSG_NOSIGNAL) == sizeof reply;
}

} // namespace

int main()
{
    set_up();
    static char request[max_probe_request + 2]; // two zeros stand behind whatever comes
    if (!send_reply({})) {
        std::fputs("kortools-plugin-probe is run by the KorTools library, not by hand.\n", stderr);
        return 2;
    }
    while (true) {
        ssize_t const size = recv(probe_channel, request, max_probe_request, 0);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            _exit(0); // the host is gone, or wants no more
        std::memset(request + size, 0, 2);
        if (!send_reply(answer(request)))
            _exit(0);
    }
}
