// SPDX-License-Identifier: MIT
#include "kortools/core/conversion.h"

#include "tests/support/ansi_page.h"
#include "tests/support/oracle.h"

#include <cstring>
#include <string>
#include <vector>

using namespace std::string_literals;

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

namespace {

// What xUTF8ToUTF16 writes, the closing zero included, cut at its result; empty for 0.
std::u16string decode(std::string const &bytes)
{
    auto const *const source = reinterpret_cast<unsigned char const *>(bytes.c_str());
    std::vector<unsigned short> target(bytes.size() + 2, 0xEEEE);
    int const count = xUTF8ToUTF16(source, target.data());
    EXPECT_EQ(target.at(static_cast<std::size_t>(count > 0 ? count : target.size() - 1)), 0xEEEE);
    EXPECT_EQ(xUTF8ToUTF16(source, nullptr), count > 0 ? static_cast<int>(bytes.size()) : 0);
    return std::u16string(target.begin(), target.begin() + count);
}

std::u32string widen(std::u16string const &units, std::size_t count)
{
    std::vector<unsigned short> const source(units.begin(), units.end());
    std::vector<unsigned int> target(count + 1, 0xEEEEEEEE);
    auto const written = xUTF16ToUTF32(source.data(), count, target.data());
    EXPECT_EQ(target.at(written), 0xEEEEEEEE);
    return std::u32string(target.begin(), target.begin() + static_cast<std::ptrdiff_t>(written));
}

} // namespace

TEST(Utf8ToUtf16, LooksAtBitPatternsOnly)
{
    EXPECT_EQ(decode(""), u"\0"s);
    EXPECT_EQ(
        decode("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"), u"\x7F\x80\x7FF\x800\xFFFF\0"s);
    EXPECT_EQ(decode("\xC0\x80\xC1\xBF"), u"\0\x7F\0"s);               // overlong
    EXPECT_EQ(decode("\xED\xA0\xBD\xE0\x80\x81"), u"\xD83D\x0001\0"s); // a surrogate, overlong
    for (char const *const bad : { "\xF0\x9F\x98\x80", "\x80", "\xC3", "\xC3g", "\xE2\x82",
             "\xE2\x82g", "\xE2g\x82", "\xFF", "\xF8\x88\x80\x80\x80" }) {
        EXPECT_EQ(decode(bad), u"") << bad;
        EXPECT_EQ(decode("0123456789abcdef"s + bad), u"") << bad;
    }
    unsigned short target[8] = {}; // what stands before a bad sequence is written
    EXPECT_EQ(xUTF8ToUTF16(reinterpret_cast<unsigned char const *>("a\xC3\xA9\xFFz"), target), 0);
    EXPECT_EQ(std::u16string(target, target + 3), u"a\xE9\0"s);
    EXPECT_EQ(xUTF8ToUTF16(nullptr, target), 0);
}

TEST(Utf16ToUtf32, JoinsPairsWithoutTheirOffset)
{
    EXPECT_EQ(widen(u"\xD83D\xDE00", 2), U"\xF600");
    EXPECT_EQ(widen(u"a\xDBFF\xDFFFz", 4), U"a\xFFFFFz");
    EXPECT_EQ(widen(u"\xDC00\xDFFF", 2), U"\xDC00\xDFFF"); // low ones alone
    EXPECT_EQ(widen(u"\xD800\x0041", 2), U"");
    EXPECT_EQ(widen(u"\xD800\xD801\xDC00", 3), U"\xDC00"); // the high one is consumed
    EXPECT_EQ(widen(u"\xFFFF", 1), U"\xFFFF");
    // The last unit pairs with the one behind the range.
    EXPECT_EQ(widen(u"a\xD83D\0"s, 2), U"a");
    EXPECT_EQ(widen(u"a\xD83D\xDE00", 2), U"a\xF600");
}
