// SPDX-License-Identifier: MIT
// How the programs report through the library's progress stack, and how Ctrl+C gets to the work.
//
//   ConsoleProgress progress(L"importing", showProgress);
//   ... // progressCallCallback(progressShow | progressQueryCancel, { done, total }) now and then
//   if (progress.Finish())
//       return exit_cancelled;
//   ... // write what has come of it
#pragma once

#include "apps/common/console.h"
#include "kortools/app/progress_callback.h"

#include <optional>

struct ProcessProgressInfo {
    unsigned long long done = 0; // of `total`, in whatever unit; 0 of 0 shows nothing
    unsigned long long total = 0;
};

namespace kor_apps {

inline constexpr unsigned int progressShow = 0x1; // a flag of the calls: draw the bar

// Pushes a callback for its lifetime, which draws a bar and asks for Ctrl+C. When it was pressed,
// the thread that made this object is marked to be cancelled, and with it all threads it has begun.
// The mark goes with this object.
class ConsoleProgress {
public:
    ConsoleProgress(CXTString<wchar_t> const &label, bool enabled);
    ~ConsoleProgress();
    ConsoleProgress(ConsoleProgress const &) = delete;
    ConsoleProgress &operator=(ConsoleProgress const &) = delete;

    // Asks a last time, and removes the callback and the bar. True when the user has cancelled.
    // What the user does from now on stops nothing, so that results can be written.
    bool Finish();

private:
    static bool Call(unsigned int flags, ProcessProgressInfo const &info, void *user);
    bool IsCancelled();

    std::optional<ProgressLine> m_line; // until Finish()
    unsigned long long m_thread;        // that made this object
};

} // namespace kor_apps
