// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"

#include "kortools/core/utf16.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"

#include <climits>
#include <utility>

KOR_IMPLEMENT_CLASS(CXFile, CXObject, 1 | CXRuntimeClass::not_serializable)

namespace {

using namespace kortools::platform;

constexpr std::size_t path_limit = 260; // UTF-16 units, terminator included
constexpr unsigned int error_negative_seek = 131;

bool is_valid_path(wchar_t const *path)
{
    std::size_t units = 0;
    for (; path != nullptr && *path != 0 && units < path_limit; ++path)
        units += kortools::core::count_utf16_units(path, 1);
    return units > 0 && units < path_limit;
}

FileAccess to_access(unsigned int flags)
{
    switch (flags & 3) {
    case CXFile::modeWrite:
        return FileAccess::Write;
    case CXFile::modeReadWrite:
        return FileAccess::ReadWrite;
    default:
        return FileAccess::Read;
    }
}

FileSharing to_sharing(unsigned int flags)
{
    switch (flags & 0x70) {
    case CXFile::shareDenyWrite:
        return FileSharing::Read;
    case CXFile::shareDenyRead:
        return FileSharing::Write;
    case CXFile::shareDenyNone:
        return FileSharing::ReadWrite;
    default:
        return FileSharing::None;
    }
}

FileCreation to_creation(unsigned int flags)
{
    if ((flags & CXFile::modeCreate) == 0)
        return FileCreation::OpenExisting;
    return (flags & CXFile::modeNoTruncate) != 0 ? FileCreation::OpenAlways
                                                 : FileCreation::CreateAlways;
}

} // namespace

CXFile::CXFile(bool throwOnError)
    : m_handle(invalid_file_handle())
    , m_throwOnError(throwOnError)
{
}

CXFile::CXFile(Handle handle, bool throwOnError)
    : m_handle(handle)
    , m_throwOnError(throwOnError)
{
}

CXFile::CXFile(std::FILE *stream, bool throwOnError)
    : CXFile(get_stream_handle(stream), throwOnError)
{
}

CXFile::CXFile(wchar_t const *path, unsigned int flags, bool throwOnError)
    : CXFile(throwOnError)
{
    CXFileException error;
    if (!CXFile::Open(path, flags, &error) && throwOnError)
        CXFileException::ThrowErrno(error.GetCause(), 0, error.GetFileName());
}

CXFile::~CXFile()
{
    CXFile::Abort();
}

void CXFile::ReportFailure() const
{
    if (m_throwOnError)
        CXFileException::ThrowOsError(CXFileException::genericException, m_filePath);
}

void CXFile::FillError(
    CXFileException *error, CXFileException::FileExceptionType cause, wchar_t const *path) noexcept
try {
    if (!error)
        return;
    CXFileException::ThrowErrno(cause, 0, CXTString<wchar_t>(kortools::core::NoBlock()), error);
    CXFileException::ThrowErrno(cause, 0, path, error);
} catch (CXException *exception) {
    exception->Delete(); // no memory for the path; the cause is there
} catch (...) {
}

bool CXFile::IsOpen() const
{
    return m_handle != invalid_file_handle();
}

unsigned long long CXFile::GetPosition() const
{
    long long const position = IsOpen() ? seek_file(m_handle, 0, SeekOrigin::Current) : -1;
    if (position < 0) {
        ReportFailure();
        return 0;
    }
    return static_cast<unsigned long long>(position);
}

CXTString<wchar_t> CXFile::GetFileName() const
{
    std::wstring_view const path = m_filePath;
    bool const has_drive = path.size() >= 2 && path[1] == L':';
    std::size_t const separator = path.find_last_of(L"\\/");
    std::size_t const name = separator != std::wstring_view::npos ? separator + 1
        : has_drive                                               ? 2
                                                                  : 0;
    return m_filePath.GetConstBuffer() + name;
}

CXTString<wchar_t> CXFile::GetFilePath() const
{
    return m_filePath;
}

void CXFile::SetFilePath(wchar_t const *path)
{
    m_filePath = path;
}

bool CXFile::Open(wchar_t const *path, unsigned int flags, CXFileException *error)
{
    CXFile::Abort();
    if (!is_valid_path(path)) {
        FillError(error, CXFileException::badPath, path);
        return false;
    }
    try {
        CXTString<wchar_t> filePath(path);
        Handle const handle
            = open_file(path, to_access(flags), to_sharing(flags), to_creation(flags));
        if (handle != invalid_file_handle()) {
            m_handle = handle;
            m_ownsHandle = true;
            m_filePath = std::move(filePath);
            return true;
        }
        if (error)
            CXFileException::ThrowOsError(CXFileException::genericException, filePath, error);
    } catch (CXException *exception) {
        exception->Delete(); // no memory for a copy of the path
        FillError(error, CXFileException::genericException, path);
    } catch (...) {
        FillError(error, CXFileException::genericException, path);
    }
    return false;
}

unsigned long long CXFile::Seek(long long offset, SeekPosition origin)
{
    SeekOrigin const from = origin == begin ? SeekOrigin::Begin
        : origin == current                 ? SeekOrigin::Current
                                            : SeekOrigin::End;
    long long const position = IsOpen() ? seek_file(m_handle, offset, from) : -1;
    if (position < 0) {
        ReportFailure();
        return CXFile::GetPosition();
    }
    return static_cast<unsigned long long>(position);
}

void CXFile::SetLength(unsigned long long length)
{
    if (length > LLONG_MAX) {
        set_last_os_error(error_negative_seek);
        ReportFailure();
        return;
    }
    auto const size = static_cast<long long>(length);
    bool const done = IsOpen() && set_file_size(m_handle, size)
        && (seek_file(m_handle, 0, SeekOrigin::Current) <= size
            || seek_file(m_handle, size, SeekOrigin::Begin) == size);
    if (!done)
        ReportFailure();
}

unsigned long long CXFile::GetLength() const
{
    long long const size = IsOpen() ? get_file_size(m_handle) : -1;
    if (size < 0) {
        ReportFailure();
        return 0;
    }
    return static_cast<unsigned long long>(size);
}

unsigned int CXFile::Read(void *target, unsigned int count)
{
    if (count == 0)
        return 0;
    long long const size = IsOpen() && target ? read_file(m_handle, target, count) : -1;
    if (size < 0) {
        ReportFailure();
        return 0;
    }
    return static_cast<unsigned int>(size);
}

void CXFile::Write(void const *source, unsigned int count)
{
    if (count == 0)
        return;
    if (!IsOpen() || !source || !write_file(m_handle, source, count))
        ReportFailure();
}

void CXFile::Abort()
{
    if (std::exchange(m_ownsHandle, false))
        close_file(m_handle);
    m_handle = invalid_file_handle();
}

void CXFile::Flush()
{
    if (!IsOpen() || !flush_file(m_handle))
        ReportFailure();
}

void CXFile::Close()
{
    bool const owned = std::exchange(m_ownsHandle, false);
    Handle const handle = std::exchange(m_handle, invalid_file_handle());
    if (owned && !close_file(handle))
        ReportFailure();
}

unsigned long long CXFile::BufferCommand(BufferCommandType, unsigned long long, void **, void **)
{
    return 0;
}
