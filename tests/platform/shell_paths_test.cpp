// SPDX-License-Identifier: MIT
#include "kortools/platform/shell_paths.h"

#include "kortools/platform/file_system.h"
#include "tests/support/oracle.h"

#include <cctype>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iterator>
#include <random>
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

namespace {

constexpr int corpus_size = 40000;

// Paths from pieces that mean something to one rule or another.
class PathGenerator {
public:
    std::wstring make_path()
    {
        std::wstring path = pick({ L"", L"", L"C:", L"C:\\", L"\\", L"\\\\", L"\\\\server\\share\\",
            L"http:", L"\\\\?\\C:\\", L"..\\", L"c:/" });
        for (unsigned rest = pick_number(8); rest > 0; --rest) {
            path += pick(
                { L"a", L"B", L"dir.d", L"x.y.z", L" ", L".", L"..", L"...", L"\u00E9t\u00E9", L"*",
                    L"?", L"-", L":", L"D:", L"\U0001F600", L"\u8868", L"a long name" });
            path += pick({ L"", L"\\", L"\\", L"\\", L"\\", L"\\\\", L"/", L"\\..\\", L"\\.\\" });
        }
        return pick_number(50) == 0 ? path + std::wstring(pick_number(300), L'q') : path;
    }
    // Names have three letters or more: Wine reads behind a common part of two.
    std::wstring make_plain_path(std::wstring path)
    {
        for (unsigned rest = pick_number(6); rest > 0; --rest)
            path += pick({ L"dir\\", L"DIR\\", L"Dir.x\\", L"\u00E9t\u00E9\\", L"a b\\" });
        return path + pick({ L"", L"fil", L"F.e" });
    }
    wchar_t const *pick(std::initializer_list<wchar_t const *> choices)
    {
        return choices.begin()[m_random() % choices.size()];
    }
    unsigned pick_number(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }

private:
    std::mt19937 m_random { 1 };
};

// Where Wine answers otherwise than the rules, or versions of the system do; no such path is
// recorded.
enum Oddity : unsigned {
    verbatim = 1, // "\\?\"
    drive = 2,    // a letter that is none, or no letter
    share = 4,    // "\\server\" is a root for Wine
    colons = 8,   // what follows is skipped
    server = 16,  // "\\" is left of it
    size = 32,    // 260 characters are accepted
    dots = 64     // "..a" is "..", which stays in front, as "\." at the end; or ".." in a share
};

bool has_odd_dots(std::wstring_view path)
{
    for (std::size_t at = path.find(L".."); at != path.npos; at = path.find(L"..", at + 1)) {
        bool const begins = at == 0 || path[at - 1] == L'\\';
        bool const ends = at + 2 == path.size() || path[at + 2] == L'\\';
        if (begins && (!ends || at == 0))
            return true;
    }
    PathText canonical;
    portable::canonicalize_path(path, canonical);
    bool const is_unc = path.starts_with(L"\\\\") || canonical.view().starts_with(L"\\\\");
    return path.starts_with(L".\\") || path.find(L":.\\") != path.npos || path.ends_with(L'.')
        || canonical.view().ends_with(L'.')
        || (is_unc && (path.find(L"\\.") != path.npos || path.starts_with(L"\\\\.")));
}

unsigned get_oddities(std::wstring_view path)
{
    bool const has_colon = path.size() >= 2 && path[1] == L':';
    bool const has_letter = has_colon && path[0] < 0x80 && std::isalpha(static_cast<int>(path[0]));
    bool const is_odd_drive
        = has_colon != has_letter || path.starts_with(L":\\") || path.find(L"\\:\\") != path.npos;
    bool const is_unc = path.starts_with(L"\\\\");
    std::size_t const end = is_unc ? path.find(L'\\', 2) : path.npos;
    bool const has_empty_share
        = end != path.npos && (end == 2 || end + 1 == path.size() || path[end + 1] == L'\\');
    return (path.starts_with(L"\\\\?\\") ? verbatim : 0U) | (is_odd_drive ? drive : 0U)
        | (has_empty_share ? share : 0U) | (path.find(L"::") != path.npos ? colons : 0U)
        | (is_unc && end == path.npos ? server : 0U)
        | (path.size() >= kortools::platform::max_path_units ? size : 0U)
        | (has_odd_dots(path) ? dots : 0U);
}

} // namespace

TEST(ShellPaths, TheSystemAgreesOnTensOfThousandsOfPaths)
{
    constexpr unsigned question_oddities[]
        = { 0, verbatim, verbatim | share, drive, verbatim | drive | share };
    constexpr unsigned cut_oddities[] = { verbatim | drive | share | colons, colons | server };
    PathGenerator generator;
    Functions const &own = both[0], &system = both[1];
    int canonical_paths = 0;
    for (int i = 0; i < corpus_size && !testing::Test::HasFailure(); ++i) {
        std::wstring const path = generator.make_path();
        SCOPED_TRACE(testing::PrintToString(path));
        unsigned const oddities = get_oddities(path);
        EXPECT_EQ(system.find_file_name(path), own.find_file_name(path));
        EXPECT_EQ(system.find_extension(path), own.find_extension(path));
        for (std::size_t at = 0; at < std::size(question_oddities); ++at) {
            EXPECT_TRUE((oddities & question_oddities[at]) != 0
                || system.questions[at](path) == own.questions[at](path))
                << at;
        }
        for (std::size_t at = 0; at < std::size(cut_oddities); ++at) {
            EXPECT_TRUE(
                (oddities & cut_oddities[at]) != 0 || system.cuts[at](path) == own.cuts[at](path))
                << at;
        }
        if ((oddities & (verbatim | drive | size | dots)) == 0) {
            PathText results[2];
            ++canonical_paths;
            EXPECT_EQ(system.canonicalize(path, results[0]), own.canonicalize(path, results[1]));
            EXPECT_EQ(results[0].view(), results[1].view());
        }
    }
    EXPECT_GT(canonical_paths, corpus_size / 3);
}

TEST(ShellPaths, TheSystemAgreesOnTensOfThousandsOfRelativePaths)
{
    PathGenerator generator;
    for (int i = 0; i < corpus_size && !testing::Test::HasFailure(); ++i) {
        auto const make_root = [&] {
            return generator.pick({ L"C:\\", L"c:\\", L"\\\\s\\h\\", L"\\", L"", L"D:\\" });
        };
        wchar_t const *const root = make_root();
        std::wstring const start = generator.make_plain_path(root);
        std::wstring const target
            = generator.make_plain_path(generator.pick_number(4) == 0 ? make_root() : root);
        PathEnd const from { start, generator.pick_number(2) == 0 };
        PathEnd const to { target, generator.pick_number(2) == 0 };
        PathText results[2];
        EXPECT_EQ(both[1].make_relative(from, to, results[1]),
            both[0].make_relative(from, to, results[0]));
        EXPECT_EQ(results[1].view(), results[0].view())
            << testing::PrintToString(start) << testing::PrintToString(target);
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
