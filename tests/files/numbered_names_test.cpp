// SPDX-License-Identifier: MIT
#include "kortools/files/numbered_names.h"

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

using String = CXTString<wchar_t>;

TEST(NumberedNames, TheEndingIsTheNumberInParenthesesOrNot)
{
    struct {
        wchar_t const *name;
        wchar_t const *base;
        int number;
    } const cases[] = { { L"report", L"report", -1 }, { L"report (2)", L"report ", 2 },
        { L"report2", L"report", 2 }, { L"a007", L"a", 7 }, { L"a1(23)", L"a", 23 },
        { L"a((4)", L"a", 4 }, { L"a5)", L"a", 5 }, { L"a(6", L"a(", 6 }, { L"a()", L"a()", -1 },
        { L"a)", L"a)", -1 }, { L")", L")", -1 }, { L"(7)", L"(", 7 }, { L"42", L"4", 2 },
        { L"4", L"4", -1 }, { L"", L"", -1 }, { L"a2147483646", L"a", 2147483646 },
        { L"a2147483647", L"a2147483647", -1 },
        { L"a99999999999999999999999", L"a99999999999999999999999", -1 },
        { L"a\x0663", L"a\x0663", -1 } }; // digits of other scripts are letters
    for (auto const &each : cases) {
        int number = 99;
        EXPECT_EQ(fileRemoveNameDigitEnding(each.name, number), each.base)
            << kortools::core::quote(each.name);
        EXPECT_EQ(number, each.number) << kortools::core::quote(each.name);
    }
}

TEST(NumberedNames, TheNextOneKeepsDirectoryAndExtension)
{
    EXPECT_EQ(fileNextNumberedName(L"report (2).txt", true), L"report (3).txt");
    EXPECT_EQ(fileNextNumberedName(L"report .txt", true), L"report (1).txt");
    EXPECT_EQ(fileNextNumberedName(L"C:\\v2\\report9.tar.gz", false), L"C:\\v2\\report9.tar1.gz");
    EXPECT_EQ(fileNextNumberedName(L"C:\\v2\\", false), L"C:\\v2\\1");
}

TEST(NumberedNames, AreCutToTheirLimitDownToTheNumber)
{
    String const name = L"D:\\ab cd.txt";
    wchar_t const *const expected[]
        = { L"D:\\ab (1).txt", L"D:\\a (1).txt", L"D:\\ (1).txt", L"D:\\ (1).txt" };
    EXPECT_EQ(fileNextNumberedName(name, true, 14), L"D:\\ab (1).txt") << "one blank, not two";
    for (int cut = 0; cut < 4; ++cut)
        EXPECT_EQ(fileNextNumberedName(name, true, 13 - cut), expected[cut]) << cut;
    EXPECT_EQ(fileNextNumberedName(L"abc9.txt", false, 8), L"ab10.txt");
    EXPECT_EQ(fileCutName(L"abcdefg\U0001F600x", 8).GetLength(), sizeof(wchar_t) == 2 ? 7 : 8);
}

TEST(NumberedNames, UniqueOnesSkipWhatExists)
{
    TempFolder const folder;
    String const name = folder.GetFile(L"report.txt");
    EXPECT_EQ(fileCreateUniqueName(name, true, 0, true), folder.GetFile(L"report (1).txt"));
    for (wchar_t const *const each : { L"report.txt", L"report (1).txt", L"report (2).txt",
             L"abcdefghij2x.txt", L"abcdefghij21.txt" })
        kor_test::write_file(folder.GetFile(each), "");
    EXPECT_EQ(fileCreateUniqueName(name), folder.GetFile(L"report (3).txt"));
    EXPECT_EQ(fileCreateUniqueName(name, false), folder.GetFile(L"report1.txt"));
    // The base is cut once: what is left of it is not taken for a number.
    int const limit = String(folder.GetFile(L"")).GetLength() + 16;
    EXPECT_EQ(fileCreateUniqueName(folder.GetFile(L"abcdefghij2x.txt"), false, limit),
        folder.GetFile(L"abcdefghij22.txt"));
}
