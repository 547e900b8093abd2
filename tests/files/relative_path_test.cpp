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
    String const native = m_folder.GetPath().generic_wstring();
    EXPECT_EQ(fileMakeRelativePath(native, native + L"/c/d", true), L"c\\d");
    EXPECT_EQ(fileMakeRelativePath(m_directory, m_directory + L"-2\\x").Left(3), L"..\\");
    EXPECT_EQ(fileMakeRelativePath(m_directory, m_directory, true, filenameDirectory), L".");
}

TEST_F(RelativePath, IsLeftAloneWhereThereIsNone)
{
    for (String const &path :
        { String(L"..\\a/b"), String(L"\\\\server\\share\\a"), String(), below(String(L'x', 300)) })
        EXPECT_EQ(fileMakeRelativePath(m_directory, path), path);
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
    struct {
        wchar_t const *directory, *path, *absolute;
    } const cases[] = { { L"", L"", L"" }, { L"C:\\a", L"..\\b", L"C:\\b" },
        { L"C:/a/", L"./b/c", L"C:\\a\\b\\c" }, { L"C:\\a", L"", L"C:\\a\\" },
        { L"", L"a\\.\\b", L"a\\b" }, { L"C:\\a", L"D:\\x\\..\\y", L"D:\\x\\..\\y" },
        { L"C:\\a", L"\\b", L"\\b" } };
    for (auto const &each : cases)
        EXPECT_EQ(fileMakeAbsolutePath(each.directory, each.path), each.absolute);
    EXPECT_EQ(fileMakeAbsolutePath(below(L"x"), L"..", true), below(L""));
    EXPECT_EQ(fileMakeAbsolutePath(m_directory, L"none", true), below(L"none"));
}
