// SPDX-License-Identifier: MIT
#include "kortools/files/path_parts.h"

#include "kortools/files/path_separators.h"

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
    EXPECT_EQ(fileStripPath(L"C:/no such/box.tar.gz", true), L"box.tar");
    EXPECT_EQ(fileStripPath(L"\\\\server\\share"), L"") << "a share is a directory";
    EXPECT_EQ(fileRemoveExtension(L".hidden"), L"");
    std::pair<wchar_t const *, wchar_t const *> const extensions[]
        = { { L"C:\\a.b\\c.d e", L"" }, { L"a.", L"." }, { L"http://h/a.png?v=1.2?", L".png" },
              { L"http://h/a b.c d", L".c d" }, // blanks count in paths only
              { L"http://h/a?b.c", L"" }, { L"C:\\a.b?c=d.e", L".e" } }; // a drive is no scheme
    for (auto const &[path, extension] : extensions)
        EXPECT_EQ(fileGetExtension(path), extension) << kortools::core::quote(path);
}

TEST(PathParts, DirectoryWithItsSeparator)
{
    struct {
        wchar_t const *path;
        wchar_t const *directory;
    } const cases[] = { { L"", L"" }, { L"b.c", L"" }, { L"C:\\no such\\b.c", L"C:\\no such\\" },
        { L"C:\\no such/b.c", L"C:\\no such\\" }, { L"/no such/b.c", L"\\no such\\" },
        { L"no such\\b.c", L"no such\\" }, { L"C:\\no such\\", L"C:\\no such\\" },
        { L"C:\\", L"C:\\" }, { L"C:b.c", L"C:\\" },
        { L"\\\\server\\share", L"\\\\server\\share\\" },
        { L"\\\\server\\share\\b.c", L"\\\\server\\share\\b.c\\" } };
    for (auto const &each : cases)
        EXPECT_EQ(fileStripName(each.path), each.directory) << kortools::core::quote(each.path);
}

TEST(PathParts, RootTopAndParent)
{
    struct {
        wchar_t const *path, *root, *top, *parent;
    } const cases[] = { { L"C:\\a\\b\\c", L"C:\\", L"C:\\a", L"C:\\a\\b" },
        { L"C:/a/b", L"C:", L"C:\\a", L"C:\\a" }, { L"C:\\a", L"C:\\", L"C:\\a", L"C:\\" },
        { L"C:/", L"C:", L"C:\\", L"none, C:/" },
        { L"\\\\server\\share\\a\\b", L"\\\\server\\share", L"\\\\server\\share\\a",
            L"\\\\server\\share\\a" },
        { L"\\\\server\\share", L"\\\\server\\share", L"\\\\server\\share",
            L"none, \\\\server\\share" },
        { L"a\\b", L"", L"a", L"a" }, { L"a", L"", L"a", L"" }, { L"", L"", L"", L"none, " },
        { L"C:", L"C:", L"C:", L"none, C:" } };
    for (auto const &[path, root, top, parent] : cases) {
        SCOPED_TRACE(kortools::core::quote(path));
        EXPECT_EQ(fileGetRoot(path), root);
        EXPECT_EQ(fileGetTopDirectory(path), top);
        EXPECT_EQ(parent_of(path), parent);
    }
    EXPECT_EQ(fileGetTopDirectory(L"C:\\a\\b", true), L"C:\\a\\");
    EXPECT_EQ(parent_of(L"C:\\a\\b\\\\"), L"C:\\a");
}

TEST(PathSeparators, AreConvertedJoinedAndTerminated)
{
    String path = L"//server\\a//b\\/c";
    EXPECT_TRUE(fileConvertSlash(path));
    EXPECT_FALSE(fileConvertSlash(path));
    EXPECT_EQ(path, L"\\\\server\\a\\\\b\\\\c");
    fileRemoveDuplicatedSlash(path);
    EXPECT_EQ(path, L"\\server\\a\\b\\c");
    path.Empty();
    fileRemoveSlashTermination(path);
    EXPECT_FALSE(fileIsSlashTerminated(path) || fileIsSlashTerminated(L"C:/tmp/"));
    for (int i = 0; i < 2; ++i)
        fileSlashTerminate(path);
    EXPECT_EQ(path, L"\\");
    path = L"C:\\\\";
    fileRemoveSlashTermination(path);
    EXPECT_EQ(path, L"C:\\");
}
