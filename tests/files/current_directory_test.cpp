// SPDX-License-Identifier: MIT
#include "kortools/files/current_directory.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_status.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(CurrentDirectory, PushesAndPops)
{
    TempFolder const folder;
    CXTString<wchar_t> const start = fileGetCurrentDirectory();
    EXPECT_FALSE(fileGetCurrentDirectory().IsEmpty());
    EXPECT_FALSE(filePopCurrentDirectory());
    ASSERT_TRUE(fileCreateDirectory(folder.GetFile(L"\U0001F642\\inner").c_str(), true));
    std::ofstream(folder.GetPath() / "file") << "x";
    unsigned int timeout = 0x80000000 + 10000;
    ASSERT_TRUE(filePushCurrentDirectory(folder.GetPath().wstring().c_str(), &timeout));
    EXPECT_EQ(timeout, 10000U);
    EXPECT_TRUE(fileExists(L"file"));
    ASSERT_TRUE(filePushCurrentDirectory(L"\U0001F642"));
    EXPECT_TRUE(fileIsSameDir(fileGetCurrentDirectory(), folder.GetFile(L"\U0001F642").c_str()));
    EXPECT_TRUE(fileExists(L"inner"));
    for (wchar_t const *path : { L"none", L"..\\file", L"", L"Q:\\" })
        EXPECT_FALSE(filePushCurrentDirectory(path)) << testing::PrintToString(path);
    EXPECT_EQ(gCurrentDir.GetCount(), 2) << "a failed push leaves the stack alone";
    EXPECT_TRUE(fileExists(L"inner")) << "and the directory";
    EXPECT_TRUE(filePopCurrentDirectory());
    EXPECT_TRUE(fileExists(L"file"));
    EXPECT_TRUE(filePopCurrentDirectory());
    EXPECT_EQ(fileGetCurrentDirectory(), start);
    EXPECT_FALSE(filePopCurrentDirectory());
}

TEST(CurrentDirectory, ADirectoryThatIsGoneIsForgotten)
{
    TempFolder const folder;
    CXTString<wchar_t> const start = fileGetCurrentDirectory();
    CCurrentDir stack;
    CXTString<wchar_t> const lost = folder.GetFile(L"lost").c_str();
    ASSERT_TRUE(fileCreateDirectory(lost));
    ASSERT_TRUE(stack.Push(lost));
    ASSERT_TRUE(stack.Push(folder.GetPath().wstring().c_str()));
    ASSERT_TRUE(fileRemoveDirectory(lost));
    EXPECT_FALSE(stack.Pop());
    EXPECT_TRUE(fileIsSameDir(CCurrentDir::Get(), folder.GetPath().wstring().c_str()));
    EXPECT_TRUE(stack.Pop());
    EXPECT_EQ(fileGetCurrentDirectory(), start);
}
