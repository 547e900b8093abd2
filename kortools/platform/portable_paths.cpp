// SPDX-License-Identifier: MIT
#include "kortools/platform/portable_paths.h"

#include "kortools/platform/wide_text.h"

#include <algorithm>
#include <array>

namespace kortools::platform::portable {
namespace {

using View = std::wstring_view;

constexpr std::size_t none = View::npos;

bool is_letter(wchar_t ch)
{
    return (ch >= L'A' && ch <= L'Z') || (ch >= L'a' && ch <= L'z');
}

wchar_t to_upper(wchar_t ch)
{
    return ch >= L'a' && ch <= L'z' ? static_cast<wchar_t>(ch - L'a' + L'A') : ch;
}

bool starts_with_drive(View path)
{
    return path.size() >= 2 && path[1] == L':' && is_letter(path[0]);
}

bool is_too_long(View path)
{
    if (path.size() >= max_path_units)
        return true;
    return path.size() >= max_path_units / 2
        && count_utf16_units(path.data(), path.size()) >= max_path_units;
}

// The length of "\\?\" and of "\\?\UNC\" at the front of a path.
struct Prefix {
    std::size_t length = 0;
    bool is_unc = false;
};

Prefix get_prefix(View path)
{
    if (!path.starts_with(LR"(\\?\)"))
        return {};
    static constexpr View unc = LR"(UNC\)";
    View const rest = path.substr(4);
    bool const is_unc = rest.size() >= unc.size()
        && std::equal(unc.begin(), unc.end(), rest.begin(),
            [](wchar_t a, wchar_t b) { return a == to_upper(b); });
    return is_unc ? Prefix { 8, true } : Prefix { 4, false };
}

// Where the server's name begins; none for a path without. Behind "\\?\" that is "?", and the
// volume its share, when there is no "UNC\".
std::size_t find_server(View path)
{
    Prefix const prefix = get_prefix(path);
    if (prefix.is_unc)
        return prefix.length;
    return path.starts_with(LR"(\\)") ? 2 : none;
}

// Colons are few and mostly at the front: looking for each from there on is the fastest.
std::size_t find_last_colon(View path)
{
    std::size_t last = none;
    for (std::size_t at = path.find(L':'); at != none; at = path.find(L':', at + 1))
        last = at;
    return last;
}

// The end of the drive or of the colon that is the last one, with one '\' behind it; else that of
// the one or two '\' at the front. remove_file_spec() takes nothing away before it.
std::size_t find_floor(View path)
{
    std::size_t floor = find_last_colon(path);
    if (floor != none)
        return floor + 1 + path.substr(floor + 1).starts_with(L'\\');
    floor = path.starts_with(L'\\');
    return floor + path.substr(floor).starts_with(L'\\');
}

// Where the last component and the '\' before it begin.
std::size_t find_directory_end(View path)
{
    std::size_t const floor = find_floor(path);
    std::size_t const last = path.rfind(L'\\');
    return last != none && last >= floor ? last : floor;
}

// "\\server" and "\\server\share", neither with a separator at its end.
bool is_server_or_share(View path, std::size_t server)
{
    View const names = path.substr(server);
    std::size_t const first = names.find(L'\\');
    return first == none || (names.find(L'\\', first + 1) == none && first + 1 != names.size());
}

// The longest part at the front, cut at separators, that is a server or a share.
std::size_t find_share_end(View path, std::size_t server)
{
    if (is_server_or_share(path, server))
        return path.size();
    std::size_t const first = path.find(L'\\', server);
    std::size_t const second = path.find(L'\\', first + 1);
    bool const has_share = second != none && second != first + 1;
    return has_share ? second : first;
}

} // namespace

std::size_t find_file_name(View path)
{
    auto const is_separator = [](wchar_t ch) { return ch == L'\\' || ch == L'/'; };
    for (std::size_t i = path.size(); i > 1; --i) {
        wchar_t const before = path[i - 2];
        if ((is_separator(before) || before == L':') && !is_separator(path[i - 1]))
            return i - 1;
    }
    return 0;
}

std::size_t find_extension(View path)
{
    for (std::size_t i = path.size(); i-- > 0;) {
        if (path[i] == L'.')
            return i;
        if (path[i] == L'\\' || path[i] == L' ')
            break;
    }
    return path.size();
}

bool is_url(View path)
{
    auto const is_in_scheme = [](wchar_t ch) {
        return is_letter(ch) || (ch >= L'0' && ch <= L'9') || ch == L'+' || ch == L'-'
            || ch == L'.';
    };
    auto const end = std::find_if_not(path.begin(), path.end(), is_in_scheme);
    return end - path.begin() >= 2 && end != path.end() && *end == L':';
}

bool is_unc_path(View path)
{
    Prefix const prefix = get_prefix(path);
    return prefix.length != 0 ? prefix.is_unc : path.starts_with(LR"(\\)");
}

bool is_unc_server_share(View path)
{
    if (!is_unc_path(path))
        return false;
    std::size_t const server = find_server(path);
    std::size_t const end = path.find(L'\\', server);
    return end != none && end != server && end + 1 != path.size()
        && path.find(L'\\', end + 1) == none;
}

bool is_relative_path(View path)
{
    return !path.starts_with(L'\\') && !starts_with_drive(path);
}

bool is_root_path(View path)
{
    if (path == L"\\")
        return true;
    std::size_t const server = find_server(path);
    if (server != none && is_server_or_share(path, server))
        return true;
    path.remove_prefix(get_prefix(path).length);
    return path.size() == 3 && starts_with_drive(path) && path[2] == L'\\';
}

PathCut remove_file_spec(View path)
{
    bool const is_server
        = path.size() > 2 && path.starts_with(LR"(\\)") && path.find_first_of(LR"(\:)", 2) == none;
    std::size_t const length = is_server ? path.size() : find_directory_end(path);
    return { length, length != path.size() };
}

// What remove_file_spec() comes to when it is repeated until there is a root, without the
// repetition.
PathCut strip_to_root(View path)
{
    std::size_t const server = find_server(path);
    std::size_t const floor = find_floor(path);
    if (server != none) {
        std::size_t const end = find_share_end(path, server);
        if (end == path.size() || end >= floor)
            return { end, true };
    }
    return { floor, is_root_path(path.substr(0, floor)) };
}

namespace {

// 1 and 2 for the components "." and ".." at a position, else 0.
std::size_t count_dots(View path, std::size_t at)
{
    std::size_t end = at;
    while (end < path.size() && end < at + 2 && path[end] == L'.')
        ++end;
    return end == path.size() || path[end] == L'\\' ? end - at : 0;
}

// Where the first of these components begins; none when there is none.
std::size_t find_dots(View path)
{
    std::size_t at = path.find(L'.');
    while (at != none && ((at != 0 && path[at - 1] != L'\\') || count_dots(path, at) == 0))
        at = path.find(L'.', at + 1);
    return at;
}

// A path that is put together from components.
class ComponentWriter {
public:
    ComponentWriter(PathText &result, std::size_t kept_count)
        : m_result(result)
        , m_kept_count(kept_count)
    {
    }

    // Begins with the components in front of `at`, where another one begins.
    void begin(View path, std::size_t at)
    {
        View const head = path.substr(0, at);
        m_count = static_cast<std::size_t>(std::count(head.begin(), head.end(), L'\\'));
        m_result.length = at - (at != 0);
        std::copy_n(head.begin(), m_result.length, m_result.text);
    }

    // Adds the component at a position of the path; returns where it ends.
    std::size_t push(View path, std::size_t at)
    {
        wchar_t *end = m_result.text + m_result.length;
        if (m_count++ > 0)
            *end++ = L'\\';
        for (; at < path.size() && path[at] != L'\\'; ++at)
            *end++ = path[at];
        m_result.length = static_cast<std::size_t>(end - m_result.text);
        return at;
    }

    // Takes the last component away. Without one there is an empty one then, so that a '\' comes
    // first.
    void pop()
    {
        bool const is_at_root = m_count > 0 && m_count <= m_kept_count;
        bool const became_unc = m_count == 2 && m_result.view() == L"\\"; // as in "a\..\\.."
        if (is_at_root || became_unc)
            return;
        std::size_t const last = m_result.view().rfind(L'\\');
        m_result.length = m_count > 1 && last != none ? last : 0;
        m_count = std::max<std::size_t>(m_count, 2) - 1;
    }

    std::size_t get_count() const { return m_count; }

private:
    PathText &m_result;
    std::size_t m_count = 0;
    std::size_t m_kept_count; // of the root, which stays
};

std::size_t count_root_components(View path)
{
    Prefix const prefix = get_prefix(path);
    if (prefix.length != 0)
        return prefix.is_unc ? 6 : 4; // "", "", "?", "C:" or "UNC", server and share
    if (path.starts_with(LR"(\\)"))
        return 4;
    return starts_with_drive(path) && path.substr(2).starts_with(L'\\') ? 1 : 0;
}

} // namespace

bool canonicalize_path(View path, PathText &result)
{
    result.length = 0;
    result.text[0] = L'\0';
    if (is_too_long(path))
        return false;
    std::size_t const root_count = count_root_components(path);
    ComponentWriter writer(result, root_count);
    std::size_t const first = std::min(find_dots(path), path.size() + 1);
    writer.begin(path, first);
    for (std::size_t at = first; at <= path.size(); ++at) {
        std::size_t const dots = count_dots(path, at);
        bool const is_server = writer.get_count() + 1 < root_count;
        if (dots == 0 || is_server) {
            at = writer.push(path, at);
            continue;
        }
        if (dots == 2)
            writer.pop();
        at += dots;
    }
    bool const is_bare_drive = result.length == 2 && result.text[1] == L':';
    if (result.length == 0 || is_bare_drive)
        result.text[result.length++] = L'\\';
    result.text[result.length] = L'\0';
    return true;
}

namespace {

// The length of the components that both paths begin with, 0 for none. The root of a drive counts
// with its separator.
std::size_t find_common_length(View a, View b)
{
    bool const is_unc = a.starts_with(LR"(\\)");
    if (is_unc != b.starts_with(LR"(\\)"))
        return 0;
    std::size_t common = 0;
    for (std::size_t i = is_unc ? 2 : 0;; ++i) {
        bool const a_ends = i >= a.size() || a[i] == L'\\';
        bool const b_ends = i >= b.size() || b[i] == L'\\';
        if (a_ends && b_ends)
            common = i;
        if (i >= a.size() || i >= b.size() || to_upper(a[i]) != to_upper(b[i]))
            break;
    }
    if (is_unc && common == 2)
        return 0;
    if (common != 2 || !starts_with_drive(a))
        return common;
    bool const is_rooted = a.substr(2).starts_with(L'\\');
    if (is_rooted != b.substr(2).starts_with(L'\\'))
        return 0; // the root of a drive against its current directory
    return is_rooted ? 3 : 2;
}

// Builds the text of a relative path, up to the units that it may have.
class RelativeWriter {
public:
    explicit RelativeWriter(PathText &result)
        : m_result(result)
    {
    }
    void append(View text)
    {
        m_has_room = m_has_room && m_result.length + text.size() < max_path_units;
        if (!m_has_room)
            return;
        std::copy(text.begin(), text.end(), m_result.text + m_result.length);
        m_result.length += text.size();
    }
    bool finish()
    {
        m_has_room = m_has_room && !is_too_long(m_result.view());
        if (!m_has_room)
            m_result.length = 0;
        m_result.text[m_result.length] = L'\0';
        return m_has_room;
    }

private:
    PathText &m_result;
    bool m_has_room = true;
};

} // namespace

bool make_relative_path(PathEnd from, PathEnd to, PathText &result)
{
    result.length = 0;
    result.text[0] = L'\0';
    if (is_too_long(from.path) || is_too_long(to.path))
        return false;
    auto const directory_of = [](PathEnd end) {
        return end.path.substr(
            0, end.is_directory ? end.path.size() : find_directory_end(end.path));
    };
    View const start = directory_of(from);
    std::size_t const common = find_common_length(start, directory_of(to));
    if (common == 0)
        return false;

    RelativeWriter writer(result);
    View up = start.substr(common);
    if (up.empty())
        writer.append(L".");
    else if (up.front() == L'\\')
        up.remove_prefix(1);
    while (!up.empty()) {
        std::size_t const end = std::min(up.find(L'\\'), up.size());
        up.remove_prefix(std::min(end + 1, up.size()));
        if (up.starts_with(L'\\')) // two separators in a row count as one
            up.remove_prefix(1);
        writer.append(up.empty() ? L".." : LR"(..\)");
    }
    View const down = to.path.substr(common);
    if (!down.empty() && down.front() != L'\\')
        writer.append(L"\\");
    writer.append(down);
    return writer.finish();
}

} // namespace kortools::platform::portable
