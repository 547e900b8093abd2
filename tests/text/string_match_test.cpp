// SPDX-License-Identifier: MIT
#include "kortools/text/string_match.h"

#include "kortools/archive/archive.h"
#include "tests/text/string_match_model.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <vector>

using String = CXTString<wchar_t>;
using Texts = CXStringMatch::Texts;
using Model = string_match_model::Expression;

namespace {

Texts make_texts(std::vector<std::wstring> const &texts)
{
    Texts array;
    for (std::wstring const &text : texts)
        array.Add(String(text));
    return array;
}

std::wstring repeat(std::wstring const &text, int count)
{
    std::wstring result;
    for (; count > 0; --count)
        result += text;
    return result;
}

std::wstring make_text(std::mt19937 &random, std::wstring_view letters, unsigned longest)
{
    std::wstring text(random() % (longest + 1), L' ');
    for (wchar_t &ch : text)
        ch = letters[random() % letters.size()];
    return text;
}

class Steps : public CXStringMatch {
public:
    using CXStringMatch::hashChar;
};

} // namespace

// First in this program, so that the threads make its first matchers.
TEST(StringMatch, IsFirstMadeByManyThreads)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            CXStringMatch match;
            EXPECT_TRUE(match.Match(L"(a ^ b) & c ! e", L"c b"));
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(Steps::hashChar.GetCount(), 6U);
}

// The rules that are easily taken for others.
TEST(StringMatch, MatchesAsDescribed)
{
    struct Case {
        wchar_t const *expression;
        wchar_t const *text;
        bool expected;
        unsigned mode = 0;
        bool case_sensitive = false;
    };
    Case const cases[] = { { L" \t\n", L"x", true }, { L"!a", L"", true },
        { L"!a b", L"c", true },                                       // the operator stays
        { L"b ^ c & a", L"b", false }, { L"b ^ (c & a)", L"b", true }, // no precedence
        { L"table (leg ^ drawer)", L"old TABLE drawer", true }, { L"()", L"x", true },
        { L"\\*", L"\\x", true }, // nor can a wildcard
        { L"\"*a\\&b*\"", L"x a&b y", true }, { L"\"\"", L"a", false },
        { L"a\tb", L"a b", false },                             // only blanks are between words
        { L"\u0141", L"A", true }, { L"*\u0141", L"A", false }, // low bytes in front of a star
        { L"(*C)", L"C", true, 0, true },                       // groups ignore case
        { L"a ^ (b", L"b a", true, 2 }, { L"a ^ (b)", L"b", true, 77 } };
    CXStringMatch match;
    for (Case const &each : cases) {
        EXPECT_EQ(
            match.Match(each.expression, each.text, each.mode, each.case_sensitive), each.expected)
            << kortools::core::quote(each.expression) << kortools::core::quote(each.text)
            << each.mode;
    }
}

TEST(StringMatch, AgreesWithTheModel)
{
    std::mt19937 random(1);
    for (int i = 0; i < 30000; ++i) {
        std::wstring const expression
            = make_text(random, L"aAbB\u0141**?  &^!(()\")\"\\\t", i % 2 ? 8 : 20);
        std::vector<std::wstring> texts;
        for (auto count = random() % 3; count > 0; --count)
            texts.push_back(make_text(random, L"aAbBab\u0141  &(\"\\", 8));
        auto const mode = static_cast<unsigned>(random() % 4);
        bool const case_sensitive = random() % 2;
        auto const expected = Model(expression, mode, case_sensitive, 64).match(texts);
        CXStringMatch match;
        EXPECT_EQ(
            match.PrepareMatch(String(expression), mode, case_sensitive), expected != Model::Bad);
        EXPECT_EQ(match.Match(make_texts(texts)), expected == Model::Yes)
            << kortools::core::quote(expression) << ::testing::PrintToString(make_texts(texts))
            << mode << case_sensitive;
        if (texts.size() == 1) {
            EXPECT_EQ(match.Match(String(texts[0])), expected == Model::Yes);
        }
    }
}

TEST(StringMatch, HasItemsWithResults)
{
    CXStringMatch match;
    ASSERT_TRUE(match.PrepareMatch(L"A\\&b !(c ^ d) ^ \"e & f\""));
    EXPECT_EQ(CXStringMatch::GetNestedCount(), 1);
    EXPECT_TRUE(match.Match(make_texts({ L"d", L"E & F" })));
    struct {
        wchar_t const *word;
        int operation, result;
    } const items[] = { { L"a\\&b", CXStringMatch::operator_and, 0 },
        { L"c ^ d", CXStringMatch::operator_and_not, 1 },
        { L"e \\& f", CXStringMatch::operator_or, 1 } };
    ASSERT_EQ(match.GetItemCount(), std::ssize(items));
    for (int i = 0; i < match.GetItemCount(); ++i) {
        EXPECT_EQ(match.GetItem(i).word, items[i].word);
        EXPECT_EQ(match.GetItem(i).operation, items[i].operation);
        EXPECT_EQ(match.GetItem(i).result, items[i].result);
    }
}

TEST(StringMatch, NestsWithinBounds)
{
    CXStringMatch match;
    int const most = CXStringMatch::max_nesting;
    // In each group the whole text and its words come in again.
    std::wstring const quoted = repeat(L"(\"a b\" ", most) + repeat(L")", most);
    EXPECT_TRUE(match.Match(String(quoted), L"a b"));
    EXPECT_FALSE(match.Match(String(quoted), L"a b c"));
    EXPECT_FALSE(match.PrepareMatch(String(L"(" + quoted + L")")));
    EXPECT_FALSE(match.PrepareMatch(String(repeat(L"(", 100000) + repeat(L")", 100000))));
}

// A slow matcher would hit the time limit of the tests.
TEST(StringMatch, TakesHostileExpressionsInItsStride)
{
    CXStringMatch match;
    EXPECT_TRUE(match.PrepareMatch(String(repeat(L"(a)^", 30000))));
    EXPECT_TRUE(match.Match(L"a b c d"));
    String const text(std::wstring(100000, L'a'));
    EXPECT_FALSE(match.Match(String(repeat(L"a*", 100) + L"b"), text));
    EXPECT_TRUE(match.Match(L"b ^ *a", String(repeat(L"a ", 50000))));
}
