// SPDX-License-Identifier: MIT
#include "kortools/core/prime.h"

#include <initializer_list>

namespace kortools::core {
namespace {

using Wide = unsigned long long;

constexpr Wide largest_prime = 4294967291;

Wide power_mod(Wide base, unsigned exponent, Wide modulus)
{
    Wide result = 1;
    for (base %= modulus; exponent != 0; exponent >>= 1) {
        if (exponent & 1)
            result = result * base % modulus;
        base = base * base % modulus;
    }
    return result;
}

// Whether the odd `n` passes the Miller-Rabin test of `base`; n - 1 = odd << shift.
bool passes(Wide n, Wide base, unsigned odd, int shift)
{
    Wide power = power_mod(base, odd, n);
    if (power == 1 || power == n - 1)
        return true;
    for (int i = 1; i < shift; ++i) {
        power = power * power % n;
        if (power == n - 1)
            return true;
    }
    return false;
}

// For odd n. The bases 2, 7 and 61 decide every n below 4759123141, so for 32 bits this says what
// trial division would, in microseconds where that takes up to 32,000 divisions.
bool counts_as_prime(Wide n)
{
    if (n < 9)
        return true;
    for (Wide const divisor : { 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 61 }) {
        if (n % divisor == 0)
            return n == divisor;
    }
    auto odd = static_cast<unsigned>(n - 1);
    int shift = 0;
    for (; (odd & 1) == 0; odd >>= 1)
        ++shift;
    return passes(n, 2, odd, shift) && passes(n, 7, odd, shift) && passes(n, 61, odd, shift);
}

} // namespace

unsigned int prime_at_or_above(Wide candidate) noexcept
{
    if (candidate >= largest_prime)
        return static_cast<unsigned>(largest_prime);
    candidate |= 1;
    while (!counts_as_prime(candidate))
        candidate += 2;
    return static_cast<unsigned>(candidate);
}

} // namespace kortools::core

unsigned int NextPrime(unsigned int n)
{
    return n < 3 ? n + 1 : kortools::core::prime_at_or_above(n);
}
