// SPDX-License-Identifier: MIT
#include "apps/common/paths.h"

#include "apps/common/console.h"
#include "kortools/platform/file_system.h"

namespace kor_apps {

std::filesystem::path to_native(CXTString<wchar_t> const &path)
{
    auto const native = kortools::platform::to_native_path(static_cast<std::wstring_view>(path));
    return std::filesystem::path(std::u8string(native.begin(), native.end()));
}

CXTString<wchar_t> from_native(std::filesystem::path const &path)
{
    std::u8string const native = path.u8string();
    std::string_view const bytes(reinterpret_cast<char const *>(native.data()), native.size());
    return CXTString<wchar_t>(kortools::platform::from_native_path(bytes).c_str());
}

CXTString<wchar_t> to_shown(CXTString<wchar_t> const &path)
{
    std::u8string const native = to_native(path).u8string();
    return from_utf8(std::string(native.begin(), native.end()));
}

CXTString<wchar_t> make_absolute(CXTString<wchar_t> const &path)
{
    std::error_code error; // when there is no current folder, the path stays as it is
    auto const absolute = std::filesystem::absolute(to_native(path), error);
    return error ? path : from_native(absolute.lexically_normal());
}

} // namespace kor_apps
