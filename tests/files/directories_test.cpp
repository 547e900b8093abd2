// SPDX-License-Identifier: MIT
#include "kortools/files/directories.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(CreateDirectory, MakesOneOrAllLevels)
{
    TempFolder const folder;
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"a\\b").c_str(), false));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a").c_str(), false));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a").c_str(), false));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a\\b/c\\\\d\\").c_str(), true));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a\\b\\c\\d").c_str(), true));
    EXPECT_TRUE(fs::is_directory(folder.GetPath() / "a/b/c/d"));
    EXPECT_FALSE(fileCreateDirectory(L"", false));
    EXPECT_TRUE(fileCreateDirectory(L"C:\\", true));
}

TEST(CreateDirectory, TakesBackWhatItMade)
{
    TempFolder const folder;
    fs::create_directory(folder.GetPath() / "a");
    std::wstring const too_long(300, L'x');
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"a\\b\\c\\" + too_long).c_str(), true));
    EXPECT_TRUE(fs::is_empty(folder.GetPath() / "a"));
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"n\\" + too_long + L"\\e").c_str(), true));
    EXPECT_FALSE(fs::exists(folder.GetPath() / "n"));
    std::ofstream(folder.GetPath() / "a/file") << "x";
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"a\\file\\c\\d").c_str(), true));
    EXPECT_TRUE(fs::is_regular_file(folder.GetPath() / "a/file"));
}
