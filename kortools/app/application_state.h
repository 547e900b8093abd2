// SPDX-License-Identifier: MIT
// What the process knows about its application.
#pragma once

#include "kortools/core/critical_section.h"
#include "kortools/core/xstring.h"

#include <atomic>

namespace kortools::app {

struct ApplicationState {
    using String = CXTString<wchar_t>;

    static ApplicationState &get();
    void forget_paths(); // those that follow from the names; with the lock
    void reset();        // back to what follows from the running program

    CXCriticalSection m_lock; // of everything below
    String m_path;            // empty: that of the running program
    String m_product_name;    // empty: follows from the path
    int m_product_version = 0;

    // Computed once and kept; empty: not yet. With the version in their names, and without.
    String m_common_data[2];
    String m_user_data[2];

    // Set by the host, with a separator at the end; empty: follow from the data paths.
    String m_user_preferences;
    String m_common_preferences;

    std::atomic<bool> m_saves_preferences { true }; // needs no lock
};

} // namespace kortools::app
