// SPDX-License-Identifier: MIT
#include "apps/scoutrix/type_table.h"

#include "apps/common/console.h"
#include "apps/common/text_table.h"
#include "apps/scoutrix/exit_codes.h"
#include "kortools/files/io_plugins.h"
#include "kortools/files/path_parts.h"

#include <algorithm>

namespace scoutrix {
namespace {

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
    kor_apps::TextTable table({ L"class", L"kind", L"can", L"loader", L"saver", L"plug-in",
        L"extensions", L"description" });
    int listed = 0;
    for (CFileExt const &type : get_types()) {
        if (!is_wanted(type, filter))
            continue;
        Text extensions = type.m_extensions;
        extensions.Replace(L'|', L' ');
        table.Add(
            { format_code(type.m_class), kor_apps::from_utf8(get_kind_name(type.m_properties)),
                get_abilities(type), format_code(type.m_loader), format_code(type.m_saver),
                get_library_name(type), extensions, type.m_description });
        ++listed;
    }
    if (listed > 0)
        table.Print();
    return listed > 0 ? exit_done : exit_failed;
}

} // namespace scoutrix
