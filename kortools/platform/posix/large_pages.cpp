// SPDX-License-Identifier: MIT
#include "kortools/platform/large_pages.h"

#include <cerrno>
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace kortools::platform {

void prefer_large_pages(void *block, std::size_t size_bytes) noexcept
{
    constexpr std::size_t large_page = std::size_t { 2 } << 20;
    if (size_bytes < 2 * large_page)
        return; // might not hold a single aligned one
    int const saved_errno = errno;
    auto const page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    auto const begin = (reinterpret_cast<std::uintptr_t>(block) + page - 1) & ~(page - 1);
    auto const end = (reinterpret_cast<std::uintptr_t>(block) + size_bytes) & ~(page - 1);
    madvise(reinterpret_cast<void *>(begin), end - begin, MADV_HUGEPAGE);
    errno = saved_errno;
}

} // namespace kortools::platform
