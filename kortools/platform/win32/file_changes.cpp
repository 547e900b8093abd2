// SPDX-License-Identifier: MIT
#include "kortools/platform/file_changes.h"

#include "kortools/platform/file_status.h"

#include <windows.h>

namespace kortools::platform {
namespace {

// What a failed copy may have left: nothing, or a part of the file.
struct Facts {
    bool exists = false;
    WIN32_FILE_ATTRIBUTE_DATA data = {};
};

Facts get_facts(wchar_t const *path)
{
    Facts facts;
    facts.exists = GetFileAttributesExW(path, GetFileExInfoStandard, &facts.data) != 0;
    return facts;
}

bool is_changed(Facts const &before, Facts const &after)
{
    return !before.exists || before.data.nFileSizeLow != after.data.nFileSizeLow
        || before.data.nFileSizeHigh != after.data.nFileSizeHigh
        || CompareFileTime(&before.data.ftLastWriteTime, &after.data.ftLastWriteTime) != 0;
}

} // namespace

bool create_directory(wchar_t const *path)
{
    return CreateDirectoryW(path, nullptr) != 0;
}

bool create_private_directory(wchar_t const *path)
{
    // Folders inherit who may use them, and the user's temporary one is private.
    return create_directory(path);
}

bool copy_file(wchar_t const *from, wchar_t const *to, Existing existing)
{
    FileIdentity source;
    FileIdentity target;
    if (get_file_identity(from, source) && get_file_identity(to, target) && source == target) {
        SetLastError(ERROR_SHARING_VIOLATION);
        return false;
    }
    Facts const before = get_facts(to);
    if (CopyFileW(from, to, existing == Existing::Keep))
        return true;
    DWORD const code = GetLastError();
    Facts const after = get_facts(to);
    if (after.exists && is_changed(before, after))
        DeleteFileW(to);
    SetLastError(code);
    return false;
}

bool move_file(wchar_t const *from, wchar_t const *to, Existing existing, OtherVolume other_volume)
{
    DWORD const flags = (existing == Existing::Replace ? MOVEFILE_REPLACE_EXISTING : 0)
        | (other_volume == OtherVolume::Copy ? MOVEFILE_COPY_ALLOWED : 0);
    return MoveFileExW(from, to, flags) != 0;
}

bool delete_file(wchar_t const *path)
{
    return DeleteFileW(path) != 0;
}

} // namespace kortools::platform
