// SPDX-License-Identifier: MIT
#include "kortools/app/first_launch.h"

#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/build_identity.h"
#include "kortools/app/product_version.h"
#include "kortools/app/win_app.h"
#include "kortools/data/custom_data.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_find.h"
#include "kortools/files/file_status.h"
#include "kortools/files/path_parts.h"
#include "kortools/platform/file_changes.h"

#include <algorithm>
#include <functional>
#include <vector>

using kortools::app::BuildIdentity;
using kortools::app::LaunchMemory;
using kortools::app::LaunchRule;

namespace {

using String = CXTString<wchar_t>;

constexpr wchar_t const *section = L"settings";
constexpr wchar_t const *date_entry = L"currentVersionDate";
constexpr wchar_t const *time_entry = L"currentVersionTime";
constexpr wchar_t const *major_entry = L"currentVersionMajor";
constexpr wchar_t const *minor_entry = L"currentVersionMinor";

// The record of the preferences file, and its entries.
constexpr unsigned int record_id = 0x4C4E4348; // LNCH
constexpr unsigned int record_version = 1;
enum RecordEntry : unsigned int { record_date = 1, record_time, record_major, record_minor };

BuildIdentity load_from_profile(CWinApp const &app)
{
    return { app.GetProfileString(section, date_entry), app.GetProfileString(section, time_entry),
        app.GetProfileInt(section, major_entry, -1), app.GetProfileInt(section, minor_entry, -1) };
}

void save_to_profile(CWinApp &app, BuildIdentity const &build)
{
    app.WriteProfileString(section, date_entry, build.date);
    app.WriteProfileString(section, time_entry, build.time);
    app.WriteProfileInt(section, major_entry, build.major);
    app.WriteProfileInt(section, minor_entry, build.minor);
}

BuildIdentity load_from_preferences()
{
    BuildIdentity build;
    CCustomData data;
    data.LoadFromPrefs(GetPreferencesFile(), record_id, record_version);
    data.GetString(record_date, build.date, String());
    data.GetString(record_time, build.time, String());
    data.GetInt(record_major, build.major, -1);
    data.GetInt(record_minor, build.minor, -1);
    return build;
}

void save_to_preferences(BuildIdentity const &build)
{
    CCustomData data;
    data.SetString(record_date, build.date);
    data.SetString(record_time, build.time);
    data.SetInt(record_major, build.major);
    data.SetInt(record_minor, build.minor);
    GetUserPreferencesPath(true);
    data.SaveToPrefs(GetPreferencesFile(), record_id, record_version);
}

// The number behind "Scoutrix ", 0 for none.
int get_version(std::wstring_view digits)
{
    int version = 0;
    for (wchar_t const ch : digits) {
        if (ch < L'0' || ch > L'9' || version >= 100'000'000)
            return 0;
        version = version * 10 + (ch - L'0');
    }
    return version;
}

// Preferences directories of earlier versions, the newest first.
std::vector<String> get_previous_directories()
{
    String const own = GetUserApplicationDataPath(); // "...Brantis\Scoutrix 16\"
    std::wstring_view const path = own;
    if (path.size() < 2)
        return {};
    String const all(std::wstring(path.substr(0, path.rfind(L'\\', path.size() - 2) + 1)));
    String const product = GetInternalProductName();
    int const present = kortools::app::get_product_version();
    std::vector<int> versions;
    CXFileFind find;
    bool more = find.FindFile(all + product + L" *");
    while (more) {
        more = find.FindNextFile();
        String const name = find.GetFileName();
        int const version = get_version(
            std::wstring_view(name).substr(std::min(name.GetLength(), product.GetLength() + 1)));
        if (find.IsDirectory() && version > 0 && version < present)
            versions.push_back(version);
    }
    std::ranges::sort(versions, std::ranges::greater());
    std::vector<String> directories;
    for (int const version : versions) {
        String directory;
        directory.Format(L" %d\\Preferences\\", version);
        directories.push_back(all + product + directory);
    }
    if (present != 0)
        directories.push_back(all + product + L"\\Preferences\\");
    return directories;
}

} // namespace

namespace kortools::app {

bool is_first_launch(BuildIdentity const &build, CWinApp *app, LaunchMemory memory, LaunchRule rule,
    BuildIdentity &previous)
{
    bool const in_profile = memory == LaunchMemory::Profile && app;
    previous = in_profile ? load_from_profile(*app) : load_from_preferences();
    bool const same_version = previous.major == build.major && previous.minor == build.minor;
    bool const same_build = previous.date == build.date && previous.time == build.time;
    if (same_version && (same_build || rule == LaunchRule::AnyVersion))
        return false;
    if (!IsPreferencesSavingEnabled())
        return true;
    if (in_profile)
        save_to_profile(*app, build);
    else
        save_to_preferences(build);
    return true;
}

} // namespace kortools::app

bool IsFirstLaunch(
    CWinApp *app, bool inPreferencesFile, bool versionOnly, int *previousMajor, int *previousMinor)
{
    BuildIdentity previous;
    bool const is_first = kortools::app::is_first_launch(kortools::app::get_build_identity(), app,
        inPreferencesFile ? LaunchMemory::PreferencesFile : LaunchMemory::Profile,
        versionOnly ? LaunchRule::AnyVersion : LaunchRule::AnyBuild, previous);
    if (previousMajor)
        *previousMajor = previous.major;
    if (previousMinor)
        *previousMinor = previous.minor;
    return is_first;
}

bool CopyFileFromPreviousVersionIfMissing(CXTString<wchar_t> const &name)
{
    String const directory = GetUserPreferencesPath();
    if (name.IsEmpty() || directory.IsEmpty())
        return false;
    String const target = directory + name;
    if (fileExists(target))
        return true;
    for (String const &previous : get_previous_directories()) {
        if (!fileExists(previous + name))
            continue;
        fileCreateDirectory(fileStripName(target), true);
        kortools::platform::copy_file(previous + name, target, kortools::platform::Existing::Keep);
        return fileExists(target);
    }
    return false;
}
