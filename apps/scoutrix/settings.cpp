// SPDX-License-Identifier: MIT
#include "apps/scoutrix/settings.h"

#include "apps/common/console.h"
#include "apps/common/paths.h"
#include "apps/scoutrix/host_log.h"
#include "kortools/app/application_paths.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"
#include "kortools/data/custom_data.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_status.h"

#include <charconv>
#include <filesystem>
#include <optional>

namespace scoutrix {
namespace {

// The record in the preferences file, and its entries. The host's file may hold others' records.
constexpr unsigned int record_id = 0x53435458; // "SCTX"
constexpr unsigned int record_version = 1;
enum Entry : unsigned int {
    entrySort = 0x534F5254,     // "SORT" text: one of get_sort_names()
    entryDepth = 0x44455054,    // "DEPT" int
    entryProgress = 0x50524F47, // "PROG" bool
    entryLimit = 0x524C494D,    // "RLIM" int
    entryTimeout = 0x544F5554,  // "TOUT" int
    entryRecent = 0x52454354    // "RECT" texts
};

constexpr int maximum_recent = 100;
constexpr int maximum_timeout = 600;

std::optional<int> parse_number(std::string const &text, int lowest, int highest)
{
    int number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < lowest
        || number > highest)
        return std::nullopt;
    return number;
}

void cut_recent(Settings &settings)
{
    if (settings.recent.GetSize() > settings.recent_limit)
        settings.recent.SetSize(settings.recent_limit);
}

std::string get_sort(Settings const &settings)
{
    return get_sort_names()[static_cast<std::size_t>(settings.sort)];
}

bool set_sort(Settings &settings, std::string const &value)
{
    std::optional<SortKey> const key = find_sort_key(value);
    settings.sort = key.value_or(settings.sort);
    return key.has_value();
}

std::string get_depth(Settings const &settings)
{
    return settings.depth < 0 ? "all" : std::to_string(settings.depth);
}

bool set_depth(Settings &settings, std::string const &value)
{
    auto const number = value == "all" ? -1 : parse_number(value, 0, INT_MAX);
    settings.depth = number.value_or(settings.depth);
    return number.has_value();
}

std::string get_progress(Settings const &settings)
{
    return settings.progress ? "on" : "off";
}

bool set_progress(Settings &settings, std::string const &value)
{
    if (value != "on" && value != "off")
        return false;
    settings.progress = value == "on";
    return true;
}

std::string get_limit(Settings const &settings)
{
    return std::to_string(settings.recent_limit);
}

bool set_limit(Settings &settings, std::string const &value)
{
    auto const number = parse_number(value, 0, maximum_recent);
    settings.recent_limit = number.value_or(settings.recent_limit);
    cut_recent(settings);
    return number.has_value();
}

std::string get_timeout(Settings const &settings)
{
    return std::to_string(settings.timeout);
}

bool set_timeout(Settings &settings, std::string const &value)
{
    auto const number = parse_number(value, 1, maximum_timeout);
    settings.timeout = number.value_or(settings.timeout);
    return number.has_value();
}

constexpr SettingInfo infos[] = { { "sort", "how list sorts: none, name, size, modified or kind",
                                      get_sort, set_sort },
    { "depth", "levels that list prints: all, or a number", get_depth, set_depth },
    { "progress", "show how far long work is: on or off", get_progress, set_progress },
    { "timeout", "seconds that a disk may take to answer: 1 to 600", get_timeout, set_timeout },
    { "recent", "scenes that are remembered: 0 to 100", get_limit, set_limit } };

// Entries that are missing, of another kind or out of range leave the default.
Settings read_settings(CCustomData const &data)
{
    Settings settings;
    Text sort;
    if (data.GetString(entrySort, sort))
        set_sort(settings, kor_apps::to_utf8(sort));
    data.GetInt(entryDepth, settings.depth, settings.depth);
    data.GetBool(entryProgress, settings.progress, settings.progress);
    int number = 0;
    if (data.GetInt(entryLimit, number) && number >= 0 && number <= maximum_recent)
        settings.recent_limit = number;
    if (data.GetInt(entryTimeout, number) && number >= 1 && number <= maximum_timeout)
        settings.timeout = number;
    data.GetStringArray(entryRecent, settings.recent);
    cut_recent(settings);
    return settings;
}

CCustomData write_settings(Settings const &settings)
{
    CCustomData data;
    data.SetString(entrySort, kor_apps::from_utf8(get_sort(settings)));
    data.SetInt(entryDepth, settings.depth);
    data.SetBool(entryProgress, settings.progress);
    data.SetInt(entryLimit, settings.recent_limit);
    data.SetInt(entryTimeout, settings.timeout);
    data.SetStringArray(entryRecent, settings.recent);
    return data;
}

bool is_free(Text const &path)
{
    CXFile file(true);
    CXFileException error;
    return file.Open(path, CXFile::modeReadWrite | CXFile::shareExclusive, &error);
}

} // namespace

std::span<SettingInfo const> get_setting_infos()
{
    return infos;
}

Text SettingsFile::GetDefaultPath()
{
    return GetPreferencesFile();
}

Settings SettingsFile::Load() const
{
    if (m_path.IsEmpty())
        return {};
    // A load that fails leaves the container as it is, but empties it for a damaged record.
    CCustomData data;
    data.SetBool(entryProgress, 1);
    if (data.LoadFromPrefs(m_path, record_id, record_version, true))
        return read_settings(data);
    bool const damaged_record = !data.HasData();
    if (!damaged_record && !fileExists(m_path))
        return {};
    // A file that takes a record is a good one in which there was none of ours.
    if (!damaged_record && write_settings({}).SaveToPrefs(m_path, record_id, record_version))
        return {};
    if (is_free(m_path))
        KeepAside();
    else
        report_warning(m_path + L" cannot be read; the settings are the defaults");
    return {};
}

void SettingsFile::KeepAside() const
{
    Text aside = m_path + L".damaged";
    for (int number = 2; fileExists(aside); ++number)
        aside.Format(L"%s.damaged%d", m_path.GetConstBuffer(), number);
    std::error_code error;
    std::filesystem::rename(kor_apps::to_native(m_path), kor_apps::to_native(aside), error);
    if (error)
        report_warning(m_path + L" is damaged; the settings are the defaults");
    else
        report_warning(
            m_path + L" is damaged and was kept as " + aside + L"; the settings are the defaults");
}

bool SettingsFile::Save(Settings const &settings) const
{
    if (m_path.IsEmpty())
        return false;
    Text const folder = m_path.Left(m_path.ReverseFind(L'\\'));
    if (!folder.IsEmpty() && !fileDirectoryExists(folder))
        fileCreateDirectory(folder, true);
    bool const saved = write_settings(settings).SaveToPrefs(m_path, record_id, record_version);
    if (!saved)
        report_warning(L"the settings could not be saved in " + m_path);
    return saved;
}

bool remember_scene(Settings &settings, Text const &scene)
{
    Text const path = kor_apps::make_absolute(scene);
    CXArray<Text> &recent = settings.recent;
    if (settings.recent_limit == 0 || (recent.GetSize() > 0 && recent[0] == path))
        return false;
    for (int i = recent.GetSize() - 1; i >= 0; --i) {
        if (recent[i] == path)
            recent.RemoveAt(i);
    }
    recent.InsertAt(0, path);
    cut_recent(settings);
    return true;
}

} // namespace scoutrix
