// SPDX-License-Identifier: MIT
#include "kortools/platform/shell_paths.h"

#include "kortools/core/xstring.h"
#include "kortools/platform/file_system.h"
#include "tests/support/oracle.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <initializer_list>
#include <map>
#include <random>
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

constexpr int corpus_size = 40000;

// Paths from pieces that mean something to one rule or another.
class PathGenerator {
public:
    explicit PathGenerator(unsigned seed)
        : m_random(seed)
    {
    }
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
        return m_random() % 50 == 0 ? path + std::wstring(m_random() % 300, L'q') : path;
    }
    // Names have three letters or more: Wine reads behind a common part of two.
    std::wstring make_plain_path(std::wstring const &root)
    {
        std::wstring path = root;
        for (unsigned rest = pick_number(6); rest > 0; --rest)
            path += std::wstring(pick({ L"dir", L"DIR", L"Dir.x", L"\u00E9t\u00E9", L"a b" }))
                + L'\\';
        return path + pick({ L"", L"fil", L"F.e" });
    }
    wchar_t const *pick(std::initializer_list<wchar_t const *> choices)
    {
        return choices.begin()[m_random() % choices.size()];
    }
    unsigned pick_number(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }

private:
    std::mt19937 m_random;
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

namespace {

namespace system_paths = kortools::platform;

// What the system may answer otherwise than the portable rules, and why.
struct Exception {
    char const *reason;
    bool (*applies)(std::wstring_view path);
};

bool is_verbatim(std::wstring_view path)
{
    return path.starts_with(L"\\\\?\\");
}

bool has_odd_drive(std::wstring_view path)
{
    bool const has_colon = path.size() >= 2 && path[1] == L':';
    bool const has_letter = has_colon && path[0] < 0x80 && std::isalpha(static_cast<int>(path[0]));
    return has_colon != has_letter || path.starts_with(L":\\")
        || path.find(L"\\:\\") != std::wstring_view::npos;
}

bool has_empty_share(std::wstring_view path)
{
    std::size_t const end
        = path.starts_with(L"\\\\") ? path.find(L'\\', 2) : std::wstring_view::npos;
    return end != std::wstring_view::npos
        && (end == 2 || end + 1 == path.size() || path[end + 1] == L'\\');
}

bool has_double_colon(std::wstring_view path)
{
    return path.find(L"::") != std::wstring_view::npos;
}

bool is_server(std::wstring_view path)
{
    return path.starts_with(L"\\\\") && path.find(L'\\', 2) == std::wstring_view::npos;
}

bool is_too_long(std::wstring_view path)
{
    return path.size() >= kortools::platform::max_path_units;
}

bool has_dotted_name(std::wstring_view path)
{
    for (std::size_t at = path.find(L".."); at != std::wstring_view::npos;
         at = path.find(L"..", at + 1)) {
        bool const begins = at == 0 || path[at - 1] == L'\\';
        bool const ends = at + 2 == path.size() || path[at + 2] == L'\\';
        if (begins && (!ends || at == 0))
            return true;
    }
    return path.starts_with(L".\\") || path.find(L":.\\") != std::wstring_view::npos
        || path.ends_with(L'.');
}

// Paths of the form "\\...\.." are left out altogether: where the server ends is what differs.
bool may_leave_its_share(std::wstring_view path)
{
    PathText canonical;
    portable::canonicalize_path(path, canonical);
    bool const is_unc = path.starts_with(L"\\\\") || canonical.view().starts_with(L"\\\\");
    return canonical.view().ends_with(L'.')
        || (is_unc && (path.find(L"\\.") != std::wstring_view::npos || path.starts_with(L"\\\\.")));
}

constexpr Exception verbatim { "\"\\\\?\\\" differs between versions", is_verbatim };
constexpr Exception odd_drive { "only letters are documented as drives", has_odd_drive };
constexpr Exception empty_share { "Wine takes \\\\server\\ for a root", has_empty_share };
constexpr Exception double_colon { "Wine skips what follows a colon", has_double_colon };

using Exceptions = std::initializer_list<Exception>;

// Counts the paths of a corpus for which the system and the portable rules agree.
class Comparison {
public:
    template <class T>
    void check(char const *name, std::wstring_view path, T system, T own, Exceptions exceptions)
    {
        for (Exception const &each : exceptions) {
            if (each.applies(path))
                return;
        }
        ++m_counts[name];
        EXPECT_EQ(system, own) << name << " of " << kortools::core::quote(path);
    }
    void expect_counts(std::size_t functions, int least) const
    {
        EXPECT_EQ(m_counts.size(), functions);
        for (auto const &[name, count] : m_counts)
            EXPECT_GE(count, least) << name;
    }

private:
    std::map<std::string, int> m_counts;
};

struct Built {
    bool is_done;
    std::wstring text;

    bool operator==(Built const &) const = default;
};

template <class Build> Built build(Build function)
{
    PathText text;
    bool const is_done = function(text);
    return { is_done, std::wstring(text.view()) };
}

void PrintTo(Built const &built, std::ostream *stream)
{
    *stream << built.is_done << ' ' << kortools::core::quote(built.text);
}

} // namespace

namespace kortools::platform {

void PrintTo(PathCut const &cut, std::ostream *stream)
{
    *stream << cut.length << (cut.is_done ? " done" : "");
}

} // namespace kortools::platform

// The differences were recorded under Wine; shell_paths.tsv has none of these paths.
TEST(ShellPaths, TheSystemAgreesOnOnePath)
{
    PathGenerator generator(1);
    Comparison comparison;
    for (int i = 0; i < corpus_size; ++i) {
        std::wstring const text = generator.make_path();
        std::wstring_view const path = text;
        auto const check = [&]<class T>(char const *name, T (*system)(std::wstring_view),
                               T (*own)(std::wstring_view), Exceptions exceptions) {
            comparison.check(name, path, system(path), own(path), exceptions);
        };
        check("find_file_name", system_paths::find_file_name, portable::find_file_name, {});
        check("find_extension", system_paths::find_extension, portable::find_extension, {});
        check("is_url", system_paths::is_url, portable::is_url, {});
        check("is_unc", system_paths::is_unc_path, portable::is_unc_path, { verbatim });
        check("is_share", system_paths::is_unc_server_share, portable::is_unc_server_share,
            { verbatim, empty_share });
        check("is_relative", system_paths::is_relative_path, portable::is_relative_path,
            { odd_drive });
        check("is_root", system_paths::is_root_path, portable::is_root_path,
            { verbatim, odd_drive, empty_share });
        check("strip_to_root", system_paths::strip_to_root, portable::strip_to_root,
            { verbatim, odd_drive, empty_share, double_colon });
        check("remove_file_spec", system_paths::remove_file_spec, portable::remove_file_spec,
            { double_colon, { "Wine leaves \"\\\\\" of a server", is_server } });
        Built const system = build([&](PathText &result) { // Wine's faults
            return system_paths::canonicalize_path(path, result);
        });
        Built const own
            = build([&](PathText &result) { return portable::canonicalize_path(path, result); });
        comparison.check("canonicalize", path, system, own,
            { verbatim, odd_drive, { "Wine accepts 260 characters", is_too_long },
                { "Wine takes \"..a\" for \"..\", keeps it at the front, and \"\\.\" at the end",
                    has_dotted_name },
                { "versions differ on what \"..\" does to a share", may_leave_its_share } });
    }
    comparison.expect_counts(10, corpus_size / 2);
}

TEST(ShellPaths, TheSystemAgreesOnRelativePaths)
{
    PathGenerator generator(2);
    Comparison comparison;
    for (int i = 0; i < corpus_size; ++i) {
        auto const make_root = [&] {
            return generator.pick({ L"C:\\", L"c:\\", L"\\\\s\\h\\", L"\\", L"", L"D:\\" });
        };
        wchar_t const *const root = make_root();
        std::wstring const start = generator.make_plain_path(root);
        std::wstring const target
            = generator.make_plain_path(generator.pick_number(4) == 0 ? make_root() : root);
        PathEnd const from { start, generator.pick_number(2) == 0 };
        PathEnd const to { target, generator.pick_number(2) == 0 };
        Built const system = build(
            [&](PathText &result) { return system_paths::make_relative_path(from, to, result); });
        Built const own = build(
            [&](PathText &result) { return portable::make_relative_path(from, to, result); });
        comparison.check(
            "relative", std::wstring(start).append(L" => ").append(target), system, own, {});
    }
    comparison.expect_counts(1, corpus_size / 2);
}

TEST(ShellPaths, TheRootIsWhereRemovingNamesComesTo)
{
    PathGenerator generator(3);
    for (int i = 0; i < corpus_size / 4; ++i) {
        std::wstring const path = generator.make_path();
        std::wstring_view rest = path;
        bool is_root = portable::is_root_path(rest);
        while (!is_root) {
            PathCut const cut = portable::remove_file_spec(rest);
            if (!cut.is_done)
                break;
            rest = rest.substr(0, cut.length);
            is_root = portable::is_root_path(rest);
        }
        EXPECT_EQ(portable::strip_to_root(path), (PathCut { rest.size(), is_root }))
            << kortools::core::quote(path);
    }
}

TEST(ShellPaths, CanonicalPathsStayAsTheyAre)
{
    PathGenerator generator(4);
    for (int i = 0; i < corpus_size / 4; ++i) {
        std::wstring const path = generator.make_path();
        PathText once;
        PathText twice;
        if (!portable::canonicalize_path(path, once))
            continue;
        EXPECT_TRUE(portable::canonicalize_path(once.view(), twice) || once.length >= 259);
        EXPECT_EQ(once.view(), twice.view()) << kortools::core::quote(path);
    }
}

TEST(ShellPaths, ARelativePathLeadsToItsTarget)
{
    PathGenerator generator(5);
    auto const to_upper = [](std::wstring text) {
        std::ranges::transform(text, text.begin(),
            [](wchar_t ch) { return ch < 0x80 ? static_cast<wchar_t>(std::toupper(ch)) : ch; });
        return text;
    };
    for (int i = 0; i < corpus_size / 4; ++i) {
        std::wstring const from = generator.make_plain_path(L"C:\\") + L"end";
        std::wstring const to = generator.make_plain_path(L"c:\\") + L"fil";
        PathText way;
        ASSERT_TRUE(portable::make_relative_path({ from, true }, { to, false }, way));
        PathText target;
        ASSERT_TRUE(portable::canonicalize_path(from + L'\\' + std::wstring(way.view()), target));
        EXPECT_EQ(to_upper(std::wstring(target.view())), to_upper(to))
            << kortools::core::quote(from) << kortools::core::quote(to);
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

TEST(ShellPaths, ANetworkPathIsOnAShareOrAMappedDrive)
{
    EXPECT_TRUE(system_paths::is_network_path(L"\\\\server\\share\\a"));
    EXPECT_FALSE(system_paths::is_network_path(L"C:\\a"));
    EXPECT_FALSE(system_paths::is_network_path(L"a"));
    kortools::platform::map_drive(L'N', "/");
    EXPECT_FALSE(system_paths::is_network_path(L"N:\\a")) << "the drive is one of this machine";
    kortools::platform::map_drive(L'N', "");
    EXPECT_FALSE(system_paths::is_network_path(L"N:\\a")) << "there is no such drive";
}
