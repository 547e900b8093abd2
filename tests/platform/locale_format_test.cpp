// SPDX-License-Identifier: MIT
#include "kortools/platform/locale_format.h"

#include "tests/support/oracle.h"

#include <gtest/gtest.h>
#include <map>

using namespace kortools::platform;

namespace {

void expect_text(std::wstring const &text, std::string const &count, std::string const &expected,
    kor_test::OracleRow const &row)
{
    if (count == "\\-") // not recorded
        return;
    EXPECT_EQ(text, kor_test::to_wide(kor_test::unescape(expected))) << testing::PrintToString(row);
}

TEST(LocaleFormat, DatesAndTimesAreAsRecorded)
{
    std::map<std::string, std::string> const names = { { "0409", "en-US" },
        { "040C", "fr_FR.UTF-8" }, { "0407", "de-DE" }, { "0411", "ja_JP" } };
    for (kor_test::OracleRow const &row : kor_test::read_oracle("locale_dates.tsv")) {
        std::string const &locale = names.at(row[0]);
        DateTime const time { std::stoi(row[1]), std::stoi(row[2]), std::stoi(row[3]),
            std::stoi(row[4]), std::stoi(row[5]), std::stoi(row[6]) };
        expect_text(format_date(time, DateLength::Long, locale), row[7], row[8], row);
        expect_text(format_date(time, DateLength::Short, locale), row[9], row[10], row);
        expect_text(format_time_of_day(time, locale), row[11], row[12], row);
    }
}

} // namespace
