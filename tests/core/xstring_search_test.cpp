// SPDX-License-Identifier: MIT
// Searches and parts of strings, against slow models over texts of few letters.
#include "kortools/core/xstring.h"
#include "tests/core/xstring_support.h"

#include <algorithm>
#include <clocale>
#include <gtest/gtest.h>

namespace {

template <class T> using Std = std::basic_string<T>;

template <class T> Std<T> lowered(Std<T> text)
{
    for (T &ch : text)
        ch = ch >= 'A' && ch <= 'Z' ? static_cast<T>(ch + 32) : ch;
    return text;
}

// The described search, one character at a time.
template <class T> int model_find(Std<T> const &text, Std<T> const &needle, int start)
{
    for (std::size_t at = static_cast<std::size_t>(std::max(start, 0)); at < text.size();) {
        std::size_t matched = 0;
        while (matched < needle.size() && text[at + matched] == needle[matched]) {
            if (++matched < needle.size() && at + matched == text.size())
                return -1;
        }
        if (matched == needle.size())
            return matched > 0 ? static_cast<int>(at) : -1;
        at += std::max<std::size_t>(matched, 1);
    }
    return -1;
}

template <class T> int model_reverse_find(Std<T> const &text, Std<T> const &needle, int start)
{
    int const length = static_cast<int>(needle.size());
    int const last = start < 0 || start >= static_cast<int>(text.size())
        ? static_cast<int>(text.size()) - 1
        : start;
    for (int at = last - length + 1; at >= 0 && length > 0; --at) {
        if (text.compare(static_cast<std::size_t>(at), needle.size(), needle) == 0)
            return at;
    }
    return -1;
}

template <class T> class XStringSearch : public testing::Test {
};
TYPED_TEST_SUITE(XStringSearch, BothWidths, WidthNames);

} // namespace

TYPED_TEST(XStringSearch, FindsForwardAsDescribed)
{
    using T = TypeParam;
    std::mt19937 random(1);
    for (int step = 0; step < 20000; ++step) {
        Std<T> text = random_text<T>(random, 40);
        Std<T> needle = random_text<T>(random, 5);
        for (T &ch : text)
            ch = static_cast<T>(random() % 3 ? ch : ch - 32);
        for (T &ch : needle)
            ch = static_cast<T>(random() % 3 ? ch : ch - 32);
        int const start = static_cast<int>(random() % 45) - 3;
        CXTString<T> const string = text;
        int const found = model_find(text, needle, start);
        int const found_no_case = model_find(lowered(text), lowered(needle), start);
        int const length = static_cast<int>(needle.size());
        ASSERT_EQ(string.Find(needle.c_str(), start), found)
            << testing::PrintToString(text) << testing::PrintToString(needle) << start;
        ASSERT_EQ(string.Find(needle.c_str(), start, true), found_no_case);
        ASSERT_EQ(string.FindNoCase(needle.c_str(), start), found_no_case);
        ASSERT_EQ(string.FindEndPos(needle.c_str(), start), found < 0 ? -1 : found + length);
        ASSERT_EQ(string.FindEndPos(needle.c_str(), start, true),
            found_no_case < 0 ? -1 : found_no_case + length);
        Std<T> const one = needle.empty() ? lit<T>("c") : needle.substr(0, 1);
        ASSERT_EQ(string.Find(one[0], start), model_find(text, one, start));
        ASSERT_EQ(string.FindNoCase(one[0], start), model_find(lowered(text), lowered(one), start));
        std::size_t const one_of = text.find_first_of(needle);
        ASSERT_EQ(string.FindOneOf(needle.c_str()),
            one_of == Std<T>::npos ? -1 : static_cast<int>(one_of));
    }
}

TYPED_TEST(XStringSearch, FindsAcrossZerosAndNothingForNull)
{
    using T = TypeParam;
    CXTString<T> const text = lit<T>("a\0ab");
    EXPECT_EQ(text.Find(lit<T>("ab").c_str()), 2);
    EXPECT_EQ(text.Find(T()), 1);
    EXPECT_EQ(text.Find(T(), 2), -1);
    T const *const null = nullptr;
    EXPECT_EQ(text.Find(null), -1);
    EXPECT_EQ(text.FindEndPos(null, 0, true), -1);
    EXPECT_EQ(text.FindOneOf(null), -1);
    EXPECT_EQ(text.ReverseFind(null), -1);
    // What is matched in part is skipped, and the search ends where the text ends within a match.
    EXPECT_EQ(CXTString<T>(lit<T>("aaab")).Find(lit<T>("aab").c_str()), -1);
    EXPECT_EQ(CXTString<T>(lit<T>("abxab")).Find(lit<T>("abc").c_str()), -1);
}

TYPED_TEST(XStringSearch, FindsBackwardEveryMatch)
{
    using T = TypeParam;
    std::mt19937 random(2);
    for (int step = 0; step < 20000; ++step) {
        // Long runs of one letter in every second text make the search change its method.
        bool const runs = step % 2 == 0;
        unsigned const longest = runs ? 400 : 30;
        Std<T> text = random_text<T>(random, longest, runs ? 1 : 2);
        for (std::size_t i = random() % 100; runs && i < text.size(); i += 1 + random() % 200)
            text[i] = T('b');
        Std<T> needle
            = text.substr(text.empty() ? 0 : random() % text.size(), random() % (longest / 5));
        if (!needle.empty() && random() % 2)
            needle[random() % needle.size()] = T('b');
        int const start = static_cast<int>(random() % (longest + 5)) - 2;
        CXTString<T> const string = text;
        ASSERT_EQ(
            string.ReverseFind(needle.c_str(), start), model_reverse_find(text, needle, start))
            << testing::PrintToString(text) << testing::PrintToString(needle) << start;
        ASSERT_EQ(string.ReverseFind(T('b'), start), model_reverse_find(text, lit<T>("b"), start));
    }
}

TYPED_TEST(XStringSearch, StaysLinearOnHardTexts)
{
    using T = TypeParam;
    int const length = 1500000; // quadratic work would not end before the time limit
    CXTString<T> const run(T('a'), length);
    CXTString<T> const tail = CXTString<T>(T('a'), length / 2) + T('b');
    CXTString<T> const head = T('b') + CXTString<T>(T('a'), length / 2);
    EXPECT_EQ(run.Find(tail), -1);
    EXPECT_EQ(run.Find(tail, 0, true), -1);
    EXPECT_EQ(run.ReverseFind(head), -1);
    EXPECT_EQ((head + run).ReverseFind(head), 0);
    CXTString<T> edited = run;
    EXPECT_EQ(edited.Replace(lit<T>("a").c_str(), lit<T>("aaa").c_str()), length);
    EXPECT_EQ(edited.Remove(lit<T>("aa").c_str(), false, length), length);
    EXPECT_EQ(edited.GetLength(), length);
}

TEST(XStringSearchWide, TellsCharactersApartThatShareALowByte)
{
    CXTString<wchar_t> const text = L"\u0141\u0241A\u0341";
    EXPECT_EQ(text.FindOneOf(L"\u0341"), 3);
    EXPECT_EQ(text.FindOneOf(L"\u0341A"), 2);
    EXPECT_EQ(text.FindOneOf(L"\u0441"), -1);
    EXPECT_EQ(text.SpanIncluding(L"\u0241\u0341"), L"\u0241\u0341");
    EXPECT_EQ(text.SpanExcluding(L"A\u0241"), L"\u0141\u0341");
}

TYPED_TEST(XStringSearch, CutsPartsToTheText)
{
    using T = TypeParam;
    Std<T> const model = lit<T>("ab\0de");
    CXTString<T> const text = model;
    for (int first = -2; first <= 7; ++first) {
        std::size_t const begin = static_cast<std::size_t>(std::clamp(first, 0, 5));
        EXPECT_EQ(text.Mid(first), model.substr(begin)) << first;
        EXPECT_EQ(text.Left(first), model.substr(0, begin)) << first;
        EXPECT_EQ(text.Right(first), model.substr(5 - begin)) << first;
        for (int count = -1; count <= 7; ++count) {
            std::size_t const size = count < 0 ? Std<T>::npos : static_cast<std::size_t>(count);
            EXPECT_EQ(text.Mid(first, count), model.substr(begin, size)) << first << count;
        }
    }
    EXPECT_EQ(text.Mid(2, INT_MAX), model.substr(2));
}

TYPED_TEST(XStringSearch, TokenizesUntilThePositionIsMinusOne)
{
    using T = TypeParam;
    struct {
        char const *text;
        char const *delimiters;
        int start;
        char const *tokens; // each with its end
        int last;           // the position after the first token
    } const cases[] = {
        { "a,b", ",", 0, "a|b|", 2 },
        { "a,", ",", 0, "a||", 2 },
        { ";,a,;b;", ",;", 0, "a|b||", 4 },
        { "abc", ",", 1, "bc|", -1 },
        { ",,", ",", 0, "|", -1 },
        { "abc", "", 0, "|", -1 },
        { "abc", ",", -1, "|", -1 },
        { "abc", ",", 3, "|", -1 },
    };
    for (auto const &each : cases) {
        CXTString<T> const text = each.text;
        CXTString<T> const delimiters = each.delimiters;
        int position = each.start;
        CXTString<T> tokens = text.Tokenize(delimiters, position) + T('|');
        EXPECT_EQ(position, each.last) << each.text;
        while (position >= 0)
            tokens += text.Tokenize(delimiters, position) + T('|');
        EXPECT_EQ(tokens, CXTString<T>(each.tokens)) << each.text;
    }
    int position = 0;
    EXPECT_EQ(CXTString<T>(T('a')).Tokenize(nullptr, position), lit<T>(""));
    EXPECT_EQ(position, -1);
}
