// SPDX-License-Identifier: MIT
// The time-out of the file functions; file_status.h has its values.
#pragma once

#include "kortools/core/throw.h"
#include "kortools/core/xstring.h"
#include "kortools/platform/call_guard.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"

#include <atomic>
#include <memory>
#include <optional>
#include <utility>

namespace kortools::files {

inline constexpr unsigned int late_mark = 0xFFFFFFFF;

// The limit in milliseconds for a call about `path`, 0 for none. `always`: on every path, not only
// on shares. Clears the highest bit of `*timeout`, which says the same.
unsigned int get_limit(CXTString<wchar_t> const &path, unsigned int *timeout, bool always = false);

// The result of `call(path, is_late)` within the limit that `timeout` sets, or `late_result`, with
// `*timeout` marked. The call must own what it uses but for its arguments, because it may go on
// after this has returned; `is_late` then tells it. Passes the call's last OS error on.
template <class Result, class Call>
Result run_guarded(
    CXTString<wchar_t> const &path, unsigned int *timeout, Result late_result, Call call)
{
    static std::atomic<bool> const never { false };
    unsigned int const limit = get_limit(path, timeout);
    if (limit == 0)
        return core::translate_shortage([&] { return call(path, never); });
    struct Answer {
        std::optional<Result> result;
        unsigned int os_error = 0;
    };
    return core::translate_shortage([&] {
        auto const answer = std::make_shared<Answer>();
        auto work = [answer, path, call = std::move(call)](std::atomic<bool> const &is_late) {
            answer->result = call(path, is_late);
            answer->os_error = platform::get_last_os_error();
        };
        std::string const native = platform::to_native_path(path.GetView());
        if (!platform::run_within(limit, native, std::move(work))) {
            *timeout = late_mark;
            return std::move(late_result);
        }
        platform::set_last_os_error(answer->os_error);
        return std::move(*answer->result);
    });
}

} // namespace kortools::files
