// SPDX-License-Identifier: MIT
#include "kortools/files/wildcards.h"

#include "kortools/files/extension_list.h"

#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <string>

using String = CXTString<wchar_t>;
using Set = CHashTable<String>;

namespace {

unsigned reduce(wchar_t ch)
{
    unsigned const byte = static_cast<unsigned>(ch) & 0xFF;
    return byte >= 'a' && byte <= 'z' ? byte - 32 : byte;
}

// The matching as it is described, step by step, for characters of 16 bits.
bool match_by_steps(std::wstring const &name, std::wstring const &pattern, bool case_sensitive)
{
    std::size_t n = 0;
    std::size_t p = 0;
    for (; n < name.size() && (p == pattern.size() || pattern[p] != L'*'); ++n, ++p) {
        if (p == pattern.size())
            return false;
        bool const same
            = case_sensitive ? pattern[p] == name[n] : reduce(pattern[p]) == reduce(name[n]);
        if (pattern[p] != L'?' && !same)
            return false;
    }
    std::size_t pattern_mark = 0;
    std::size_t name_mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            if (++p == pattern.size())
                return true;
            pattern_mark = p;
            name_mark = n + 1;
        } else if (p < pattern.size() && (pattern[p] == name[n] || pattern[p] == L'?')) {
            ++p;
            ++n;
        } else {
            p = pattern_mark;
            n = name_mark++;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*')
        ++p;
    return p == pattern.size();
}

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
            match_by_steps(name, pattern, case_sensitive))
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
}

// Long parts that almost match everywhere make the quick search give up.
TEST(Wildcards, AgreeWithTheStepsOnLongRepetitions)
{
    std::mt19937 random(2);
    int matches = 0;
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
        matches += fileMatchWilcards(name, pattern, true);
        expect_same_as_steps(name, pattern);
    }
    EXPECT_GT(matches, 40);
    EXPECT_LT(matches, 360);
}

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
    auto const start = std::chrono::steady_clock::now();
    EXPECT_FALSE(fileMatchWilcards(name, L"*" + half + L"b*"));
    EXPECT_FALSE(fileMatchWilcards(name, L"*" + holes + L"b*"));
    EXPECT_FALSE(fileMatchWilcards(name, stars + L"b"));
    EXPECT_FALSE(fileMatchWilcards(name, stars + L"b*"));
    EXPECT_TRUE(fileMatchWilcards(name, L"*" + half + L"*" + half + L"*" + half));
    // Step by step the first one alone takes 10^10 comparisons.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(Wildcards, TheOddOnes)
{
    EXPECT_FALSE(fileMatchWilcards(L"Photo.JPG", L"*.jpg"));
    EXPECT_TRUE(fileMatchWilcards(L"PHOTO.jpg", L"photo*"));
    EXPECT_FALSE(fileMatchWilcards(L"PHOTO.jpg", L"photo*", true));
    EXPECT_TRUE(fileMatchWilcards(L"", L"*"));
    EXPECT_TRUE(fileMatchWilcards(L"", L""));
    EXPECT_FALSE(fileMatchWilcards(L"", L"a*"));
    EXPECT_FALSE(fileMatchWilcards(L"", L"?"));
    EXPECT_FALSE(fileMatchWilcards(L"\u0100", L"")) << "its low byte is that of the end";
    EXPECT_FALSE(fileMatchWilcards(L"a\u0100", L"a"));
    EXPECT_TRUE(fileMatchWilcards(L"\u0161", L"A")) << "0x61 is a small letter";
    EXPECT_FALSE(fileMatchWilcards(L"\u00E9", L"\u00C9")) << "only ASCII has capitals";

    EXPECT_TRUE(fileMatchWilcards(L"\U0001F600", L"?"));
    EXPECT_FALSE(fileMatchWilcards(L"\U0001F600", L"??"));
    EXPECT_TRUE(fileMatchWilcards(L"x\U0001F600y", L"*?y"));
    EXPECT_FALSE(fileMatchWilcards(L"\U0001F600", L"*??"));
    EXPECT_TRUE(fileMatchWilcards(L"\U0001F600", L"\U0001F600", true));
    EXPECT_FALSE(fileMatchWilcards(L"\U0001F600", L"\U0001F601"));
    EXPECT_FALSE(fileMatchWilcards(L"\U0001F600", L"*\U0001F601"));
    EXPECT_TRUE(fileMatchWilcards(L"\U0001F600", L"\U0005F600")) << "low bytes of both units";
}

TEST(Wildcards, ASetMatchesWhenOneOfItDoes)
{
    Set patterns;
    EXPECT_FALSE(fileMatchWilcards(L"a", patterns));
    String list = L"*.JPG; \"My *\",IMG_?*";
    EXPECT_EQ(fileGetHashFromExtensionList(list, patterns), 3);
    EXPECT_EQ(list, L"*.jpg \"my *\" img_?*");
    EXPECT_TRUE(fileMatchWilcards(L"Photo.JPG", patterns));
    EXPECT_TRUE(fileMatchWilcards(L"MY FILE", patterns));
    EXPECT_TRUE(fileMatchWilcards(L"img_7.png", patterns));
    EXPECT_FALSE(fileMatchWilcards(L"img_", patterns));
    Set capitals;
    capitals.Insert(L"*.JPG");
    EXPECT_FALSE(fileMatchWilcards(L"Photo.JPG", capitals)) << "patterns are taken as they are";
}

TEST(ExtensionList, IsReadWithAndWithoutQuotes)
{
    struct {
        wchar_t const *list;
        wchar_t const *quoted;
        wchar_t const *bare;
        unsigned count;
    } const cases[] = {
        { L"", L"", L"", 0 },
        { L" ,;\t\r\n", L"", L"", 0 },
        { L"PNG,,jpg; png", L"png jpg png", L"png jpg png", 2 },
        { L"\"A b\" c", L"\"a b\" c", L"a b c", 2 },
        { L"\"a;b,c\"", L"\"a;b,c\"", L"a;b,c", 1 },
        { L"\"a\"b", L"a b", L"a b", 2 },
        { L"a\"b c\"", L"a\"b c\"", L"a\"b c\"", 2 },
        { L"a \"\" b", L"a \"\" b", L"a  b", 3 },
        { L"a \"b c", L"a \"b c\"", L"a b c", 2 },
        { L"a \"", L"a \"\"", L"a ", 2 },
    };
    for (auto const &each : cases) {
        Set set;
        EXPECT_EQ(fileCleanExtensionList(each.list, true, &set), each.quoted);
        EXPECT_EQ(set.GetCount(), each.count) << kortools::core::quote(each.list);
        EXPECT_EQ(fileCleanExtensionList(each.list, false), each.bare);
        EXPECT_EQ(fileCleanExtensionList(each.quoted), each.quoted);
    }
}

TEST(ExtensionList, LongItemsAreSeveral)
{
    std::wstring const item(260, L'x');
    String const twice = (item + L" " + item).c_str();
    EXPECT_EQ(fileCleanExtensionList(item + item), twice);
    EXPECT_EQ(fileCleanExtensionList(L"\"" + item + item + L"\""), twice);
    EXPECT_EQ(fileCleanExtensionList(L"\"" + item + L"\""), item);
    EXPECT_EQ(fileCleanExtensionList(L"\"" + item + L"a b\" c"), item + L" \"a b\" c");
}
