// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/path_mapping.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/path_text.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <unicode/uchar.h>

namespace kortools::platform {
namespace {

constexpr unsigned int error_path_not_found = 3;
constexpr unsigned int error_bad_network_path = 53;
constexpr unsigned int error_bad_network_name = 67;

using Names = std::vector<std::wstring>;

// What map_drive() and map_share() were told. Directories end without a slash; "" is the root.
struct Mappings {
    std::shared_mutex mutex; // guards the fields below
    std::array<std::string, 26> drives;
    std::array<bool, 26> has_drive {};
    std::map<Names, MappedShare> shares; // by folded server and share
};

// Never destroyed: objects that outlive main() may still open files.
Mappings &get_mappings()
{
    static Mappings *const s_mappings = new Mappings;
    return *s_mappings;
}

bool is_separator(wchar_t ch)
{
    return ch == L'\\' || ch == L'/';
}

wchar_t to_drive(wchar_t ch)
{
    if (ch >= L'a' && ch <= L'z')
        return static_cast<wchar_t>(ch - L'a' + L'A');
    return ch >= L'A' && ch <= L'Z' ? ch : L'\0';
}

std::size_t drive_index(wchar_t drive)
{
    return static_cast<std::size_t>(drive - L'A');
}

std::wstring fold_case(std::wstring_view text)
{
    std::wstring folded(text);
    for (wchar_t &ch : folded)
        ch = static_cast<wchar_t>(u_foldCase(static_cast<UChar32>(ch), U_FOLD_CASE_DEFAULT));
    return folded;
}

// Cuts the name in front of the next separator off `text`, and the separator with it.
std::wstring_view take_name(std::wstring_view &text)
{
    auto const end = std::find_if(text.begin(), text.end(), is_separator);
    std::wstring_view const name = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(std::min(name.size() + 1, text.size()));
    return name;
}

// The names of `text` with "." and ".." resolved; ".." at the front is dropped.
Names split_names(std::wstring_view text)
{
    Names names;
    while (!text.empty()) {
        std::wstring_view const name = take_name(text);
        if (name == L"..") {
            if (!names.empty())
                names.pop_back();
        } else if (!name.empty() && name != L".") {
            names.emplace_back(name);
        }
    }
    return names;
}

std::string normalize_directory(std::string_view directory)
{
    while (!directory.empty() && directory.back() == '/')
        directory.remove_suffix(1);
    return std::string(directory);
}

// `directory` with `names` from the one at `first` on. A separator at the end of `rest`, which the
// names were cut from, is kept: a file does not open with one.
std::string join_names(
    std::string directory, Names const &names, std::size_t first, std::wstring_view rest)
{
    for (std::size_t i = first; i < names.size(); ++i) {
        directory += '/';
        if (!encode_path_text(names[i], directory))
            return {};
    }
    if (directory.empty() || (first < names.size() && is_separator(rest.back())))
        directory += '/';
    return directory;
}

std::string map_drive_path(ParsedPath const &path)
{
    std::string directory;
    {
        Mappings &mappings = get_mappings();
        std::shared_lock const lock(mappings.mutex);
        if (!mappings.has_drive[drive_index(path.drive)]) {
            set_last_os_error(error_path_not_found);
            return {};
        }
        directory = mappings.drives[drive_index(path.drive)];
    }
    return join_names(std::move(directory), split_names(path.rest), 0, path.rest);
}

// False when no call mapped the share. `knows_server` tells whether one of its shares is mapped.
bool map_share_path(ParsedPath const &path, std::string &native, bool &knows_server)
{
    std::string directory;
    {
        std::wstring const server = fold_case(path.server);
        Mappings &mappings = get_mappings();
        std::shared_lock const lock(mappings.mutex);
        auto const at = mappings.shares.find({ server, fold_case(path.share) });
        if (at == mappings.shares.end()) {
            auto const near = mappings.shares.lower_bound({ server });
            knows_server = near != mappings.shares.end() && near->first[0] == server;
            return false;
        }
        directory = at->second.directory;
    }
    native = join_names(std::move(directory), split_names(path.rest), 0, path.rest);
    return true;
}

ParsedPath parse_share(std::wstring_view path)
{
    ParsedPath parsed { .root = ParsedPath::Root::Share };
    parsed.server = take_name(path);
    parsed.share = take_name(path);
    parsed.rest = path;
    return parsed;
}

// What follows "\\?\".
ParsedPath parse_verbatim(std::wstring_view path)
{
    if (path.size() >= 3 && to_drive(path[0]) != 0 && path[1] == L':' && is_separator(path[2]))
        return parse_path(path);
    if (fold_case(take_name(path)) == L"unc")
        return parse_share(path);
    return { .root = ParsedPath::Root::Device };
}

} // namespace

ParsedPath parse_path(std::wstring_view path)
{
    using Root = ParsedPath::Root;
    if (path.size() >= 2 && is_separator(path[0]) && is_separator(path[1])) {
        if (path.size() >= 4 && path[2] == L'?' && is_separator(path[3]))
            return parse_verbatim(path.substr(4));
        return parse_share(path.substr(2));
    }
    ParsedPath parsed { .rest = path };
    if (path.size() >= 2 && path[1] == L':' && to_drive(path[0]) != 0) {
        parsed.rest = path.substr(2);
        if (to_drive(path[0]) != L'C') {
            parsed.root = Root::Drive;
            parsed.drive = to_drive(path[0]);
            return parsed;
        }
        if (parsed.rest.empty())
            parsed.rest = L".";
    }
    if (!parsed.rest.empty() && is_separator(parsed.rest[0]))
        parsed.root = Root::Top;
    return parsed;
}

std::string find_share(ParsedPath const &path, std::vector<Mount> const &mounts)
{
    Names wanted = split_names(path.rest);
    wanted.insert(wanted.begin(), { std::wstring(path.server), std::wstring(path.share) });
    Mount const *best = nullptr;
    std::size_t best_size = 0;
    bool knows_server = false;
    for (Mount const &mount : mounts) {
        std::vector<std::string> const remote = get_remote_names(mount);
        auto const is_same = [](std::string const &native, std::wstring const &name) {
            return fold_case(decode_path_text(native)) == fold_case(name);
        };
        knows_server = knows_server || (!remote.empty() && is_same(remote[0], wanted[0]));
        bool const has_it = remote.size() <= wanted.size()
            && std::equal(remote.begin(), remote.end(), wanted.begin(), is_same);
        if (!remote.empty() && has_it && remote.size() >= best_size) {
            best = &mount;
            best_size = remote.size();
        }
    }
    if (best == nullptr || path.share.empty()) {
        set_last_os_error(knows_server ? error_bad_network_name : error_bad_network_path);
        return {};
    }
    return join_names(normalize_directory(best->mount_point), wanted, best_size, path.rest);
}

std::string to_native_path(std::wstring_view path)
{
    ParsedPath const parsed = parse_path(path);
    std::string native;
    switch (parsed.root) {
    case ParsedPath::Root::Drive:
        return map_drive_path(parsed);
    case ParsedPath::Root::Share: {
        bool knows_server = false;
        if (map_share_path(parsed, native, knows_server))
            return native;
        native = find_share(parsed, read_mount_table());
        if (native.empty() && knows_server)
            set_last_os_error(error_bad_network_name);
        return native;
    }
    case ParsedPath::Root::Device:
        break;
    case ParsedPath::Root::Top:
    case ParsedPath::Root::Current:
        if (parsed.rest.empty())
            break;
        return encode_path_text(parsed.rest, native) ? native : std::string();
    }
    set_last_os_error(error_path_not_found);
    return {};
}

std::wstring from_native_path(std::string_view native)
{
    std::wstring path;
    if (native.starts_with('/'))
        path = L"C:";
    path += decode_path_text(native);
    return path;
}

bool map_drive(wchar_t letter, std::string_view directory)
{
    wchar_t const drive = to_drive(letter);
    if (drive == 0 || drive == L'C' || (!directory.empty() && directory[0] != '/'))
        return false;
    Mappings &mappings = get_mappings();
    std::unique_lock const lock(mappings.mutex);
    mappings.drives[drive_index(drive)] = normalize_directory(directory);
    mappings.has_drive[drive_index(drive)] = !directory.empty();
    return true;
}

bool map_share(std::wstring_view share, std::string_view directory)
{
    ParsedPath const path = parse_path(share);
    if (path.root != ParsedPath::Root::Share || path.server.empty() || path.share.empty()
        || !path.rest.empty() || (!directory.empty() && directory[0] != '/'))
        return false;
    Names const key { fold_case(path.server), fold_case(path.share) };
    Mappings &mappings = get_mappings();
    std::unique_lock const lock(mappings.mutex);
    if (directory.empty())
        mappings.shares.erase(key);
    else
        mappings.shares[key] = { std::wstring(path.server), std::wstring(path.share),
            normalize_directory(directory) };
    return true;
}

std::vector<MappedShare> get_mapped_shares()
{
    Mappings &mappings = get_mappings();
    std::shared_lock const lock(mappings.mutex);
    std::vector<MappedShare> shares;
    for (auto const &[key, share] : mappings.shares)
        shares.push_back(share);
    return shares;
}

} // namespace kortools::platform
