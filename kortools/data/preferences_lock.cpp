// SPDX-License-Identifier: MIT
#include "kortools/data/preferences_lock.h"

#include "kortools/platform/clock.h"
#include "kortools/platform/durable_files.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>
#include <utility>

namespace kortools::data {
namespace {

constexpr unsigned int first_step_us = 100;
constexpr unsigned int longest_step_us = 5000;

// Nobody but a stranger keeps a file from being opened, and few of them do it for long.
constexpr unsigned int open_patience_ms = 500;

unsigned int get_random(unsigned int end)
{
    thread_local std::minstd_rand s_random(std::random_device {}());
    return static_cast<unsigned int>(s_random()) % end;
}

} // namespace

Patience::Patience(unsigned int milliseconds)
    : m_end(platform::get_tick() + milliseconds)
    , m_step_us(first_step_us)
{
}

bool Patience::wait()
{
    if (platform::get_tick() >= m_end)
        return false;
    // Not all at the same time: those who wait for one file have often begun together.
    std::this_thread::sleep_for(std::chrono::microseconds(m_step_us / 2 + get_random(m_step_us)));
    m_step_us = std::min(m_step_us * 2, longest_step_us);
    return true;
}

LockedFile::~LockedFile()
{
    close();
}

void LockedFile::close()
{
    // Windows frees the locks of a closed file when it finds the time.
    if (std::exchange(m_locked, false))
        platform::unlock_file(m_file.GetHandle());
    m_file.Abort();
}

bool LockedFile::lock(PreferencesUse use, Patience &patience)
{
    auto const kind
        = use == PreferencesUse::Save ? platform::LockKind::Exclusive : platform::LockKind::Shared;
    while (!platform::try_lock_file(m_file.GetHandle(), kind)) {
        if (!patience.wait())
            return false;
    }
    m_locked = true;
    return true;
}

bool LockedFile::open(CXTString<wchar_t> const &path, PreferencesUse use, unsigned int patience_ms)
{
    unsigned int const flags = CXFile::shareDenyNone
        | (use == PreferencesUse::Load
                ? CXFile::modeRead
                : CXFile::modeReadWrite | CXFile::modeCreate | CXFile::modeNoTruncate);
    Patience patience(patience_ms);
    do {
        if (!open_patiently(m_file, path, flags, patience_ms))
            return false;
        if (!lock(use, patience))
            break;
        // A lock on a file that was replaced meanwhile would keep nobody away.
        if (platform::is_file_at(m_file.GetHandle(), path))
            return true;
        close();
    } while (patience.wait());
    close();
    throw_file_exception(CXFileException::lockViolation, path);
}

bool open_patiently(
    CXFile &file, CXTString<wchar_t> const &path, unsigned int flags, unsigned int patience_ms)
{
    Patience patience(std::min(patience_ms, open_patience_ms));
    CXFileException error;
    while (!file.Open(path, flags, &error)) {
        bool const is_missing = error.GetCause() == CXFileException::fileNotFound
            || error.GetCause() == CXFileException::badPath;
        if (is_missing && (flags & CXFile::modeCreate) == 0)
            return false;
        if (error.GetCause() != CXFileException::sharingViolation || !patience.wait())
            throw_file_exception(error.GetCause(), path);
    }
    return true;
}

void throw_file_exception(CXFileException::FileExceptionType cause, CXTString<wchar_t> const &path)
{
    archive::throw_exception(new CXFileException(cause, path));
}

} // namespace kortools::data
