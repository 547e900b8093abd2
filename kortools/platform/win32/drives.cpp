// SPDX-License-Identifier: MIT
#include "kortools/platform/drives.h"

#include "kortools/platform/win32/long_path.h"

#include <string_view>
#include <windows.h>
// These need <windows.h> in front of them.
#include <lm.h>
#include <shlwapi.h>

namespace kortools::platform {
namespace {

template <class Function> Function find(HMODULE module, char const *name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(module, name)));
}

// The network libraries are loaded when they are needed: most programs never do.
struct ShareFunctions {
    decltype(&NetShareEnum) list;
    decltype(&NetApiBufferFree) release;

    ShareFunctions()
    {
        HMODULE const module = LoadLibraryW(L"netapi32.dll");
        list = module ? find<decltype(&NetShareEnum)>(module, "NetShareEnum") : nullptr;
        release = module ? find<decltype(&NetApiBufferFree)>(module, "NetApiBufferFree") : nullptr;
    }
};

std::wstring get_computer_name()
{
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    return GetComputerNameW(name, &size) ? std::wstring(name, size) : std::wstring();
}

bool is_below(std::wstring_view path, std::wstring_view folder)
{
    if (path.size() < folder.size())
        return false;
    auto const size = static_cast<int>(folder.size());
    return CompareStringOrdinal(path.data(), size, folder.data(), size, TRUE) == CSTR_EQUAL
        && (path.size() == folder.size() || path[folder.size()] == L'\\');
}

// Takes the shares for their purpose; those that every system has for itself (C$) hold every path.
bool is_for_users(SHARE_INFO_2 const &share)
{
    return share.shi2_type == STYPE_DISKTREE && share.shi2_path && *share.shi2_path;
}

bool find_in(std::wstring_view path, SHARE_INFO_2 const *shares, DWORD count, SharedPath &shared)
{
    std::size_t best_size = 0;
    for (SHARE_INFO_2 const *share = shares; share != shares + count; ++share) {
        if (!is_for_users(*share))
            continue;
        std::wstring_view folder = share->shi2_path;
        if (folder.back() == L'\\')
            folder.remove_suffix(1);
        if (!is_below(path, folder) || folder.size() < best_size)
            continue;
        best_size = folder.size();
        std::size_t const rest = std::min(folder.size() + 1, path.size());
        shared = { get_computer_name(), share->shi2_netname, std::wstring(path.substr(rest)) };
    }
    return best_size > 0;
}

} // namespace

DriveType get_drive_type(wchar_t const *path)
{
    wchar_t root[MAX_PATH + 2];
    DWORD const length = GetFullPathNameW(path, MAX_PATH, root, nullptr);
    if (length == 0 || length >= MAX_PATH || !PathStripToRootW(root))
        return DriveType::no_root;
    PathAddBackslashW(root);
    return static_cast<DriveType>(GetDriveTypeW(root));
}

bool find_shared_path(wchar_t const *path, SharedPath &shared)
{
    static ShareFunctions const s_functions;
    if (!s_functions.list || !s_functions.release)
        return false;
    std::wstring full = lift_path_limit(path);
    full.erase(0, std::wstring_view(L"\\\\?\\").size());
    unsigned char *shares = nullptr;
    DWORD count = 0;
    DWORD total = 0;
    NET_API_STATUS const status
        = s_functions.list(nullptr, 2, &shares, MAX_PREFERRED_LENGTH, &count, &total, nullptr);
    bool const found = status == NERR_Success
        && find_in(full, reinterpret_cast<SHARE_INFO_2 const *>(shares), count, shared);
    if (shares)
        s_functions.release(shares);
    if (!found)
        SetLastError(status == NERR_Success ? NERR_NetNameNotFound : status);
    return found;
}

} // namespace kortools::platform
