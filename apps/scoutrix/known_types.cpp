// SPDX-License-Identifier: MIT
#include "apps/scoutrix/known_types.h"

#include "apps/common/paths.h"
#include "kortools/app/application.h"
#include "kortools/files/file_status.h"
#include "kortools/files/io_plugins.h"
#include "kortools/files/path_parts.h"
#include "kortools/files/plugins.h"

#include <array>

namespace scoutrix {
namespace {

constexpr unsigned int own_component = fileMakeCode("SCTX");

CFileExt make_type(
    wchar_t const *description, wchar_t const *extensions, unsigned int code, unsigned int kind)
{
    CFileExt type;
    type.m_description = description;
    type.m_extensions = extensions;
    type.m_class = code;
    type.m_properties = kind | 0x1;
    type.m_loader = own_component;
    return type;
}

std::array<CFileExt, 3> make_types()
{
    return { make_type(L"Windows Bitmap files", L".bmp", fileMakeCode("BMP "), fileKindBitmap),
        make_type(
            L"Portable Network Graphics files", L".png", fileMakeCode("PNG "), fileKindBitmap),
        make_type(L"Wavefront OBJ files", L".obj", fileMakeCode("OBJ "), fileKind3D) };
}

} // namespace

Text find_plugin_folder()
{
    Text const program = GetApplicationPath(true);
    for (Text const &folder : { GetPluginsDirectory(), program + L"..\\plugins\\",
             program + L"..\\" + Text(KOR_INSTALLED_PLUGINS) }) {
        if (!folder.IsEmpty() && fileDirectoryExists(folder))
            return kor_apps::make_absolute(folder);
    }
    return GetPluginsDirectory();
}

KnownTypes::KnownTypes(Text const &plugin_folder)
{
    fileGetClass(L".bmp"); // plug-ins need the registry, which the first question makes
    if (!plugin_folder.IsEmpty()) {
        RegisterIOPlugins(fileKindBitmap, plugin_folder);
        RegisterIOPlugins(fileKind3D, plugin_folder);
    }
    for (CFileExt &type : make_types())
        fileRegisterFile(type);
}

KnownTypes::~KnownTypes()
{
    for (CFileExt const &type : make_types())
        fileUnregisterFile(type.m_class, own_component);
    FreeIOPlugins(fileKind3D);
    FreeIOPlugins(fileKindBitmap);
}

bool find_own_type(Text const &path, CFileExt &type)
{
    Text const extension = fileGetExtension(path);
    for (CFileExt const &own : make_types()) {
        if (extension.CompareNoCase(own.m_extensions) == 0) {
            type = own;
            return true;
        }
    }
    return false;
}

} // namespace scoutrix
