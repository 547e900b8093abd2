// SPDX-License-Identifier: MIT
#include "kortools/core/hash_sizes.h"

#include "kortools/core/prime.h"

#include <algorithm>
#include <limits>

namespace kortools::core {
namespace {

constexpr unsigned smallest_table_size = 5;

// In single precision on purpose: the quotient decides between growing and shrinking.
bool has_many_tombstones(unsigned occupied, unsigned count)
{
    float const ratio = static_cast<float>(count) / static_cast<float>(occupied);
    return static_cast<double>(ratio) <= 0.65;
}

} // namespace

unsigned size_of_new_table(unsigned request) noexcept
{
    if (request == default_table_size)
        return request;
    return std::max(NextPrime(request), smallest_table_size);
}

unsigned size_for_count(unsigned count) noexcept
{
    unsigned long long const slots = 2ULL * count + 2;
    constexpr unsigned long long most = std::numeric_limits<unsigned>::max();
    return std::max(NextPrime(static_cast<unsigned>(std::min(slots, most))), smallest_table_size);
}

unsigned size_of_next_table(unsigned size, unsigned occupied, unsigned count) noexcept
{
    if (!has_many_tombstones(occupied, count))
        return prime_at_or_above(size * (size < 251 ? 4ULL : 2ULL));
    auto const slots
        = static_cast<unsigned long long>(static_cast<double>(2ULL * count + 2) / 0.65);
    return prime_at_or_above(std::max<unsigned long long>(slots, default_table_size));
}

unsigned size_of_compact_table(unsigned count) noexcept
{
    return prime_at_or_above(std::max(2ULL * count + 3, 5ULL));
}

} // namespace kortools::core
