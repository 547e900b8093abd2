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
    std::wstring text(count, L'\0');
    text += L'\x7E7E';
    EXPECT_EQ(copy_from_utf16(block.data() + 1, units.size(), text.data()), count);
    EXPECT_EQ(text.back(), L'\x7E7E');
    text.pop_back();
    return text;
}

std::u16string make_units(std::mt19937 &random, std::size_t count, unsigned surrogates_in_8)
{
    std::u16string units;
    for (std::size_t i = 0; i < count; ++i) {
        auto const value = random();
        units += static_cast<char16_t>(
            value % 8 < surrogates_in_8 ? 0xD800 | (value >> 8 & 0x7FF) : value >> 16);
    }
    return units;
}

class Utf16 : public testing::TestWithParam<unsigned> { }; // surrogates in 8 units

TEST_P(Utf16, AgreesWithTheModelInBothDirections)
{
    std::mt19937 random(GetParam());
    for (std::size_t count = 0; count < 300; ++count) {
        std::u16string const units = make_units(random, count % 70, GetParam());
        std::wstring const text = to_wide(units);
        ASSERT_EQ(text, kor_test::to_wide(units));
        ASSERT_EQ(to_units(text), units);
        std::u16string visited;
        for_each_utf16_unit(text.data(), text.size(), [&](char16_t unit) { visited += unit; });
        ASSERT_EQ(visited, units);
    }
}

TEST_P(Utf16, OrdersAsTheUnitsDo)
{
    std::mt19937 random(GetParam());
    auto const sign = [](int value) { return (value > 0) - (value < 0); };
    for (int step = 0; step < 2000; ++step) {
        std::u16string const common = make_units(random, random() % 24, GetParam());
        std::u16string const a = common + make_units(random, random() % 3, GetParam());
        std::u16string const b = common + make_units(random, random() % 3, GetParam());
        std::wstring const wide_a = to_wide(a);
        std::wstring const wide_b = to_wide(b);
        ASSERT_EQ(sign(compare_utf16(wide_a.data(), wide_a.size(), wide_b.data(), wide_b.size())),
            sign(a.compare(b)));
    }
}

INSTANTIATE_TEST_SUITE_P(Mixes, Utf16, testing::Values(0, 1, 4, 8));

TEST(Utf16, SupplementaryCharactersComeBeforeTheLastOfThePlane)
{
    std::wstring const emoji = kor_test::to_wide(u"\U0001F600");
    EXPECT_LT(compare_utf16(emoji.data(), emoji.size(), L"\xFFFD", 1), 0);
    if constexpr (sizeof(wchar_t) == 4) {
        wchar_t const beyond[] = { static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1) };
        EXPECT_EQ(to_units(std::wstring(beyond, 2)), u"\uFFFD\uFFFD");
        EXPECT_EQ(compare_utf16(beyond, 2, L"\xFFFD\xFFFD", 2), 0);
    }
}

} // namespace
