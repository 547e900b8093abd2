// SPDX-License-Identifier: MIT
#include "kortools/files/file_changes.h"
#include "kortools/files/file_find.h"
#include "kortools/files/file_status.h"
#include "kortools/files/name_pattern.h"
#include "tests/files/names.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <set>

namespace {

namespace fs = std::filesystem;
using kor_test::write_file;

std::set<std::wstring> find_all(std::wstring const &pattern)
{
    std::set<std::wstring> names;
    CXFileFind find;
    bool more = find.FindFile(pattern.c_str());
    while (more) {
        more = find.FindNextFile();
        EXPECT_TRUE(names.emplace(find.GetFileName().GetView()).second) << "found twice";
    }
    EXPECT_FALSE(find.FindNextFile());
    return names;
}

} // namespace

TEST(NamePattern, FollowsTheTable)
{
    struct {
        wchar_t const *pattern, *name;
        bool matches;
    } const cases[] = { { L"*", L"a", true }, { L"*.*", L"a", true }, { L"*.*", L"a.b", true },
        { L"*.txt", L"A.TXT", true }, { L"*.TXT", L"a.b.txt", true },
        { L"*.txt", L"a.txtx", false }, { L"*.txt", L".txt", true }, { L"*.txt", L"txt", false },
        { L"a*.txt", L"a.txt", true }, { L"a?.txt", L"ab.txt", true },
        { L"a?.txt", L"a.txt", true }, { L"a?.txt", L"abc.txt", false }, { L"a??", L"a", true },
        { L"?a", L"a", false }, { L"a.?", L"a", true }, { L"a.*", L"a", true },
        { L"*.", L"a", true }, { L"*.", L"a.b", false }, { L"*.", L"a.", true },
        { L"a", L"A", true }, { L"a", L"ab", false }, { L"*a*b*c", L"xxaxxbxxabc", true },
        { L"*a*b*c", L"xxaxxbxxab", false }, { L"*.t?t", L"a.tt", false },
        { L"*\U0001F642.k", L"x\U0001F642.K", true }, { L"", L"a", false } };
    for (auto const &each : cases)
        EXPECT_EQ(kortools::files::NamePattern(each.pattern).matches(each.name), each.matches)
            << testing::PrintToString(each.pattern) << ' ' << testing::PrintToString(each.name);
    std::wstring const hostile(2000, L'a');
    EXPECT_FALSE(kortools::files::NamePattern(L"*a*a*a*a*a*a*a*a*a*a*b").matches(hostile));
}

TEST(FileFind, VisitsEachEntryOnce)
{
    TempFolder const folder;
    std::vector<std::wstring> names = get_odd_names();
    for (int i = 0; i < 400; ++i)
        names.push_back(L"many" + std::to_wstring(i) + L".txt");
    std::set<std::wstring> expected { L"dir.d", L"plain" };
    write_file(folder.GetPath() / "plain", "x");
    fs::create_directory(folder.GetPath() / "dir.d");
    for (std::wstring const &name : names) {
        if (is_windows && folder.GetFile(name).size() >= 250)
            continue;
        fileCopy(folder.GetFile(L"plain").c_str(), folder.GetFile(name).c_str());
        expected.insert(name);
    }
    EXPECT_EQ(find_all(folder.GetFile(L"*.*")), expected);
    EXPECT_EQ(find_all(folder.GetFile(L"MANY?.TXT")).size(), 10U);
    for (wchar_t const *none : { L"*.none", L"none\\*", L"" })
        EXPECT_EQ(find_all(folder.GetFile(none)).size(), 0U);
}

TEST(FileFind, TellsAboutAnEntry)
{
    TempFolder const folder;
    CXTString<wchar_t> const path = folder.GetFile(L"some.file.txt").c_str();
    write_file(folder.GetPath() / "some.file.txt", "12345");
    fileSetLastWriteDate(path, CXTime(1234567890));
    fs::create_directory(folder.GetPath() / "dir");
    CXFileFind find;
    ASSERT_TRUE(find.FindFile(folder.GetFile(L"*.txt").c_str()));
    EXPECT_FALSE(find.FindNextFile()) << "there is one only";
    EXPECT_STREQ(find.GetFileName(), L"some.file.txt");
    EXPECT_STREQ(find.GetFileTitle(), L"some.file");
    EXPECT_EQ(find.GetFilePath(), path);
    EXPECT_EQ(find.GetLength(), 5U);
    EXPECT_EQ(find.GetLastWriteTime(), CXTime(1234567890));
    EXPECT_FALSE(find.IsDirectory() || find.IsReadOnly());
    ASSERT_TRUE(find.FindFile(folder.GetFile(L"di*").c_str()));
    find.FindNextFile();
    EXPECT_TRUE(find.IsDirectory() && find.GetLength() == 0);
}
