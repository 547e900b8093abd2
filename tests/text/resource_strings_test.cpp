// SPDX-License-Identifier: MIT
#include "kortools/text/resource_strings.h"

#include "kortools/archive/archive.h"
#include "tests/support/thread_language.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using String = CXTString<wchar_t>;
using kortools::text::english;
using kortools::text::french;

namespace {

constexpr unsigned int unknown = 5174;

std::vector<std::wstring> fields_of(String const &text)
{
    CXArray<String> fields;
    fields.Add(L"old");
    int const count = ExtractString(text, fields);
    EXPECT_EQ(count, fields.GetSize());
    return { fields.begin(), fields.end() };
}

} // namespace

TEST(ResourceStrings, FieldsAreNumberedFromZero)
{
    ThreadLanguage const language(english);
    EXPECT_EQ(ExtractString(5363, 0), L"Kilometer");
    EXPECT_EQ(ExtractString(5363, 1, true), L"km\n");
    EXPECT_EQ(ExtractString(5392, 0), L"Yes"); // without any "|"
    for (unsigned int const index : { 2U, 3U, 0xFFFFFFFFU })
        EXPECT_EQ(ExtractString(5363, index) + ExtractString(5363, index, true), L"");
    EXPECT_EQ(ExtractString(unknown, 5363, 1, true), L"\n");
}

TEST(ResourceStrings, TextsAreSplitAtEachBar)
{
    using Texts = std::vector<std::wstring>;
    EXPECT_TRUE((fields_of(L"a|") == Texts { L"a", L"" }));
    EXPECT_TRUE((fields_of(L"") == Texts { L"" }));
    CXArray<String> fields;
    fields.Add(L"x|y");
    EXPECT_EQ(ExtractString(fields[0], fields), 2); // the text is one of the fields
    EXPECT_EQ(fields[1], L"y");
}

TEST(ResourceStrings, FormatsTakeTheirArgumentsAndDefaultsStandInForWhatIsMissing)
{
    ThreadLanguage const language(french);
    EXPECT_EQ(LoadResourceString(5293, L"default"), L"Non");
    EXPECT_EQ(FormatString(L"%s-%d-%hs", L"a", 7, "b"), L"a-7-b");
    EXPECT_EQ(FormatStringEx(5238, L"%d", true, 2.25), L"2.25 Ko\n");
    EXPECT_EQ(FormatStringEx(unknown, L"%d|%s", false, 3, L"x"), L"3|x");
}
