// SPDX-License-Identifier: MIT
#include "kortools/app/parallel.h"

#include "kortools/app/thread_records.h"

#include <algorithm>
#include <atomic>
#include <omp.h>

namespace {

constexpr unsigned parts_per_thread = 24;

constinit std::atomic<int> s_max_thread_count = 0; // 0: not asked for yet

} // namespace

void OMPSetMaxThreadCount(int count)
{
    s_max_thread_count.store(
        std::max(std::min(count, omp_get_max_threads()), 1), std::memory_order_relaxed);
}

int OMPGetMaxThreadCount()
{
    int const count = s_max_thread_count.load(std::memory_order_relaxed);
    return count != 0 ? count : kortools::app::reset_max_thread_count();
}

unsigned int OMPGetScheduleChunkSize(unsigned int count)
{
    auto const threads = static_cast<unsigned>(OMPGetMaxThreadCount());
    return std::max(count / (threads * parts_per_thread), 1U);
}

int kortools::app::reset_max_thread_count()
{
    int const count = omp_get_max_threads();
    s_max_thread_count.store(count, std::memory_order_relaxed);
    return count;
}
