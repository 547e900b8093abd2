// SPDX-License-Identifier: MIT
#include "apps/scoutrix/prefs.h"

#include "apps/common/console.h"
#include "apps/common/exit_codes.h"
#include "apps/common/json_output.h"
#include "apps/common/paths.h"
#include "apps/common/text_table.h"
#include "apps/scoutrix/node_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace scoutrix {
namespace {

using kor_apps::from_utf8;
using enum kor_apps::ExitCode;

SettingInfo const &find_setting(std::string const &key)
{
    auto const infos = get_setting_infos();
    auto const found
        = std::ranges::find_if(infos, [&](SettingInfo const &info) { return key == info.key; });
    if (found == infos.end())
        kor_apps::fail(from_utf8("there is no setting " + key));
    return *found;
}

int save(Session &session)
{
    return session.file.Save(session.settings) ? exit_done : exit_failed;
}

} // namespace

int show_settings(Session &session)
{
    if (session.json) {
        nlohmann::ordered_json json;
        for (SettingInfo const &info : get_setting_infos())
            json["settings"][info.key] = info.get(session.settings);
        json["file"] = to_json(kor_apps::to_shown(session.file.GetPath()));
        kor_apps::print_json(json);
        return exit_done;
    }
    kor_apps::TextTable table({ L"setting", L"value", L"meaning" });
    for (SettingInfo const &info : get_setting_infos())
        table.Add({ info.key, from_utf8(info.get(session.settings)), info.help });
    table.Print();
    kor_apps::print_line(L"kept in " + kor_apps::to_shown(session.file.GetPath()));
    return exit_done;
}

int get_setting(Session &session, std::string const &key)
{
    std::string const value = find_setting(key).get(session.settings);
    if (session.json)
        kor_apps::print_json(value);
    else
        kor_apps::print_line(from_utf8(value));
    return exit_done;
}

int set_setting(Session &session, std::string const &key, std::string const &value)
{
    SettingInfo const &info = find_setting(key);
    if (!info.set(session.settings, value))
        kor_apps::fail(from_utf8(key + " cannot be " + value + " (" + info.help + ")"));
    return save(session);
}

int remove_settings(Session &session, std::vector<std::string> const &keys)
{
    Settings const defaults;
    for (std::string const &key : keys)
        find_setting(key);
    for (SettingInfo const &info : get_setting_infos()) {
        if (keys.empty() || std::ranges::find(keys, info.key) != keys.end())
            info.set(session.settings, info.get(defaults));
    }
    return save(session);
}

int show_settings_file(Session &session)
{
    if (session.file.GetPath().IsEmpty())
        kor_apps::fail(L"the system has no place for settings");
    Text const path = kor_apps::to_shown(session.file.GetPath());
    if (session.json)
        kor_apps::print_json(to_json(path));
    else
        kor_apps::print_line(path);
    return exit_done;
}

} // namespace scoutrix
