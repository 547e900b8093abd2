// SPDX-License-Identifier: MIT
#include "kortools/platform/known_folders.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/posix/user_folders.h"

#include <cstdlib>
#include <mutex>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kortools::platform {
namespace {

bool is_absolute(char const *path)
{
    return path != nullptr && path[0] == '/';
}

// Services are often started without a HOME.
std::string get_home()
{
    if (char const *const home = std::getenv("HOME"); is_absolute(home))
        return home;
    std::vector<char> buffer(16 * 1024);
    passwd entry {};
    passwd *found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr
        || !is_absolute(found->pw_dir))
        return {};
    return found->pw_dir;
}

std::string without_end(std::string path)
{
    path.erase(path.find_last_not_of('/') + 1);
    return path;
}

struct CommonFolder {
    std::mutex m_lock;
    std::wstring m_path; // empty: that of the system
};

// Never destroyed: it may be asked for at the very end.
CommonFolder &get_common_folder()
{
    static CommonFolder &s_folder = *new CommonFolder;
    return s_folder;
}

bool is_directory(char const *path)
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::wstring get_user_data_folder()
{
    std::string folder;
    if (char const *const data = std::getenv("XDG_DATA_HOME"); is_absolute(data))
        folder = without_end(data) + '/';
    else if (std::string const home = get_home(); !home.empty())
        folder = without_end(home) + "/.local/share";
    else
        return {};
    return from_native_path(folder.size() > 1 ? without_end(folder) : folder);
}

std::string get_user_config_folder()
{
    if (char const *const config = std::getenv("XDG_CONFIG_HOME"); is_absolute(config))
        return without_end(config);
    std::string const home = get_home();
    return home.empty() ? home : without_end(home) + "/.config";
}

std::wstring get_common_data_folder()
{
    CommonFolder &common = get_common_folder();
    std::scoped_lock const lock(common.m_lock);
    return common.m_path.empty() ? from_native_path("/var/lib") : common.m_path;
}

bool set_common_data_folder(std::wstring_view path)
{
    std::wstring chosen(path.substr(0, path.find_last_not_of(L"\\/") + 1));
    CommonFolder &common = get_common_folder();
    std::scoped_lock const lock(common.m_lock);
    common.m_path = std::move(chosen);
    return true;
}

std::wstring get_temp_folder()
{
    char const *const wanted = std::getenv("TMPDIR");
    std::string const folder
        = is_absolute(wanted) && is_directory(wanted) ? without_end(wanted) + '/' : "/tmp/";
    if (!is_directory(folder.c_str()))
        return {};
    return from_native_path(folder.size() > 1 ? without_end(folder) : folder);
}

} // namespace kortools::platform
