// SPDX-License-Identifier: MIT
#include "kortools/platform/text_compare.h"
#include "tests/support/oracle.h"
#include "tests/support/scoped_locale.h"

#include <gtest/gtest.h>

#include <map>

using kor_test::OracleRow;
namespace platform = kortools::platform;

namespace {

int sign(int value)
{
    return (value > 0) - (value < 0);
}

// "0041:0061 ..." of a row.
std::map<unsigned long, unsigned long> read_mapping(std::string const &field)
{
    std::map<unsigned long, unsigned long> mapping;
    for (std::size_t i = 0; i + 9 <= field.size(); i += 10)
        mapping[std::stoul(field.substr(i, 4), nullptr, 16)]
            = std::stoul(field.substr(i + 5, 4), nullptr, 16);
    return mapping;
}

TEST(TextCompare, CaseMappingIsTheRecordedOne)
{
    for (OracleRow const &row : kor_test::read_oracle("crt_case.tsv")) {
        auto const lower = read_mapping(row[1]);
        auto const upper = read_mapping(row[2]);
        unsigned long const first = std::stoul(row[0], nullptr, 16);
        for (unsigned long code = first; code < first + 256; ++code) {
            auto const ch = static_cast<wchar_t>(code);
            unsigned long const low = lower.contains(code) ? lower.at(code) : code;
            unsigned long const high = upper.contains(code) ? upper.at(code) : code;
            ASSERT_EQ(platform::to_lower(ch), static_cast<wchar_t>(low)) << code;
            ASSERT_EQ(platform::to_upper(ch), static_cast<wchar_t>(high)) << code;
            if (code < 256) {
                ASSERT_EQ(platform::to_lower(static_cast<char>(code)), static_cast<char>(low));
                ASSERT_EQ(platform::to_upper(static_cast<char>(code)), static_cast<char>(high));
            }
        }
    }
}

template <class T>
void expect_caseless_order(
    std::basic_string<T> const &a, std::basic_string<T> const &b, OracleRow const &row)
{
    int const expected = std::stoi(row[2]);
    EXPECT_EQ(sign(platform::compare_no_case(a.c_str(), b.c_str())), expected)
        << testing::PrintToString(row);
    EXPECT_EQ(sign(platform::collate_no_case(b.c_str(), a.c_str())), -expected)
        << testing::PrintToString(row);
}

TEST(TextCompare, CaselessOrderIsTheRecordedOne)
{
    for (OracleRow const &row : kor_test::read_oracle("crt_wcsicmp.tsv"))
        expect_caseless_order(kor_test::to_wide(kor_test::unescape(row[0])),
            kor_test::to_wide(kor_test::unescape(row[1])), row);
    for (OracleRow const &row : kor_test::read_oracle("crt_stricmp.tsv"))
        expect_caseless_order(
            kor_test::bytes_from_hex(row[0]), kor_test::bytes_from_hex(row[1]), row);
}

// Lengths around those of the buffers.
void expect_no_case(wchar_t small, wchar_t capital)
{
    for (std::size_t const length : { 254U, 255U, 256U, 257U, 100000U }) {
        std::wstring const a(length, small);
        std::wstring const b(length, capital);
        EXPECT_EQ(platform::collate_no_case(a.c_str(), b.c_str()), 0) << length;
        EXPECT_GT(platform::collate_no_case((a + L"x").c_str(), b.c_str()), 0) << length;
        EXPECT_NE(platform::collate(a.c_str(), b.c_str()), 0) << length;
    }
}

TEST(TextCompare, AnotherLocaleBringsItsOwnCaseMapping)
{
    expect_no_case(L'q', L'Q');
    ScopedLocale const locale { "C.UTF-8", "French_France.1252" };
    ASSERT_TRUE(locale);
    EXPECT_EQ(platform::to_lower(L'\x00C9'), L'\x00E9');
    EXPECT_EQ(platform::compare_no_case(L"\x00C9t\x00C9", L"\x00E9T\x00E9"), 0);
    expect_no_case(L'\x00E9', L'\x00C9');
}

} // namespace
