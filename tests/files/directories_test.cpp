// SPDX-License-Identifier: MIT
#include "kortools/files/directories.h"
#include "kortools/files/file_status.h"
#include "tests/files/names.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;
using kor_test::write_file;

TEST(CreateDirectory, MakesOneOrAllLevels)
{
    TempFolder const folder;
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"a\\b").c_str(), false));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a").c_str(), false));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a").c_str(), false));
    EXPECT_TRUE(fileCreateDirectory(folder.GetFile(L"a\\b/c\\\\d\\").c_str(), true));
    EXPECT_TRUE(fs::is_directory(folder.GetPath() / "a/b/c/d"));
}

TEST(CreateDirectory, TakesBackWhatItMade)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "file", "text");
    std::wstring const too_long(300, L'x');
    for (std::wstring const &path :
        { L"b\\c\\" + too_long, L"n\\" + too_long + L"\\e", std::wstring(L"file\\c\\d") })
        EXPECT_FALSE(fileCreateDirectory(folder.GetFile(path).c_str(), true));
    EXPECT_EQ(fs::remove_all(folder.GetPath()), 2U) << "the file, and nothing new";
}

TEST(RemoveDirectory, AnEmptyOneOrAWholeTree)
{
    TempFolder const folder;
    fs::create_directories(folder.GetPath() / "a/b/c");
    write_file(folder.GetPath() / "a/b/file", "text");
    write_file(folder.GetPath() / "file", "text");
    CXTString<wchar_t> const tree = folder.GetFile(L"a").c_str();
    CXArray<CXTString<wchar_t>> failed;
    EXPECT_FALSE(fileRemoveDirectory(tree, false, false, &failed));
    ASSERT_EQ(failed.GetSize(), 1);
    EXPECT_EQ(failed[0], tree);
    EXPECT_FALSE(fileRemoveDirectory(folder.GetFile(L"file").c_str(), true));
    EXPECT_TRUE(fs::exists(folder.GetPath() / "file") && fs::exists(folder.GetPath() / "a/b/c"));
    EXPECT_TRUE(fileRemoveDirectory(tree + L"\\", true, false, &failed));
    EXPECT_EQ(failed.GetSize(), 1);
    EXPECT_FALSE(fs::exists(folder.GetPath() / "a"));
}

TEST(RemoveDirectory, ReadOnlyFilesGoWhenAsked)
{
    TempFolder const folder;
    fs::create_directories(folder.GetPath() / "a/b");
    write_file(folder.GetPath() / "a/b/file", "text");
    write_file(folder.GetPath() / "a/other", "text");
    fs::permissions(folder.GetPath() / "a/b/file", fs::perms::owner_read);
    CXTString<wchar_t> const tree = folder.GetFile(L"a").c_str();
    if (is_windows) {
        CXArray<CXTString<wchar_t>> failed;
        EXPECT_FALSE(fileRemoveDirectory(tree, true, false, &failed));
        ASSERT_EQ(failed.GetSize(), 3);
        EXPECT_EQ(failed[0], tree + L"\\b\\file");
        EXPECT_EQ(failed[1], tree + L"\\b");
        EXPECT_EQ(failed[2], tree);
        EXPECT_FALSE(fs::exists(folder.GetPath() / "a/other"));
    }
    EXPECT_TRUE(fileRemoveDirectory(tree, true, true));
    EXPECT_FALSE(fs::exists(folder.GetPath() / "a"));
}
