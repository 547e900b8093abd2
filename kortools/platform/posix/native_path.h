// SPDX-License-Identifier: MIT
// The frame of every function that takes a path to a system call.
#pragma once

#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/interrupt.h"

#include <atomic>
#include <cerrno>
#include <exception>
#include <string>
#include <string_view>

namespace kortools::platform {

constexpr unsigned int error_path_not_found = 3;
constexpr unsigned int error_access_denied = 5;
constexpr unsigned int error_not_enough_memory = 8;

// Called with the native path before the system is, when set: for tests that need a disk that does
// not answer where no such file system can be mounted.
using CallHook = void (*)(std::string const &native_path);
inline std::atomic<CallHook> s_call_hook { nullptr };

// The result of `call` for the native form of `path`; `failure` when there is no such form or no
// memory, with the code set.
template <class Result, class Call>
Result with_native_path(wchar_t const *path, Result failure, Call call)
try {
    std::string const native = to_native_path(std::wstring_view(path));
    if (native.empty())
        return failure;
    if (CallHook const hook = s_call_hook.load(std::memory_order_relaxed))
        hook(native);
    return call(native);
} catch (std::exception const &) {
    set_last_os_error(error_not_enough_memory);
    return failure;
}

// Repeats a system call that a signal interrupted, unless that was meant to end it.
template <class Call> auto retry(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR && !is_interrupted())
        result = call();
    return result;
}

} // namespace kortools::platform
