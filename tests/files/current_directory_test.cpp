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
    ASSERT_TRUE(fileCreateDirectory(L"lost") && filePushCurrentDirectory(L"lost"));
    ASSERT_TRUE(filePushCurrentDirectory(folder.GetPath().wstring().c_str()));
    ASSERT_TRUE(fileRemoveDirectory(L"lost"));
    EXPECT_FALSE(filePopCurrentDirectory()) << "what is gone is forgotten";
    EXPECT_TRUE(filePopCurrentDirectory() && fileExists(L"file"));
    EXPECT_TRUE(filePopCurrentDirectory());
    EXPECT_EQ(fileGetCurrentDirectory(), start);
    EXPECT_FALSE(filePopCurrentDirectory());
}
