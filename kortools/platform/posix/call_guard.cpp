// SPDX-License-Identifier: MIT
//
// Each call gets a thread, which is joined when the call is done in time. A late one is detached
// and entered into the list of overdue calls, where it stays until its thread comes back. Calls are
// started while that list allows it, so a mount that is dead for good costs a few threads and no
// more, however often it is asked.
#include "kortools/platform/call_guard.h"

#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/place.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <dlfcn.h>
#include <exception>
#include <memory>
#include <pthread.h>
#include <string>
#include <vector>

namespace kortools::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr long max_overdue_on_mount = 16;

struct Call {
    BlockingWork work;
    std::atomic<bool> is_late { false };
    std::condition_variable finished;
    // The rest is guarded by the list's mutex.
    bool is_done = false;
    std::exception_ptr error;
    std::string path;        // once overdue
    std::string mount_point; // once overdue
};

struct OverdueCalls {
    std::mutex mutex;
    std::condition_variable shrunk;
    std::vector<std::shared_ptr<Call>> calls;
};

// Never destroyed: a thread may come back while the process ends.
OverdueCalls &get_overdue()
{
    static OverdueCalls *const s_overdue = new OverdueCalls;
    return *s_overdue;
}

// Code that a thread may still return to must stay.
void keep_library_loaded()
{
    static bool const s_done = [] {
        Dl_info info;
        if (dladdr(reinterpret_cast<void *>(&keep_library_loaded), &info) != 0)
            dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
        return true;
    }();
    static_cast<void>(s_done);
}

void run(std::shared_ptr<Call> const &call)
{
    std::exception_ptr error;
    try {
        call->work(call->is_late);
    } catch (...) {
        error = std::current_exception();
    }
    OverdueCalls &overdue = get_overdue();
    std::scoped_lock const lock(overdue.mutex);
    call->is_done = true;
    call->error = error;
    call->finished.notify_one();
    if (std::erase(overdue.calls, call) != 0)
        overdue.shrunk.notify_all();
}

// A thread that takes none of the program's signals.
std::thread start_thread(std::shared_ptr<Call> const &call)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread([call] { run(call); });
    } catch (std::exception const &) { // no thread, or no memory for what it is given
        errno = EAGAIN;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

// Decides by the list of overdue calls; the caller holds its mutex.
bool may_start(OverdueCalls const &overdue, std::string const &path, std::string &mount_point)
{
    if (overdue.calls.empty())
        return true;
    if (mount_point.empty())
        mount_point = find_place(path).mount.mount_point;
    auto const is_same_path = [&](auto const &call) { return call->path == path; };
    auto const is_same_mount = [&](auto const &call) { return call->mount_point == mount_point; };
    return std::ranges::none_of(overdue.calls, is_same_path)
        && std::ranges::count_if(overdue.calls, is_same_mount) < max_overdue_on_mount;
}

// Enters a call into the list; the caller holds its mutex.
void note_overdue(OverdueCalls &overdue, std::shared_ptr<Call> const &call, std::string path,
    std::string mount_point)
try {
    overdue.calls.push_back(call);
    call->path = std::move(path);
    call->mount_point
        = mount_point.empty() ? find_place(call->path).mount.mount_point : std::move(mount_point);
} catch (std::exception const &) {
    // No memory: the call is not counted, or not for its mount.
}

bool report_late()
{
    errno = ETIMEDOUT;
    return false;
}

} // namespace

bool run_within(unsigned int limit_ms, std::string_view native_path, BlockingWork work)
{
    auto const deadline = Clock::now() + std::chrono::milliseconds(limit_ms);
    auto const call = std::make_shared<Call>();
    call->work = std::move(work);
    std::string path(native_path);
    std::string mount_point;
    OverdueCalls &overdue = get_overdue();
    {
        std::unique_lock lock(overdue.mutex);
        auto const is_our_turn = [&] { return may_start(overdue, path, mount_point); };
        if (!overdue.shrunk.wait_until(lock, deadline, is_our_turn))
            return report_late();
    }
    std::thread thread = start_thread(call);
    if (!thread.joinable()) {
        call->work(call->is_late); // without a thread there is no limit either
        return true;
    }
    std::unique_lock lock(overdue.mutex);
    if (call->finished.wait_until(lock, deadline, [&] { return call->is_done; })) {
        lock.unlock();
        thread.join();
        if (call->error)
            std::rethrow_exception(call->error);
        return true;
    }
    call->is_late = true;
    thread.detach();
    keep_library_loaded();
    note_overdue(overdue, call, std::move(path), std::move(mount_point));
    return report_late();
}

} // namespace kortools::platform
