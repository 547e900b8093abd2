// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/thread_urgency.h"

#include <algorithm>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kortools::platform::posix {
namespace {

constexpr int no_offset = 100;

int get_nice_offset(ThreadPriority priority)
{
    switch (priority) {
    case ThreadPriority::TimeCritical:
        return -20;
    case ThreadPriority::Highest:
        return -10;
    case ThreadPriority::AboveNormal:
        return -5;
    case ThreadPriority::Normal:
    case ThreadPriority::Idle:
        return 0;
    case ThreadPriority::BelowNormal:
        return 5;
    case ThreadPriority::Lowest:
        return 10;
    }
    return no_offset;
}

bool set_policy(unsigned long long thread_id, int policy)
{
    sched_param const parameters {};
    return sched_setscheduler(static_cast<pid_t>(thread_id), policy, &parameters) == 0;
}

} // namespace

bool change_urgency(unsigned long long thread_id, ThreadPriority from, ThreadPriority to)
{
    if (from == to)
        return true;
    int const offset = get_nice_offset(to);
    if (offset == no_offset)
        return false;
    if (to == ThreadPriority::Idle)
        return set_policy(thread_id, SCHED_IDLE);
    if (from == ThreadPriority::Idle && !set_policy(thread_id, SCHED_OTHER))
        return false;
    // The main thread's, which has the process's number: what `nice` gave the program counts.
    int const base = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
    int const nice = std::clamp(base + offset, -20, 19);
    if (setpriority(PRIO_PROCESS, static_cast<id_t>(thread_id), nice) == 0)
        return true;
    if (from == ThreadPriority::Idle)
        set_policy(thread_id, SCHED_IDLE);
    return false;
}

} // namespace kortools::platform::posix
