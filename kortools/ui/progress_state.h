// SPDX-License-Identifier: MIT
// What the worker and the window of a progress dialog share: the worker stores values and raises
// flags, the window's thread shows them on its next tick.
#pragma once

#include "kortools/core/critical_section.h"
#include "kortools/core/xstring.h"
#include "kortools/ui/progress_bar_state.h"

#include <array>
#include <atomic>

namespace kortools::ui {

class SharedText {
public:
    void set(wchar_t const *text)
    {
        CXSingleLock const lock(&m_section, true);
        m_text = text;
    }
    CXTString<wchar_t> get() const
    {
        CXSingleLock const lock(&m_section, true);
        return m_text;
    }

private:
    mutable CXCriticalSection m_section; // guards m_text
    CXTString<wchar_t> m_text;
};

enum PendingFlags : unsigned int {
    pendingTitle = 0x02,
    pendingStatus = 0x04,
    pendingCancelText = 0x08,
    pendingError = 0x10,
    pendingMode = 0x20,   // which buttons there are
    pendingEnd = 0x100,   // the end phase: a last message, or close
    pendingClose = 0x200, // close at once
};

struct ProgressState {
    // What was stored before the flag was raised is seen by whoever takes it.
    void raise(unsigned int flags) { pending.fetch_or(flags, std::memory_order_release); }
    bool is_raised(unsigned int flags) const
    {
        return (pending.load(std::memory_order_acquire) & flags) != 0;
    }
    bool take(unsigned int flags)
    {
        return (pending.fetch_and(~flags, std::memory_order_acquire) & flags) != 0;
    }

    std::array<ProgressBarState, 2> bars; // the main one first
    SharedText status;
    SharedText error;
    SharedText title;
    SharedText cancel_text;
    SharedText end_message;
    std::atomic<unsigned int> pending { 0 }; // PendingFlags
    Shared<bool> is_cancelled { false };
    Shared<bool> has_window { false };
    Shared<unsigned int> mode { 0 }; // ProgressDlgMode
};

} // namespace kortools::ui
