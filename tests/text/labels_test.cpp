// SPDX-License-Identifier: MIT
#include "kortools/text/labels.h"

#include "tests/support/thread_language.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using String = CXTString<wchar_t>;
using kortools::text::english;
using kortools::text::french;

TEST(Labels, UnitsHaveANameAndAnAbbreviation)
{
    ThreadLanguage const language(english);
    wchar_t const *const abbreviations[] = { L"no unit", L"nm", L"\xB5m", L"mm", L"cm", L"m", L"km",
        L"in", L"ft", L"yd", L"mi", L"px" };
    for (int unit = 0; unit <= 11; ++unit)
        EXPECT_EQ(GetUnitText(static_cast<_UNIT_MODE>(unit), true), abbreviations[unit]);
    EXPECT_EQ(GetUnitText(unitKilometer), L"Kilometer");
    EXPECT_EQ(GetUnitText(unitInch), L"Inches");
    for (int const other : { -1, 12, 0x7FFFFFFF })
        EXPECT_EQ(GetUnitText(static_cast<_UNIT_MODE>(other)), L"Centimeters");
    ThreadLanguage const other_language(french);
    EXPECT_EQ(GetUnitText(unitUndefined),
        L"Unit\xE9 ind\xE9"
        L"finie");
}

TEST(Labels, FileSizesChangeTheirUnitAboveEachBound)
{
    ThreadLanguage const language(english);
    struct Row {
        unsigned long long size;
        wchar_t const *text;
    };
    Row const rows[] = {
        { 0, L"0 Bytes" },
        { 1024, L"1024 Bytes" },
        { 1025, L"1.00 Kb" },
        { 1536, L"1.50 Kb" },
        { 1048576, L"1024.00 Kb" },
        { 1048577, L"1.00 Mb" },
        { 1073741824, L"1024.00 Mb" },
        { 1073741825, L"1.00 Gb" },
        { 140737531305000, L"131072.05 Gb" }, // 131072.04 in double precision
        { 0xFFFFFFFFFFFFFFFF, L"17179869184.00 Gb" },
    };
    for (Row const &row : rows)
        EXPECT_EQ(GetFileSizeString(row.size), row.text);
    ThreadLanguage const other_language(french);
    EXPECT_EQ(GetFileSizeString(7), L"7 Octets");
    EXPECT_EQ(GetFileSizeString(3145728), L"3.00 Mo");
}

TEST(Labels, ModifiersStandInFrontOfTheKeyInAFixedOrder)
{
    ThreadLanguage const language(english);
    EXPECT_EQ(Key2String('A', 0), L"A");
    EXPECT_EQ(Key2String('7', keyShift), L"Shift+7");
    EXPECT_EQ(Key2String('S', keyShift | keyControl | keyAlt), L"Ctrl+Alt+Shift+S");
    EXPECT_EQ(Key2String(0x70, keyAlt | 8), L"Alt+F1"); // 8 is no modifier
    EXPECT_EQ(Key2String(0x7B, keyControl), L"Ctrl+F12");
    EXPECT_EQ(Key2String(0xFFFFFFFF, keyControl), L"Ctrl+");
}

// The keys beside the numeric pad share its scan codes and must not be called as its keys are.
TEST(Labels, KeysHaveNamesOfTheirOwn)
{
    ThreadLanguage const language(english);
    std::set<std::wstring> names;
    unsigned int const keys[] = { 0x08, 0x09, 0x0D, 0x1B, 0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26,
        0x27, 0x28, 0x2D, 0x2E, 0x60, 0x61, 0x69, 0x6A, 0x6B, 0x6D, 0x6F, 0x90, 0xBF };
    for (unsigned int const key : keys) {
        std::wstring const name(Key2String(key, 0));
        EXPECT_FALSE(name.empty()) << key;
        EXPECT_TRUE(names.insert(name).second) << key;
    }
}
