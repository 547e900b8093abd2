// SPDX-License-Identifier: MIT
#include "kortools/files/file_names.h"

#include "kortools/files/path_separators.h"
#include "kortools/files/tmp_name.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

using String = CXTString<wchar_t>;

TEST(FileNames, ThatAreInvalidAreRefused)
{
    TempFolder const folder;
    struct {
        String name;
        unsigned flags;
        bool is_valid;
    } const cases[] = { { L"", checkAllowEmpty, true }, { L"a*b", 0, true },
        { folder.GetFile(L"new file.txt"), checkName | checkDirectory, true },
        { L"a\\b", checkDirectory | checkAllowRelative, true }, { L"", 0, false },
        { L"C:\\no dir\\a?b", checkName, false }, { L"no?dir\\ab", checkWholePath, false },
        { L"a\\b", checkDirectory, false }, { folder.GetFile(L"none/a"), checkDirectory, false },
        { L"C:\\no dir\\a", checkDirectory | checkAllowRelative, false } };
    for (auto const &each : cases)
        EXPECT_EQ(fileIsValidFileName(each.name, each.flags | checkSilent), each.is_valid)
            << &each - cases;
}

TEST(FileNames, TemporaryOnesKeepLettersAndDots)
{
    TempFolder const folder;
    String directory = folder.GetFile(L"");
    fileConvertSlash(directory);
    auto const tmp = [&](wchar_t const *name, bool keep = false) {
        String const path = fileCreateTmpName(name, keep, directory);
        return path.Left(directory.GetLength()) == directory ? path.Mid(directory.GetLength())
                                                             : L"elsewhere: " + path;
    };
    EXPECT_EQ(tmp(L"C:\\a b\\My scene-12.old.kor"), L"Myscene.old.kor");
    EXPECT_EQ(tmp(L"C:\\a b\\My scene-12.old.kor", true), L"My scene-12.old.kor");
    EXPECT_EQ(tmp(L"7.png"), L"tmp.png");
    EXPECT_EQ(tmp(L"\u00E9\u00D7\u00FE\u00FF\u0100\U0001F600z.x"), L"\u00E9\u00FEz.x");
    EXPECT_EQ(tmp(L"42"), L"1") << "the directory itself exists";
    std::ofstream(std::filesystem::path(folder.GetFile(L"tmp.png"))) << 1;
    EXPECT_EQ(tmp(L"7.png"), L"tmp1.png");
}
