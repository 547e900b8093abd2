// SPDX-License-Identifier: MIT
#include "apps/scoutrix/plugin_table.h"

#include "apps/common/console.h"
#include "apps/common/exit_codes.h"
#include "apps/common/json_output.h"
#include "apps/common/paths.h"
#include "apps/common/text_table.h"
#include "apps/scoutrix/host_log.h"
#include "apps/scoutrix/node_json.h"
#include "apps/scoutrix/type_table.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/plugins.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace scoutrix {
namespace {

using enum kor_apps::ExitCode;

// Also those of the other system, which are told from files that are none.
bool is_library(std::filesystem::path const &name)
{
    std::string const text = name.string();
    return name.extension() == ".dll" || text.ends_with(".so")
        || text.find(".so.") != std::string::npos;
}

std::vector<Text> find_libraries(Text const &folder)
{
    std::vector<std::filesystem::path> names;
    std::error_code error; // a folder that is not there has none
    for (auto const &entry :
        std::filesystem::directory_iterator(kor_apps::to_native(folder), error)) {
        if (is_library(entry.path().filename()))
            names.push_back(entry.path());
    }
    std::ranges::sort(names);
    std::vector<Text> libraries;
    libraries.reserve(names.size());
    for (auto const &name : names)
        libraries.push_back(kor_apps::from_native(name));
    return libraries;
}

// The classes of the types that the library has registered.
Text list_classes(Text const &library, std::vector<CFileExt> const &types)
{
    Text classes;
    for (CFileExt const &type : types) {
        if (get_library_name(type).CompareNoCase(fileStripPath(library)) == 0)
            classes += L" " + format_code(type.m_class);
    }
    return classes;
}

struct Finding {
    wchar_t const *verdict;
    Text detail;
    bool is_good = true;
};

Finding examine(Text const &library, std::vector<CFileExt> const &types)
{
    if (Text const classes = list_classes(library, types); !classes.IsEmpty())
        return { L"loaded", L"types:" + classes };
    PluginInfo info; // the registration has passed over libraries of the other system
    if (LoadPlugin(library, "InitBitmapParser", info))
        FreePlugin(info.m_module, "InitBitmapParser");
    Text reason;
    if (GetPluginVerdict(library, &reason) == pluginNotRefused)
        return { L"not used", L"all of its types are left out" };
    return { L"refused", reason, false };
}

} // namespace

int list_plugins(Text const &folder, bool as_json)
{
    std::vector<CFileExt> const types = get_types();
    kor_apps::TextTable table({ L"library", L"verdict", L"types, or the reason" });
    auto json = nlohmann::ordered_json::array();
    bool refused = false;
    std::vector<Text> const libraries = find_libraries(folder);
    for (Text const &library : libraries) {
        Finding const finding = examine(library, types);
        table.Add({ fileStripPath(library), finding.verdict, finding.detail });
        json.push_back({ { "library", to_json(fileStripPath(library)) },
            { "verdict", to_json(finding.verdict) }, { "detail", to_json(finding.detail) } });
        log_line(library + L": " + finding.verdict + L", " + finding.detail);
        refused |= !finding.is_good;
    }
    if (libraries.empty())
        kor_apps::fail(L"there are no plug-ins in " + kor_apps::to_shown(folder));
    if (as_json)
        kor_apps::print_json(json);
    else
        table.Print();
    return refused ? exit_failed : exit_done;
}

} // namespace scoutrix
