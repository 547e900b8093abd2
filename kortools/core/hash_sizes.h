// SPDX-License-Identifier: MIT
// How many slots a hash table gets, in one place for all of them. Slot positions, and with them the
// order of iteration, follow from these sizes, so they are fixed.
#pragma once

#include "kortools/export.h"

namespace kortools::core {

constexpr unsigned default_table_size = 23;

// A table made for `request` slots: 23 as it is, else NextPrime(request), at least 5.
KORTOOLS_API unsigned size_of_new_table(unsigned request) noexcept;

// A table set up anew for `count` entries: NextPrime(2 * count + 2), at least 5.
KORTOOLS_API unsigned size_for_count(unsigned count) noexcept;

// A table half of whose slots are occupied. With at most 65 percent of these live it shrinks or
// stays put, losing its tombstones; else it grows four-fold below 251 slots, two-fold above.
KORTOOLS_API unsigned size_of_next_table(unsigned size, unsigned occupied, unsigned count) noexcept;

// The smallest table that holds `count` entries with room for one more.
KORTOOLS_API unsigned size_of_compact_table(unsigned count) noexcept;

} // namespace kortools::core
