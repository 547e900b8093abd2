// SPDX-License-Identifier: MIT
// Large pages for large blocks that are read and written all over, such as the slots of a hash
// table: fewer page faults when the block is first written, fewer misses of the address cache
// later.
#pragma once

#include <cstddef>

namespace kortools::platform {

// Asks the system to back a block just obtained from the heap, not yet written to, by large pages.
// Advice: a system without such pages, or a small block, changes nothing.
void prefer_large_pages(void *block, std::size_t size_bytes) noexcept;

} // namespace kortools::platform
