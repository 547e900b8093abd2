// SPDX-License-Identifier: MIT
#include "kortools/archive/cause_text.h"
#include "kortools/archive/exception.h"
#include "kortools/platform/os_error.h"

#include <array>
#include <initializer_list>

namespace {

using Cause = CXFileException::FileExceptionType;

struct CauseOfCodes {
    Cause cause;
    std::initializer_list<unsigned short> codes;
};

constexpr unsigned int code_count = 1000; // every code from here on is a generic error

// Windows system error codes by cause; a code that is not listed is a generic error.
constexpr auto causes_by_code = [] {
    CauseOfCodes const rows[] = {
        { CXFileException::none, { 0 } },
        { CXFileException::fileNotFound, { 2, 6, 18, 107 } },
        { CXFileException::badPath,
            { 3, 15, 17, 34, 52, 53, 55, 67, 70, 85, 111, 123, 124, 125, 144, 154, 161, 206, 208,
                267 } },
        { CXFileException::tooManyOpenFiles, { 4, 36, 68, 113 } },
        { CXFileException::accessDenied,
            { 5, 12, 19, 29, 54, 58, 64, 65, 71, 80, 82, 86, 170, 183, 999 } },
        { CXFileException::invalidFile, { 11, 26, 60, 66, 114, 182, 191, 193 } },
        { CXFileException::removeCurrentDir, { 16, 145 } },
        { CXFileException::directoryFull, { 62 } },
        { CXFileException::badSeek, { 24, 25, 27, 30, 131, 132 } },
        { CXFileException::hardIO, { 20, 21, 22, 23, 57, 59, 88, 117, 995, 996, 997 } },
        { CXFileException::sharingViolation, { 32 } },
        { CXFileException::lockViolation, { 33, 108, 167 } },
        { CXFileException::diskFull, { 39, 112 } },
        { CXFileException::endOfFile, { 38 } },
    };
    std::array<unsigned char, code_count> table {};
    table.fill(CXFileException::genericException);
    for (CauseOfCodes const &row : rows) {
        for (unsigned short const code : row.codes)
            table[code] = static_cast<unsigned char>(row.cause);
    }
    return table;
}();

} // namespace

CXFileException::CXFileException(
    FileExceptionType cause, CXTString<wchar_t> const &fileName, CXTString<wchar_t> const &message)
    : CXException(message)
    , m_cause(cause)
    , m_fileName(fileName)
{
}

CXTString<wchar_t> CXFileException::GetErrorMessage() const
{
    using namespace kortools::archive;
    if (m_cause == none)
        return m_message;
    int const known = m_cause > none && m_cause <= endOfFile ? m_cause : genericException;
    return get_cause_text(first_file_text, known, m_fileName);
}

CXFileException::FileExceptionType CXFileException::ErrnoToException(int errorNumber)
{
    switch (errorNumber) {
    case 1:  // EPERM
    case 13: // EACCES
        return accessDenied;
    case 2:  // ENOENT
    case 23: // ENFILE
        return fileNotFound;
    case 5:  // EIO
    case 22: // EINVAL
        return hardIO;
    case 9: // EBADF
        return invalidFile;
    case 24: // EMFILE
        return tooManyOpenFiles;
    case 28: // ENOSPC
        return diskFull;
    default:
        return genericException;
    }
}

CXFileException::FileExceptionType CXFileException::OsErrorToException(unsigned int osError)
{
    return osError < code_count ? static_cast<Cause>(causes_by_code[osError]) : genericException;
}

// Gives cause and name to `fill`, or throws a new exception that has them.
void CXFileException::Report(
    FileExceptionType cause, CXTString<wchar_t> const &fileName, CXFileException *fill)
{
    if (fill) {
        fill->m_cause = cause;
        fill->m_fileName = fileName;
    } else if (cause != none) {
        kortools::archive::throw_exception(new CXFileException(cause, fileName));
    }
}

void CXFileException::ThrowErrno(FileExceptionType cause, int errorNumber,
    CXTString<wchar_t> const &fileName, CXFileException *fill)
{
    Report(errorNumber != 0 ? ErrnoToException(errorNumber) : cause, fileName, fill);
}

void CXFileException::ThrowOsError(
    FileExceptionType cause, CXTString<wchar_t> const &fileName, CXFileException *fill)
{
    FileExceptionType const last = OsErrorToException(kortools::platform::get_last_os_error());
    Report(last != none ? last : cause, fileName, fill);
}
