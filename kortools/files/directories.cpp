// SPDX-License-Identifier: MIT
#include "kortools/files/directories.h"

#include "kortools/files/guarded_call.h"
#include "kortools/files/path_kind.h"
#include "kortools/files/text_cut.h"
#include "kortools/platform/directory_reader.h"
#include "kortools/platform/file_changes.h"
#include "kortools/platform/file_status.h"
#include "kortools/platform/known_folders.h"
#include "kortools/platform/os_error.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cwchar>
#include <iterator>
#include <random>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

using namespace kortools::files;
using namespace kortools::platform;

namespace {

constexpr unsigned int error_access_denied = 5;
constexpr unsigned int error_already_exists = 183;

bool is_directory(std::wstring const &path)
{
    FileStatus status;
    return is_top_directory(path)
        || (get_file_status(path.c_str(), status) && status.is_directory());
}

// Where the names of a path begin that "\\?\" opens, 0 for other paths.
std::size_t find_verbatim_names(std::wstring_view path)
{
    if (!path.starts_with(L"\\\\?\\"))
        return 0;
    if (!path.starts_with(L"\\\\?\\UNC\\"))
        return std::min<std::size_t>(path.size(), 7);
    std::size_t const share = path.find(L'\\', 8);
    return share == std::wstring_view::npos ? path.size()
                                            : std::min(path.find(L'\\', share + 1), path.size());
}

// The path and the directories above it, from the top down, without roots and server shares.
std::vector<std::wstring> get_levels(std::wstring_view path)
{
    std::vector<std::wstring> levels;
    for (std::size_t i = find_verbatim_names(path) + 1; i <= path.size(); ++i) {
        bool const is_end = i == path.size() || is_separator(path[i]);
        if (!is_end || is_separator(path[i - 1]) || path[i - 1] == L':')
            continue;
        if (!is_top_directory(path.substr(0, i)))
            levels.emplace_back(path.substr(0, i));
    }
    return levels;
}

// Stops, and takes back what it made, when it is late.
bool create_levels(std::wstring const &path, std::atomic<bool> const &is_late)
{
    if (is_directory(path))
        return true;
    std::vector<std::wstring> levels = get_levels(path);
    std::vector<std::wstring> created;
    created.reserve(levels.size()); // later would be too late to take something back
    for (std::wstring &level : levels) {
        bool const is_new = create_directory(level.c_str());
        unsigned int const code = is_new ? 0 : get_last_os_error();
        if (is_new)
            created.push_back(std::move(level));
        if ((!is_new && code != error_already_exists) || is_late) {
            // Not std::views::reverse: older clang, which builds the fuzz targets, cannot.
            for (auto directory = created.rbegin(); directory != created.rend(); ++directory)
                remove_directory(directory->c_str());
            set_last_os_error(code);
            return false;
        }
    }
    return true;
}

// The last part of a path as a name that every system takes.
std::wstring get_folder_name(std::wstring_view path)
{
    std::wstring name(path.substr(path.find_last_of(L"\\/") + 1)); // from 0 when there is none
    for (wchar_t &ch : name) {
        if (ch < L' ' || std::wstring_view(L"<>:\"|?*").find(ch) != std::wstring_view::npos)
            ch = L'_';
    }
    return name.empty() || name == L"." || name == L".." ? L"tmp" : name;
}

std::wstring get_random_digits()
{
    wchar_t digits[9];
    std::swprintf(digits, std::size(digits), L"%08x", std::random_device()());
    return digits;
}

// The path of the new directory; empty when it cannot be made.
std::wstring create_new_folder(std::wstring const &folder, std::wstring_view name)
{
    std::wstring const start(cut_text(name, 60));
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::wstring path = join_path(folder, start + L'-' + get_random_digits());
        if (create_private_directory(path.c_str()))
            return path;
        if (get_last_os_error() != error_already_exists)
            break;
    }
    return {};
}

bool create_one(wchar_t const *path, std::atomic<bool> const &is_late)
{
    if (!create_directory(path))
        return get_last_os_error() == error_already_exists;
    if (is_late)
        remove_directory(path);
    return !is_late;
}

} // namespace

bool fileCreateDirectory(CXTString<wchar_t> const &path, bool recursive, unsigned int *timeout)
{
    return run_guarded(path, timeout, false, [recursive](auto const &name, auto const &is_late) {
        return recursive ? create_levels(std::wstring(name.GetView()), is_late)
                         : create_one(name, is_late);
    });
}

namespace {

bool remove_folder(CXTString<wchar_t> const &path, bool contents, bool readOnly,
    CXArray<CXTString<wchar_t>> *failed)
{
    auto const report = [failed](std::wstring const &failed_path) {
        if (failed)
            failed->Add(failed_path.c_str());
    };
    if (is_top_directory(path)) {
        set_last_os_error(error_access_denied);
        report(std::wstring(path.GetView()));
        return false;
    }
    ReadOnlyFiles const read_only = readOnly ? ReadOnlyFiles::Remove : ReadOnlyFiles::Respect;
    if (contents)
        return remove_tree(path, read_only, report);
    if (remove_directory(path, read_only))
        return true;
    unsigned int const code = get_last_os_error();
    report(std::wstring(path.GetView()));
    set_last_os_error(code);
    return false;
}

CXTString<wchar_t> create_tmp_folder(CXTString<wchar_t> const &name, bool reuse)
{
    std::wstring const folder = get_temp_folder();
    if (folder.empty())
        return {};
    std::wstring path = get_folder_name(name.GetView());
    if (reuse) {
        path = join_path(folder, path);
        if (!create_private_directory(path.c_str()) && !is_directory(path))
            return {};
    } else {
        path = create_new_folder(folder, path);
    }
    return path.empty() ? CXTString<wchar_t>() : CXTString<wchar_t>(join_path(path, L"").c_str());
}

} // namespace

bool fileRemoveDirectory(CXTString<wchar_t> const &path, bool contents, bool readOnly,
    CXArray<CXTString<wchar_t>> *failed)
{
    return kortools::core::translate_shortage(
        [&] { return remove_folder(path, contents, readOnly, failed); });
}

int fileGetFileCount(CXTString<wchar_t> const &path, bool recursive, unsigned int *timeout)
{
    Depth const depth = recursive ? Depth::Tree : Depth::Folder;
    return run_guarded(path, timeout, -1, [depth](auto const &name, auto const &is_late) {
        return static_cast<int>(std::min<long long>(count_files(name, depth, is_late), INT_MAX));
    });
}

CXTString<wchar_t> fileCreateTmpFolder(CXTString<wchar_t> const &name, bool reuse)
{
    return kortools::core::translate_shortage([&] { return create_tmp_folder(name, reuse); });
}
