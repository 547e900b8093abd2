// SPDX-License-Identifier: MIT
#include "apps/scoutrix/type_table.h"

#include "apps/common/console.h"
#include "apps/common/exit_codes.h"
#include "apps/common/json_output.h"
#include "apps/common/text_table.h"
#include "apps/scoutrix/node_json.h"
#include "kortools/files/io_plugins.h"
#include "kortools/files/path_parts.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace scoutrix {
namespace {

using enum kor_apps::ExitCode;

struct Kind {
    unsigned int bit;
    char const *name;
};

// What can be drawn as a bitmap counts as one only when it is nothing else.
constexpr Kind kinds[]
    = { { fileKindArchive, "archive" }, { fileKindWebPage, "web" }, { fileKindVideo, "video" },
          { fileKindAudio, "audio" }, { fileKind3D, "3d" }, { fileKindBitmap, "bitmap" } };

Text get_abilities(CFileExt const &type)
{
    bool const loads = (type.m_properties & fileCanLoad) != 0;
    bool const saves = (type.m_properties & fileCanSave) != 0;
    return loads && saves ? L"load save" : loads ? L"load" : saves ? L"save" : L"-";
}

bool is_wanted(CFileExt const &type, TypeFilter const &filter)
{
    bool const kind = filter.kinds.empty()
        || std::ranges::find(filter.kinds, get_kind_name(type.m_properties)) != filter.kinds.end();
    return kind && (!filter.loaded || (type.m_properties & fileCanLoad) != 0)
        && (!filter.saved || (type.m_properties & fileCanSave) != 0);
}

std::vector<std::string> split(std::string const &extensions)
{
    std::vector<std::string> parts;
    std::istringstream text(extensions);
    for (std::string part; std::getline(text, part, '|');)
        parts.push_back(part);
    return parts;
}

// Codes of no component are null.
nlohmann::ordered_json describe_type(CFileExt const &type)
{
    auto const code = [](unsigned int number) {
        return number == fileNoComponent ? nlohmann::ordered_json() : to_json(format_code(number));
    };
    Text const library = get_library_name(type);
    return { { "class", code(type.m_class) }, { "kind", get_kind_name(type.m_properties) },
        { "loads", (type.m_properties & fileCanLoad) != 0 },
        { "saves", (type.m_properties & fileCanSave) != 0 }, { "loader", code(type.m_loader) },
        { "saver", code(type.m_saver) },
        { "plugin", library.IsEmpty() ? nlohmann::ordered_json() : to_json(library) },
        { "extensions", split(kor_apps::to_utf8(type.m_extensions)) },
        { "description", to_json(type.m_description) } };
}

void print_types(std::vector<CFileExt> const &types)
{
    kor_apps::TextTable table({ L"class", L"kind", L"can", L"loader", L"saver", L"plug-in",
        L"extensions", L"description" });
    for (CFileExt const &type : types) {
        Text extensions = type.m_extensions;
        extensions.Replace(L'|', L' ');
        table.Add(
            { format_code(type.m_class), kor_apps::from_utf8(get_kind_name(type.m_properties)),
                get_abilities(type), format_code(type.m_loader), format_code(type.m_saver),
                get_library_name(type), extensions, type.m_description });
    }
    table.Print();
}

} // namespace

std::vector<std::string> get_kind_names()
{
    std::vector<std::string> names;
    for (Kind const &kind : kinds)
        names.emplace_back(kind.name);
    return names;
}

std::string get_kind_name(unsigned int properties)
{
    auto const found = std::ranges::find_if(
        kinds, [&](Kind const &kind) { return (properties & kind.bit) != 0; });
    return found == std::end(kinds) ? "-" : found->name;
}

Text format_code(unsigned int code)
{
    if (code == fileNoComponent)
        return L"-";
    Text text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        unsigned int const character = code >> shift & 0xFF;
        text += static_cast<wchar_t>(character > 0x20 && character < 0x7F ? character : L' ');
    }
    return text.TrimRight();
}

std::vector<CFileExt> get_types()
{
    unsigned int count = 0;
    CFileExt *const types = fileGetRegisteredFiles(count);
    std::vector<CFileExt> result(types, types + count);
    fileFreeRegisteredFiles(types, count);
    return result;
}

Text get_library_name(CFileExt const &type)
{
    return fileStripPath(GetIOPluginPath(type.m_callback));
}

int list_types(TypeFilter const &filter)
{
    std::vector<CFileExt> types = get_types();
    std::erase_if(types, [&](CFileExt const &type) { return !is_wanted(type, filter); });
    if (filter.json) {
        auto json = nlohmann::ordered_json::array();
        for (CFileExt const &type : types)
            json.push_back(describe_type(type));
        kor_apps::print_json(json);
    } else if (!types.empty()) {
        print_types(types);
    }
    return types.empty() ? exit_failed : exit_done;
}

} // namespace scoutrix
