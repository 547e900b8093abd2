// SPDX-License-Identifier: MIT
// Formatting, string tables, conversion between the widths, comparison by the locale.
#include "kortools/core/xstring.h"
#include "tests/core/xstring_support.h"
#include "tests/support/ansi_page.h"
#include "tests/support/thread_language.h"

#include <cstdarg>
#include <gtest/gtest.h>

namespace {

template <class T> using Std = std::basic_string<T>;

template <class T> void format_v(CXTString<T> &text, T const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    text.FormatV(format, args);
    va_end(args);
}

template <class T> class XStringFormat : public testing::Test {
};
TYPED_TEST_SUITE(XStringFormat, BothWidths, WidthNames);

} // namespace

TYPED_TEST(XStringFormat, FormatsTextOfAnyLength)
{
    using T = TypeParam;
    auto const format = lit<T>("<%s|%hs|%ls|%d>");
    for (int const length : { 0, 1, 490, 500, 501, 502, 503, 504, 505, 2000, 70000 }) {
        CXTString<T> const part(T('p'), length);
        CXTString<T> text;
        text.Format(format.c_str(), part.GetConstBuffer(), "narrow", L"wide", length);
        Std<T> number;
        for (char const digit : std::to_string(length))
            number += static_cast<T>(digit);
        Std<T> const expected
            = lit<T>("<") + Std<T>(part.GetView()) + lit<T>("|narrow|wide|") + number + lit<T>(">");
        ASSERT_EQ(text, expected) << length;
        text.AppendFormat(format.c_str(), part.GetConstBuffer(), "narrow", L"wide", length);
        ASSERT_EQ(text, expected + expected) << length;

        // The arguments, and the format, may be the string itself.
        text = part;
        text.Format(lit<T>("%s%s").c_str(), text.GetConstBuffer(), text.GetConstBuffer());
        ASSERT_EQ(text, part + part) << length;
        text.AppendFormat(lit<T>("%s").c_str(), text.GetConstBuffer());
        ASSERT_EQ(text.GetLength(), 4 * length);
        text += lit<T>("%d");
        text.Format(text, length);
        ASSERT_EQ(text.Mid(4 * length), number);
    }
}

TYPED_TEST(XStringFormat, LoadsFormatsByTheirNumber)
{
    using T = TypeParam;
    constexpr unsigned int gigabytes_format = 5230; // "%.2f Gb"
    ThreadLanguage const language(kortools::text::english);
    CXTString<T> text;
    text.Format(gigabytes_format, 1.5);
    text.AppendFormat(gigabytes_format, 0.25);
    EXPECT_EQ(text, lit<T>("1.50 Gb0.25 Gb"));
    EXPECT_FALSE(text.LoadString(0xFFFFFFFF));
    EXPECT_TRUE(text.IsEmpty());
}

TYPED_TEST(XStringFormat, ScansFieldsFromAnyPlace)
{
    using T = TypeParam;
    CXTString<T> const text = lit<T>("size 12 x 34 ab");
    int width = 0, height = 0;
    T name[8] = {};
    EXPECT_EQ(text.ScanS(lit<T>("size %d x %d %s").c_str(), &width, &height, name, 8U), 3);
    EXPECT_TRUE(width == 12 && height == 34 && Std<T>(name) == lit<T>("ab"));
    EXPECT_EQ(text.ScanS(10, lit<T>("%d %s").c_str(), &width, name, 2U), 1); // no room
    EXPECT_EQ(width, 34);
    for (int const start : { -1, 15, 99 })
        EXPECT_EQ(text.ScanS(start, lit<T>("%d").c_str(), &width), -1) << start;
}

TYPED_TEST(XStringFormat, EmptiesTheStringForABadFormatOnly)
{
    using T = TypeParam;
    CXTString<T> text = lit<T>("kept");
    text.Format(static_cast<T const *>(nullptr));
    text.AppendFormat(static_cast<T const *>(nullptr));
    format_v<T>(text, nullptr);
    text.AppendFormat(lit<T>("%y").c_str(), 1);
    EXPECT_EQ(text, lit<T>("kept"));
    format_v(text, lit<T>("%02x").c_str(), 10);
    EXPECT_EQ(text, lit<T>("0a"));
    text.Format(lit<T>("%y").c_str(), 1);
    EXPECT_EQ(text, lit<T>(""));
}

TEST(XStringConversion, GoesThroughTheAnsiCodePage)
{
    struct {
        unsigned int page;
        std::wstring wide;
        std::string narrow;
    } const cases[] = {
        { 1252, L"\u00E9\u20ACx", "\xE9\x80x" },
        { 932, L"\u3042x", "\x82\xA0x" },
        { 65001, L"\u00E9\u20AC\U0001F600", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80" },
    };
    for (auto const &each : cases) {
        AnsiPage const page(each.page);
        // Around the length up to which the conversion goes through the stack.
        for (std::size_t const padding : { 0, 5, 2043, 2044, 2045, 2046, 2047, 2048, 7000 }) {
            std::wstring const wide = std::wstring(padding, '-') + each.wide;
            std::string const narrow = std::string(padding, '-') + each.narrow;
            EXPECT_EQ(CXTString<wchar_t>(narrow.c_str()), wide) << each.page << ' ' << padding;
            EXPECT_EQ(CXTString<char>(wide.c_str()), narrow) << each.page << ' ' << padding;
        }
    }
}
