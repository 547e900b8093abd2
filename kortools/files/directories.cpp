// SPDX-License-Identifier: MIT
#include "kortools/files/directories.h"

#include "kortools/files/guarded_call.h"
#include "kortools/files/path_kind.h"
#include "kortools/platform/file_changes.h"
#include "kortools/platform/file_status.h"
#include "kortools/platform/os_error.h"

#include <atomic>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

using namespace kortools::files;
using namespace kortools::platform;

namespace {

constexpr unsigned int error_already_exists = 183;

bool is_separator(wchar_t ch)
{
    return ch == L'\\' || ch == L'/';
}

bool is_directory(std::wstring const &path)
{
    FileStatus status;
    return is_root(path) || is_server_share(path)
        || (get_file_status(path.c_str(), status) && status.is_directory);
}

// The path and the directories above it, from the top down, without roots and server shares.
std::vector<std::wstring> get_levels(std::wstring_view path)
{
    std::vector<std::wstring> levels;
    for (std::size_t i = 1; i <= path.size(); ++i) {
        bool const is_end = i == path.size() || is_separator(path[i]);
        if (!is_end || is_separator(path[i - 1]) || path[i - 1] == L':')
            continue;
        std::wstring_view const level = path.substr(0, i);
        if (!is_root(level) && !is_server_share(level))
            levels.emplace_back(level);
    }
    return levels;
}

// Stops, and takes back what it made, when it is late.
bool create_levels(std::wstring const &path, std::atomic<bool> const &is_late)
{
    if (is_directory(path))
        return true;
    std::vector<std::wstring> created;
    for (std::wstring &level : get_levels(path)) {
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
