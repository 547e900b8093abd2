// SPDX-License-Identifier: MIT
#include "kortools/files/wildcards.h"

#include "kortools/files/extension_list.h"
#include "tests/text/string_match_model.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

using String = CXTString<wchar_t>;
using Set = CHashTable<String>;

namespace {

// Less than `limit`.
unsigned pick(std::mt19937 &random, unsigned limit)
{
    return static_cast<unsigned>(random()) % limit;
}

std::wstring make_text(std::mt19937 &random, std::wstring_view letters, unsigned longest)
{
    std::wstring text(pick(random, longest + 1), L' ');
    for (wchar_t &ch : text)
        ch = letters[random() % letters.size()];
    return text;
}

void expect_same_as_steps(std::wstring const &name, std::wstring const &pattern)
{
    for (bool const case_sensitive : { false, true }) {
        EXPECT_EQ(fileMatchWilcards(name, pattern, case_sensitive),
            string_match_model::match_word(pattern, name, case_sensitive))
            << kortools::core::quote(name) << kortools::core::quote(pattern) << case_sensitive;
    }
}

} // namespace

TEST(Wildcards, AgreeWithTheSteps)
{
    std::mt19937 random(1);
    for (int i = 0; i < 60000; ++i) {
        std::wstring const name = make_text(random, L"aAb\u0141.", 9);
        expect_same_as_steps(name, make_text(random, L"aAb?**.", 7));
    }
    // Long parts that almost match everywhere make the quick search give up.
    for (int i = 0; i < 400; ++i) {
        std::wstring name(400 + pick(random, 400), L'a');
        for (unsigned other = pick(random, 4); other > 0; --other)
            name[random() % name.size()] = L'b';
        std::wstring pattern = L"*";
        for (unsigned part = 1 + pick(random, 3); part > 0; --part) {
            std::wstring text(1 + pick(random, 150), L'a');
            for (unsigned other = pick(random, 3); other > 0; --other)
                text[random() % text.size()] = pick(random, 3) ? L'?' : L'b';
            pattern += text + L'*';
        }
        expect_same_as_steps(name, pattern);
    }
}

// Step by step the first one alone takes 10^10 comparisons.
TEST(Wildcards, HostilePatternsTakeNoTime)
{
    std::wstring const name(200000, L'a');
    std::wstring const half(50000, L'a');
    std::wstring holes;
    for (int i = 0; i < 500; ++i)
        holes += L"a?";
    std::wstring stars = L"*";
    for (int i = 0; i < 200; ++i)
        stars += L"a*";
    EXPECT_FALSE(fileMatchWilcards(name, L"*" + half + L"b*"));
    EXPECT_FALSE(fileMatchWilcards(name, L"*" + holes + L"b*"));
    EXPECT_FALSE(fileMatchWilcards(name, stars + L"b*"));
    EXPECT_TRUE(fileMatchWilcards(name, L"*" + half + L"*" + half + L"*" + half));
}

TEST(Wildcards, TheOddOnes)
{
    struct {
        wchar_t const *name, *pattern;
        bool matches;
    } const cases[] = { { L"Photo.JPG", L"*.jpg", false },
        { L"\u0100", L"", false },                              // its low byte is that of the end
        { L"a\u0100", L"a", false }, { L"\u0161", L"A", true }, // 0x61 is a small letter
        { L"\u00E9", L"\u00C9", false },                        // only ASCII has capitals
        { L"\U0001F600", L"?", true }, { L"\U0001F600", L"??", false },
        { L"\U0001F600", L"\U0005F600", true } }; // low bytes of both units
    for (auto const &each : cases)
        EXPECT_EQ(fileMatchWilcards(each.name, each.pattern), each.matches) << &each - cases;
}

TEST(ExtensionList, IsReadWithAndWithoutQuotes)
{
    struct {
        wchar_t const *list;
        wchar_t const *quoted;
        wchar_t const *bare;
        unsigned count;
    } const cases[] = { { L"", L"", L"", 0 }, { L" ,;\t\r\n", L"", L"", 0 },
        { L"PNG,,jpg; png", L"png jpg png", L"png jpg png", 2 },
        { L"\"A b\" c", L"\"a b\" c", L"a b c", 2 }, { L"\"a;b,c\"", L"\"a;b,c\"", L"a;b,c", 1 },
        { L"\"a\"b", L"a b", L"a b", 2 }, { L"a\"b c\"", L"a\"b c\"", L"a\"b c\"", 2 },
        { L"a \"\" b", L"a \"\" b", L"a  b", 3 }, { L"a \"b c", L"a \"b c\"", L"a b c", 2 },
        { L"a \"", L"a \"\"", L"a ", 2 } };
    for (auto const &each : cases) {
        Set set;
        EXPECT_EQ(fileCleanExtensionList(each.list, true, &set), each.quoted);
        EXPECT_EQ(set.GetCount(), each.count) << kortools::core::quote(each.list);
        EXPECT_EQ(fileCleanExtensionList(each.list, false), each.bare);
        EXPECT_EQ(fileCleanExtensionList(each.quoted), each.quoted);
    }
}
