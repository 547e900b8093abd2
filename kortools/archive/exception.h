// SPDX-License-Identifier: MIT
// The exception family. Exceptions are heap objects thrown by pointer; every throw first registers
// the object as the calling thread's pending exception. A catch site that does not throw on
// releases it, with Delete() or XDeleteThreadException(), so that each is freed exactly once.
//
//   try {
//       archive >> document;
//   } catch (CXException *exception) {
//       WriteToLogFile(exception->GetErrorMessage());
//       exception->Delete();
//   }
//
// The registry of pending exceptions is process-wide and locks itself; nothing in it allocates.
// Destroying a pending exception in any way, on any thread, takes it out of the registry. What is
// pending when the library is unloaded is destroyed then.
#pragma once

#include "kortools/archive/runtime_class.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

namespace kortools::archive {
class PendingExceptions;
}

class KORTOOLS_API CXException : public CXObject {
    KOR_DECLARE_CLASS(CXException)
public:
    explicit CXException(CXTString<wchar_t> const &message = CXTString<wchar_t>());
    CXException(CXException const &) = delete;
    CXException &operator=(CXException const &) = delete;
    ~CXException() override; // also takes a pending exception out of its thread's entry

    // Shows GetErrorMessage() in a message box; `flags` are its buttons and icon (0 is OK). False,
    // and nothing shown, when the message is empty.
    virtual bool ReportError(unsigned int flags = 0);
    virtual CXTString<wchar_t> GetErrorMessage() const;

    // Destroys and frees the object, which comes from `new`. May be called on a null pointer, which
    // changes nothing.
    void Delete();

    // Some room is kept for exceptions that are made when there is no memory: as many as may be
    // pending on a few dozen threads.
    static void *operator new(std::size_t size);
    static void *operator new(std::size_t, void *place) noexcept { return place; }
    static void operator delete(void *block) noexcept;
    static void operator delete(void *, void *) noexcept { }

protected:
    explicit CXException(kortools::core::NoBlock none) noexcept; // without a message

    CXTString<wchar_t> m_message; // what GetErrorMessage() begins with

private:
    friend class kortools::archive::PendingExceptions;

    unsigned long long m_pendingThread = 0; // the thread whose pending exception this is; 0: none's
    CXException *m_nextPending = nullptr;   // in the registry's chain
};

// What goes wrong with a file, by cause.
class KORTOOLS_API CXFileException : public CXException {
    KOR_DECLARE_CLASS(CXFileException)
public:
    enum FileExceptionType {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6,
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10,
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14
    };

    explicit CXFileException(FileExceptionType cause = none,
        CXTString<wchar_t> const &fileName = CXTString<wchar_t>(),
        CXTString<wchar_t> const &message = CXTString<wchar_t>());

    FileExceptionType GetCause() const { return m_cause; }
    CXTString<wchar_t> const &GetFileName() const { return m_fileName; }

    // The text of the cause with the file's name in it; the stored message when there is no cause.
    CXTString<wchar_t> GetErrorMessage() const override;

    // The cause of an error number of the C runtime (Windows numbering: 36 is the deadlock, which
    // is a generic error and not a sharing violation).
    static FileExceptionType ErrnoToException(int errorNumber);

    // The cause of a Windows system error code, which is what the seam reports on Linux too.
    static FileExceptionType OsErrorToException(unsigned int osError);

    // Throws a CXFileException with the cause of `errorNumber` or, when that is 0, with `cause`.
    // Nothing is thrown when both are 0, nor when `fill` is given, which receives cause (also a
    // cause of 0) and name and keeps its message.
    static void ThrowErrno(FileExceptionType cause, int errorNumber,
        CXTString<wchar_t> const &fileName, CXFileException *fill = nullptr);

    // The same with the calling thread's last OS error.
    static void ThrowOsError(FileExceptionType cause, CXTString<wchar_t> const &fileName,
        CXFileException *fill = nullptr);

private:
    static void Report(
        FileExceptionType cause, CXTString<wchar_t> const &fileName, CXFileException *fill);

    FileExceptionType m_cause;
    CXTString<wchar_t> m_fileName;
};

// What an archive finds wrong with its bytes, or with how it is used.
class KORTOOLS_API CXArchiveException : public CXException {
    KOR_DECLARE_CLASS(CXArchiveException)
public:
    enum ArchiveExceptionType {
        none = 0,
        genericException = 1,
        readOnly = 2, // a write on a loading archive
        endOfFile = 3,
        writeOnly = 4, // a read on a storing archive
        badIndex = 5,
        badClass = 6,
        badSchema = 7,
        bufferFull = 8
    };

    explicit CXArchiveException(ArchiveExceptionType cause = none,
        CXTString<wchar_t> const &fileName = CXTString<wchar_t>(),
        CXTString<wchar_t> const &message = CXTString<wchar_t>());

    ArchiveExceptionType GetCause() const { return m_cause; }
    CXTString<wchar_t> const &GetFileName() const { return m_fileName; }
    CXTString<wchar_t> GetErrorMessage() const override; // as CXFileException's

    // Registers and throws a new exception.
    [[noreturn]] static void Throw(
        ArchiveExceptionType cause, CXTString<wchar_t> const &fileName = CXTString<wchar_t>());

private:
    ArchiveExceptionType m_cause;
    CXTString<wchar_t> m_fileName;
};
// No memory is left.
class KORTOOLS_API CXMemoryException : public CXException {
    KOR_DECLARE_CLASS(CXMemoryException)
public:
    using CXException::CXException;
    CXMemoryException() noexcept // takes no memory but its own
        : CXException(kortools::core::NoBlock())
    {
    }
};

// Thrown after the user has already been told.
class KORTOOLS_API CXUserException : public CXException {
    KOR_DECLARE_CLASS(CXUserException)
public:
    using CXException::CXException;
};

// A bad argument to a library function.
class KORTOOLS_API CXInvalidArgException : public CXException {
    KOR_DECLARE_CLASS(CXInvalidArgException)
public:
    using CXException::CXException;
};

// A window, cursor, pen or other thing of the window system cannot be created.
class KORTOOLS_API CXResourceException : public CXException {
    KOR_DECLARE_CLASS(CXResourceException)
public:
    using CXException::CXException;
};

// Makes `exception` the calling thread's pending one and destroys the one before, unless it is the
// same object. An exception that was pending on another thread is taken over from it. Null is
// ignored.
KORTOOLS_API void XSetThreadException(CXException *exception);

// Destroys the calling thread's pending exception, if there is one.
KORTOOLS_API void XDeleteThreadException();

// The calling thread's pending exception, or null.
KORTOOLS_API CXException *XGetThreadException();

namespace kortools::archive {

// Registers and throws, with the pointer's own type. What every throw site calls.
template <class Exception> [[noreturn]] void throw_exception(Exception *exception)
{
    XSetThreadException(exception);
    throw exception;
}

// Destroys the pending exceptions of all threads. For the end of the application, when no other
// thread handles an exception any more.
KORTOOLS_API void release_pending_exceptions();

} // namespace kortools::archive
