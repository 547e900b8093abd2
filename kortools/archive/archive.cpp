// SPDX-License-Identifier: MIT
#include "kortools/archive/archive.h"

#include "kortools/archive/archive_objects.h"
#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"
#include "kortools/core/throw.h"

#include <algorithm>
#include <cstdlib>
#include <exception>

// The window. m_current walks from m_start to m_end; the bytes at m_start lie in the file where
// the last fill or flush was. m_readEnd or m_writeEnd repeats m_end for the mode's own direction
// and is null for the other, so an operation in the wrong mode always takes the slow path, which
// throws. A closed archive has an empty window, too.
//
// Loading from a file that offers its memory, the window is the whole rest of the file: the file's
// position is then at its end, and Refill() merely asks again in case the file has grown. Storing
// to one, a window is asked for when bytes arrive, and committed when it is full.

namespace {

constexpr std::size_t max_file_request = 0x4000'0000;   // CXFile counts in 32 bits
constexpr unsigned long long unchecked_room = 0x1'0000; // bytes for a count that is not verified

// Swallows what the call throws.
template <class Call> bool succeeds(Call const &call)
{
    try {
        call();
        return true;
    } catch (CXException *exception) {
        exception->Delete();
    } catch (...) { // a subclass's own exception
    }
    return false;
}

} // namespace

// The DLL exports only constants that are defined out of the class.
constexpr unsigned int CXArchive::default_buffer_size;
constexpr unsigned int CXArchive::minimum_buffer_size;
constexpr unsigned int CXArchive::no_schema;
constexpr unsigned long long CXArchive::unknown_size;
constexpr unsigned int CXArchive::max_object_depth;

CXArchive::CXArchive(CXFile *file, unsigned int mode, unsigned int bufferSize, void *buffer)
    : m_file(file)
    , m_mode(mode)
    , m_userBuffer(buffer != nullptr && bufferSize >= minimum_buffer_size)
    , m_directBuffer(false)
    , m_bufferSize(std::max(bufferSize, minimum_buffer_size))
    , m_exceptionsBefore(std::uncaught_exceptions())
{
    if (!file)
        kortools::core::throw_invalid_argument();
    m_fileName = file->GetFilePath();
    if (m_userBuffer) {
        m_buffer = static_cast<unsigned char *>(buffer);
        return;
    }
    m_directBuffer = file->BufferCommand(CXFile::bufferCheck) != 0;
    if (m_directBuffer)
        return;
    m_buffer = static_cast<unsigned char *>(std::malloc(m_bufferSize));
    if (!m_buffer)
        kortools::core::throw_out_of_memory();
}

CXArchive::~CXArchive()
{
    if (m_file && std::uncaught_exceptions() == m_exceptionsBefore)
        succeeds([this] { Close(); });
    Abort();
}

void CXArchive::Abort() noexcept
{
    SetWindow(nullptr, nullptr, nullptr);
    if (!m_userBuffer)
        std::free(m_buffer);
    m_buffer = nullptr;
    m_file = nullptr;
}

void CXArchive::Close()
{
    if (!m_file)
        return;
    try {
        Flush(true);
    } catch (...) {
        Abort();
        throw;
    }
    Abort();
}

void CXArchive::Flush(bool lastTime)
{
    if (!m_file)
        return;
    if (IsStoring()) {
        StoreWindow();
        if (m_directBuffer && !lastTime)
            MakeRoom(1);
        return;
    }
    auto const unread = static_cast<long long>(GetRest());
    SetWindow(m_start, m_start, m_start);
    if (unread != 0)
        m_file->Seek(-unread, CXFile::current);
}

unsigned long long CXArchive::GetPosition() const
{
    if (!m_file)
        return 0;
    auto const position = m_file->GetPosition();
    return IsLoading() ? position - GetRest()
                       : position + static_cast<std::size_t>(m_current - m_start);
}

void CXArchive::Throw(int cause) const
{
    CXArchiveException::Throw(
        static_cast<CXArchiveException::ArchiveExceptionType>(cause), m_fileName);
}

void CXArchive::ThrowMode(Mode mode) const
{
    if ((m_mode & load) != mode)
        Throw(mode == store ? CXArchiveException::readOnly : CXArchiveException::writeOnly);
    Throw(CXArchiveException::genericException);
}

void CXArchive::SetWindow(unsigned char *start, unsigned char *current, unsigned char *end)
{
    m_start = start;
    m_current = current;
    m_end = end;
    m_readEnd = IsLoading() ? end : nullptr;
    m_writeEnd = IsStoring() ? end : nullptr;
}

// --- storing

void CXArchive::Write(void const *source, std::size_t size)
{
    CheckMode(store);
    auto const *bytes = static_cast<unsigned char const *>(source);
    std::size_t const room = std::min(size, GetRest());
    if (room != 0)
        std::memcpy(m_current, bytes, room);
    m_current += room;
    if (room == size)
        return;
    bytes += room;
    size -= room;
    if (!m_directBuffer && size >= m_bufferSize) {
        StoreWindow();
        WriteToFile(bytes, size);
        return;
    }
    MakeRoom(size);
    std::memcpy(m_current, bytes, size);
    m_current += size;
}

void CXArchive::MakeRoom(std::size_t size)
{
    CheckMode(store);
    StoreWindow();
    if (!m_directBuffer) {
        SetWindow(m_buffer, m_buffer, m_buffer + m_bufferSize);
        return;
    }
    void *start = nullptr;
    void *end = nullptr;
    auto const wanted = std::max<unsigned long long>(size, m_bufferSize);
    if (m_file->BufferCommand(CXFile::bufferWrite, wanted, &start, &end) == 0)
        kortools::core::throw_out_of_memory();
    auto *const window = static_cast<unsigned char *>(start);
    SetWindow(window, window, static_cast<unsigned char *>(end));
}

void CXArchive::StoreWindow()
{
    unsigned char *const start = m_start;
    auto const size = static_cast<std::size_t>(m_current - m_start);
    SetWindow(nullptr, nullptr, nullptr); // what cannot be written is given up
    if (size == 0)
        return;
    if (!m_directBuffer)
        WriteToFile(start, size);
    else if (m_file->BufferCommand(CXFile::bufferCommit, size) == 0)
        Throw(CXArchiveException::genericException);
}

void CXArchive::WriteToFile(unsigned char const *source, std::size_t size)
{
    while (size != 0) {
        std::size_t const part = std::min(size, max_file_request);
        m_file->Write(source, static_cast<unsigned int>(part));
        source += part;
        size -= part;
    }
}

// --- loading

std::size_t CXArchive::Read(void *target, std::size_t size)
{
    CheckMode(load);
    auto *bytes = static_cast<unsigned char *>(target);
    std::size_t const unread = std::min(size, GetRest());
    if (unread != 0)
        std::memcpy(bytes, m_current, unread);
    m_current += unread;
    return unread == size ? size : unread + ReadPastWindow(bytes + unread, size - unread);
}

// The window is empty. What would fill it goes straight to the target.
std::size_t CXArchive::ReadPastWindow(unsigned char *target, std::size_t size)
{
    std::size_t done = 0;
    if (!m_directBuffer && size >= m_bufferSize)
        done = ReadFromFile(target, size - size % m_bufferSize);
    while (done != size && Refill(1)) {
        std::size_t const part = std::min(size - done, GetRest());
        std::memcpy(target + done, m_current, part);
        m_current += part;
        done += part;
    }
    return done;
}

void CXArchive::EnsureRead(void *target, std::size_t size)
{
    if (Read(target, size) != size)
        CXArchiveException::Throw(CXArchiveException::endOfFile);
}

void CXArchive::FillBuffer(std::size_t needed)
{
    CheckMode(load);
    if (needed <= GetRest())
        return;
    if (!m_directBuffer && needed > m_bufferSize)
        CXArchiveException::Throw(CXArchiveException::bufferFull);
    if (!Refill(needed))
        CXArchiveException::Throw(CXArchiveException::endOfFile);
}

bool CXArchive::Refill(std::size_t needed)
{
    if (m_directBuffer)
        return RefillDirect(needed);
    std::size_t const unread = GetRest();
    if (unread != 0)
        std::memmove(m_buffer, m_current, unread);
    SetWindow(m_buffer, m_buffer, m_buffer + unread);
    while (GetRest() < needed) {
        auto const room = static_cast<std::size_t>(m_buffer + m_bufferSize - m_end);
        unsigned int const count
            = m_file->Read(m_end, static_cast<unsigned int>(std::min(room, max_file_request)));
        if (count == 0)
            return false;
        SetWindow(m_start, m_current, m_end + count);
    }
    return true;
}

bool CXArchive::RefillDirect(std::size_t needed)
{
    Flush();
    void *start = nullptr;
    void *end = nullptr;
    m_file->BufferCommand(CXFile::bufferRead, unknown_size, &start, &end);
    auto *const window = static_cast<unsigned char *>(start);
    SetWindow(window, window, static_cast<unsigned char *>(end));
    return GetRest() >= needed;
}

std::size_t CXArchive::ReadFromFile(unsigned char *target, std::size_t size)
{
    std::size_t done = 0;
    while (done != size) {
        std::size_t const part = std::min(size - done, max_file_request);
        unsigned int const count = m_file->Read(target + done, static_cast<unsigned int>(part));
        if (count == 0)
            break;
        done += count;
    }
    return done;
}

void CXArchive::Skip(unsigned long long count, unsigned long long elementSize)
{
    EnsureAvailable(count, elementSize);
    unsigned long long size = count * elementSize;
    while (size != 0) {
        FillBuffer(1);
        auto const part = std::min<unsigned long long>(size, GetRest());
        m_current += part;
        size -= part;
    }
}

unsigned long long CXArchive::GetBytesLeft() const
{
    CheckMode(load);
    unsigned long long length = 0;
    unsigned long long position = 0;
    bool const known = succeeds([&] {
        length = m_file->GetLength();
        position = m_file->GetPosition();
    });
    // Pipes, and files that the system makes up while they are read, have length 0.
    if (!known || length == 0)
        return unknown_size;
    return GetRest() + (length > position ? length - position : 0);
}

unsigned long long CXArchive::EnsureAvailable(
    unsigned long long count, unsigned long long elementSize)
{
    CheckMode(load);
    elementSize = std::max(elementSize, 1ULL);
    if (count <= GetRest() / elementSize)
        return count;
    unsigned long long const left = GetBytesLeft();
    if (count > left / elementSize)
        CXArchiveException::Throw(CXArchiveException::endOfFile);
    return left != unknown_size ? count
                                : std::min(count, std::max(unchecked_room / elementSize, 1ULL));
}
