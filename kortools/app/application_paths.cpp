// SPDX-License-Identifier: MIT
#include "kortools/app/application_paths.h"

#include "kortools/app/application.h"
#include "kortools/app/application_state.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_status.h"
#include "kortools/files/path_separators.h"
#include "kortools/platform/known_folders.h"

#include <string>

using kortools::app::ApplicationState;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

String make_data_path(std::wstring const &folder, bool withoutVersion, wchar_t const *sub)
{
    String path = folder;
    if (path.IsEmpty())
        return path;
    fileSlashTerminate(path);
    path += L"Brantis\\";
    if (sub && *sub) {
        path += sub;
        fileSlashTerminate(path);
    }
    path += GetInternalProductName(!withoutVersion);
    fileSlashTerminate(path);
    return path;
}

String get_data_path(
    String (&kept)[2], std::wstring (&get_folder)(), bool withoutVersion, wchar_t const *sub)
{
    if (sub && *sub)
        return make_data_path(get_folder(), withoutVersion, sub);
    CXSingleLock const lock(&ApplicationState::get().m_lock, true);
    String &path = kept[withoutVersion ? 1 : 0];
    if (path.IsEmpty())
        path = make_data_path(get_folder(), withoutVersion, nullptr);
    return path;
}

void make_directory(String const &path)
{
    if (!path.IsEmpty() && !fileDirectoryExists(path))
        fileCreateDirectory(path, true);
}

String get_preferences_path(String const &chosen, String (&get_data)(bool, wchar_t const *))
{
    {
        CXSingleLock const lock(&ApplicationState::get().m_lock, true);
        if (!chosen.IsEmpty())
            return chosen;
    }
    String path = get_data(false, nullptr);
    if (!path.IsEmpty())
        path += L"Preferences\\";
    return path;
}

void set_preferences_path(String &chosen, String path)
{
    if (!path.IsEmpty())
        fileSlashTerminate(path);
    CXSingleLock const lock(&ApplicationState::get().m_lock, true);
    chosen = path;
}

} // namespace

CXTString<wchar_t> GetCommonApplicationDataPath(bool withoutVersion, wchar_t const *sub)
{
    return get_data_path(ApplicationState::get().m_common_data, platform::get_common_data_folder,
        withoutVersion, sub);
}

CXTString<wchar_t> GetUserApplicationDataPath(bool withoutVersion, wchar_t const *sub)
{
    String path = get_data_path(
        ApplicationState::get().m_user_data, platform::get_user_data_folder, withoutVersion, sub);
    make_directory(path);
    return path;
}

CXTString<wchar_t> GetCommonTempPath(unsigned int number, bool create)
{
    String path = GetCommonApplicationDataPath();
    if (path.IsEmpty())
        return path;
    if (number == 0)
        path += L"temp\\";
    else
        path.AppendFormat(L"temp%u\\", number);
    if (create)
        make_directory(path);
    return path;
}

CXTString<wchar_t> GetUserPreferencesPath(bool create)
{
    String path = get_preferences_path(
        ApplicationState::get().m_user_preferences, GetUserApplicationDataPath);
    if (create)
        make_directory(path);
    return path;
}

CXTString<wchar_t> GetCommonPreferencesPath(bool create)
{
    String path = get_preferences_path(
        ApplicationState::get().m_common_preferences, GetCommonApplicationDataPath);
    if (create)
        make_directory(path);
    return path;
}

void SetUserPreferencesPath(CXTString<wchar_t> const &path)
{
    set_preferences_path(ApplicationState::get().m_user_preferences, path);
}

void SetCommonPreferencesPath(CXTString<wchar_t> const &path)
{
    set_preferences_path(ApplicationState::get().m_common_preferences, path);
}

CXTString<wchar_t> GetPreferencesFile()
{
    String path = GetUserPreferencesPath();
    if (!path.IsEmpty())
        path += GetInternalProductName() + L".prefs";
    return path;
}
