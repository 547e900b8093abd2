// SPDX-License-Identifier: MIT
#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/application_state.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/known_folders.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <string>

namespace {

namespace platform = kortools::platform;

using Text = CXTString<wchar_t>;

std::wstring to_std(Text const &text)
{
    return { text.GetConstBuffer(), static_cast<std::size_t>(text.GetLength()) };
}

class Application : public testing::Test {
protected:
    ~Application() override { kortools::app::ApplicationState::get().reset(); }

    // A name that no other test run has.
    std::wstring const unique = TempFolder().GetPath().filename().wstring();
};

TEST_F(Application, IsTheRunningProgramUntilItIsSet)
{
    Text const program = GetApplicationPath();
    EXPECT_TRUE(fileExists(program));
    EXPECT_EQ(GetApplicationPath(true) + GetApplicationName(), program);
    EXPECT_EQ(GetApplicationName(true), L"application_test");
    EXPECT_EQ(GetInternalProductName(), L"application_test");

    SetApplicationPath(L"C:\\Apps\\bin\\..\\Viewer.exe");
    EXPECT_EQ(GetInternalProductName(), L"Viewer");
    SetApplicationPath(L"");
    EXPECT_EQ(GetApplicationPath(), program);
}

TEST_F(Application, TheProductsNameStandsInEveryPath)
{
    std::wstring const user = platform::get_user_data_folder() + L"\\Brantis\\";
    std::wstring const common = platform::get_common_data_folder() + L"\\Brantis\\";
    SetApplicationPath(Text(L"C:\\Apps\\" + unique + L".exe"));
    EXPECT_EQ(
        to_std(GetPreferencesFile()), user + unique + L"\\Preferences\\" + unique + L".prefs");
    SetInternalProductName(Text(unique + L" P"), 16);
    std::wstring const name = unique + L" P 16";
    EXPECT_EQ(to_std(GetInternalProductName(true)), name);
    EXPECT_EQ(to_std(GetUserApplicationDataPath()), user + name + L"\\");
    EXPECT_EQ(to_std(GetUserApplicationDataPath(true)), user + unique + L" P\\");
    EXPECT_EQ(to_std(GetCommonPreferencesPath()), common + name + L"\\Preferences\\");
    EXPECT_EQ(
        to_std(GetPreferencesFile()), user + name + L"\\Preferences\\" + unique + L" P.prefs");
    EXPECT_FALSE(fileDirectoryExists(GetUserPreferencesPath()));
    EXPECT_TRUE(fileDirectoryExists(GetUserPreferencesPath(true)));
    for (std::wstring const &made : { unique, unique + L" P", name })
        fileRemoveDirectory(Text(user + made), true);
}

TEST_F(Application, PreferencesGoWhereTheHostWantsThem)
{
    TempFolder folder;
    Text const wanted = folder.GetFile(L"a/b");
    SetUserPreferencesPath(wanted);
    SetCommonPreferencesPath(wanted + L"\\");
    EXPECT_EQ(GetUserPreferencesPath(), wanted + L"\\");
    EXPECT_EQ(GetCommonPreferencesPath(), wanted + L"\\");
    EXPECT_FALSE(fileDirectoryExists(wanted));
    EXPECT_EQ(GetCommonPreferencesPath(true), wanted + L"\\");
    EXPECT_TRUE(fileDirectoryExists(wanted));
    SetInternalProductName(L"Product", 3);
    EXPECT_EQ(GetPreferencesFile(), wanted + L"\\Product.prefs");
}

} // namespace
