// SPDX-License-Identifier: MIT
#include "kortools/platform/language.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

TEST(Language, LocaleNamesGiveTheWindowsNumber)
{
    std::map<std::string, unsigned int> const expected = { { "fr_CA.UTF-8", 12 }, { "fr", 12 },
        { "de_DE@euro", 7 }, { "sr@latin", 26 }, { "C.UTF-8", 9 }, { "C", 9 }, { "", 9 },
        { "fry_NL", 9 }, { "f", 9 }, { "af-ZA", 54 }, { "zh_CN", 4 }, { "zz", 9 } };
    for (auto const &[name, number] : expected)
        EXPECT_EQ(kortools::platform::get_primary_language(name), number) << name;
}

} // namespace
