// SPDX-License-Identifier: MIT
#include "kortools/files/path_parts.h"

#include "kortools/files/file_info.h"
#include "kortools/files/path_separators.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

using String = CXTString<wchar_t>;

namespace {

String parent_of(String path)
{
    return fileGetParentDirectory(path) ? path : String(L"none, ") + path;
}

} // namespace

TEST(PathParts, NameAndExtension)
{
    EXPECT_EQ(fileStripPath(L"C:\\no such\\box.tar.gz"), L"box.tar.gz");
    EXPECT_EQ(fileStripPath(L"C:/no such/box.tar.gz", true), L"box.tar");
    EXPECT_EQ(fileStripPathAndExtension(L"\\\\server\\share\\a.b\\c"), L"c");
    EXPECT_EQ(fileStripPath(L"\\\\server\\share"), L"") << "a share is a directory";
    EXPECT_EQ(fileRemoveExtension(L"C:\\a.b\\c"), L"C:\\a.b\\c");
    EXPECT_EQ(fileRemoveExtension(L".hidden"), L"");
    EXPECT_EQ(fileGetExtension(L"C:\\a.b\\c.d e"), L"");
    EXPECT_EQ(fileGetExtension(L"a."), L".");
    EXPECT_EQ(fileGetExtension(L"http://h/a.png?v=1.2?"), L".png");
    EXPECT_EQ(fileGetExtension(L"http://h/a b.c d"), L".c d") << "blanks count in paths only";
    EXPECT_EQ(fileGetExtension(L"http://h/a?b.c"), L"");
    EXPECT_EQ(fileGetExtension(L"C:\\a.b?c=d.e"), L".e") << "a drive is no scheme";
}

TEST(PathParts, DirectoryWithItsSeparator)
{
    struct {
        wchar_t const *path;
        wchar_t const *directory;
    } const cases[] = {
        { L"", L"" },
        { L"b.c", L"" },
        { L"C:\\no such\\b.c", L"C:\\no such\\" },
        { L"C:\\no such/b.c", L"C:\\no such\\" },
        { L"/no such/b.c", L"\\no such\\" },
        { L"no such\\b.c", L"no such\\" },
        { L"C:\\no such\\", L"C:\\no such\\" },
        { L"C:\\", L"C:\\" },
        { L"C:b.c", L"C:\\" },
        { L"\\\\server\\share", L"\\\\server\\share\\" },
        { L"\\\\server\\share\\b.c", L"\\\\server\\share\\b.c\\" },
    };
    for (auto const &each : cases)
        EXPECT_EQ(fileStripName(each.path), each.directory) << kortools::core::quote(each.path);
}

TEST(PathParts, WhatIsADirectoryOnTheDiskHasNoName)
{
    TempFolder const folder;
    String directory = folder.GetFile(L"");
    fileConvertSlash(directory);
    String bare = directory;
    fileRemoveSlashTermination(bare);
    EXPECT_EQ(fileStripPath(bare), L"");
    EXPECT_EQ(fileStripName(bare), directory);
    EXPECT_EQ(fileStripName(directory + L"new.txt"), directory);
    EXPECT_EQ(fileStripPath(directory + L"new.txt"), L"new.txt");
}

TEST(PathParts, RootTopAndParent)
{
    EXPECT_EQ(fileGetRoot(L"C:\\a\\b"), L"C:\\");
    EXPECT_EQ(fileGetRoot(L"\\\\server\\share\\a"), L"\\\\server\\share");
    EXPECT_EQ(fileGetRoot(L"C:a\\b"), L"C:");
    EXPECT_EQ(fileGetRoot(L"a\\b"), L"");

    EXPECT_EQ(fileGetTopDirectory(L"C:/a/b/c"), L"C:\\a");
    EXPECT_EQ(fileGetTopDirectory(L"C:\\a\\b", true), L"C:\\a\\");
    EXPECT_EQ(fileGetTopDirectory(L"C:\\a"), L"C:\\a");
    EXPECT_EQ(fileGetTopDirectory(L"C:\\"), L"C:\\");
    EXPECT_EQ(fileGetTopDirectory(L"\\\\server\\share\\a\\b"), L"\\\\server\\share\\a");
    EXPECT_EQ(fileGetTopDirectory(L"\\\\server\\share", true), L"\\\\server\\share\\");
    EXPECT_EQ(fileGetTopDirectory(L"a\\b"), L"a");
    EXPECT_EQ(fileGetTopDirectory(L"", true), L"");

    EXPECT_EQ(parent_of(L"C:/a/b"), L"C:\\a");
    EXPECT_EQ(parent_of(L"C:\\a\\b\\\\"), L"C:\\a");
    EXPECT_EQ(parent_of(L"C:\\\\a"), L"C:\\");
    EXPECT_EQ(parent_of(L"C:/"), L"none, C:/");
    EXPECT_EQ(parent_of(L"\\\\server\\share\\a"), L"\\\\server\\share");
    EXPECT_EQ(parent_of(L"\\\\server\\share"), L"none, \\\\server\\share");
    EXPECT_EQ(parent_of(L"a"), L"");
    EXPECT_EQ(parent_of(L""), L"none, ");
    EXPECT_EQ(parent_of(L"C:"), L"none, C:");
}

TEST(PathParts, KindsOfPaths)
{
    EXPECT_TRUE(fileIsUNCPath(L"\\\\server"));
    EXPECT_FALSE(fileIsUNCPath(L"//server/share"));
    EXPECT_FALSE(fileIsPathRelative(L"\\a"));
    EXPECT_FALSE(fileIsPathRelative(L"C:a"));
    EXPECT_TRUE(fileIsPathRelative(L""));
    EXPECT_TRUE(fileIsPathRelative(L"..\\a"));
}

TEST(PathSeparators, AreConvertedJoinedAndTerminated)
{
    String path = L"//server\\a//b\\/c";
    EXPECT_TRUE(fileConvertSlash(path));
    EXPECT_FALSE(fileConvertSlash(path));
    EXPECT_EQ(path, L"\\\\server\\a\\\\b\\\\c");
    fileRemoveDuplicatedSlash(path);
    EXPECT_EQ(path, L"\\server\\a\\b\\c");
    path = L"\\\\\\\\\\";
    fileRemoveDuplicatedSlash(path);
    EXPECT_EQ(path, L"\\");

    path.Empty();
    EXPECT_FALSE(fileIsSlashTerminated(path));
    fileRemoveSlashTermination(path);
    fileSlashTerminate(path);
    fileSlashTerminate(path);
    EXPECT_EQ(path, L"\\");
    EXPECT_FALSE(fileIsSlashTerminated(L"C:/tmp/"));
    path = L"C:\\\\";
    fileRemoveSlashTermination(path);
    EXPECT_EQ(path, L"C:\\");
}

TEST(FileInfo, CutsAndJoinsAName)
{
    for (wchar_t const *const text :
        { L"C:\\a.b\\c.d.e", L"C:c", L"c.d e", L"C:\\a\\", L"", L"a/b.c", L".hid", L"C:\\a.b/c" })
        EXPECT_EQ(CFileInfo(text).GetFullName(), text);
    CFileInfo info(L"C:\\a.b\\c.d.e");
    EXPECT_EQ(info.GetDirectory(), L"C:\\a.b\\");
    EXPECT_EQ(info.GetName(), L"c.d");
    EXPECT_EQ(info.GetExtension(), L".e");
    info.SetName(L"new");
    EXPECT_EQ(info.GetFileName(), L"new.e");
    EXPECT_EQ(CFileInfo(L"C:c").GetDirectory(), L"C:");
}
