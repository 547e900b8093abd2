// SPDX-License-Identifier: MIT
#include "kortools/platform/code_pages.h"

#include "tests/support/oracle.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace kortools::platform;

namespace {

using kor_test::bytes_from_hex;
using kor_test::OracleRow;
using kor_test::units_from_hex;

// Convert a whole text, and check that measuring agrees and that one character less of room fails.
std::optional<std::wstring> to_wide(unsigned int page, std::string const &bytes)
{
    auto const size = static_cast<long long>(bytes.size());
    long long const count = narrow_to_wide(page, bytes.data(), size, nullptr, 0);
    if (count < 0)
        return std::nullopt;
    std::wstring text(static_cast<std::size_t>(count) + 1, L'\x7E7E');
    EXPECT_EQ(narrow_to_wide(page, bytes.data(), size, text.data(), count), count);
    EXPECT_EQ(text.back(), L'\x7E7E');
    text.pop_back();
    std::wstring cut(text.size(), L'\0');
    if (count > 0) {
        EXPECT_EQ(narrow_to_wide(page, bytes.data(), size, cut.data(), count - 1), -1);
    }
    return text;
}

std::optional<std::string> to_bytes(unsigned int page, std::wstring const &text)
{
    auto const length = static_cast<long long>(text.size());
    long long const count = wide_to_narrow(page, text.data(), length, nullptr, 0);
    if (count < 0)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(count) + 1, '\x7E');
    EXPECT_EQ(wide_to_narrow(page, text.data(), length, bytes.data(), count), count);
    EXPECT_EQ(bytes.back(), '\x7E');
    bytes.pop_back();
    std::string cut(bytes.size(), '\0');
    if (count > 0) {
        EXPECT_EQ(wide_to_narrow(page, text.data(), length, cut.data(), count - 1), -1);
    }
    return bytes;
}

std::string to_hex(std::string const &bytes)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string hex;
    for (char const byte : bytes) {
        hex += digits[static_cast<unsigned char>(byte) >> 4];
        hex += digits[byte & 15];
    }
    return hex;
}

std::string to_hex(std::wstring const &text)
{
    std::string hex;
    for (char16_t const unit : kor_test::to_units(text))
        hex += to_hex(std::string { static_cast<char>(unit >> 8), static_cast<char>(unit) });
    return hex;
}

unsigned int get_page(OracleRow const &row, std::size_t column = 0)
{
    return static_cast<unsigned int>(std::stoul(row.at(column)));
}

TEST(CodePages, DecodeAsRecorded)
{
    for (char const *const file : { "cp_single.tsv", "cp_from_bytes.tsv", "cp_pairs.tsv" }) {
        for (OracleRow const &row : kor_test::read_oracle(file)) {
            auto const text = to_wide(get_page(row), bytes_from_hex(row.at(1)));
            EXPECT_EQ(row.back(), text ? to_hex(*text) : "failed")
                << file << ": page " << row[0] << ", bytes " << row[1];
        }
    }
}

TEST(CodePages, EncodeAsRecorded)
{
    for (char const *const file : { "cp_from_wide.tsv", "cp_from_wide_blocks.tsv" }) {
        for (OracleRow const &row : kor_test::read_oracle(file)) {
            std::wstring const text = kor_test::to_wide(units_from_hex(row.at(1)));
            auto const bytes = to_bytes(get_page(row), text);
            EXPECT_EQ(row.back(), bytes ? to_hex(*bytes) : "failed")
                << file << ": page " << row[0] << ", units " << row[1];
        }
    }
}

TEST(CodePages, UnknownPagesFail)
{
    for (OracleRow const &row : kor_test::read_oracle("cp_unknown.tsv")) {
        unsigned int const page = get_page(row, 1);
        bool const decodes = row[0] == "M";
        EXPECT_FALSE(is_code_page(page)) << page;
        EXPECT_FALSE(decodes && to_wide(page, bytes_from_hex(row[2]))) << page;
        EXPECT_FALSE(!decodes && to_bytes(page, kor_test::to_wide(units_from_hex(row[2])))) << page;
        EXPECT_FALSE(to_wide(page, "")) << page;
        EXPECT_FALSE(to_bytes(page, L"")) << page;
    }
}

} // namespace
