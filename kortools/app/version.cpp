// SPDX-License-Identifier: MIT
#include "kortools/app/version.h"

#include "kortools/app/application.h"
#include "kortools/app/build_identity.h"
#include "kortools/platform/program.h"
#include "kortools/text/string_table.h"

using kortools::app::BuildIdentity;
using kortools::app::get_build_identity;
using kortools::app::get_patch_version;

unsigned long GetDllVersion(CXTString<wchar_t> &text)
{
    BuildIdentity const &build = get_build_identity();
    text.Format(L"%d.%d.%d", build.major, build.minor, get_patch_version());
    return static_cast<unsigned long>(build.major) << 16 | static_cast<unsigned long>(build.minor);
}

CXTString<wchar_t> GetApplicationDescription(CXTString<wchar_t> const &product, bool withSystem)
{
    enum { heading = 5800, rule, service_pack, word_size }; // texts
    BuildIdentity const &build = get_build_identity();
    CXTString<wchar_t> pack;
    pack.Format(xLoadString(service_pack), build.minor, get_patch_version());
    CXTString<wchar_t> version;
    GetDllVersion(version);
    CXTString<wchar_t> text = xLoadString(heading) + xLoadString(rule);
    text += product.IsEmpty() ? GetInternalProductName(true) : product;
    text += pack + L"\r\n" + xLoadString(word_size);
    text += L"KorTools " + version + L" (" + build.date + L")\r\n";
    if (withSystem)
        text += CXTString<wchar_t>(kortools::platform::get_system_name()) + L"\r\n";
    return text;
}
