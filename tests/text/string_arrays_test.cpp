// SPDX-License-Identifier: MIT
#include "kortools/text/string_arrays.h"

#include "kortools/archive/archive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

using String = CXTString<wchar_t>;
using Texts = std::vector<std::wstring>;

namespace {

CXArray<String> make_array(Texts const &texts)
{
    CXArray<String> array;
    for (std::wstring const &text : texts)
        array.Add(text);
    return array;
}

Texts sorted(Texts const &texts, int mode)
{
    CXArray<String> array = make_array(texts);
    SortStringArray(array, static_cast<_CompareStringsEnum>(mode));
    Texts result;
    for (String const &text : array)
        result.emplace_back(text.GetView()); // with zeros
    return result;
}

} // namespace

// With the comparisons of the strings themselves, and a stable sort.
TEST(StringArrays, OrdersAgreeWithTheStringsOwn)
{
    auto const less = [](String const &a, String const &b, int mode) {
        if (a.IsEmpty() || b.IsEmpty())
            return a.IsEmpty() && !b.IsEmpty();
        int const order = mode == 1 ? a.CompareNoCase(b)
            : mode == 2             ? a.Compare(b)
            : mode == 3             ? a.CollateNoCase(b)
                                    : a.Collate(b);
        return order < 0;
    };
    std::mt19937 random(9);
    std::wstring const pieces[]
        = { L"a", L"A", L"b", L"_", std::wstring(1, L'\0'), L"\xFF5E", L"\U0001F600", L"abcd" };
    for (int round = 0; round < 400; ++round) {
        Texts texts(random() % 40);
        for (std::wstring &text : texts) {
            for (auto length = random() % 7; length > 0; --length)
                text += pieces[random() % std::size(pieces)];
        }
        int const mode = 1 + round % 4;
        Texts const result = sorted(texts, mode);
        std::ranges::stable_sort(texts, [&](std::wstring const &a, std::wstring const &b) {
            return less(String(a), String(b), mode);
        });
        ASSERT_EQ(result, texts) << "round " << round;
    }
}

TEST(StringArrays, FileNamesGoByClassWhereBothHaveOne)
{
    // 3DIF, BMP, IHTM; the same class by name.
    EXPECT_TRUE((sorted({ L"a.html", L"c.DIB", L"B.bmp", L"z.3dif" }, 5)
        == Texts { L"z.3dif", L"B.bmp", L"c.DIB", L"a.html" }));
    EXPECT_TRUE((sorted({ L"b.bmp", L"a.q", L"" }, 5) == Texts { L"", L"a.q", L"b.bmp" }));
    // Names without a class make the order contradict itself; nothing may be lost for that.
    std::mt19937 random(8);
    wchar_t const *const endings[] = { L".zip", L".bmp", L".q", L"" };
    std::multiset<std::wstring> names;
    for (int i = 0; i < 300; ++i)
        names.insert(std::to_wstring(random() % 40) + endings[random() % 4]);
    Texts const result = sorted({ names.begin(), names.end() }, 5);
    EXPECT_EQ(std::multiset<std::wstring>(result.begin(), result.end()), names);
}

TEST(StringArrays, NamesAreMadeUniqueWithinTheirLength)
{
    CHashTable<String> taken;
    EXPECT_EQ(GetUniqueName(taken, L"box"), L"box");
    EXPECT_EQ(GetUniqueName(taken, L"box"), L"box-0");
    EXPECT_EQ(GetUniqueName(taken, L"box", 0, true), L"box0");
    EXPECT_EQ(GetUniqueName(taken, L"boxes", 3), L"b-0"); // "box" is taken
    EXPECT_EQ(GetUniqueName(taken, L"shelves", 4), L"shel");
    for (int i = 0; i < 200; ++i)
        EXPECT_LE(GetUniqueName(taken, L"a long name", 5, i % 2).GetLength(), 5);
}
