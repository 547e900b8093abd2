// SPDX-License-Identifier: MIT
#include "kortools/core/prime.h"

#include "kortools/core/hash_sizes.h"
#include "tests/core/hash_model.h"

#include <gtest/gtest.h>

using namespace kortools::core;

TEST(NextPrime, AgreesWithTrialDivisionFromItsOddBeginningOn)
{
    EXPECT_EQ(NextPrime(0), 1U);
    EXPECT_EQ(NextPrime(1), 2U);
    EXPECT_EQ(NextPrime(2), 3U);
    EXPECT_EQ(NextPrime(8), 11U);
    for (unsigned n = 0; n < 50000; ++n)
        ASSERT_EQ(NextPrime(n), kor_test::next_prime(n)) << n;
    // Strong to base 2; to 2, 3, 5; to 2, 7; squares of the largest primes below 2^16; Carmichael.
    for (unsigned const n : { 2047U, 25326001U, 4213597U, 4261669U, 4293001441U, 4292870399U, 561U,
             3215031751U, 4294967289U, 4294967279U })
        EXPECT_EQ(NextPrime(n), kor_test::next_prime(n)) << n;
}

TEST(HashSizes, CompareTheShareOfLiveSlotsInSinglePrecision)
{
    EXPECT_EQ(size_of_next_table(41, 20, 13), 43U);  // 65 percent: rebuilt for 28 / 0.65 slots
    EXPECT_EQ(size_of_next_table(41, 20, 14), 167U); // four-fold
    EXPECT_EQ(size_of_next_table(23, 11, 2), 23U);   // never smaller
    EXPECT_EQ(size_of_next_table(251, 125, 125), 503U);
    // Above 65 percent by less than single precision can tell.
    EXPECT_LT(size_of_next_table(20000033, 10000003, 6500002), 21000000U);
}

TEST(HashSizes, EndAtTheLargestPrimeOf32Bits)
{
    for (unsigned const n : { 4294967280U, 4294967291U, 4294967292U, 4294967295U })
        EXPECT_EQ(NextPrime(n), 4294967291U) << n;
    EXPECT_EQ(size_of_new_table(0xFFFFFFFF), 4294967291U);
    EXPECT_EQ(size_for_count(0x7FFFFFFF), 4294967291U);
    EXPECT_EQ(size_of_compact_table(0xFFFFFFFF), 4294967291U);
    EXPECT_EQ(size_of_next_table(3000000019U, 1500000009U, 1500000009U), 4294967291U);
}
