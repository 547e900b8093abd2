// SPDX-License-Identifier: MIT
#include "kortools/platform/shell_paths.h"

#include "kortools/platform/file_system.h"
#include "tests/support/oracle.h"

#include <gtest/gtest.h>
#include <string>

namespace system_paths = kortools::platform;
namespace portable = kortools::platform::portable;
using kor_test::OracleRow;
using kortools::platform::PathCut;
using kortools::platform::PathEnd;
using kortools::platform::PathText;

namespace {

// The rules of this library and what the system answers, which are the same on Linux.
struct Functions {
    std::size_t (*find_file_name)(std::wstring_view);
    std::size_t (*find_extension)(std::wstring_view);
    bool (*questions[5])(std::wstring_view);
    PathCut (*cuts[2])(std::wstring_view);
    bool (*canonicalize)(std::wstring_view, PathText &);
    bool (*make_relative)(PathEnd, PathEnd, PathText &);
};
Functions const both[] = {
    { portable::find_file_name, portable::find_extension,
        { portable::is_url, portable::is_unc_path, portable::is_unc_server_share,
            portable::is_relative_path, portable::is_root_path },
        { portable::strip_to_root, portable::remove_file_spec }, portable::canonicalize_path,
        portable::make_relative_path },
    { system_paths::find_file_name, system_paths::find_extension,
        { system_paths::is_url, system_paths::is_unc_path, system_paths::is_unc_server_share,
            system_paths::is_relative_path, system_paths::is_root_path },
        { system_paths::strip_to_root, system_paths::remove_file_spec },
        system_paths::canonicalize_path, system_paths::make_relative_path },
};

std::wstring read_text(std::string const &field)
{
    return kor_test::to_wide(kor_test::unescape(field));
}

// Compares results with the cells of a row in turn; a cell "\-" has none.
class RowChecker {
public:
    RowChecker(OracleRow const &row, std::size_t first)
        : m_row(row)
        , m_column(first)
    {
    }
    void check(std::wstring_view result)
    {
        std::string const &cell = m_row.at(m_column++);
        if (cell != "\\-") {
            EXPECT_EQ(result, read_text(cell)) << m_row[0] << " | " << m_row[1] << ", " << m_column;
        }
    }
    void check(bool result) { check(std::wstring_view(result ? L"1" : L"0")); }
    void check(bool result, std::wstring_view text)
    {
        check(result);
        check(text);
    }

private:
    OracleRow const &m_row;
    std::size_t m_column;
};

} // namespace

TEST(ShellPaths, OnePathGivesTheRecordedResults)
{
    for (OracleRow const &row : kor_test::read_oracle("shell_paths.tsv")) {
        std::wstring const text = read_text(row[0]);
        std::wstring_view const path = text;
        for (Functions const &functions : both) {
            RowChecker checker(row, 1);
            checker.check(path.substr(functions.find_file_name(path)));
            std::size_t const extension = functions.find_extension(path);
            checker.check(path.substr(0, extension));
            checker.check(path.substr(extension));
            for (auto const question : functions.questions)
                checker.check(question(path));
            for (auto const cut : functions.cuts)
                checker.check(cut(path).is_done, path.substr(0, cut(path).length));
            PathText canonical;
            bool const is_done = functions.canonicalize(path, canonical);
            checker.check(is_done, canonical.view());
        }
    }
}

TEST(ShellPaths, TwoPathsGiveTheRecordedResults)
{
    for (OracleRow const &row : kor_test::read_oracle("relative_paths.tsv")) {
        std::wstring const from = read_text(row[0]);
        std::wstring const to = read_text(row[1]);
        for (Functions const &functions : both) {
            RowChecker checker(row, 2);
            for (int kind = 0; kind < 4; ++kind) {
                PathText relative;
                bool const is_done
                    = functions.make_relative({ from, kind >= 2 }, { to, kind % 2 != 0 }, relative);
                checker.check(is_done, relative.view());
            }
        }
    }
}

TEST(ShellPaths, LengthsCountUtf16Units)
{
    std::wstring const root = L"C:\\";
    PathText result;
    EXPECT_TRUE(portable::canonicalize_path(root + std::wstring(256, L'a'), result));
    EXPECT_FALSE(portable::canonicalize_path(root + std::wstring(257, L'a'), result));
    EXPECT_EQ(result.length, 0U);
    std::wstring emoji = root;
    for (int i = 0; i < 128; ++i)
        emoji += L"\U0001F600";
    EXPECT_TRUE(portable::canonicalize_path(emoji, result));
    EXPECT_EQ(result.view(), emoji);
    EXPECT_FALSE(portable::canonicalize_path(emoji + L'a', result));

    std::wstring deep = root;
    for (int i = 0; i < 80; ++i)
        deep += L"d\\";
    std::wstring const near = root + std::wstring(14, L'x'); // and 80 * 3 + 4 makes 258
    EXPECT_TRUE(portable::make_relative_path({ deep + L"d", true }, { near, false }, result));
    EXPECT_EQ(result.length, 81 * 3 + 14U);
    EXPECT_FALSE(portable::make_relative_path({ deep + L"d\\d", true }, { near, false }, result));
    EXPECT_EQ(result.length, 0U);
}
