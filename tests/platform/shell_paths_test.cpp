// SPDX-License-Identifier: MIT
#include "kortools/platform/shell_paths.h"
#include "tests/support/oracle.h"

#include <gtest/gtest.h>
#include <string>

using kor_test::OracleRow;
using kor_test::to_wide;
using kor_test::unescape;
using kortools::platform::PathCut;
using kortools::platform::PathEnd;
using kortools::platform::PathText;

namespace portable = kortools::platform::portable;

namespace {

// Compares results with the cells of a row; a cell "\-" has none.
class RowChecker {
public:
    explicit RowChecker(OracleRow const &row)
        : m_row(row)
    {
    }
    void check(std::size_t column, bool result) const
    {
        if (m_row[column] != "\\-") {
            EXPECT_EQ(result ? "1" : "0", m_row[column]) << where(column);
        }
    }
    void check(std::size_t column, std::wstring_view result) const
    {
        if (m_row[column] != "\\-") {
            EXPECT_EQ(kor_test::to_units(result), unescape(m_row[column])) << where(column);
        }
    }

private:
    std::string where(std::size_t column) const
    {
        return m_row[0] + " | " + m_row[1] + ", column " + std::to_string(column);
    }

    OracleRow const &m_row;
};

} // namespace

TEST(ShellPaths, OnePathGivesTheRecordedResults)
{
    for (OracleRow const &row : kor_test::read_oracle("shell_paths.tsv")) {
        RowChecker const checker(row);
        std::wstring const text = to_wide(unescape(row[0]));
        std::wstring_view const path = text;
        checker.check(1, path.substr(portable::find_file_name(path)));
        checker.check(2, path.substr(0, portable::find_extension(path)));
        checker.check(3, path.substr(portable::find_extension(path)));
        checker.check(4, portable::is_url(path));
        checker.check(5, portable::is_unc_path(path));
        checker.check(6, portable::is_unc_server_share(path));
        checker.check(7, portable::is_relative_path(path));
        checker.check(8, portable::is_root_path(path));
        PathCut const root = portable::strip_to_root(path);
        checker.check(9, root.is_done);
        checker.check(10, path.substr(0, root.length));
        PathCut const directory = portable::remove_file_spec(path);
        checker.check(11, directory.is_done);
        checker.check(12, path.substr(0, directory.length));
        PathText canonical;
        checker.check(13, portable::canonicalize_path(path, canonical));
        checker.check(14, canonical.view());
    }
}

TEST(ShellPaths, TwoPathsGiveTheRecordedResults)
{
    for (OracleRow const &row : kor_test::read_oracle("relative_paths.tsv")) {
        RowChecker const checker(row);
        std::wstring const from = to_wide(unescape(row[0]));
        std::wstring const to = to_wide(unescape(row[1]));
        for (std::size_t kind = 0; kind < 4; ++kind) {
            PathText relative;
            checker.check(2 + 2 * kind,
                portable::make_relative_path({ from, kind >= 2 }, { to, kind % 2 != 0 }, relative));
            checker.check(3 + 2 * kind, relative.view());
        }
    }
}
