// SPDX-License-Identifier: MIT
#include "kortools/core/utf16.h"

#include "tests/support/oracle.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using namespace kortools::core;

namespace {

std::u16string to_units(std::wstring const &text)
{
    // One byte off, since blocks of units need not be aligned.
    std::size_t const count = count_utf16_units(text.data(), text.size());
    std::vector<unsigned char> block(1 + 2 * count + 2, 0xA5);
    EXPECT_EQ(copy_to_utf16(text.data(), text.size(), block.data() + 1), count);
    EXPECT_EQ(block[1 + 2 * count], 0xA5);
    std::u16string units(count, u'\0');
    std::memcpy(units.data(), block.data() + 1, 2 * count);
    return units;
}

std::wstring to_wide(std::u16string const &units)
{
    std::vector<unsigned char> block(1 + 2 * units.size());
    std::memcpy(block.data() + 1, units.data(), 2 * units.size());
    std::size_t const count = count_wide_characters(block.data() + 1, units.size());
    std::wstring text(count + 1, L'\x7E7E');
    EXPECT_EQ(copy_from_utf16(block.data() + 1, units.size(), text.data()), count);
    EXPECT_EQ(text.back(), L'\x7E7E');
    text.pop_back();
    return text;
}

int compare(std::wstring const &a, std::wstring const &b)
{
    int const order = compare_utf16(a.data(), a.size(), b.data(), b.size());
    return (order > 0) - (order < 0);
}

} // namespace

TEST(Utf16, AgreesWithTheModel)
{
    std::mt19937 random(1);
    for (unsigned const surrogates_in_8 : { 0U, 1U, 4U, 8U }) {
        auto const make_units = [&](std::size_t count) {
            std::u16string units;
            for (auto value = random(); units.size() < count; value = random())
                units += static_cast<char16_t>(
                    value % 8 < surrogates_in_8 ? 0xD800 | (value >> 8 & 0x7FF) : value >> 16);
            return units;
        };
        for (std::size_t step = 0; step < 2000; ++step) {
            std::u16string const units = make_units(step % 70);
            std::wstring const text = to_wide(units);
            ASSERT_EQ(text, kor_test::to_wide(units));
            ASSERT_EQ(to_units(text), units);
            std::u16string visited;
            for_each_utf16_unit(text.data(), text.size(), [&](char16_t unit) { visited += unit; });
            ASSERT_EQ(visited, units);
            std::u16string const a = units + make_units(random() % 3);
            std::u16string const b = units + make_units(random() % 3);
            int const order = a.compare(b);
            ASSERT_EQ(compare(to_wide(a), to_wide(b)), (order > 0) - (order < 0));
        }
    }
}
