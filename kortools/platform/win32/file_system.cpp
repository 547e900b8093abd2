// SPDX-License-Identifier: MIT
#include "kortools/platform/file_system.h"

#include "kortools/platform/utf8.h"

#include <cstdio>
#include <io.h>
#include <windows.h>

namespace kortools::platform {
namespace {

DWORD to_access(FileAccess access)
{
    switch (access) {
    case FileAccess::Read:
        return GENERIC_READ;
    case FileAccess::Write:
        return GENERIC_WRITE;
    case FileAccess::ReadWrite:
        break;
    }
    return GENERIC_READ | GENERIC_WRITE;
}

DWORD to_sharing(FileSharing sharing)
{
    switch (sharing) {
    case FileSharing::None:
        return 0;
    case FileSharing::Read:
        return FILE_SHARE_READ;
    case FileSharing::Write:
        return FILE_SHARE_WRITE;
    case FileSharing::ReadWrite:
        break;
    }
    return FILE_SHARE_READ | FILE_SHARE_WRITE;
}

DWORD to_creation(FileCreation creation)
{
    switch (creation) {
    case FileCreation::OpenExisting:
        return OPEN_EXISTING;
    case FileCreation::CreateAlways:
        return CREATE_ALWAYS;
    case FileCreation::OpenAlways:
        break;
    }
    return OPEN_ALWAYS;
}

} // namespace

FileHandle open_file(
    wchar_t const *path, FileAccess access, FileSharing sharing, FileCreation creation)
{
    SECURITY_ATTRIBUTES not_inherited { sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE };
    return CreateFileW(path, to_access(access), to_sharing(sharing), &not_inherited,
        to_creation(creation), FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool close_file(FileHandle file)
{
    return CloseHandle(file) != 0;
}

long long read_file(FileHandle file, void *target, unsigned int count)
{
    auto *const bytes = static_cast<char *>(target);
    unsigned int done = 0;
    while (done < count) {
        DWORD size = 0;
        if (!ReadFile(file, bytes + done, count - done, &size, nullptr)) {
            // The writer of a pipe has closed it, which is how a pipe ends.
            if (GetLastError() == ERROR_BROKEN_PIPE)
                break;
            return -1;
        }
        if (size == 0)
            break;
        done += size;
    }
    return done;
}

bool write_file(FileHandle file, void const *source, unsigned int count)
{
    auto const *const bytes = static_cast<char const *>(source);
    unsigned int done = 0;
    while (done < count) {
        DWORD size = 0;
        if (!WriteFile(file, bytes + done, count - done, &size, nullptr))
            return false;
        if (size == 0) {
            SetLastError(ERROR_DISK_FULL);
            return false;
        }
        done += size;
    }
    return true;
}

long long seek_file(FileHandle file, long long offset, SeekOrigin origin)
{
    LARGE_INTEGER distance;
    LARGE_INTEGER position;
    distance.QuadPart = offset;
    DWORD const method = origin == SeekOrigin::Begin ? FILE_BEGIN
        : origin == SeekOrigin::Current              ? FILE_CURRENT
                                                     : FILE_END;
    return SetFilePointerEx(file, distance, &position, method) ? position.QuadPart : -1;
}

long long get_file_size(FileHandle file)
{
    LARGE_INTEGER size;
    return GetFileSizeEx(file, &size) ? size.QuadPart : -1;
}

bool set_file_size(FileHandle file, long long size)
{
    if (size < 0) {
        SetLastError(ERROR_NEGATIVE_SEEK);
        return false;
    }
    FILE_END_OF_FILE_INFO end;
    end.EndOfFile.QuadPart = size;
    return SetFileInformationByHandle(file, FileEndOfFileInfo, &end, sizeof(end)) != 0;
}

bool flush_file(FileHandle file)
{
    // A file that is open for reading only has nothing to bring to the disk.
    return FlushFileBuffers(file) || GetLastError() == ERROR_ACCESS_DENIED;
}

FileHandle get_stream_handle(void *c_stream)
{
    if (c_stream == nullptr)
        return invalid_file_handle();
    auto *const stream = static_cast<std::FILE *>(c_stream);
    int const descriptor = _fileno(stream);
    if (descriptor < 0) // -2: a standard stream of a program without a console
        return invalid_file_handle();
    // Flushing a stream that was read drops its buffer but leaves the file behind it.
    long long const position = _ftelli64(stream);
    std::fflush(stream);
    if (position >= 0)
        _lseeki64(descriptor, position, SEEK_SET);
    intptr_t const handle = _get_osfhandle(descriptor);
    return handle < 0 ? invalid_file_handle() : reinterpret_cast<FileHandle>(handle);
}

std::string to_native_path(std::wstring_view path)
{
    std::string native(path.size() * 3, '\0');
    long long const size = encode_utf8(path.data(), path.size(), native.data(), native.size());
    native.resize(static_cast<std::size_t>(size));
    return native;
}

std::wstring from_native_path(std::string_view native)
{
    std::wstring path(native.size(), L'\0');
    long long const length = decode_utf8(native.data(), native.size(), path.data(), path.size());
    path.resize(static_cast<std::size_t>(length));
    return path;
}

bool map_drive(wchar_t, std::string_view)
{
    return false;
}

bool map_share(std::wstring_view, std::string_view)
{
    return false;
}

} // namespace kortools::platform
