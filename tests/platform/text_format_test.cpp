// SPDX-License-Identifier: MIT
#include "kortools/platform/text_format.h"
#include "tests/support/oracle.h"
#include "tests/support/scoped_locale.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <variant>

using kor_test::OracleRow;
using kortools::platform::format_text;

namespace {

template <typename T> int call(T *target, std::size_t capacity, T const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    int const length = format_text(target, capacity, format, args);
    va_end(args);
    return length;
}

template <typename T> struct Result {
    int length = 0;
    std::basic_string<T> text;
    bool operator==(Result const &) const = default;
};

// The text that a second call wrote into exactly the capacity that the first one measured, and
// behind it a guard. Apart from format(), of which there are hundreds of instances.
template <typename T>
Result<T> check_result(int measured, int written, std::basic_string<T> const &buffer)
{
    EXPECT_EQ(measured, written);
    EXPECT_EQ(buffer[buffer.size() - 2], 0);
    EXPECT_EQ(buffer.back(), T('~'));
    return { measured, buffer.substr(0, buffer.size() - 2) };
}

template <typename T, typename... A> Result<T> format(T const *text, A... args)
{
    int const measured = call<T>(nullptr, 0, text, args...);
    std::size_t const capacity = static_cast<std::size_t>(std::max(measured, 0)) + 1;
    std::basic_string<T> buffer(capacity + 1, T('~'));
    int const written = call<T>(buffer.data(), capacity, text, args...);
    return check_result(measured, written, buffer);
}

template <typename... A> std::string narrow(char const *text, A... args)
{
    return format(text, args...).text;
}

template <typename... A> std::wstring wide(wchar_t const *text, A... args)
{
    return format(text, args...).text;
}

// Recorded results

using Argument = std::variant<int, long, long long, double, char const *, wchar_t const *>;

// A row's argument; `store` keeps the text that it points to. Directives with a single l take a
// long, which the recording holds as a 32-bit integer.
struct ArgumentText {
    std::string narrow;
    std::wstring wide;
};

Argument read_argument(std::string const &field, bool is_long, ArgumentText &store)
{
    if (field == "N0")
        return static_cast<char const *>(nullptr);
    if (field == "W0")
        return static_cast<wchar_t const *>(nullptr);
    std::string const value = field.substr(2);
    switch (field[0]) {
    case 'i':
        return is_long ? Argument(static_cast<long>(std::stoll(value)))
                       : Argument(static_cast<int>(std::stoll(value)));
    case 'q':
        return static_cast<long long>(value[0] == '-' ? std::stoll(value) : std::stoull(value));
    case 'd':
        return std::strtod(value.c_str(), nullptr);
    case 'n':
        store.narrow = kor_test::bytes_from_hex(value);
        return store.narrow.c_str();
    default:
        store.wide = kor_test::to_wide(kor_test::unescape(value));
        return store.wide.c_str();
    }
}

template <typename T> Result<T> format_row(std::basic_string<T> const &text, OracleRow const &row)
{
    bool const is_long = row[0] == "%ld" || row[0] == "%lu" || row[0] == "%lx";
    ArgumentText store[3];
    auto const argument
        = [&](std::size_t i) { return read_argument(row[1 + i], is_long, store[i]); };
    auto const apply = [&text](auto... values) { return format(text.c_str(), values...); };
    if (row[1].empty())
        return apply();
    if (row[2].empty())
        return std::visit(apply, argument(0));
    if (row[3].empty())
        return std::visit(apply, argument(0), argument(1));
    return std::visit(apply, argument(0), argument(1), argument(2));
}

TEST(TextFormat, FormatsGiveTheRecordedResults)
{
    for (OracleRow const &row : kor_test::read_oracle("crt_printf.tsv")) {
        std::u16string const units = kor_test::unescape(row[0]);
        Result<char> const result = format_row(std::string(units.begin(), units.end()), row);
        EXPECT_EQ(result.length, std::stoi(row[4])) << testing::PrintToString(row);
        EXPECT_EQ(result.text, kor_test::bytes_from_hex(row[5])) << testing::PrintToString(row);
    }
    for (OracleRow const &row : kor_test::read_oracle("crt_wprintf.tsv")) {
        auto const result = format_row(kor_test::to_wide(kor_test::unescape(row[0])), row);
        std::u16string const units = kor_test::to_units(result.text);
        EXPECT_EQ(result.length < 0 ? -1 : int(units.size()), std::stoi(row[4]))
            << testing::PrintToString(row);
        EXPECT_EQ(units, kor_test::unescape(row[5])) << testing::PrintToString(row);
    }
}

// Against the C library. Some libraries have %#.0o of 0, %#g and the width of %g wrong; those have
// their expected texts further down.

template <typename V> void expect_as_the_c_library(std::string const &directive, V value)
{
    char expected[3000];
    int const length = std::snprintf(expected, sizeof expected, directive.c_str(), value);
    Result<char> const result = format(directive.c_str(), value);
    ASSERT_EQ(result.text, expected) << directive << " of " << value;
    ASSERT_EQ(result.length, length);
    std::wstring const wide_directive(directive.begin(), directive.end());
    ASSERT_EQ(wide(wide_directive.c_str(), value), std::wstring(expected, expected + length));
}

TEST(TextFormat, NumbersAgreeWithTheCLibrary)
{
    std::mt19937_64 random(1);
    auto const make = [&](std::string const &flags, std::string const &type, bool has_width) {
        std::string text = "<%";
        for (char const flag : flags)
            text += random() % 4 == 0 ? std::string(1, flag) : "";
        text += has_width && random() % 2 ? std::to_string(random() % 30 + 1) : "";
        if (random() % 2)
            text += '.' + std::to_string(random() % (random() % 8 ? 20 : 1300));
        return text + type + '>';
    };
    for (unsigned step = 0; step < 20000; ++step) {
        unsigned const kind = step % 6;
        std::string const letter(1, "diuoxX"[kind]);
        char const *const flags = kind < 2 ? "-+ 0" : kind < 4 ? "-0" : "-0#";
        auto const value = static_cast<long long>(random()) >> (random() % 64);
        expect_as_the_c_library(make(flags, "ll" + letter, true), value);
        expect_as_the_c_library(make(flags, "l" + letter, true), static_cast<long>(value));
        for (char const *const size : { "", "h", "hh" })
            expect_as_the_c_library(make(flags, size + letter, true), static_cast<int>(value));
        bool const is_general = kind > 3;
        double const number = std::ldexp(static_cast<double>(value), int(random() % 2100) - 1100);
        expect_as_the_c_library(
            make(is_general ? "-+ 0" : "-+ 0#", std::string(1, "feEFgG"[kind]), !is_general),
            step % 4 ? number : static_cast<double>(value % 1000000) / -1000);
    }
}

TEST(TextFormat, AlternateFormsKeepTheirZeros)
{
    EXPECT_EQ(narrow("%#.0o %#.3o %#.2o %#.0x|", 0, 8, 8, 0), "0 010 010 |");
    EXPECT_EQ(narrow("%#g %#.3g %#.0g %#.9g", 999999.5, 0.00099999, 1e5, 1e-5),
        "1.00000e+06 0.00100 1.e+05 1.00000000e-05");
    EXPECT_EQ(narrow("%17.18g|%-8g|%08G", -937298000000.0, 100.0, 1e-5),
        "    -937298000000|100     |0001E-05");
}

TEST(TextFormat, FloatingPointHasTheFormsOfWindows)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(narrow("%f %F %e %010f", nan, -nan, -std::copysign(nan, 1), nan),
        "nan -NAN(IND) -nan(ind)        nan");
    EXPECT_EQ(narrow("%a %A %.0a %.1a %.16a", 5e-324, -1.5, 1.5, 0x1.F8p3, 1.0),
        "0x0.0000000000001p-1022 -0X1.8000000000000P+0 0x2p+0 0x2.0p+3 0x1.0000000000000000p+0");
    EXPECT_EQ(format("%.5000f", 1e300).length, 301 + 1 + 5000);
}

// What only the documentation tells

TEST(TextFormat, WidthAndPrecisionCountUtf16Units)
{
    std::wstring const emoji = kor_test::to_wide(u"\U0001F600x");
    EXPECT_EQ(kor_test::to_units(wide(L"[%.1s]", emoji.c_str())), u"[\xD83D]");
    EXPECT_EQ(kor_test::to_units(wide(L"[%5.2s]", emoji.c_str())), u"[   \U0001F600]");
    EXPECT_EQ(kor_test::to_units(wide(L"[%-4.1s]", emoji.c_str())), u"[\xD83D   ]");
}

TEST(TextFormat, TakesPointersUnterminatedTextAndZeros)
{
    auto *const address = reinterpret_cast<void *>(0x12ab34ULL);
    EXPECT_EQ(wide(L"%20p|%-20p|%p", address, address, nullptr),
        L"    000000000012AB34|000000000012AB34    |0000000000000000");
    char const narrow_text[3] = { 'a', 'b', 'c' };
    wchar_t const wide_text[3] = { 'a', 'b', 'c' };
    EXPECT_EQ(narrow("%.3s %.3ls", narrow_text, wide_text), "abc abc");
    EXPECT_EQ(wide(L"%.3hs %.3s", narrow_text, wide_text), L"abc abc");
    EXPECT_EQ(narrow("[%c%lc]", 0, 0), std::string("[\0\0]", 4));
    EXPECT_EQ(wide(L"[%c%hc]", 0, 0), std::wstring(L"[\0\0]", 4));
}

TEST(TextFormat, TextConvertsByTheLocale)
{
    ScopedLocale const locale { "C.UTF-8", "French_France.1252" };
    ASSERT_TRUE(locale);
    std::string const euro = MB_CUR_MAX > 1 ? "\xE2\x82\xAC" : "\x80";
    std::string const two = euro + euro;
    EXPECT_EQ(wide(L"[%hs|%6hs|%-4.1hs]", two.c_str(), two.c_str(), two.c_str()),
        L"[\x20AC\x20AC|    \x20AC\x20AC|\x20AC   ]");
    EXPECT_EQ(wide(L"[%.1hs]", (euro + "\x81").c_str()), L"[\x20AC]");
    EXPECT_EQ(narrow("[%ls|%C|%8ls]", L"a\x20AC", 0x20AC, L"\x20AC"),
        "[a" + euro + "|" + euro + "|" + std::string(8 - euro.size(), ' ') + euro + "]");
    // A precision counts bytes and does not cut a character.
    EXPECT_EQ(narrow("[%.*ls]", int(2 * euro.size()) - 1, L"\x20AC\x20AC"), "[" + euro + "]");
    EXPECT_EQ(format("%ls", L"\xD800").length, -1);
    if (euro.size() > 1) {
        EXPECT_EQ(format(L"%hs", "ok\xE2\x82").length, -1);
        EXPECT_EQ(kor_test::to_units(wide(L"[%4.2hs]", "\xF0\x9F\x98\x80z")), u"[  \U0001F600]");
    }
}

TEST(TextFormat, ResultIsCutAtEveryCapacity)
{
    wchar_t const *const text = L"a%5d|%-6ls|%#x%.3f%%";
    std::wstring const whole = wide(text, 42, L"xy", 255, 1.5);
    for (std::size_t capacity = 1; capacity <= whole.size() + 1; ++capacity) {
        std::wstring buffer(whole.size() + 2, L'~');
        int const length = call<wchar_t>(buffer.data(), capacity, text, 42, L"xy", 255, 1.5);
        EXPECT_EQ(length, int(whole.size()));
        EXPECT_EQ(std::wstring(buffer.c_str()), whole.substr(0, capacity - 1));
        EXPECT_EQ(buffer[capacity], L'~');
    }
}

TEST(TextFormat, HostileFormatsFailAndLeaveTheTargetEmpty)
{
    for (char const *const text :
        { "%", "%*", "%-", "%5", "%.", "%I6", "%l", "%y", "% %", "%5%", "%n", "%hn", "%1$d", "%'d",
            "%99999999999d", "%.99999999999d", "%Ld", "%wd", "x%\xE9" }) {
        int memory = 7;
        char buffer[8] = "before";
        EXPECT_EQ(call<char>(buffer, sizeof buffer, text, &memory, 1), -1) << text;
        EXPECT_STREQ(buffer, "") << text;
        EXPECT_EQ(memory, 7);
        std::wstring const wide_text(text, text + std::string(text).size());
        EXPECT_EQ(call<wchar_t>(nullptr, 0, wide_text.c_str(), &memory, 1), -1) << text;
    }
    char buffer[8];
    EXPECT_EQ(call<char>(buffer, sizeof buffer, "%*d", INT_MIN, 1), -1);
    EXPECT_EQ(call<char>(buffer, sizeof buffer, "%2147483647d%d", 1, 1), -1);
    // Huge widths are measured and bounded.
    EXPECT_EQ(call<char>(buffer, sizeof buffer, "%999999999d", 5), 999999999);
    EXPECT_STREQ(buffer, "       ");
    EXPECT_EQ(call<char>(buffer, sizeof buffer, "%.2147483647s", "abc"), 3);
    EXPECT_EQ(call<char>(buffer, sizeof buffer, "%.2147483647d", 5), INT_MAX);
    EXPECT_STREQ(buffer, "0000000");
    EXPECT_EQ(call<char>(buffer, sizeof buffer, "%.999999999f", 0.5), 1000000001);
    EXPECT_STREQ(buffer, "0.50000");
}

} // namespace
