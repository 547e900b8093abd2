// SPDX-License-Identifier: MIT
#include "kortools/platform/code_pages.h"

#include "tests/support/oracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <optional>
#include <string>
#include <thread>
#include <vector>

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

// --- UTF-8

// The well-formed sequences, byte by byte.
struct Utf8Form {
    int length;
    int low[4];
    int high[4];
};

constexpr Utf8Form utf8_forms[] = {
    { 1, { 0x00 }, { 0x7F } },
    { 2, { 0xC2, 0x80 }, { 0xDF, 0xBF } },
    { 3, { 0xE0, 0xA0, 0x80 }, { 0xE0, 0xBF, 0xBF } },
    { 3, { 0xE1, 0x80, 0x80 }, { 0xEC, 0xBF, 0xBF } },
    { 3, { 0xED, 0x80, 0x80 }, { 0xED, 0x9F, 0xBF } },
    { 3, { 0xEE, 0x80, 0x80 }, { 0xEF, 0xBF, 0xBF } },
    { 4, { 0xF0, 0x90, 0x80, 0x80 }, { 0xF0, 0xBF, 0xBF, 0xBF } },
    { 4, { 0xF1, 0x80, 0x80, 0x80 }, { 0xF3, 0xBF, 0xBF, 0xBF } },
    { 4, { 0xF4, 0x80, 0x80, 0x80 }, { 0xF4, 0x8F, 0xBF, 0xBF } },
};

// How many bytes at `at` agree with the form.
int count_matches(Utf8Form const &form, std::string const &bytes, std::size_t at)
{
    int count = 0;
    for (; count < form.length && at < bytes.size(); ++count, ++at) {
        int const byte = static_cast<unsigned char>(bytes[at]);
        if (byte < form.low[count] || byte > form.high[count])
            break;
    }
    return count;
}

// One U+FFFD for each longest beginning of a well-formed sequence, or for a byte that begins none.
std::u32string decode_slowly(std::string const &bytes)
{
    constexpr unsigned bases[] = { 0, 0x00, 0xC0, 0xE0, 0xF0 };
    std::u32string text;
    for (std::size_t at = 0; at < bytes.size();) {
        int longest = 1;
        char32_t ch = 0xFFFD;
        for (Utf8Form const &form : utf8_forms) {
            int const matches = count_matches(form, bytes, at);
            longest = std::max(longest, matches);
            if (matches != form.length)
                continue;
            ch = static_cast<unsigned char>(bytes[at]) - bases[form.length];
            for (int i = 1; i < form.length; ++i)
                ch = ch * 64 + static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)])
                    - 0x80;
        }
        text += ch;
        at += static_cast<std::size_t>(longest);
    }
    return text;
}

std::wstring to_wide_text(std::u32string const &characters)
{
    std::u16string units;
    for (char32_t const ch : characters) {
        if (ch > 0xFFFF)
            units += static_cast<char16_t>(0xD7C0 + (ch >> 10));
        units += static_cast<char16_t>(ch > 0xFFFF ? 0xDC00 + ch % 0x400 : ch);
    }
    return kor_test::to_wide(units);
}

// All texts of up to four bytes from those at which a rule changes, alone and with ASCII around
// them, which takes another path.
TEST(CodePages, MalformedUtf8AgreesWithTheSlowModel)
{
    std::string const edges = "\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF"
                              "\xF0\xF1\xF4\xF5\xFF";
    std::string const before = "0123456";
    std::string const after = "0123456789abcdefghijklmnop";
    std::string bytes;
    wchar_t target[64];
    auto const agrees = [&](std::string const &text) {
        std::wstring const expected = to_wide_text(decode_slowly(text));
        auto const size = static_cast<long long>(text.size());
        auto const length = static_cast<long long>(expected.size());
        return narrow_to_wide(utf8_code_page, text.data(), size, nullptr, 0) == length
            && narrow_to_wide(utf8_code_page, text.data(), size, target, 64) == length
            && expected.compare(0, expected.size(), target, expected.size()) == 0
            && estimate_wide_length(utf8_code_page, text.data(), size) <= length;
    };
    auto const try_all = [&](auto const &self, int depth) -> void {
        ASSERT_TRUE(agrees(bytes)) << to_hex(bytes);
        ASSERT_TRUE(agrees(before + bytes + after)) << to_hex(bytes);
        for (std::size_t i = 0; depth > 0 && i < edges.size(); ++i) {
            bytes += edges[i];
            self(self, depth - 1);
            bytes.pop_back();
        }
    };
    try_all(try_all, 4);
}

TEST(CodePages, EveryCharacterComesBackFromUtf8)
{
    for (char32_t first = 0; first < 0x110000; first += 0x100) {
        if (first >= 0xD800 && first < 0xE000)
            continue;
        std::u32string characters;
        for (char32_t ch = first; ch < first + 0x100; ++ch)
            characters += ch;
        std::wstring const text = to_wide_text(characters);
        auto const bytes = to_bytes(utf8_code_page, text);
        ASSERT_EQ(decode_slowly(*bytes), characters) << to_hex(text);
        ASSERT_EQ(to_wide(utf8_code_page, *bytes), text) << to_hex(text);
    }
}

TEST(CodePages, CharactersThatUtf8CannotHoldAreReplaced)
{
    std::wstring const pair = { static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00) };
    std::string const padding(100, 'x');
    for (std::string const &around : { std::string(), padding }) {
        std::wstring const wide(around.begin(), around.end());
        EXPECT_EQ(to_bytes(65001, wide + pair + wide), around + "\xF0\x9F\x98\x80" + around);
        EXPECT_EQ(to_bytes(65001, wide + pair[1] + pair[0] + wide),
            around + "\xEF\xBF\xBD\xEF\xBF\xBD" + around);
        if (sizeof(wchar_t) == 4) {
            std::wstring const beyond
                = { static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1) };
            EXPECT_EQ(to_bytes(65001, wide + beyond), around + "\xEF\xBF\xBD\xEF\xBF\xBD");
            EXPECT_EQ(to_bytes(1252, wide + beyond), around + "??");
        }
    }
}

// --- All pages

// A character that is not ASCII at each place of texts around the lengths of the fast loops.
TEST(CodePages, TextIsTheSumOfItsCharacters)
{
    for (unsigned int const page : { 437U, 932U, 1252U, 65001U }) {
        wchar_t const special = page == 932 ? L'\x6F22' : L'\x00E9';
        std::string const special_bytes = *to_bytes(page, std::wstring(1, special));
        for (std::size_t length = 0; length <= 40; ++length) {
            for (std::size_t place = 0; place <= length; ++place) {
                std::wstring text;
                std::string bytes;
                for (std::size_t i = 0; i < length; ++i) {
                    text += i == place ? special : static_cast<wchar_t>(L'0' + i);
                    bytes
                        += i == place ? special_bytes : std::string(1, static_cast<char>('0' + i));
                }
                ASSERT_EQ(to_bytes(page, text), bytes) << page << ", " << length << ", " << place;
                ASSERT_EQ(to_wide(page, bytes), text) << page << ", " << length << ", " << place;
            }
        }
    }
}

TEST(CodePages, AnsiPageCanBeReplaced)
{
    unsigned int const system_page = get_ansi_code_page();
    EXPECT_TRUE(is_code_page(system_page));
    EXPECT_TRUE(set_ansi_code_page(1251));
    EXPECT_EQ(get_ansi_code_page(), 1251U);
    EXPECT_EQ(to_wide(0, "\xC3"), L"\x0413");
    EXPECT_EQ(to_bytes(3, L"\x0413"), "\xC3");
    for (unsigned int const unusable : { 4U, 12345U, 37U, 65000U, 3U, 1U }) {
        EXPECT_FALSE(set_ansi_code_page(unusable)) << unusable;
        EXPECT_EQ(get_ansi_code_page(), 1251U);
    }
    EXPECT_TRUE(set_ansi_code_page(0));
    EXPECT_EQ(get_ansi_code_page(), system_page);
}

TEST(CodePages, SizesOutsideIntFail)
{
    for (unsigned int const page : { 1252U, 65001U }) {
        for (long long const size : { -1LL, INT_MAX + 1LL }) {
            EXPECT_EQ(narrow_to_wide(page, "x", size, nullptr, 0), -1);
            EXPECT_EQ(wide_to_narrow(page, L"x", size, nullptr, 0), -1);
        }
        wchar_t wide = L'z';
        char narrow = 'z';
        EXPECT_EQ(narrow_to_wide(page, "x", 1, &wide, -1), -1);
        EXPECT_EQ(wide_to_narrow(page, L"x", 1, &narrow, -1), -1);
        EXPECT_EQ(narrow_to_wide(page, "x", 1, &wide, LLONG_MAX), 1);
        EXPECT_EQ(wide_to_narrow(page, L"x", 1, &narrow, LLONG_MAX), 1);
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
            right += to_wide(page, *to_bytes(page, L"x\x00B0")) == L"x\x00B0";
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(right, 8);
}

} // namespace
