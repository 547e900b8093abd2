// SPDX-License-Identifier: MIT
#include "kortools/files/directories.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/message_box.h"
#include "kortools/platform/os_error.h"
#include "tests/files/names.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/thread_language.h"

#include <gtest/gtest.h>
#include <random>

namespace {

namespace fs = std::filesystem;
using namespace kor_test;
using kortools::platform::get_last_os_error;

class FileChanges : public testing::Test {
protected:
    fs::path At(char const *name) const { return m_folder.GetPath() / name; }
    CXTString<wchar_t> Name(wchar_t const *name) const { return m_folder.GetFile(name).c_str(); }

    // What the folder holds, as "name=text" in order.
    std::string List() const
    {
        std::vector<std::string> entries;
        for (auto const &entry : fs::directory_iterator(m_folder.GetPath()))
            entries.push_back(entry.path().filename().string() + '='
                + (entry.is_directory() ? "/" : read_file(entry.path())));
        std::sort(entries.begin(), entries.end());
        std::string list;
        for (std::string const &entry : entries)
            list += (list.empty() ? "" : " ") + entry;
        return list;
    }

    TempFolder m_folder;
};

} // namespace

TEST_F(FileChanges, ACopyHasDataDateAndPermissions)
{
    std::mt19937 random(1);
    for (std::size_t const size : { 0U, 1U, 3000001U }) {
        std::string text(size, '\0');
        for (char &ch : text)
            ch = static_cast<char>(random());
        write_file(At("a"), text);
        fileSetLastWriteDate(Name(L"a"), CXTime(1234567890));
        fs::permissions(At("a"), fs::perms::owner_read | fs::perms::group_read);
        EXPECT_TRUE(fileCopy(Name(L"a"), Name(L"b"), true));
        EXPECT_TRUE(read_file(At("b")) == text) << size;
        EXPECT_EQ(fileGetLastWriteDate(Name(L"b")), CXTime(1234567890));
        EXPECT_EQ(fs::status(At("b")).permissions(), fs::status(At("a")).permissions());
        for (char const *name : { "a", "b" })
            fs::permissions(At(name), fs::perms::owner_all);
        fs::remove(At("b"));
    }
}

TEST_F(FileChanges, ACopyReplacesOnlyWhereItMay)
{
    write_file(At("a"), "new");
    write_file(At("b"), "an old and longer text");
    fs::create_directory(At("d"));
    EXPECT_FALSE(fileCopy(Name(L"a"), Name(L"b"), true));
    EXPECT_EQ(get_last_os_error(), 80U);
    EXPECT_EQ(List(), "a=new b=an old and longer text d=/");
    EXPECT_TRUE(fileCopy(Name(L"a"), Name(L"b"), false));
    EXPECT_EQ(List(), "a=new b=new d=/");
    EXPECT_FALSE(fileCopy(Name(L"none"), Name(L"b"), false));
    EXPECT_EQ(get_last_os_error(), 2U);
    EXPECT_FALSE(fileCopy(Name(L"a"), Name(L"none/b"), false));
    EXPECT_EQ(get_last_os_error(), 3U);
    EXPECT_EQ(List(), "a=new b=new d=/");
}

TEST_F(FileChanges, AFileOntoItselfStaysWhole)
{
    write_file(At("a"), "text");
    fs::create_hard_link(At("a"), At("hard"));
    for (wchar_t const *target : { L"a", L".\\a", L"hard" }) {
        EXPECT_FALSE(fileCopy(Name(L"a"), Name(target), false));
        EXPECT_EQ(get_last_os_error(), 32U) << testing::PrintToString(target);
    }
    EXPECT_TRUE(fileMove(Name(L"a"), Name(L"a"), false));
    EXPECT_EQ(List(), "a=text hard=text");
}

TEST_F(FileChanges, AMoveReplacesFilesButNotDirectories)
{
    write_file(At("a"), "new");
    fileSetLastWriteDate(Name(L"a"), CXTime(1234567890));
    write_file(At("b"), "old");
    fs::create_directory(At("d"));
    EXPECT_FALSE(fileMove(Name(L"a"), Name(L"b"), true));
    EXPECT_EQ(get_last_os_error(), 183U);
    EXPECT_FALSE(fileMove(Name(L"a"), Name(L"d"), false));
    EXPECT_FALSE(fileMove(Name(L"a"), Name(L"none\\b"), false));
    EXPECT_EQ(get_last_os_error(), 3U);
    EXPECT_EQ(List(), "a=new b=old d=/");
    EXPECT_TRUE(fileMove(Name(L"a"), Name(L"b"), false));
    EXPECT_EQ(List(), "b=new d=/");
    EXPECT_TRUE(fileMove(Name(L"b"), Name(L"c"), true));
    EXPECT_TRUE(fileRename(Name(L"c"), Name(L"d\\e")));
    EXPECT_EQ(fileGetLastWriteDate(Name(L"d\\e")), CXTime(1234567890));
    EXPECT_TRUE(fileRename(Name(L"d"), Name(L"f")));
    EXPECT_EQ(List() + read_file(At("f/e")), "f=/new");
}

TEST_F(FileChanges, NamesOfEveryKind)
{
    write_file(At("x"), "text");
    for (std::wstring const &name : get_odd_names()) {
        if (is_windows && name.size() > 100) // the path would be too long there
            continue;
        SCOPED_TRACE(testing::PrintToString(name));
        CXTString<wchar_t> const directory = Name(name.c_str());
        CXTString<wchar_t> const file = directory + L"\\" + name.c_str();
        ASSERT_TRUE(fileCreateDirectory(directory, false));
        EXPECT_TRUE(fileCopy(Name(L"x"), file, true));
        EXPECT_EQ(fileGetSize(file), 4U);
        EXPECT_TRUE(fileMove(file, Name(L"y"), true) && !fileExists(file));
        EXPECT_TRUE(fileRename(Name(L"y"), file));
        EXPECT_TRUE(fileDelete(file) && fileRemoveDirectory(directory));
        EXPECT_EQ(List(), "x=text");
    }
}

TEST_F(FileChanges, TheUserIsAskedBeforeAFileIsReplaced)
{
    static std::wstring s_text;
    static int s_answer;
    auto const before
        = kortools::platform::set_message_box_handler([](wchar_t const *text, unsigned int) {
              s_text = text;
              return s_answer;
          });
    write_file(At("50%1"), "text");
    EXPECT_TRUE(fileAskForReplace(Name(L"none")));
    EXPECT_EQ(s_text, L"");
    ThreadLanguage const language(kortools::text::english);
    s_answer = 6;
    EXPECT_TRUE(fileAskForReplace(Name(L"50%1")));
    EXPECT_EQ(
        s_text, std::wstring(Name(L"50%1")) + L" already exists.\nDo you want to replace it?");
    s_answer = 7;
    EXPECT_FALSE(fileAskForReplace(Name(L"50%1")));
    kortools::platform::set_message_box_handler(before);
}
