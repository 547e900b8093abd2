// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/os_error.h"
#include "tests/files/names.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using kor_test::write_file;
using kortools::platform::get_last_os_error;

} // namespace

TEST(FileStatus, TellsFilesDirectoriesAndNothing)
{
    TempFolder const folder;
    fs::path const path = folder.GetPath() / "f";
    write_file(path, "12345");
    CXTString<wchar_t> const file = path.wstring().c_str();
    CXTString<wchar_t> const directory = folder.GetPath().wstring().c_str();
    CXTString<wchar_t> const missing = folder.GetFile(L"none").c_str();
    EXPECT_TRUE(fileExists(file) && fileExists(directory));
    EXPECT_FALSE(fileExists(missing) || fileExists(L""));
    EXPECT_TRUE(fileDirectoryExists(directory));
    EXPECT_FALSE(fileDirectoryExists(file) || fileDirectoryExists(missing));
    EXPECT_EQ(fileGetSize(file), 5U);
    EXPECT_FALSE(fileIsExecutable(file) || fileIsExecutable(directory));
    EXPECT_TRUE(fileIsExecutable(is_windows ? L"C:\\windows\\system32\\cmd.exe" : L"C:\\bin\\sh"));
    fs::resize_file(path, 5'000'000'000);
    EXPECT_EQ(fileGetSize(file), 5'000'000'000U);
    EXPECT_TRUE(fileDelete(file));
    EXPECT_FALSE(fileDelete(file) || fileDelete(directory) || fileExists(file));
    EXPECT_TRUE(fileExists(directory));
}

TEST(FileStatus, RootsAndSharesAreDirectoriesByName)
{
    for (wchar_t const *path : { L"C:\\", L"c:/", L"Q:\\", L"\\", L"\\\\no_server\\share",
             L"\\\\no_server\\share\\", L"\\\\no_server" })
        EXPECT_TRUE(fileIsDirectory(path)) << testing::PrintToString(path);
    for (wchar_t const *path : { L"", L"Q:", L"Q:\\none", L"\\\\no_server\\share\\x" })
        EXPECT_FALSE(fileIsDirectory(path)) << testing::PrintToString(path);
}

TEST(FileDates, AreReadAndSetToTheSecond)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "f", "12345");
    fs::create_directory(folder.GetPath() / "d");
    CXTime const now = CXTime::GetTickCount();
    CXTime date;
    for (wchar_t const *name : { L"f", L"d" }) {
        CXTString<wchar_t> const path = folder.GetFile(name).c_str();
        ASSERT_TRUE(fileGetLastWriteDate(path, date) && (now - date).GetDuration() <= 60);
        ASSERT_TRUE(fileGetCreationDate(path, date) && (now - date).GetDuration() <= 60);
        for (long long const seconds : { 1LL, 1234567891LL, 4102444799LL, -86399LL }) {
            EXPECT_TRUE(fileSetLastWriteDate(path, CXTime(seconds)));
            bool const is_set = fileSetCreationDate(path, CXTime(seconds + 7));
            EXPECT_TRUE(is_set || get_last_os_error() == 50);
            EXPECT_TRUE(!is_set || is_windows // Wine does not keep the date
                || fileGetCreationDate(path) == CXTime(seconds + 7));
            EXPECT_EQ(fileGetLastWriteDate(path), CXTime(seconds));
        }
    }
}

TEST(SameFile, TwoNamesOfOneFile)
{
    TempFolder const folder;
    for (char const *file : { "f", "g" })
        write_file(folder.GetPath() / file, "x");
    fs::create_directories(folder.GetPath() / "d/e");
    fs::create_hard_link(folder.GetPath() / "f", folder.GetPath() / "hard");
    struct {
        wchar_t const *a, *b;
        bool same_file, same_directory;
    } const cases[] = { { L"f", L"d\\..\\f", true, false }, { L"f", L"hard", true, false },
        { L"d", L"d\\e\\..\\", true, true }, { L"d", L"d\\e", false, false } };
    for (auto const &each : cases) {
        CXTString<wchar_t> const a = folder.GetFile(each.a).c_str();
        CXTString<wchar_t> const b = folder.GetFile(each.b).c_str();
        EXPECT_EQ(fileIsSameFile(a, b), each.same_file) << &each - cases;
        EXPECT_EQ(fileIsSameDir(a, b), each.same_directory) << &each - cases;
    }
}

TEST(FileAccess, AsksAsAnOpenWould)
{
    constexpr unsigned int read = 0x80000000;
    constexpr unsigned int write = 0x40000000;
    TempFolder const folder;
    write_file(folder.GetPath() / "f", "x");
    CXTString<wchar_t> const file = folder.GetFile(L"f").c_str();
    for (unsigned int const access : { 0U, read | write, 0x1U, 0x2U, 0x10000U, 0x100U })
        EXPECT_TRUE(fileCheckAccess(file, access)) << access;
    EXPECT_FALSE(fileCheckAccess(folder.GetFile(L"none").c_str(), 0));
    EXPECT_EQ(get_last_os_error(), 2U);
    CXFile other(file, CXFile::modeRead | CXFile::shareDenyWrite);
    EXPECT_TRUE(fileCheckAccess(file, read));
    EXPECT_FALSE(fileCheckAccess(file, write));
    EXPECT_EQ(get_last_os_error(), 32U);
}

TEST(FileKinds, ShortcutsAreToldByWhatTheyHold)
{
    TempFolder const folder;
    std::string const header("\x4C\0\0\0\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 20);
    auto const is_shortcut = [&](std::string const &bytes) {
        write_file(folder.GetPath() / "any name", bytes);
        return fileIsShortcut(folder.GetFile(L"any name").c_str());
    };
    EXPECT_TRUE(is_shortcut(header + std::string(56, 'x')));
    for (std::size_t i = 0; i < header.size(); ++i) {
        std::string other = header;
        other[i] ^= 1;
        EXPECT_FALSE(is_shortcut(other) || is_shortcut(header.substr(0, i))) << i;
    }
}

TEST(CompareDirectory, FollowsTheTable)
{
    struct Case {
        wchar_t const *a;
        wchar_t const *b;
        DirCompare expected;
    };
    Case const cases[] = { { L"C:\\Data", L"c:\\data\\", dirSame },
        { L"C:\\Data\\Sub", L"C:\\Data", dirFirstInSecond },
        { L"C:\\Data", L"C:\\Data\\Sub", dirSecondInFirst },
        { L"C:/Data", L"c:\\dATA/sub", dirSecondInFirst }, { L"Data", L"Data\\Sub", dirDifferent },
        { L"", L"\\", dirSame } };
    for (Case const &each : cases)
        EXPECT_EQ(fileCompareDirectory(each.a, each.b), each.expected)
            << testing::PrintToString(each.a) << " and " << testing::PrintToString(each.b);
}
