// SPDX-License-Identifier: MIT
// A preferences file, open and locked against every other user of it: threads of this process and
// other processes alike. The lock is on the file itself, so that it needs no file beside it, works
// where nothing may be written, and ends with a process that dies.
#pragma once

#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"

namespace kortools::data {

// Waits in small steps until a time is over.
class Patience {
public:
    explicit Patience(unsigned int milliseconds);
    bool wait(); // a moment; false, at once, when the time is over

private:
    long long m_end;
    unsigned int m_step_us;
};

enum class PreferencesUse { Load, Save }; // loading shares the lock; saving creates the file

class LockedFile {
public:
    LockedFile() = default;
    LockedFile(LockedFile const &) = delete;
    LockedFile &operator=(LockedFile const &) = delete;
    ~LockedFile(); // closes

    // Waits up to `patience_ms` for the others. Throws CXFileException when the file cannot be
    // opened or the time is over; false when it is to be loaded and does not exist.
    bool open(CXTString<wchar_t> const &path, PreferencesUse use, unsigned int patience_ms);
    void close();

    CXFile &get() { return m_file; }

private:
    bool lock(PreferencesUse use, Patience &patience);

    CXFile m_file;
    bool m_locked = false;
};

// CXFile::Open(), which waits up to `patience_ms` while another program (one that searches for
// viruses, or makes copies) has the file for itself. Throws; false when there is no such file.
bool open_patiently(
    CXFile &file, CXTString<wchar_t> const &path, unsigned int flags, unsigned int patience_ms);

[[noreturn]] void throw_file_exception(
    CXFileException::FileExceptionType cause, CXTString<wchar_t> const &path);

} // namespace kortools::data
