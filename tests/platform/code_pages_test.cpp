// SPDX-License-Identifier: MIT
#include "tests/platform/code_page_support.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <thread>
#include <vector>

using namespace kortools::platform;
using kor_test::bytes_from_hex;
using kor_test::decode;
using kor_test::encode;
using kor_test::OracleRow;
using kor_test::units_from_hex;

namespace {

unsigned int get_page(std::string const &field)
{
    return static_cast<unsigned int>(std::stoul(field));
}

} // namespace

TEST(CodePages, DecodeAsRecorded)
{
    for (char const *const file : { "cp_single.tsv", "cp_from_bytes.tsv", "cp_pairs.tsv" }) {
        for (OracleRow const &row : kor_test::read_oracle(file)) {
            auto const text = decode(get_page(row[0]), bytes_from_hex(row.at(1)));
            ASSERT_EQ(text.has_value(), row.back() != "failed") << row[0] << ", " << row[1];
            EXPECT_TRUE(!text || kor_test::to_units(*text) == units_from_hex(row.back()))
                << file << ": page " << row[0] << ", bytes " << row[1];
        }
    }
}

TEST(CodePages, EncodeAsRecorded)
{
    for (char const *const file : { "cp_from_wide.tsv", "cp_from_wide_blocks.tsv" }) {
        for (OracleRow const &row : kor_test::read_oracle(file)) {
            auto const bytes
                = encode(get_page(row[0]), kor_test::to_wide(units_from_hex(row.at(1))));
            ASSERT_EQ(bytes.has_value(), row.back() != "failed") << row[0] << ", " << row[1];
            EXPECT_TRUE(!bytes || *bytes == bytes_from_hex(row.back()))
                << file << ": page " << row[0] << ", units " << row[1];
        }
    }
}

TEST(CodePages, UnknownPagesFail)
{
    for (OracleRow const &row : kor_test::read_oracle("cp_unknown.tsv")) {
        unsigned int const page = get_page(row.at(1));
        EXPECT_FALSE(is_code_page(page)) << page;
        if (row[0] == "M")
            EXPECT_FALSE(decode(page, bytes_from_hex(row[2])) || decode(page, "")) << page;
        else
            EXPECT_FALSE(encode(page, kor_test::to_wide(units_from_hex(row[2])))) << page;
    }
}

namespace {

// One U+FFFD for each longest beginning of a well-formed sequence, or for a byte that begins none.
std::u16string decode_slowly(std::string const &bytes)
{
    std::u16string units;
    for (std::size_t at = 0, good = 1; at < bytes.size(); at += good, good = 1) {
        auto const byte = [&](std::size_t i) -> unsigned {
            return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0;
        };
        unsigned const lead = byte(0);
        std::size_t const length = lead < 0x80 ? 1
            : lead < 0xC2 || lead > 0xF4       ? 0
            : lead < 0xE0                      ? 2
            : lead < 0xF0                      ? 3
                                               : 4;
        unsigned const low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80; // of the second byte
        unsigned const high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        unsigned ch = length > 1 ? lead & (0x7FU >> length) : lead;
        while (good < length && byte(good) >= (good == 1 ? low : 0x80)
            && byte(good) <= (good == 1 ? high : 0xBF))
            ch = ch * 64 + byte(good++) % 64;
        if (good != std::max<std::size_t>(length, 1) || length == 0)
            ch = 0xFFFD;
        if (ch > 0xFFFF)
            units += static_cast<char16_t>(0xD7C0 + (ch >> 10));
        units += static_cast<char16_t>(ch > 0xFFFF ? 0xDC00 + ch % 0x400 : ch);
    }
    return units;
}

} // namespace

// All texts of up to four bytes from those at which a rule changes, alone and with ASCII around
// them, which takes another path.
TEST(CodePages, MalformedUtf8AgreesWithTheSlowModel)
{
    std::string const edges = "\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF"
                              "\xF0\xF1\xF4\xF5\xFF";
    auto const check = [](std::string const &text) {
        std::wstring const expected = kor_test::to_wide(decode_slowly(text));
        auto const size = static_cast<long long>(text.size());
        auto const length = static_cast<long long>(expected.size());
        wchar_t target[64];
        ASSERT_EQ(narrow_to_wide(utf8_code_page, text.data(), size, nullptr, 0), length);
        ASSERT_EQ(narrow_to_wide(utf8_code_page, text.data(), size, target, 64), length);
        ASSERT_EQ(std::wstring_view(target, expected.size()), expected)
            << testing::PrintToString(text);
        ASSERT_LE(estimate_wide_length(utf8_code_page, text.data(), size), length);
        if (expected.find(L'\xFFFD') == expected.npos) {
            ASSERT_EQ(encode(utf8_code_page, expected), text) << testing::PrintToString(text);
        }
    };
    std::string bytes;
    auto const try_all = [&](auto const &self, int depth) -> void {
        check(bytes);
        check("0123456" + bytes + "0123456789abcdefghijklmnop");
        for (std::size_t i = 0; depth > 0 && i < edges.size(); ++i) {
            bytes += edges[i];
            self(self, depth - 1);
            bytes.pop_back();
        }
    };
    try_all(try_all, 4);
}

TEST(CodePages, CharactersThatUtf8CannotHoldAreReplaced)
{
    std::wstring const pair = { static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00) };
    for (std::string const &around : { std::string(), std::string(100, 'x') }) {
        std::wstring const wide(around.begin(), around.end());
        EXPECT_EQ(encode(65001, wide + pair + wide), around + "\xF0\x9F\x98\x80" + around);
        EXPECT_EQ(encode(65001, wide + pair[1] + pair[0] + wide),
            around + "\xEF\xBF\xBD\xEF\xBF\xBD" + around);
        if (sizeof(wchar_t) == 4) {
            std::wstring const beyond
                = { static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1) };
            EXPECT_EQ(encode(65001, wide + beyond), around + "\xEF\xBF\xBD\xEF\xBF\xBD");
            EXPECT_EQ(encode(1252, wide + beyond), around + "??");
        }
    }
}

// A character that is not ASCII at each place of texts around the lengths of the fast loops.
TEST(CodePages, TextIsTheSumOfItsCharacters)
{
    for (unsigned int const page : { 437U, 932U, 1252U, 65001U }) {
        std::wstring const special(1, page == 932 ? L'\x6F22' : L'\x00E9');
        std::string const special_bytes = *encode(page, special);
        std::string const ascii = "0123456789abcdefghijklmnopqrstuvwxyzABCD";
        for (std::size_t length = 1; length <= ascii.size(); ++length) {
            for (std::size_t place = 0; place < length; ++place) {
                std::string bytes = ascii.substr(0, length);
                std::wstring const text
                    = std::wstring(bytes.begin(), bytes.end()).replace(place, 1, special);
                bytes.replace(place, 1, special_bytes);
                ASSERT_EQ(encode(page, text), bytes) << page << ", " << length << ", " << place;
                ASSERT_EQ(decode(page, bytes), text) << page << ", " << length << ", " << place;
            }
        }
    }
}

TEST(CodePages, SizesOutsideIntFail)
{
    for (unsigned int const page : { 1252U, 65001U }) {
        for (auto const &[size, capacity, result] : { std::tuple(-1LL, 1LL, -1),
                 { INT_MAX + 1LL, LLONG_MAX, -1 }, { 1, -1, -1 }, { 1, LLONG_MAX, 1 } }) {
            wchar_t wide = L'z';
            char narrow = 'z';
            EXPECT_EQ(narrow_to_wide(page, "x", size, &wide, capacity), result);
            EXPECT_EQ(wide_to_narrow(page, L"x", size, &narrow, capacity), result);
        }
    }
}

TEST(CodePages, ThreadsMayMeetAPageForTheFirstTimeTogether)
{
    std::vector<std::thread> threads;
    std::atomic<int> right { 0 };
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&right, i] {
            unsigned int const pages[] = { 28594, 1257, 950 };
            unsigned int const page = pages[i % 3];
            right += decode(page, *encode(page, L"x\x00B0")) == L"x\x00B0";
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(right, 8);
}
