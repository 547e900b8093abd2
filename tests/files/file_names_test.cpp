// SPDX-License-Identifier: MIT
#include "kortools/files/file_names.h"

#include "kortools/files/path_parts.h"
#include "kortools/files/path_separators.h"
#include "kortools/files/tmp_name.h"
#include "kortools/platform/message_box.h"
#include "kortools/text/string_table.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

using String = CXTString<wchar_t>;

namespace {

// Collects what message boxes say while it lives.
class MessageBoxes {
public:
    MessageBoxes()
        : m_before(kortools::platform::set_message_box_handler([](wchar_t const *text, unsigned) {
            s_text += text;
            return 1;
        }))
    {
        s_text.Empty();
    }
    ~MessageBoxes() { kortools::platform::set_message_box_handler(m_before); }
    MessageBoxes(MessageBoxes const &) = delete;
    MessageBoxes &operator=(MessageBoxes const &) = delete;

    static String take()
    {
        String text = s_text;
        s_text.Empty();
        return text;
    }

private:
    static inline String s_text;
    kortools::platform::MessageBoxHandler m_before;
};

class FileNames : public testing::Test {
public:
    FileNames(FileNames const &) = delete;
    FileNames &operator=(FileNames const &) = delete;

protected:
    FileNames() { kortools::text::set_thread_language(kortools::text::english); }
    ~FileNames() override { kortools::text::set_thread_language(0); }

    TempFolder m_folder;
    MessageBoxes m_boxes;
};

String without_invalid(String name, char replacement)
{
    fileRemoveInvalidChar(name, replacement);
    return name;
}

} // namespace

TEST_F(FileNames, InvalidCharactersCutAName)
{
    EXPECT_EQ(without_invalid(L"my file.txt", '_'), L"my_file");
    EXPECT_EQ(without_invalid(L"my file.txt", ' '), L"my file");
    EXPECT_EQ(without_invalid(L"a:b", '_'), L"a");
    EXPECT_EQ(without_invalid(L"*", '_'), L"");
    EXPECT_EQ(without_invalid(L" a ", '.'), L".a.");
}

TEST_F(FileNames, ValidOnesShowNothing)
{
    String const file = m_folder.GetFile(L"new file.txt");
    EXPECT_TRUE(fileIsValidFileName(L"", checkAllowEmpty));
    EXPECT_TRUE(fileIsValidFileName(L"a*b", 0));
    EXPECT_TRUE(fileIsValidFileName(L"C:\\no?dir\\a", checkName))
        << "the directory is not looked at";
    EXPECT_TRUE(fileIsValidFileName(L"C:\\no dir\\a", checkWholePath));
    EXPECT_TRUE(fileIsValidFileName(file, checkName | checkDirectory));
    EXPECT_TRUE(fileIsValidFileName(L"a\\b", checkDirectory | checkAllowRelative));
    EXPECT_EQ(m_boxes.take(), L"");
}

TEST_F(FileNames, OthersSayWhy)
{
    String const characters = L"The name cannot contain the following characters: * ? \" < > |";
    struct {
        String name;
        unsigned flags;
        String message;
    } const cases[] = {
        { L"", 0, L"You must enter a file or a directory name." },
        { L"C:\\no dir\\a?b", checkName, characters + L" : / \\" },
        { L"a:", checkName, characters + L" : / \\" },
        { L"no?dir\\ab", checkWholePath, characters },
        { L"no?dir\\ab", checkWholePath | checkName, characters },
        { L"a\\b", checkDirectory,
            L"The path of the filename must be absolute (C:\\tmp\\example.txt)" },
        { m_folder.GetFile(L"none/a"), checkDirectory, L"Selected directory does not exist." },
        { L"C:\\no dir\\a", checkDirectory | checkAllowRelative,
            L"Selected directory does not exist." },
    };
    for (auto const &each : cases) {
        EXPECT_FALSE(fileIsValidFileName(each.name, each.flags | checkSilent));
        EXPECT_EQ(m_boxes.take(), L"");
        EXPECT_FALSE(fileIsValidFileName(each.name, each.flags));
        EXPECT_EQ(m_boxes.take(), each.message);
        kortools::text::set_thread_language(kortools::text::french);
        EXPECT_FALSE(fileIsValidFileName(each.name, each.flags));
        EXPECT_NE(m_boxes.take(), each.message);
        kortools::text::set_thread_language(kortools::text::english);
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

    String const anywhere = fileCreateTmpName(L"scene.kor");
    EXPECT_EQ(fileGetExtension(anywhere), L".kor");
    EXPECT_FALSE(fileIsPathRelative(anywhere));
    EXPECT_TRUE(fileIsValidFileName(anywhere, checkName | checkDirectory));
}
