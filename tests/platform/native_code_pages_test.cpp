// SPDX-License-Identifier: MIT
// What exists on Linux only: the ANSI page that follows from the locale, and the pages that go
// through a converter.
#include "tests/platform/code_page_support.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <clocale>
#include <cstdlib>

using namespace kortools::platform;
using kor_test::decode;
using kor_test::encode;

// In a process of its own, since a process asks once: 0 when its ANSI page is the expected one.
// The C library's current locale stays "C".
static int has_ansi_page(std::vector<std::string> const &arguments)
{
    setenv("LC_ALL", arguments.at(0).c_str(), 1);
    if (arguments.size() > 2)
        setenv("LOCPATH", arguments[2].c_str(), 1);
    bool const is_right = std::to_string(get_ansi_code_page()) == arguments.at(1)
        && std::setlocale(LC_CTYPE, nullptr) == std::string("C");
    std::_Exit(is_right ? 0 : 1); // the C library loses the text of LOCPATH: no search for leaks
}
static kor_test::ChildPart const s_has_ansi_page("has_ansi_page", has_ansi_page);

TEST(NativeCodePages, AnsiPageFollowsTheUsersLocale)
{
    for (char const *const locale : { "C", "C.UTF-8", "no_SUCH" })
        EXPECT_EQ(kor_test::run_child("has_ansi_page", { locale, "65001" }), 0) << locale;
    TempFolder const folder;
    std::string const path = folder.GetPath().string();
    std::string const command
        = "localedef -i de_DE -f ISO-8859-1 " + path + "/kor_DE >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        GTEST_SKIP() << "no sources of locales to make one from";
    EXPECT_EQ(kor_test::run_child("has_ansi_page", { "kor_DE", "28591", path }), 0);
}

// And what a byte decodes to is encoded as that byte, or as another one of the same meaning.
TEST(NativeCodePages, EveryPageConvertsBackAndForth)
{
    int pages = 0;
    for (unsigned int page = 2; page < 0x10000; ++page) {
        if (page == 3 || !is_code_page(page))
            continue;
        ++pages;
        EXPECT_EQ(decode(page, *encode(page, L"KOR 16")), L"KOR 16") << page;
        for (int byte = 0; byte < 256; ++byte) {
            auto const text = decode(page, std::string(1, static_cast<char>(byte)));
            if (text->size() == 1 && text != L"?" && text != L"\xFFFD" && text != L"\x30FB") {
                EXPECT_EQ(decode(page, *encode(page, *text)), text) << page << ", " << byte;
            }
        }
    }
    EXPECT_GE(pages, 100);
}

TEST(NativeCodePages, ConvertersGiveKnownBytes)
{
    EXPECT_EQ(
        encode(54936, L"a\x20AC\x0081\U0001F600"), "a\xA2\xE3\x81\x30\x81\x31\x94\x39\xFC\x36");
    EXPECT_EQ(decode(54936, "\x94\x39\xFC\x36z"), L"\U0001F600z");
    EXPECT_EQ(decode(54936, "a\xFFz"), L"a?z");
    EXPECT_EQ(encode(51932, L"\x6F22\xFF71?\U0001F600."), "\xB4\xC1\x8E\xB1???.");
    EXPECT_EQ(encode(50220, L"a\x6F22z"), "a\x1B$B4A\x1B(Bz");
    EXPECT_EQ(decode(50220, "\x1B$B4A\x1B(Bz"), L"\x6F22z");
    EXPECT_EQ(encode(65000, L"1+1\x20AC"), "1+-1+IKw-");
}

// Long enough for several chunks; the character of two units falls on each place of a chunk's end.
TEST(NativeCodePages, ConvertersJoinTheirChunks)
{
    for (std::size_t const start : { 509U, 510U, 511U, 512U, 513U }) {
        for (wchar_t const *const second : { L"\U0001F600", L"x\x20AC" }) {
            std::wstring const text
                = std::wstring(start, L'x') + second + std::wstring(600, L'\x6F22');
            for (unsigned const page : { 54936U, 65000U })
                EXPECT_EQ(decode(page, *encode(page, text)), text) << page << ", " << start;
        }
    }
}
