// SPDX-License-Identifier: MIT
// What exists on Linux only: the ANSI page that follows from the locale, and the pages that go
// through a converter.
#include "kortools/platform/code_pages.h"
#include "kortools/platform/posix/code_page_catalog.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <string>

using namespace kortools::platform;

namespace {

std::wstring to_wide(unsigned int page, std::string const &bytes)
{
    auto const size = static_cast<long long>(bytes.size());
    long long const count = narrow_to_wide(page, bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(std::max(count, 0LL)), L'\0');
    EXPECT_EQ(narrow_to_wide(page, bytes.data(), size, text.data(), count), count);
    if (count > 0) {
        EXPECT_EQ(narrow_to_wide(page, bytes.data(), size, text.data(), count - 1), -1);
    }
    return text;
}

std::string to_bytes(unsigned int page, std::wstring const &text)
{
    auto const length = static_cast<long long>(text.size());
    long long const count = wide_to_narrow(page, text.data(), length, nullptr, 0);
    std::string bytes(static_cast<std::size_t>(std::max(count, 0LL)), '\0');
    EXPECT_EQ(wide_to_narrow(page, text.data(), length, bytes.data(), count), count);
    if (count > 0) {
        EXPECT_EQ(wide_to_narrow(page, text.data(), length, bytes.data(), count - 1), -1);
    }
    return bytes;
}

// In a process of its own, since a process asks once: 0 when its ANSI page is the expected one.
// The C library's current locale stays "C".
int has_ansi_page(std::vector<std::string> const &arguments)
{
    setenv("LC_ALL", arguments.at(0).c_str(), 1);
    if (arguments.size() > 2)
        setenv("LOCPATH", arguments[2].c_str(), 1);
    bool const is_right = std::to_string(get_ansi_code_page()) == arguments.at(1)
        && std::setlocale(LC_CTYPE, nullptr) == std::string("C");
    std::_Exit(is_right ? 0 : 1); // the C library loses the text of LOCPATH: no search for leaks
}
kor_test::ChildPart const s_has_ansi_page("has_ansi_page", has_ansi_page);

} // namespace

TEST(NativeCodePages, AnsiPageFollowsTheUsersLocale)
{
    for (char const *const locale : { "C", "POSIX", "C.UTF-8", "no_SUCH" })
        EXPECT_EQ(kor_test::run_child("has_ansi_page", { locale, "65001" }), 0) << locale;
}

TEST(NativeCodePages, AnsiPageOfAnEightBitLocale)
{
    TempFolder const folder;
    std::string const path = folder.GetPath().string();
    std::string const command
        = "localedef -i de_DE -f ISO-8859-1 " + path + "/kor_DE >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        GTEST_SKIP() << "no sources of locales to make one from";
    EXPECT_EQ(kor_test::run_child("has_ansi_page", { "kor_DE", "28591", path }), 0);
}

TEST(NativeCodePages, CharsetsAreFoundInAnySpelling)
{
    EXPECT_EQ(find_charset_page("ISO-8859-15"), 28605U);
    EXPECT_EQ(find_charset_page("iso8859_2"), 28592U);
    EXPECT_EQ(find_charset_page("KOI8-R"), 20866U);
    EXPECT_EQ(find_charset_page("EUC-JP"), 51932U);
    EXPECT_EQ(find_charset_page("CP1251"), 1251U);
    EXPECT_EQ(find_charset_page("ANSI_X3.4-1968"), 65001U);
    EXPECT_EQ(find_charset_page("UTF-8"), 65001U);
    EXPECT_EQ(find_charset_page("GEORGIAN-PS"), 65001U);
    EXPECT_EQ(find_charset_page(""), 65001U);
}

// And what a byte decodes to is encoded as that byte, or as another one of the same meaning.
TEST(NativeCodePages, EveryPageConvertsBackAndForth)
{
    int pages = 0;
    for (unsigned int page = 2; page < 0x10000; ++page) {
        if (page == 3 || !is_code_page(page))
            continue;
        ++pages;
        EXPECT_EQ(to_wide(page, to_bytes(page, L"KOR 16")), L"KOR 16") << page;
        for (int byte = 0; byte < 256; ++byte) {
            std::wstring const text = to_wide(page, std::string(1, static_cast<char>(byte)));
            if (text.size() == 1 && text != L"?" && text != L"\xFFFD" && text != L"\x30FB") {
                EXPECT_EQ(to_wide(page, to_bytes(page, text)), text) << page << ", " << byte;
            }
        }
    }
    EXPECT_GE(pages, 100);
}

TEST(NativeCodePages, ConvertersGiveKnownBytes)
{
    EXPECT_EQ(
        to_bytes(54936, L"a\x20AC\x0081\U0001F600"), "a\xA2\xE3\x81\x30\x81\x31\x94\x39\xFC\x36");
    EXPECT_EQ(to_wide(54936, "\x94\x39\xFC\x36z"), L"\U0001F600z");
    EXPECT_EQ(to_wide(54936, "a\xFFz"), L"a?z");
    EXPECT_EQ(to_bytes(51932, L"\x6F22\xFF71?"), "\xB4\xC1\x8E\xB1?");
    EXPECT_EQ(to_bytes(51932, L"\U0001F600."), "??.");
    EXPECT_EQ(to_bytes(50220, L"a\x6F22z"), "a\x1B$B4A\x1B(Bz");
    EXPECT_EQ(to_wide(50220, "\x1B$B4A\x1B(Bz"), L"\x6F22z");
    EXPECT_EQ(to_bytes(65000, L"1+1\x20AC"), "1+-1+IKw-");
}

// Long enough for several chunks; the character of two units falls on each place of a chunk's end.
TEST(NativeCodePages, ConvertersJoinTheirChunks)
{
    for (std::size_t const start : { 509U, 510U, 511U, 512U, 513U }) {
        std::wstring text
            = std::wstring(start, L'x') + L"\U0001F600" + std::wstring(600, L'\x6F22');
        EXPECT_EQ(to_wide(54936, to_bytes(54936, text)), text) << start;
        EXPECT_EQ(to_wide(65000, to_bytes(65000, text)), text) << start;
        text[start + 1] = L'\x20AC'; // and no state is left from before
        EXPECT_EQ(to_wide(65000, to_bytes(65000, text)), text) << start;
    }
}
