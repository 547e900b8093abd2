// SPDX-License-Identifier: MIT
// The prime rule that sizes hash tables.
#pragma once

#include "kortools/export.h"

// The size that a request for `n` slots gives:
//   0, 1, 2   => n + 1
//   n         => the smallest odd prime at or above n
//   n beyond 4294967291, the largest prime of 32 bits => that prime
KORTOOLS_API unsigned int NextPrime(unsigned int n);

namespace kortools::core {

// The first number of `candidate` (made odd by adding 1), + 2, + 4, ... that counts as prime: 1 and
// the odd primes. Cut to 4294967291, the largest prime of 32 bits.
unsigned int prime_at_or_above(unsigned long long candidate) noexcept;

} // namespace kortools::core
