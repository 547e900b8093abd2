// SPDX-License-Identifier: MIT
// The thread to which all windows of the library belong.
#pragma once

#include "kortools/app/thread_registry.h"
#include "kortools/platform/threads.h"

namespace kortools::ui {

inline bool is_main_thread()
{
    return platform::get_current_thread_id() == GetApplicationMainThreadID();
}

} // namespace kortools::ui
