// SPDX-License-Identifier: MIT
#include "kortools/files/relative_path.h"

#include "kortools/files/path_parts.h"
#include "kortools/files/path_separators.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <random>

using String = CXTString<wchar_t>;

namespace {

class RelativePath : public testing::Test {
protected:
    RelativePath()
        : m_directory(m_folder.GetPath().wstring())
    {
        fileConvertSlash(m_directory);
    }

    // A path in or beside the directory that exists.
    String below(wchar_t const *rest) const { return m_directory + L"\\" + rest; }

    TempFolder m_folder;
    String m_directory; // exists; without a separator at its end
};

} // namespace

TEST_F(RelativePath, LeadsFromADirectory)
{
    EXPECT_EQ(fileMakeRelativePath(m_directory, below(L"b.txt"), true), L"b.txt");
    EXPECT_EQ(fileMakeRelativePath(m_directory, below(L"b.txt"), false), L".\\b.txt");
    EXPECT_EQ(
        fileMakeRelativePath(m_directory, below(L"b.txt"), false, filenameNoDotSlash), L"b.txt");
    EXPECT_EQ(fileMakeRelativePath(m_directory, below(L"b"), false, FILENAME_TYPE(3)), L".\\b");
    EXPECT_EQ(fileMakeRelativePath(below(L""), below(L"c/d"), true), L"c\\d");
    String native = m_folder.GetPath().generic_wstring();
    EXPECT_EQ(fileMakeRelativePath(native, native + L"/c/d", true), L"c\\d");

    String sibling = m_directory;
    sibling += L"-2\\x";
    EXPECT_EQ(fileMakeRelativePath(m_directory, sibling).Left(3), L"..\\");
    EXPECT_EQ(fileMakeRelativePath(m_directory, m_directory, true, filenameDirectory), L".");
    EXPECT_EQ(fileMakeRelativePath(m_directory, m_directory).Left(3), L"..\\");
}

TEST_F(RelativePath, IsLeftAloneWhereThereIsNone)
{
    EXPECT_EQ(fileMakeRelativePath(below(L"none"), below(L"x/y")), below(L"x/y"));
    EXPECT_EQ(fileMakeRelativePath(m_directory, L"..\\a/b"), L"..\\a/b");
    EXPECT_EQ(fileMakeRelativePath(m_directory, L"\\\\server\\share\\a"), L"\\\\server\\share\\a");
    EXPECT_EQ(fileMakeRelativePath(m_directory, L""), L"");
    String const large = below(String(L'x', 300));
    EXPECT_EQ(fileMakeRelativePath(m_directory, large), large);
}

TEST_F(RelativePath, AndBackIsThePath)
{
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        String path = m_directory;
        for (unsigned up = random() % 4; up > 0 && path.ReverseFind(L'\\') > 3; --up)
            path = path.Left(path.ReverseFind(L'\\'));
        for (unsigned down = random() % 4; down > 0; --down)
            path += random() % 2 ? L"\\a.b" : L"\\\u00E9 \U0001F600";
        path += L"\\file";
        String const relative = fileMakeRelativePath(m_directory, path, random() % 2 == 0);
        EXPECT_TRUE(fileIsPathRelative(relative));
        EXPECT_EQ(fileMakeAbsolutePath(m_directory, relative), path) << relative.GetConstBuffer();
    }
}

TEST_F(RelativePath, AbsoluteOnesAreJoinedAndTerminated)
{
    EXPECT_EQ(fileMakeAbsolutePath(L"", L""), L"");
    EXPECT_EQ(fileMakeAbsolutePath(L"C:\\a", L"..\\b"), L"C:\\b");
    EXPECT_EQ(fileMakeAbsolutePath(L"C:/a/", L"./b/c"), L"C:\\a\\b\\c");
    EXPECT_EQ(fileMakeAbsolutePath(L"C:\\a", L""), L"C:\\a\\");
    EXPECT_EQ(fileMakeAbsolutePath(L"", L"a\\.\\b"), L"a\\b");
    EXPECT_EQ(fileMakeAbsolutePath(L"C:\\a", L"D:\\x\\..\\y"), L"D:\\x\\..\\y");
    EXPECT_EQ(fileMakeAbsolutePath(L"C:\\a", L"\\b"), L"\\b");

    EXPECT_EQ(fileMakeAbsolutePath(below(L"x"), L"..", true), below(L""));
    EXPECT_EQ(fileMakeAbsolutePath(L"C:\\a", m_directory, true), below(L""));
    EXPECT_EQ(fileMakeAbsolutePath(m_directory, L"none", true), below(L"none"));
    EXPECT_EQ(
        fileMakeAbsolutePath(L"C:\\a", L"\\\\server\\share\\b", true), L"\\\\server\\share\\b\\");

    String const large(L'x', 300);
    EXPECT_EQ(fileMakeAbsolutePath(L"C:\\a", large), L"C:\\a\\" + large) << "too long to resolve";
}

TEST(PathShortest, ResolvesDotsInPlace)
{
    String path = L"C:\\a\\.\\b\\..\\c";
    EXPECT_TRUE(fileMakePathShortest(path));
    EXPECT_EQ(path, L"C:\\a\\c");
    String large(L'x', 260);
    EXPECT_FALSE(fileMakePathShortest(large));
    EXPECT_EQ(large.GetLength(), 260);
}
