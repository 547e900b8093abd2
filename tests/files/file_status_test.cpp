// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/os_error.h"
#include "tests/files/names.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using kortools::platform::get_last_os_error;

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
    for (wchar_t const *path : { L"", L"Q:", L"Q:\\none", L"\\\\no_server\\share\\x" })
        EXPECT_FALSE(fileIsDirectory(path)) << testing::PrintToString(path);
    TempFolder const folder;
    EXPECT_TRUE(fileIsDirectory(folder.GetPath().wstring().c_str()));
    EXPECT_FALSE(fileIsDirectory(folder.GetFile(L"none\\").c_str()));
    EXPECT_TRUE(fileIsDirectory(folder.GetFile(L"none\\").c_str(), true));
    EXPECT_FALSE(fileIsDirectory(folder.GetFile(L"none").c_str(), true));
    EXPECT_FALSE(fileIsDirectory(L"", true));
}

TEST(FileDates, AreReadAndSetToTheSecond)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "f", "12345");
    fs::create_directory(folder.GetPath() / "d");
    CXTime const now = CXTime::GetTickCount();
    for (wchar_t const *name : { L"f", L"d" }) {
        CXTString<wchar_t> const path = folder.GetFile(name).c_str();
        CXTime date;
        ASSERT_TRUE(fileGetLastWriteDate(path, date));
        EXPECT_LE((now - date).GetDuration(), 60);
        ASSERT_TRUE(fileGetCreationDate(path, date));
        EXPECT_LE((now - date).GetDuration(), 60);
        for (long long const seconds : { 1LL, 1234567891LL, 4102444799LL, -86399LL }) {
            EXPECT_TRUE(fileSetLastWriteDate(path, CXTime(seconds)));
            EXPECT_EQ(fileGetLastWriteDate(path), CXTime(seconds));
            bool const has_creation_date = fileSetCreationDate(path, CXTime(seconds + 7));
            if (!has_creation_date) {
                EXPECT_EQ(get_last_os_error(), 50U);
            } else if (!is_windows) { // Wine does not keep the date
                EXPECT_EQ(fileGetCreationDate(path), CXTime(seconds + 7));
            }
            EXPECT_EQ(fileGetLastWriteDate(path), CXTime(seconds)) << "stays";
        }
    }
    CXTString<wchar_t> const missing = folder.GetFile(L"none").c_str();
    CXTime date(5);
    EXPECT_FALSE(fileGetLastWriteDate(missing, date));
    EXPECT_FALSE(fileGetCreationDate(missing, date));
    EXPECT_EQ(date, CXTime(5));
    EXPECT_EQ(fileGetLastWriteDate(missing), CXTime(0));
    EXPECT_FALSE(fileSetLastWriteDate(missing, date));
    EXPECT_FALSE(fileSetCreationDate(missing, date));
}

TEST(SameFile, TwoNamesOfOneFile)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "f", "x");
    write_file(folder.GetPath() / "g", "x");
    fs::create_directories(folder.GetPath() / "d/e");
    fs::create_hard_link(folder.GetPath() / "f", folder.GetPath() / "hard");
    auto const name
        = [&](wchar_t const *text) -> CXTString<wchar_t> { return folder.GetFile(text).c_str(); };
    EXPECT_TRUE(fileIsSameFile(name(L"f"), name(L"d\\..\\f")));
    EXPECT_TRUE(fileIsSameFile(name(L"f"), name(L"hard")));
    EXPECT_FALSE(fileIsSameFile(name(L"f"), name(L"g")));
    EXPECT_FALSE(fileIsSameFile(name(L"f"), name(L"none")));
    EXPECT_TRUE(fileIsSameFile(name(L"none"), name(L"d/../NONE")));
    EXPECT_FALSE(fileIsSameFile(name(L"none"), name(L"none2")));
    EXPECT_FALSE(fileIsSameFile(L"", L""));
    EXPECT_TRUE(fileIsSameDir(name(L"d"), name(L"d\\e\\..\\")));
    EXPECT_FALSE(fileIsSameDir(name(L"d"), name(L"d\\e")));
    EXPECT_FALSE(fileIsSameDir(name(L"f"), name(L"f"))) << "a file";
    EXPECT_TRUE(fileIsSameDir(name(L"none"), name(L"none\\")));
}

TEST(FileAccess, AsksAsAnOpenWould)
{
    constexpr unsigned int read = 0x80000000;
    constexpr unsigned int write = 0x40000000;
    TempFolder const folder;
    write_file(folder.GetPath() / "f", "x");
    CXTString<wchar_t> const file = folder.GetFile(L"f").c_str();
    CXTString<wchar_t> const directory = folder.GetPath().wstring().c_str();
    for (unsigned int const access :
        { 0U, read, write, read | write, 0x1U, 0x2U, 0x10000U, 0x100U })
        EXPECT_TRUE(fileCheckAccess(file, access)) << access;
    EXPECT_TRUE(fileCheckAccess(directory, read));
    EXPECT_FALSE(fileCheckAccess(folder.GetFile(L"none").c_str(), 0));
    EXPECT_EQ(get_last_os_error(), 2U);
    EXPECT_FALSE(fileCheckAccess(L"", 0));
    EXPECT_FALSE(fileCheckAccess(L"\\\\no_server\\share\\x", read));
    CXFile other(file, CXFile::modeRead | CXFile::shareDenyWrite);
    EXPECT_TRUE(fileCheckAccess(file, read));
    EXPECT_FALSE(fileCheckAccess(file, write));
    EXPECT_EQ(get_last_os_error(), 32U);
}

TEST(FileKinds, ShortcutsAreToldByWhatTheyHold)
{
    TempFolder const folder;
    std::string const header("\x4C\0\0\0\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 20);
    CXTString<wchar_t> const path = folder.GetFile(L"any name").c_str();
    write_file(folder.GetPath() / "any name", header + std::string(56, 'x'));
    EXPECT_TRUE(fileIsShortcut(path));
    for (std::size_t i = 0; i < header.size(); ++i) {
        std::string other = header;
        other[i] ^= 1;
        write_file(folder.GetPath() / "any name", other);
        EXPECT_FALSE(fileIsShortcut(path)) << i;
        write_file(folder.GetPath() / "any name", header.substr(0, i));
        EXPECT_FALSE(fileIsShortcut(path)) << i;
    }
    write_file(folder.GetPath() / "x.lnk", "text");
    EXPECT_FALSE(fileIsShortcut(folder.GetFile(L"x.lnk").c_str()));
    EXPECT_FALSE(fileIsShortcut(folder.GetPath().wstring().c_str()));
    EXPECT_FALSE(fileIsShortcut(folder.GetFile(L"none").c_str()));
}

TEST(FileKinds, Executables)
{
    TempFolder const folder;
    write_file(folder.GetPath() / "text.txt", "text");
    EXPECT_FALSE(fileIsExecutable(folder.GetFile(L"text.txt").c_str()));
    EXPECT_FALSE(fileIsExecutable(folder.GetPath().wstring().c_str()));
    EXPECT_FALSE(fileIsExecutable(folder.GetFile(L"none").c_str()));
    EXPECT_TRUE(fileIsExecutable(is_windows ? L"C:\\windows\\system32\\cmd.exe" : L"C:\\bin\\sh"));
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
