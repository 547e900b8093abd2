// SPDX-License-Identifier: MIT
#include "kortools/core/conversion.h"

#include "kortools/platform/code_pages.h"
#include "tests/support/oracle.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

// Makes a code page the ANSI one for a test.
class AnsiPage {
public:
    explicit AnsiPage(unsigned int page) { kortools::platform::set_ansi_code_page(page); }
    ~AnsiPage() { kortools::platform::set_ansi_code_page(0); }
    AnsiPage(AnsiPage const &) = delete;
    AnsiPage &operator=(AnsiPage const &) = delete;
};

TEST(Conversion, ChoosesThePageByTheEncoding)
{
    AnsiPage const ansi(1251);
    char const *const bytes = "\xC3\xA9";
    EXPECT_STREQ(XCA2W(bytes), L"\x0413\x00A9");
    EXPECT_STREQ(XCA2W(bytes, xEncodingANSI), L"\x0413\x00A9");
    EXPECT_STREQ(XCA2W(bytes, 3), L"\x0413\x00A9");
    EXPECT_STREQ(XCA2W(bytes, xEncodingUTF8), L"\x00E9");
    EXPECT_STREQ(XCA2W(bytes, 1252), L"\x00C3\x00A9");
    EXPECT_STREQ(XCW2A(L"\x0413"), "\xC3");
    EXPECT_STREQ(XCW2A(L"\x0413", 1), "\xC3");
    EXPECT_STREQ(XCW2A(L"\x0413", 2), "\xD0\x93");
    EXPECT_STREQ(XCW2A(L"\x0413\x0100", 1252), "?A");
}

TEST(Conversion, FailsForNullAndForPagesThatDoNotExist)
{
    for (int const encoding : { -1, 1, 2, 1252, 4, 12345, -2 }) {
        XCA2W const wide(nullptr, encoding);
        XCW2A const narrow(nullptr, encoding);
        EXPECT_EQ(static_cast<wchar_t const *>(wide), nullptr) << encoding;
        EXPECT_EQ(static_cast<char const *>(narrow), nullptr) << encoding;
        bool const exists = encoding != 4 && encoding != 12345 && encoding != -2;
        EXPECT_EQ(XCA2W("", encoding) != nullptr, exists) << encoding;
        EXPECT_EQ(XCA2W("abc", encoding) != nullptr, exists) << encoding;
        EXPECT_EQ(XCW2A(L"", encoding) != nullptr, exists) << encoding;
        EXPECT_EQ(XCW2A(L"abc", encoding) != nullptr, exists) << encoding;
    }
    XCA2W const failed("abc", xEncodingMarked);
    EXPECT_TRUE(failed.GetText().IsEmpty());
    CXTString<char> result = "old";
    EXPECT_FALSE(kortools::core::convert_text(L"abc", static_cast<xStringEncoding>(5), result));
    EXPECT_TRUE(result.IsEmpty());
}

// Lengths around those at which texts leave the stack and the conversion its blocks.
TEST(Conversion, LongTextsComeBack)
{
    for (int const length : { 1, 15, 16, 17, 511, 512, 513, 2000, 70000 }) {
        CXTString<wchar_t> text;
        for (int i = 0; i < length; ++i)
            text += i % 7 == 0 ? L'\x20AC' : static_cast<wchar_t>(L'a' + i % 26);
        for (int const encoding : { 2, 1252, 936, 65000 }) {
            XCW2A const narrow(text, encoding);
            ASSERT_TRUE(narrow) << encoding;
            EXPECT_EQ(XCA2W(narrow, encoding).GetText(), text) << encoding << ", " << length;
        }
    }
}

TEST(Conversion, KeepsZerosInsideViews)
{
    CXTString<wchar_t> wide;
    EXPECT_TRUE(kortools::core::convert_text(
        std::string_view("a\0\xE9", 3), static_cast<xStringEncoding>(1252), wide));
    EXPECT_EQ(wide.GetView(), std::wstring_view(L"a\0\x00E9", 3));
}

TEST(Conversion, SameWidthConvertersGiveTheInputItself)
{
    char const *const narrow = "text";
    wchar_t const *const wide = L"text";
    for (int const encoding : { -1, 1, 2, 3, 1252, 12345 }) {
        EXPECT_EQ(static_cast<char const *>(XCA2A(narrow, encoding)), narrow);
        EXPECT_EQ(static_cast<wchar_t const *>(XCW2W(wide, encoding)), wide);
    }
    EXPECT_EQ(static_cast<char const *>(XCA2A(nullptr)), nullptr);
    EXPECT_FALSE(std::is_copy_constructible_v<XCA2W> || std::is_copy_assignable_v<XCA2BSTR>);
}

TEST(AutomationString, HasUnitsASizeAndAZero)
{
    std::u16string const units = u"a\u00E9\U0001F600\xDC00z";
    std::wstring const text = kor_test::to_wide(units);
    XCW2BSTR const bstr(text.c_str());
    ASSERT_NE(bstr.GetBSTR(), nullptr);
    EXPECT_EQ(bstr.GetBSTR(), units);
    EXPECT_EQ(bstr.GetLength(), units.size());
    unsigned int size;
    std::memcpy(&size, reinterpret_cast<char *>(bstr.GetBSTR()) - 4, 4);
    EXPECT_EQ(size, units.size() * 2);
    EXPECT_EQ(static_cast<wchar_t *>(bstr), text);

    AnsiPage const ansi(1251);
    EXPECT_EQ(static_cast<wchar_t *>(XCA2BSTR("\xC3")), std::wstring(L"\x0413"));
    EXPECT_EQ(XCA2BSTR("").GetLength(), 0U);
    EXPECT_NE(XCA2BSTR("").GetBSTR(), nullptr);
    EXPECT_EQ(XCA2BSTR(nullptr).GetBSTR(), nullptr);
    EXPECT_EQ(static_cast<wchar_t *>(XCW2BSTR(nullptr)), nullptr);
    EXPECT_EQ(XCW2BSTR(nullptr).GetLength(), 0U);
}

// What xUTF8ToUTF16 writes, the closing zero included, cut at its result; empty for 0.
std::u16string decode(std::string const &bytes)
{
    auto const *const source = reinterpret_cast<unsigned char const *>(bytes.c_str());
    std::vector<unsigned short> target(bytes.size() + 2, 0xEEEE);
    int const count = xUTF8ToUTF16(source, target.data());
    EXPECT_LT(static_cast<std::size_t>(count), target.size());
    EXPECT_EQ(target[static_cast<std::size_t>(count > 0 ? count : target.size() - 1)], 0xEEEE);
    bool const valid = count > 0;
    EXPECT_EQ(xUTF8ToUTF16(source, nullptr), valid ? static_cast<int>(bytes.size()) : 0);
    return std::u16string(target.begin(), target.begin() + count);
}

TEST(Utf8ToUtf16, LooksAtBitPatternsOnly)
{
    using namespace std::string_literals;
    EXPECT_EQ(decode(""), u"\0"s);
    EXPECT_EQ(decode("\xC3\xA9"), u"\u00E9\0"s);
    EXPECT_EQ(decode("\xE2\x82\xAC"), u"\u20AC\0"s);
    EXPECT_EQ(decode("\xC0\x80\xC1\xBF"), u"\0\x7F\0"s);               // overlong
    EXPECT_EQ(decode("\xED\xA0\xBD\xE0\x80\x81"), u"\xD83D\x0001\0"s); // a surrogate, overlong
    EXPECT_EQ(decode("\xEF\xBF\xBF"), u"\xFFFF\0"s);
    for (char const *const bad : { "\xF0\x9F\x98\x80", "\x80", "\xC3", "\xC3g", "\xE2\x82",
             "\xE2\x82g", "\xE2g\x82", "\xFF", "\xF8\x88\x80\x80\x80" }) {
        EXPECT_EQ(decode(bad), u"") << bad;
        EXPECT_EQ(decode("0123456789abcdef"s + bad), u"") << bad;
    }
}

TEST(Utf8ToUtf16, LeavesWhatItWroteBeforeABadSequence)
{
    unsigned short target[8];
    std::fill_n(target, 8, 0xEEEE);
    EXPECT_EQ(xUTF8ToUTF16(reinterpret_cast<unsigned char const *>("a\xC3\xA9\xFFz"), target), 0);
    EXPECT_EQ(target[0], 'a');
    EXPECT_EQ(target[1], 0xE9);
    EXPECT_EQ(target[2], 0xEEEE);
    EXPECT_EQ(xUTF8ToUTF16(nullptr, target), 0);
}

TEST(Utf8ToUtf16, ReadsWhatTheEncoderWritesOfTheBasicPlane)
{
    std::mt19937 random(7);
    for (int step = 0; step < 300; ++step) {
        std::u16string units;
        for (int i = step % 60; i > 0; --i) {
            auto const value = static_cast<char16_t>(random() >> (random() % 2 ? 25 : 16));
            units += value == 0 || (value & 0xF800) == 0xD800 ? u'x' : value;
        }
        std::wstring const text(units.begin(), units.end());
        EXPECT_EQ(decode(static_cast<char const *>(XCW2A(text.c_str(), 2))), units + u'\0');
    }
}

std::u32string widen(std::u16string const &units, std::size_t count)
{
    std::vector<unsigned short> const source(units.begin(), units.end());
    std::vector<unsigned int> target(count + 1, 0xEEEEEEEE);
    auto const written = xUTF16ToUTF32(source.data(), count, target.data());
    EXPECT_LE(written, count);
    EXPECT_EQ(target[written], 0xEEEEEEEE);
    return std::u32string(target.begin(), target.begin() + static_cast<std::ptrdiff_t>(written));
}

TEST(Utf16ToUtf32, JoinsPairsWithoutTheirOffset)
{
    EXPECT_EQ(widen(u"\xD83D\xDE00", 2), U"\xF600");
    EXPECT_EQ(widen(u"a\xDBFF\xDFFFz", 4), U"a\xFFFFFz");
    EXPECT_EQ(widen(u"\xDC00\xDFFF", 2), U"\xDC00\xDFFF"); // low ones alone
    EXPECT_EQ(widen(u"\xD800\x0041", 2), U"");
    EXPECT_EQ(widen(u"\xD800\xD801\xDC00", 3), U"\xDC00"); // the high one is consumed
    EXPECT_EQ(widen(u"\xFFFF", 1), U"\xFFFF");
    EXPECT_EQ(widen(u"abc", 0), U"");
}

TEST(Utf16ToUtf32, PairsTheLastUnitWithTheOneBehindTheRange)
{
    std::u16string const closed(u"a\xD83D\0", 3);
    EXPECT_EQ(widen(closed, 2), U"a");
    EXPECT_EQ(widen(u"a\xD83D\xDE00", 2), U"a\xF600");
}

TEST(ReverseBuffer, ReversesBytes)
{
    char bytes[] = "abcde";
    ReverseBuffer(bytes, 5);
    EXPECT_STREQ(bytes, "edcba");
    ReverseBuffer(bytes + 1, 2);
    EXPECT_STREQ(bytes, "ecdba");
    ReverseBuffer(bytes, 1);
    ReverseBuffer(bytes, 0);
    ReverseBuffer(bytes, -3);
    ReverseBuffer(nullptr, 0);
    EXPECT_STREQ(bytes, "ecdba");
}

} // namespace
