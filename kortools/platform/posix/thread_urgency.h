// SPDX-License-Identifier: MIT
// Priorities as Linux has them: each thread's own nice value, and the policy for idle work.
#pragma once

#include "kortools/platform/native_thread.h"

namespace kortools::platform::posix {

// Moves a thread between priorities. The nice values count from the process's own: -20 time
// critical, -10 highest, -5 above normal, 5 below normal, 10 lowest; idle is the policy SCHED_IDLE.
// False when the system refuses, as it does to users who may not raise priorities (RLIMIT_NICE,
// CAP_SYS_NICE), which includes going back from a lower one.
bool change_urgency(unsigned long long thread_id, ThreadPriority from, ThreadPriority to);

} // namespace kortools::platform::posix
