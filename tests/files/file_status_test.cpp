// SPDX-License-Identifier: MIT
#include "kortools/files/file_changes.h"
#include "kortools/files/file_status.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

void write_file(fs::path const &path, std::string const &text)
{
    std::ofstream(path, std::ios::binary) << text;
}

} // namespace

TEST(FileStatus, TellsFilesDirectoriesAndNothing)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "f", "12345");
    CXTString<wchar_t> const file = folder.GetFile(L"f").c_str();
    CXTString<wchar_t> const directory = folder.GetPath().wstring().c_str();
    CXTString<wchar_t> const missing = folder.GetFile(L"none").c_str();
    EXPECT_TRUE(fileExists(file));
    EXPECT_TRUE(fileExists(directory));
    EXPECT_FALSE(fileExists(missing));
    EXPECT_FALSE(fileExists(L""));
    EXPECT_FALSE(fileDirectoryExists(file));
    EXPECT_TRUE(fileDirectoryExists(directory));
    EXPECT_FALSE(fileDirectoryExists(missing));
    EXPECT_EQ(fileGetSize(file), 5U);
    EXPECT_EQ(fileGetSize(directory), 0U);
    EXPECT_EQ(fileGetSize(missing), 0U);
    EXPECT_TRUE(fileDelete(file));
    EXPECT_FALSE(fileDelete(file));
    EXPECT_FALSE(fileDelete(directory));
    EXPECT_FALSE(fileExists(file));
    EXPECT_TRUE(fileExists(directory));
}

TEST(FileStatus, SizesBeyondFourGigabytes)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "big", "");
    fs::resize_file(folder.GetPath() / "big", 5'000'000'000);
    EXPECT_EQ(fileGetSize(folder.GetFile(L"big").c_str()), 5'000'000'000U);
}

TEST(FileStatus, RootsAndSharesAreDirectoriesByName)
{
    for (wchar_t const *path : { L"C:\\", L"c:/", L"Q:\\", L"\\", L"\\\\no_server\\share",
             L"\\\\no_server\\share\\", L"\\\\no_server" })
        EXPECT_TRUE(fileIsDirectory(path)) << testing::PrintToString(path);
    for (wchar_t const *path : { L"", L"Q:", L"Q:\\none", L"\\\\no_server\\share\\x", L"1:\\" })
        EXPECT_FALSE(fileIsDirectory(path)) << testing::PrintToString(path);
    TempFolder const folder;
    EXPECT_TRUE(fileIsDirectory(folder.GetPath().wstring().c_str()));
    EXPECT_FALSE(fileIsDirectory(folder.GetFile(L"none\\").c_str()));
    EXPECT_TRUE(fileIsDirectory(folder.GetFile(L"none\\").c_str(), true));
    EXPECT_FALSE(fileIsDirectory(folder.GetFile(L"none").c_str(), true));
    EXPECT_FALSE(fileIsDirectory(L"", true));
}

TEST(CompareDirectory, FollowsTheTable)
{
    struct Case {
        wchar_t const *a;
        wchar_t const *b;
        DirCompare expected;
    };
    Case const cases[] = {
        { L"C:\\Data", L"c:\\data\\", dirSame },
        { L"C:\\Data\\Sub", L"C:\\Data", dirFirstInSecond },
        { L"C:\\Data", L"C:\\Data\\Sub", dirSecondInFirst },
        { L"C:/Data", L"c:\\dATA/sub", dirSecondInFirst },
        { L"Data", L"Data\\Sub", dirDifferent },
        { L"data", L"DATA/", dirSame },
        { L"C:\\Data", L"C:\\Database", dirDifferent },
        { L"C:\\Data", L"D:\\Data", dirDifferent },
        { L"C:\\", L"\\", dirFirstInSecond },
        { L"", L"\\", dirSame },
    };
    for (Case const &each : cases)
        EXPECT_EQ(fileCompareDirectory(each.a, each.b), each.expected)
            << testing::PrintToString(each.a) << " and " << testing::PrintToString(each.b);
}
