// SPDX-License-Identifier: MIT
#include "kortools/platform/locale_format.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace kortools::platform;

namespace {

constexpr DateTime summer { 2024, 7, 5, 14, 5, 9 };

// The environment's three variables; null for one that is not set.
void set_environment(char const *all, char const *time, char const *lang)
{
    std::pair<char const *, char const *> const variables[]
        = { { "LC_ALL", all }, { "LC_TIME", time }, { "LANG", lang } };
    for (auto const &[name, value] : variables)
        value ? setenv(name, value, 1) : unsetenv(name);
}

TEST(UserLocale, IsTheFirstOfThreeVariablesThatIsNotEmpty)
{
    set_environment(nullptr, nullptr, nullptr);
    EXPECT_EQ(format_date(summer, DateLength::Short), L"7/5/2024");
    set_environment("", "", "fr_FR.UTF-8");
    EXPECT_EQ(format_date(summer, DateLength::Long), L"vendredi 5 juillet 2024");
    set_environment("", "de_DE", "fr_FR.UTF-8");
    EXPECT_EQ(format_date(summer, DateLength::Short), L"05.07.2024");
    set_environment("ja_JP.UTF-8", "de_DE", "fr_FR.UTF-8");
    EXPECT_EQ(format_date(summer, DateLength::Long), L"2024\u5E747\u67085\u65E5");
    set_environment("C.UTF-8", "de_DE", "fr_FR.UTF-8");
    EXPECT_EQ(format_time_of_day(summer), L"14:05 PM");
}

} // namespace
