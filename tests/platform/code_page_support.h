// SPDX-License-Identifier: MIT
// What the tests of code pages share: whole texts converted, and texts to look at.
#pragma once

#include "kortools/platform/code_pages.h"
#include "tests/support/oracle.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace kor_test {

// Converts a whole text, and checks that measuring agrees, that nothing is written behind the text
// and that one character less of room fails.
template <class To, class From>
std::optional<std::basic_string<To>> convert_whole(
    long long (*convert)(unsigned int, From const *, long long, To *, long long), unsigned int page,
    std::basic_string<From> const &text)
{
    auto const size = static_cast<long long>(text.size());
    long long const count = convert(page, text.data(), size, nullptr, 0);
    if (count < 0)
        return std::nullopt;
    std::basic_string<To> result(static_cast<std::size_t>(count) + 1, To('~'));
    if (count > 0) {
        EXPECT_EQ(convert(page, text.data(), size, result.data(), count - 1), -1);
    }
    EXPECT_EQ(convert(page, text.data(), size, result.data(), count), count);
    EXPECT_EQ(result.back(), To('~'));
    result.pop_back();
    return result;
}

inline std::optional<std::wstring> decode(unsigned int page, std::string const &bytes)
{
    return convert_whole(kortools::platform::narrow_to_wide, page, bytes);
}

inline std::optional<std::string> encode(unsigned int page, std::wstring const &text)
{
    return convert_whole(kortools::platform::wide_to_narrow, page, text);
}

} // namespace kor_test
