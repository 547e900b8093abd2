// SPDX-License-Identifier: MIT
// The profile as the file that it is on Linux: written by people and by others, damaged, hostile.
#include "kortools/app/win_app.h"
#include "kortools/platform/profile_text.h"
#include "tests/app/profile_support.h"
#include "tests/support/files.h"

#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

namespace {

namespace platform = kortools::platform;

class NativeProfile : public testing::Test, public TestProfile {
protected:
    void put(std::string const &bytes)
    {
        std::filesystem::create_directories(m_file.parent_path());
        std::filesystem::remove(m_file); // another file than the one that was read
        kor_test::write_file(m_file, bytes);
    }
    std::string get() const { return kor_test::read_file(m_file); }
};

TEST_F(NativeProfile, IsReadableAndMayBeEdited)
{
    m_app.WriteProfileString(L"settings", L"lastFolder", L"C:\\scenes\\50% \"done\"");
    m_app.WriteProfileInt(L"settings", L"width", -1280);
    unsigned char const bytes[] = { 0, 0xFF, 0x10 };
    m_app.WriteProfileBinary(L"a\\b", L"layout", bytes, 3);
    std::string const expected = "[settings]\n"
                                 "lastFolder = \"C:\\scenes\\50%25 \"done\"\"\n"
                                 "width = -1280\n\n\n"
                                 "[a\\b]\n"
                                 "layout = hex:00ff10\n";
    EXPECT_EQ(get(), expected);

    put("; of the user\r\n\r\n[Settings]\r\n  name =  by hand, without quotes  \r\nWIDTH=5\r\n"
        "no value\r\n=no name\r\n[broken\r\nodd=hex:123\r\n");
    EXPECT_EQ(m_app.GetProfileString(L"settings", L"Name"), L"by hand, without quotes");
    EXPECT_EQ(m_app.GetProfileString(L"settings", L"odd"), L"hex:123");
    EXPECT_TRUE(m_app.WriteProfileInt(L"settings", L"width", 6));
    EXPECT_NE(get().find("name = by hand, without quotes\n"), std::string::npos);
}

TEST(ProfileText, IsATextUnlessItIsSomethingElse)
{
    struct {
        char const *text;
        platform::ProfileValue value;
    } const cases[] = {
        { "\"open", std::wstring(L"\"open") },
        { "2147483648", std::wstring(L"2147483648") },
        { "007", 7 },
        { "hex:0g", std::wstring(L"hex:0g") },
        { "hex:AbcD", platform::ProfileBytes { 0xAB, 0xCD } },
        { "100% %4 %zz %-1 %00 %80 %u0041 %uD8",
            std::wstring(L"100% %4 %zz %-1 %00 %80 %u0041 %uD8") },
        { "%41%%42%", std::wstring(L"A%B%") },
        { "\xFF\xC3", std::wstring(L"\uFFFD\uFFFD") },
    };
    for (auto const &[text, value] : cases)
        EXPECT_TRUE(platform::decode_profile_value(text) == value) << text;
    EXPECT_EQ(platform::encode_profile_file_name(L"../a\\b:c"), "%2e.%2fa%5cb%3ac");
}

TEST_F(NativeProfile, IsReplacedWhereItLiesAndKeepsItsPermissions)
{
    put("[settings]\nx=1\n");
    std::filesystem::path const real = m_folder.GetPath() / "dotfiles.ini";
    std::filesystem::rename(m_file, real);
    std::filesystem::create_symlink(real, m_file);
    chmod(real.c_str(), 0640);
    std::ofstream(real.string() + ".tmp") << "of a process that died";
    EXPECT_TRUE(m_app.WriteProfileInt(L"settings", L"y", 2));
    EXPECT_TRUE(std::filesystem::is_symlink(m_file));
    EXPECT_EQ(get(), "[settings]\nx = 1\ny = 2\n");
    struct stat status { };
    stat(real.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
    EXPECT_FALSE(std::filesystem::exists(real.string() + ".tmp"));
}

TEST_F(NativeProfile, WhatIsNoProfileHasNoValuesAndStays)
{
    std::string const zero("[settings]\nx=1\n\0y=2\n", 20);
    std::string const huge = "[settings]\nx=1\n" + std::string((16 << 20) + 1, ';');
    for (std::string const &bytes : { zero, huge }) {
        put(bytes);
        EXPECT_EQ(m_app.GetProfileInt(L"settings", L"x", 5), 5);
        EXPECT_FALSE(m_app.WriteProfileInt(L"settings", L"x", 2));
        EXPECT_EQ(get(), bytes);
    }
    std::filesystem::remove(m_file);
    std::filesystem::create_directory(m_file);
    EXPECT_EQ(m_app.GetProfileInt(L"settings", L"x", 5), 5);
    EXPECT_FALSE(m_app.WriteProfileInt(L"settings", L"x", 2));
    std::filesystem::remove(m_file);
    mkfifo(m_file.c_str(), 0600);
    EXPECT_EQ(m_app.GetProfileInt(L"settings", L"x", 5), 5); // and does not wait for a writer
    std::filesystem::remove(m_file);
}

TEST_F(NativeProfile, AnyBytesCostNothingWorse)
{
    std::mt19937 random(5);
    std::string const pieces[] = { "[", "]", "=", "\n", "\r", ";", "#", "settings", "x", "\"", "%",
        "%u", "D800", "hex:", "0", "<<<", " ", "\\", "\xFF", "\xC3\xA9", "\xEF\xBB\xBF" };
    for (int round = 0; round < 300; ++round) {
        std::string bytes;
        for (auto count = random() % 60; count > 0; --count)
            bytes += pieces[random() % std::size(pieces)];
        put(bytes);
        m_app.GetProfileString(L"settings", L"x");
        void *data = nullptr;
        unsigned int size = 0;
        m_app.GetProfileBinary(L"settings", L"x", &data, &size);
        CWinApp::Free(data);
        if (round % 10 != 0)
            continue;
        ASSERT_TRUE(m_app.WriteProfileString(L"settings", L"y", L"kept")) << bytes;
        platform::release_profile();
        ASSERT_EQ(m_app.GetProfileString(L"settings", L"y"), L"kept") << bytes;
    }
}

} // namespace
