// SPDX-License-Identifier: MIT
#include "kortools/text/labels.h"

#include "tests/support/thread_language.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
using String = CXTString<wchar_t>;
using kortools::text::english;

TEST(Labels, FileSizesChangeTheirUnitAboveEachBound)
{
    ThreadLanguage const language(english);
    std::pair<unsigned long long, wchar_t const *> const rows[]
        = { { 1024, L"1024 Bytes" }, { 1025, L"1.00 Kb" }, { 1048576, L"1024.00 Kb" },
              { 1048577, L"1.00 Mb" }, { 1073741824, L"1024.00 Mb" }, { 1073741825, L"1.00 Gb" },
              { 140737531305000, L"131072.05 Gb" }, // 131072.04 in double precision
              { 0xFFFFFFFFFFFFFFFF, L"17179869184.00 Gb" } };
    for (auto const &[size, text] : rows)
        EXPECT_EQ(GetFileSizeString(size), text);
}

TEST(Labels, ModifiersStandInFrontOfTheKeyInAFixedOrder)
{
    ThreadLanguage const language(english);
    EXPECT_EQ(Key2String('S', keyShift | keyControl | keyAlt), L"Ctrl+Alt+Shift+S");
    EXPECT_EQ(Key2String(0x70, keyAlt | 8), L"Alt+F1"); // 8 is no modifier
    EXPECT_EQ(Key2String(0xFFFFFFFF, keyControl), L"Ctrl+");
    // The keys beside the numeric pad share its scan codes and must not be called as its keys are.
    std::set<std::wstring> names { L"" };
    for (unsigned int const key : { 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x2D, 0x2E,
             0x60, 0x61, 0x62, 0x63, 0x64, 0x66, 0x67, 0x68, 0x69, 0x6E })
        EXPECT_TRUE(names.emplace(Key2String(key, 0)).second) << key;
}
