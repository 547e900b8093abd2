// SPDX-License-Identifier: MIT
// The buffer holds either bytes that were read ahead, and then the system's position is behind
// them, or bytes that are to be written, and then it is in front of them. m_offset is always the
// buffer's place in the file, so that GetPosition() need not ask the system.
#include "kortools/archive/stdio_file.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"

#include <algorithm>
#include <cstring>
#include <utility>

KOR_IMPLEMENT_CLASS(CXStdioFile, CXFile, 1 | CXRuntimeClass::not_serializable)

using namespace kortools::platform;

namespace {

unsigned long long get_system_position(FileHandle handle)
{
    return static_cast<unsigned long long>(
        std::max(0LL, seek_file(handle, 0, SeekOrigin::Current)));
}

} // namespace

CXStdioFile::CXStdioFile(bool throwOnError)
    : CXFile(throwOnError)
{
}

CXStdioFile::CXStdioFile(std::FILE *stream, bool throwOnError)
    : CXFile(stream, throwOnError)
{
    SetLineEnd(lineEndSystem);
    if (IsOpen())
        m_offset = get_system_position(GetHandle());
}

CXStdioFile::CXStdioFile(wchar_t const *path, unsigned int flags, bool throwOnError)
    : CXFile(throwOnError)
{
    CXFileException error;
    if (!CXStdioFile::Open(path, flags, &error) && throwOnError)
        CXFileException::ThrowErrno(error.GetCause(), 0, error.GetFileName());
}

CXStdioFile::~CXStdioFile()
{
    CXStdioFile::Abort();
}

// --- the buffer

bool CXStdioFile::StartReading()
{
    if (m_buffer.IsEmpty())
        m_buffer.SetLength(buffer_size);
    bool const isWritten = WriteBuffer();
    m_isWriting = false;
    return isWritten;
}

void CXStdioFile::StartWriting()
{
    if (m_buffer.IsEmpty())
        m_buffer.SetLength(buffer_size);
    if (m_isWriting)
        return;
    DropReadAhead();
    m_isWriting = true;
    m_wroteReturn = false;
}

void CXStdioFile::DropReadAhead()
{
    m_offset += m_at;
    if (m_at != m_end)
        seek_file(GetHandle(), static_cast<long long>(m_offset), SeekOrigin::Begin);
    m_at = m_end = 0;
}

// For a file that was just opened or closed.
void CXStdioFile::Restart()
{
    m_at = m_end = 0;
    m_offset = 0;
    m_isWriting = false;
}

// Reads more bytes behind those that are there and returns how many.
std::size_t CXStdioFile::Fill()
{
    char *const data = m_buffer.GetData();
    std::copy(data + m_at, data + m_end, data);
    m_offset += m_at;
    m_end -= m_at;
    m_at = 0;
    if (m_end == static_cast<std::size_t>(m_buffer.GetLength()))
        m_buffer.SetLength(m_buffer.GetLength() * 2);
    auto const room = static_cast<unsigned int>(m_buffer.GetLength()) - m_end;
    long long const size
        = read_file(GetHandle(), m_buffer.GetData() + m_end, static_cast<unsigned int>(room));
    if (size < 0)
        ReportFailure();
    else
        m_end += static_cast<std::size_t>(size);
    return static_cast<std::size_t>(std::max(0LL, size));
}

std::string_view CXStdioFile::Peek(std::size_t count)
{
    if (!StartReading())
        return {};
    while (m_end - m_at < count && Fill() != 0) { }
    return { m_buffer.GetData() + m_at, std::min(count, m_end - m_at) };
}

void CXStdioFile::Put(std::string_view bytes)
{
    if (bytes.size() > buffer_size - m_end) {
        if (!WriteBuffer())
            return;
        if (bytes.size() > buffer_size) {
            WriteToSystem(bytes.data(), bytes.size());
            return;
        }
    }
    std::copy(bytes.begin(), bytes.end(), m_buffer.GetData() + m_end);
    m_end += bytes.size();
}

bool CXStdioFile::WriteBuffer()
{
    std::size_t const size = m_isWriting ? std::exchange(m_end, 0) : 0;
    return size == 0 || WriteToSystem(m_buffer.GetData(), size);
}

bool CXStdioFile::WriteToSystem(char const *bytes, std::size_t size)
{
    constexpr std::size_t most = 0x40000000;
    while (size != 0) {
        std::size_t const count = std::min(size, most);
        if (!IsOpen() || !write_file(GetHandle(), bytes, static_cast<unsigned int>(count))) {
            // What comes next takes the place of what was written in part.
            unsigned int const error = get_last_os_error();
            if (IsOpen())
                seek_file(GetHandle(), static_cast<long long>(m_offset), SeekOrigin::Begin);
            set_last_os_error(error);
            ReportFailure();
            return false;
        }
        m_offset += count;
        bytes += count;
        size -= count;
    }
    return true;
}

// --- CXFile

unsigned long long CXStdioFile::GetPosition() const
{
    return IsOpen() ? m_offset + (m_isWriting ? m_end : m_at) : CXFile::GetPosition();
}

bool CXStdioFile::Open(wchar_t const *path, unsigned int flags, CXFileException *error)
{
    CXStdioFile::Abort();
    m_isText = (flags & typeBinary) == 0;
    SetLineEnd(lineEndSystem);
    m_format.encoding = xTextANSI;
    m_mark = {};
    return CXFile::Open(path, flags, error);
}

unsigned long long CXStdioFile::Seek(long long offset, SeekPosition origin)
{
    WriteBuffer();
    m_isWriting = false;
    DropReadAhead();
    m_offset = CXFile::Seek(offset, origin);
    return m_offset;
}

void CXStdioFile::SetLength(unsigned long long length)
{
    WriteBuffer();
    m_isWriting = false;
    DropReadAhead();
    CXFile::SetLength(length);
    if (IsOpen())
        m_offset = get_system_position(GetHandle());
}

unsigned long long CXStdioFile::GetLength() const
{
    unsigned long long const length = CXFile::GetLength();
    return m_isWriting ? std::max(length, m_offset + m_end) : length;
}

unsigned int CXStdioFile::Read(void *target, unsigned int count)
{
    if (!IsOpen() || !target)
        return CXFile::Read(target, count);
    auto *const bytes = static_cast<char *>(target);
    unsigned int done = 0;
    bool const isReady = count != 0 && StartReading();
    while (isReady && done < count) {
        if (m_at == m_end && count - done >= buffer_size) {
            DropReadAhead();
            unsigned int const size = CXFile::Read(bytes + done, count - done);
            m_offset += size;
            return done + size;
        }
        if (m_at == m_end && Fill() == 0)
            break;
        auto const size
            = static_cast<unsigned int>(std::min<std::size_t>(count - done, m_end - m_at));
        std::memcpy(bytes + done, m_buffer.GetData() + m_at, size);
        m_at += size;
        done += size;
    }
    return done;
}

void CXStdioFile::Write(void const *source, unsigned int count)
{
    if (!IsOpen() || !source)
        return CXFile::Write(source, count);
    if (count == 0)
        return;
    StartWriting();
    Put(std::string_view(static_cast<char const *>(source), count));
    m_wroteReturn = false;
}

void CXStdioFile::Abort()
{
    try {
        WriteBuffer();
    } catch (CXException *exception) {
        exception->Delete();
    } catch (...) { // no memory to tell of it
    }
    Restart();
    CXFile::Abort();
}

void CXStdioFile::Flush()
{
    if (IsOpen())
        WriteBuffer();
    else
        ReportFailure();
}

void CXStdioFile::Close()
{
    try {
        WriteBuffer();
    } catch (...) {
        Restart();
        CXFile::Abort();
        throw;
    }
    Restart();
    CXFile::Close();
}
