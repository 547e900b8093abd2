// SPDX-License-Identifier: MIT
#include "kortools/files/file_names.h"

#include "kortools/files/path_parts.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/tmp_name.h"
#include "kortools/platform/message_box.h"
#include "tests/support/temp_folder.h"
#include "tests/support/thread_language.h"

#include <fstream>
#include <gtest/gtest.h>
#include <utility>

using String = CXTString<wchar_t>;

namespace {

// Collects what message boxes say.
class FileNames : public testing::Test {
protected:
    FileNames()
        : m_before(kortools::platform::set_message_box_handler([](wchar_t const *text, unsigned) {
            s_text += text;
            return 1;
        }))
    {
    }
    ~FileNames() override { kortools::platform::set_message_box_handler(m_before); }

    static String take() { return std::exchange(s_text, String()); }

    TempFolder m_folder;
    ThreadLanguage m_language { kortools::text::english };

private:
    static inline String s_text;
    kortools::platform::MessageBoxHandler m_before;
};

} // namespace

TEST_F(FileNames, ThatAreInvalidSayWhy)
{
    String const characters = L"The name cannot contain the following characters: * ? \" < > |";
    struct {
        String name;
        unsigned flags;
        String message;
    } const cases[] = { { L"", checkAllowEmpty, L"" }, { L"a*b", 0, L"" },
        { m_folder.GetFile(L"new file.txt"), checkName | checkDirectory, L"" },
        { L"a\\b", checkDirectory | checkAllowRelative, L"" },
        { L"", 0, L"You must enter a file or a directory name." },
        { L"C:\\no dir\\a?b", checkName, characters + L" : / \\" },
        { L"no?dir\\ab", checkWholePath, characters },
        { L"a\\b", checkDirectory,
            L"The path of the filename must be absolute (C:\\tmp\\example.txt)" },
        { m_folder.GetFile(L"none/a"), checkDirectory, L"Selected directory does not exist." },
        { L"C:\\no dir\\a", checkDirectory | checkAllowRelative,
            L"Selected directory does not exist." } };
    for (auto const &each : cases) {
        EXPECT_EQ(fileIsValidFileName(each.name, each.flags | checkSilent), each.message.IsEmpty());
        EXPECT_EQ(take(), L"");
        EXPECT_EQ(fileIsValidFileName(each.name, each.flags), each.message.IsEmpty());
        EXPECT_EQ(take(), each.message);
    }
}

TEST_F(FileNames, TemporaryOnesKeepLettersAndDots)
{
    String directory = m_folder.GetFile(L"");
    fileConvertSlash(directory);
    auto const tmp = [&](wchar_t const *name, bool keep = false) {
        String const path = fileCreateTmpName(name, keep, directory);
        return path.Left(directory.GetLength()) == directory ? path.Mid(directory.GetLength())
                                                             : L"elsewhere: " + path;
    };
    EXPECT_EQ(tmp(L"C:\\a b\\My scene-12.old.kor"), L"Myscene.old.kor");
    EXPECT_EQ(tmp(L"C:\\a b\\My scene-12.old.kor", true), L"My scene-12.old.kor");
    EXPECT_EQ(tmp(L"7.png"), L"tmp.png");
    EXPECT_EQ(tmp(L"\u00E9\u00D7\u00FE\u00FF\u0100\U0001F600z.x"), L"\u00E9\u00FEz.x");
    EXPECT_EQ(tmp(L"42"), L"1") << "the directory itself exists";
    std::ofstream(std::filesystem::path(m_folder.GetFile(L"tmp.png"))) << 1;
    EXPECT_EQ(tmp(L"7.png"), L"tmp1.png");
}
