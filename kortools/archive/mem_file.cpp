// SPDX-License-Identifier: MIT
#include "kortools/archive/mem_file.h"

#include "kortools/core/throw.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

KOR_IMPLEMENT_CLASS(CXMemFile, CXFile, 1 | CXRuntimeClass::not_serializable)

namespace {

constexpr unsigned long long default_grow_bytes = 2048;
constexpr unsigned long long max_block_size = PTRDIFF_MAX;

bool lies_in(void const *pointer, unsigned char const *block, unsigned long long size)
{
    std::less<void const *> const is_before;
    return block && !is_before(pointer, block) && is_before(pointer, block + size);
}

} // namespace

CXMemFile::CXMemFile(unsigned int growBytes, bool throwOnError)
    : CXFile(throwOnError)
    , m_growBytes(growBytes)
    , m_throwOnError(throwOnError)
{
}

CXMemFile::CXMemFile(
    unsigned char const *buffer, unsigned long long size, bool autoDelete, bool throwOnError)
    : CXMemFile(0, throwOnError)
{
    Attach(buffer, size, 0, autoDelete);
}

CXMemFile::~CXMemFile()
{
    CXMemFile::Abort();
}

unsigned long long CXMemFile::RejectArgument(unsigned long long result) const
{
    if (m_throwOnError)
        kortools::core::throw_invalid_argument();
    return result;
}

void CXMemFile::TakeBlock(unsigned char *buffer, unsigned long long size, bool autoDelete)
{
    if (m_autoDelete && m_buffer != buffer)
        Free(m_buffer);
    m_buffer = buffer;
    m_capacity = m_bufferSize = m_fileSize = size;
    m_position = 0;
    m_autoDelete = autoDelete;
}

void CXMemFile::Attach(
    unsigned char const *buffer, unsigned long long size, unsigned int growBytes, bool autoDelete)
{
    if (size > max_block_size || (!buffer && size != 0)) {
        RejectArgument();
        return;
    }
    TakeBlock(const_cast<unsigned char *>(buffer), size, autoDelete);
    m_growBytes = growBytes;
}

unsigned char *CXMemFile::Detach()
{
    unsigned char *const block = m_buffer;
    m_autoDelete = false; // the block is no longer the file's to free
    TakeBlock(nullptr, 0, true);
    m_growBytes = default_grow_bytes;
    m_throwOnError = true;
    return block;
}

unsigned long long CXMemFile::GetPosition() const
{
    return m_position;
}

bool CXMemFile::Open(wchar_t const *path, unsigned int, CXFileException *error)
{
    FillError(error, CXFileException::genericException, path);
    return false;
}

unsigned long long CXMemFile::Seek(long long offset, SeekPosition origin)
{
    unsigned long long const base = origin == begin ? 0
        : origin == current                         ? m_position
                                                    : m_fileSize;
    // Also right for the smallest offset, which has no positive counterpart.
    auto const distance = static_cast<unsigned long long>(offset);
    unsigned long long const position = base + distance;
    bool const wraps = offset < 0 ? position > base : position < base;
    if (wraps)
        return RejectArgument(m_position);
    return m_position = position;
}

void CXMemFile::SetLength(unsigned long long length)
{
    if (length > m_bufferSize && !GrowBuffer(length))
        return;
    if (length > m_fileSize)
        std::memset(m_buffer + m_fileSize, 0, length - m_fileSize);
    m_fileSize = length;
    m_position = std::min(m_position, length);
}

unsigned long long CXMemFile::GetLength() const
{
    return m_fileSize;
}

unsigned int CXMemFile::Read(void *target, unsigned int count)
{
    if (count == 0 || m_position >= m_fileSize)
        return 0;
    if (!target)
        return static_cast<unsigned int>(RejectArgument());
    unsigned long long const size = std::min<unsigned long long>(count, m_fileSize - m_position);
    Memcpy(target, m_buffer + m_position, size);
    m_position += size;
    return static_cast<unsigned int>(size);
}

// The bytes from the position on are written.
void CXMemFile::AdvanceOver(unsigned long long count)
{
    m_position += count;
    m_fileSize = std::max(m_fileSize, m_position);
}

void CXMemFile::Write(void const *source, unsigned int count)
{
    if (count == 0)
        return;
    if (!source || m_position > ULLONG_MAX - count) {
        RejectArgument();
        return;
    }
    // The block may move, and the source with it.
    auto const *bytes = static_cast<unsigned char const *>(source);
    bool const is_own = lies_in(bytes, m_buffer, m_bufferSize);
    std::ptrdiff_t const offset = is_own ? bytes - m_buffer : 0;
    if (m_position + count > m_bufferSize && !GrowBuffer(m_position + count))
        return;
    if (m_position > m_fileSize)
        std::memset(m_buffer + m_fileSize, 0, m_position - m_fileSize);
    Memcpy(m_buffer + m_position, is_own ? m_buffer + offset : bytes, count);
    AdvanceOver(count);
}

void CXMemFile::Abort()
{
    TakeBlock(nullptr, 0, true);
}

void CXMemFile::Close()
{
    TakeBlock(nullptr, 0, true);
}

void CXMemFile::Flush() { }

unsigned long long CXMemFile::BufferCommand(
    BufferCommandType command, unsigned long long count, void **windowStart, void **windowEnd)
{
    switch (command) {
    case bufferRead:
        return OpenReadWindow(count, windowStart, windowEnd);
    case bufferWrite:
        return OpenWriteWindow(count, windowStart, windowEnd);
    case bufferCommit:
        return CommitWindow(count);
    case bufferCheck:
        return 1;
    }
    return RejectArgument();
}

unsigned long long CXMemFile::OpenReadWindow(
    unsigned long long count, void **windowStart, void **windowEnd)
{
    if (!windowStart || !windowEnd)
        return RejectArgument();
    unsigned long long const first = std::min(m_position, m_fileSize);
    unsigned long long const size = std::min(count, m_fileSize - first);
    *windowStart = m_buffer + first;
    *windowEnd = m_buffer + first + size;
    m_position += size;
    return size;
}

unsigned long long CXMemFile::OpenWriteWindow(
    unsigned long long count, void **windowStart, void **windowEnd)
{
    if (!windowStart || !windowEnd || m_position > ULLONG_MAX - count)
        return RejectArgument();
    if (m_position + count > m_bufferSize && !GrowBuffer(m_position + count))
        return 0;
    *windowStart = m_buffer + m_position;
    *windowEnd = m_buffer + m_bufferSize;
    return 1;
}

unsigned long long CXMemFile::CommitWindow(unsigned long long count)
{
    if (count == 0)
        return 1;
    if (m_position > m_bufferSize || count > m_bufferSize - m_position)
        return RejectArgument();
    if (m_position > m_fileSize)
        std::memset(m_buffer + m_fileSize, 0, m_position - m_fileSize);
    AdvanceOver(count);
    return 1;
}

// Allocates `size` bytes, and half as much again as there was when there is memory for it.
bool CXMemFile::Reserve(unsigned long long size)
{
    unsigned long long const ahead = std::min(m_capacity + m_capacity / 2, max_block_size);
    for (unsigned long long const capacity : { std::max(size, ahead), size }) {
        unsigned char *const block = m_autoDelete ? Realloc(m_buffer, capacity) : Alloc(capacity);
        if (!block)
            continue;
        if (!m_autoDelete && m_fileSize != 0)
            Memcpy(block, m_buffer, m_fileSize);
        m_buffer = block;
        m_autoDelete = true;
        m_capacity = capacity;
        return true;
    }
    return false;
}

bool CXMemFile::GrowBuffer(unsigned long long newSize)
{
    if (newSize <= m_bufferSize)
        return true;
    if (m_growBytes == 0)
        m_growBytes = default_grow_bytes;
    unsigned long long const missing = newSize - m_bufferSize;
    unsigned long long const steps = missing / m_growBytes + (missing % m_growBytes != 0);
    if (steps <= (max_block_size - m_bufferSize) / m_growBytes) {
        unsigned long long const size = m_bufferSize + steps * m_growBytes;
        if (size <= m_capacity || Reserve(size)) {
            m_bufferSize = size;
            return true;
        }
    }
    if (m_throwOnError)
        kortools::core::throw_out_of_memory();
    return false;
}

unsigned char *CXMemFile::Alloc(std::size_t size)
{
    return static_cast<unsigned char *>(std::malloc(size));
}

unsigned char *CXMemFile::Realloc(unsigned char *block, std::size_t size)
{
    return static_cast<unsigned char *>(std::realloc(block, size));
}

void *CXMemFile::Memcpy(void *target, void const *source, std::size_t size)
{
    return std::memmove(target, source, size);
}

void CXMemFile::Free(void *block)
{
    std::free(block);
}
