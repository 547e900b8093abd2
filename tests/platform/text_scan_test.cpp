// SPDX-License-Identifier: MIT
#include "kortools/platform/text_scan.h"
#include "tests/support/scoped_locale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

using kortools::platform::scan_text;

namespace {

template <typename T> int scan(T const *text, T const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    int const count = scan_text(text, format, args);
    va_end(args);
    return count;
}

// What was stored and how far the scan came, for comparison with the strto family.
template <typename V> struct Scanned {
    V value;
    int length; // -1: no number
};

template <typename V> Scanned<V> scan_number(std::string const &text, std::string const &directive)
{
    Scanned<V> narrow { 0, -1 };
    scan(text.c_str(), (directive + "%n").c_str(), &narrow.value, &narrow.length);
    Scanned<V> wide { 0, -1 };
    std::wstring const wide_directive(directive.begin(), directive.end());
    scan(std::wstring(text.begin(), text.end()).c_str(), (wide_directive + L"%n").c_str(),
        &wide.value, &wide.length);
    EXPECT_EQ(std::memcmp(&narrow.value, &wide.value, sizeof(V)), 0) << text;
    EXPECT_EQ(narrow.length, wide.length) << text;
    return narrow;
}

class Texts {
public:
    explicit Texts(unsigned seed)
        : m_random(seed)
    {
    }

    std::string make(std::string const &alphabet, std::size_t max_length)
    {
        std::string text(1 + m_random() % max_length, ' ');
        for (char &ch : text)
            ch = alphabet[m_random() % alphabet.size()];
        return text;
    }

private:
    std::mt19937 m_random;
};

int get_length(char const *text, char const *end)
{
    return end == text ? -1 : static_cast<int>(end - text);
}

TEST(TextScan, IntegersAreThoseOfTheCLibrary)
{
    Texts texts(1);
    for (int step = 0; step < 20000; ++step) {
        std::string const prefix = step % 3 ? "" : step % 2 ? " -0X1" : "0x1";
        std::string const text = prefix + texts.make(step % 2 ? "0123456789-+ aFg" : "0129", 24);
        char *end = nullptr;
        auto const check = [&](char const *directive, auto value) {
            auto const scanned = scan_number<decltype(value)>(text, directive);
            ASSERT_EQ(scanned.length, get_length(text.c_str(), end)) << text << directive;
            ASSERT_EQ(scanned.value, value) << text << directive;
        };
        check("%lld", std::strtoll(text.c_str(), &end, 10));
        check("%I64i", std::strtoll(text.c_str(), &end, 0));
        check("%llu", std::strtoull(text.c_str(), &end, 10));
        check("%I64o", std::strtoull(text.c_str(), &end, 8));
        check("%jx", std::strtoull(text.c_str(), &end, 16));
    }
}

void expect_as_strtod(std::string const &text)
{
    char *end = nullptr;
    double const value = std::strtod(text.c_str(), &end);
    auto const scanned = scan_number<double>(text, "%lf");
    ASSERT_EQ(scanned.length, get_length(text.c_str(), end)) << text;
    if (scanned.length < 0)
        return;
    ASSERT_TRUE(scanned.value == value || (std::isnan(value) && std::isnan(scanned.value)))
        << text << ": " << scanned.value;
    ASSERT_EQ(std::signbit(scanned.value), std::signbit(value)) << text;
    float const single = std::strtof(text.c_str(), nullptr);
    float const scanned_single = scan_number<float>(text, "%g").value;
    ASSERT_TRUE(scanned_single == single || std::isnan(single)) << text << ": " << scanned_single;
}

TEST(TextScan, FloatingPointIsThatOfTheCLibrary)
{
    Texts texts(2);
    for (int step = 0; step < 20000; ++step) {
        expect_as_strtod(texts.make("0123456789.-+e", 30));
        expect_as_strtod(texts.make("019", 25) + "." + texts.make("059", 25) + "e"
            + texts.make("+-", 1) + texts.make("0123", 3));
        expect_as_strtod("-0x" + texts.make("0189afF.pP-+", 20));
    }
    // Halfway between two numbers but for a digit far behind, and a run of zeros.
    expect_as_strtod("9007199254740993" + std::string(2000, '0') + "e-2000");
    expect_as_strtod("9007199254740993" + std::string(2000, '0') + "1e-2001");
    expect_as_strtod("0." + std::string(5000, '0') + "25e5000");
    expect_as_strtod("1" + std::string(400, '0') + "e-400");
    for (char const *const text : { "1e400", "-1e400", "1e-400", "1e99999999999999999999",
             "0e99999999999999", "1e-99999999999999999999", "5e-324", "2.4703282292062328e-324",
             "1e", "1e+", ".", "-.", "-.e1", "0x", "0x.p1", "0x.8p1", "0x1p-1080",
             "0x1.00000000000008", "0x1.000000000000080000001", "inf", "-INFINITY", "infinit", "in",
             "nan", "NaN(", "nan(ind)x", "nan(1" })
        expect_as_strtod(text);
}

TEST(TextScan, SizesCutAndWidthsLimit)
{
    unsigned char byte = 1;
    short half = 2;
    long whole = 3;
    int value = 4;
    long long large = 5;
    EXPECT_EQ(scan("258 65537 -7 4294967297 12345678901", "%hhu %hd %ld %I32d %I64d", &byte, &half,
                  &whole, &value, &large),
        5);
    EXPECT_TRUE(byte == 2 && half == 1 && whole == -7 && value == 1 && large == 12345678901);
    int second = 0;
    int third = 0;
    void *pointer = nullptr;
    EXPECT_EQ(
        scan(L"123450x1f 000000000012AB34", L"%3d%2d%i%p", &value, &second, &third, &pointer), 4);
    EXPECT_TRUE(value == 123 && second == 45 && third == 0x1f);
    EXPECT_EQ(pointer, reinterpret_cast<void *>(0x12ab34ULL));
    EXPECT_EQ(scan("-5", "%1d", &value), 0);
    EXPECT_EQ(scan("0x5", "%2x", &value), 0);
    EXPECT_EQ(scan("0xg", "%i", &value), 0);
    EXPECT_EQ(scan("0x5", "%1x%n", &value, &second), 1);
    EXPECT_EQ(second, 1);
}

TEST(TextScan, TextGoesToBuffersWithTheirSize)
{
    wchar_t wide[8];
    char narrow[8];
    char letters[3] = { '~', '~', '~' };
    EXPECT_EQ(scan(L"  key=value;12", L"%[^=]=%hs", wide, 8U, narrow, 8U), 1);
    EXPECT_STREQ(wide, L"  key");
    EXPECT_STREQ(narrow, "");
    EXPECT_EQ(scan("ab cd efgh", "%2c%s %S", letters, 2U, narrow, 8U, wide, 8U), 3);
    EXPECT_EQ(std::string(letters, 3), "ab~");
    EXPECT_STREQ(narrow, "cd");
    EXPECT_STREQ(wide, L"efgh");
    EXPECT_EQ(scan(L"\x00E9t\x00E9 x", L"%S%lc", narrow, 8U, wide, 1U), 2);
    EXPECT_STREQ(narrow, "\xE9t\xE9");
    EXPECT_EQ(wide[0], L' ');
    EXPECT_EQ(scan(L"a\x20AC", L"%hs", narrow, 8U), 0);
    EXPECT_STREQ(narrow, "");
    EXPECT_EQ(scan("\xE9 5", "%*s%ls", wide, 8U), 1);
    EXPECT_STREQ(wide, L"5");
}

TEST(TextScan, TextThatDoesNotFitEndsTheScanWithAnEmptyText)
{
    for (unsigned size = 0; size <= 6; ++size) {
        for (char const *const format : { "%d %s %d", "%d %[a-z] %d", "%d %5c %d" }) {
            char buffer[8] = "~~~~~~~";
            int first = 0;
            int last = 0;
            bool const is_character = std::strstr(format, "5c") != nullptr;
            bool const fits = size >= (is_character ? 5U : 6U);
            EXPECT_EQ(scan("7 hello 8", format, &first, buffer, size, &last), fits ? 3 : 1);
            EXPECT_EQ(buffer[0], fits ? 'h' : size > 0 ? '\0' : '~') << format << size;
            EXPECT_EQ(std::string(buffer + size), std::string(7 - size, '~')) << format << size;
            wchar_t wide[8] = L"~~~~~~~";
            std::wstring const wide_format(format, format + std::strlen(format));
            scan(L"7 hello 8", wide_format.c_str(), &first, wide, size, &last);
            EXPECT_EQ(std::wstring(wide + size), std::wstring(7 - size, L'~')) << format << size;
        }
    }
}

TEST(TextScan, SetsHaveRangesAndNegation)
{
    struct {
        char const *format;
        char const *text;
        char const *expected; // null: does not match
    } const cases[] = {
        { "%[a-c]", "abcd", "abc" },
        { "%[c-a]", "abcd", "abc" },
        { "%[a-]", "a-b", "a-" },
        { "%[-a]", "a-b", "a-" },
        { "%[]a]", "]a[", "]a" },
        { "%[^]a]", "b[]", "b[" },
        { "%[^a-c]", "xyb", "xy" },
        { "%[^\n]", "one two\nthree", "one two" },
        { "%3[0-9a-f]", "12efg", "12e" },
        { "%[\x80-\xFF]", "\xE9\x80z", "\xE9\x80" },
        { "%[a", "a", nullptr },
        { "%[]", "a", nullptr },
        { "%[b]", "a", nullptr },
        { "%[b]", " b", nullptr },
    };
    for (auto const &row : cases) {
        char buffer[16] = "";
        EXPECT_EQ(scan(row.text, row.format, buffer, 16U), row.expected ? 1 : 0) << row.format;
        EXPECT_STREQ(buffer, row.expected ? row.expected : "") << row.format;
    }
    wchar_t wide[4] = L"";
    EXPECT_EQ(scan(L"\x65E5\x672Cx", L"%[\x6000-\x6FFF]", wide, 4U), 1);
    EXPECT_STREQ(wide, L"\x65E5\x672C");
}

TEST(TextScan, EndOfTextBeforeTheFirstConversionIsMinusOne)
{
    int value = 0;
    char buffer[4];
    for (char const *const format : { "%d", " %d", "x", "%s", "%c", "%[a]", "%*d", "%%" })
        EXPECT_EQ(scan("", format, buffer, 4U), -1) << format;
    EXPECT_EQ(scan("  ", "%d", &value), -1);
    EXPECT_EQ(scan("ab", "abc%d", &value), -1);
    EXPECT_EQ(scan("", ""), 0);
    EXPECT_EQ(scan("1", "%*d%d", &value), 0);
    EXPECT_EQ(scan("1,2;3", "%d,%d,%d", &value, &value, &value), 2);
    EXPECT_EQ(scan(L"50% off 3", L"%d%% off%d", &value, &value), 2);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(scan("a b", "a b%n", &value), 0);
    EXPECT_EQ(value, 3);
}

TEST(TextScan, TextAndNumbersFollowTheLocale)
{
    ScopedLocale const locale { "fr_FR.UTF-8", "C.UTF-8", "French_France.1252" };
    ASSERT_TRUE(locale);
    std::string const point = std::localeconv()->decimal_point;
    std::string const euro = MB_CUR_MAX > 1 ? "\xE2\x82\xAC" : "\x80";
    double value = 0;
    wchar_t wide[4];
    EXPECT_EQ(scan((euro + " 1" + point + "5").c_str(), "%ls%lf", wide, 4U, &value), 2);
    EXPECT_STREQ(wide, L"\x20AC");
    EXPECT_EQ(value, 1.5);
    char bytes[8] = "";
    for (unsigned size = 1; size <= 2 * euro.size() + 1; ++size) {
        bool const fits = size > 2 * euro.size();
        EXPECT_EQ(scan(L"\x20AC\x20AC", L"%hs", bytes, size), fits ? 1 : 0);
        EXPECT_EQ(bytes, fits ? euro + euro : "");
    }
}

TEST(TextScan, HostileFormatsEndTheScan)
{
    for (char const *const format : { "%", "%*", "%5", "%l", "%0d", "%99999999999d", "%y", "%wd",
             "%Ld", "%1$d", "%-5d", "%[", "%[^", "%[^]" }) {
        int memory = 7;
        EXPECT_EQ(scan("5 5", format, &memory, 4U), 0) << format;
        EXPECT_EQ(memory, 7) << format;
        std::wstring const wide_format(format, format + std::strlen(format));
        EXPECT_EQ(scan(L"5 5", wide_format.c_str(), &memory, 4U), 0) << format;
        EXPECT_EQ(memory, 7) << format;
    }
}

} // namespace
