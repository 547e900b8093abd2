// SPDX-License-Identifier: MIT
#include "kortools/archive/address_map.h"

#include <gtest/gtest.h>
#include <unordered_map>

namespace {

// Addresses in the order of their making; none of them is looked at.
struct Heap {
    char const *m_name;
    std::uintptr_t m_first;
    std::uintptr_t m_stride;  // bytes from one to the next
    std::uintptr_t m_threads; // that take turns, each with a heap of its own
};

class AddressMapHeap : public testing::TestWithParam<Heap> { };

TEST_P(AddressMapHeap, AgreesWithTheStandardMap)
{
    auto const &[name, first, stride, threads] = GetParam();
    constexpr std::uintptr_t count = 50000;
    kortools::archive::AddressMap map;
    std::unordered_map<void const *, unsigned int> model;
    unsigned int index = 0;
    for (std::uintptr_t i = 0; i < count; ++i) {
        auto const *const address = reinterpret_cast<void const *>(
            first + i / threads * stride + i % threads * (std::uintptr_t(1) << 26));
        ASSERT_EQ(map.find(address), 0U) << i;
        index += i % 1000 == 999 ? 70 : 1; // some are given to what failed
        map.insert(address, index);
        model.emplace(address, index);
    }
    for (auto const &[address, expected] : model)
        ASSERT_EQ(map.find(address), expected) << address;
}

INSTANTIATE_TEST_SUITE_P(Heaps, AddressMapHeap,
    testing::Values(Heap { "small", 0x10, 16, 1 }, Heap { "objects", 0x555555560010, 64, 1 },
        Heap { "threads", 0x7FFFF0000010, 48, 8 }, Heap { "pages", 0x7FFF00000000, 4096, 1 },
        Heap { "huge", 0x100000000, 1 << 21, 1 }),
    [](auto const &each) { return each.param.m_name; });

} // namespace
