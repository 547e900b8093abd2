// SPDX-License-Identifier: MIT
// CXFile: a file on disk, and the interface that every file under an archive has.
//
// Positions and lengths are in bytes; files of more than 4 GiB are no different. A file is used by
// one thread at a time. There is no buffer: archives have one, other callers should read and write
// blocks.
//
// Open() reports its failures and never throws. The other operations throw CXFileException when the
// throw-on-error flag is set; its cause comes from the thread's last OS error (also when the file
// is closed or a buffer is null, where the system is not called) and is generic when there is none.
// Without the flag failures are quiet: the result is 0, or the unchanged position of Seek().
//
//   CXFile file(true); // throws on errors after Open()
//   CXFileException error;
//   if (!file.Open(path, CXFile::modeRead | CXFile::shareDenyWrite, &error))
//       return error.ReportError();
//   CXArchive archive(&file, CXArchive::load);
#pragma once

#include "kortools/archive/exception.h"
#include "kortools/archive/runtime_class.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <cstdio>

class KORTOOLS_API CXFile : public CXObject {
    KOR_DECLARE_CLASS(CXFile)
public:
    // One of each group; modeNoTruncate only with modeCreate. Mode 3 is modeRead, and a sharing
    // that is not named here is shareExclusive.
    enum OpenFlags : unsigned int {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareExclusive = 0x0010, // also when no sharing is named
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeCreate = 0x1000,    // create, and truncate
        modeNoTruncate = 0x2000 // with modeCreate: keep what the file holds
    };

    enum SeekPosition { begin = 0, current = 1, end = 2 };

    // What an archive asks of a file that exposes its own memory. CXMemFile has the exact rules.
    enum BufferCommandType {
        bufferRead = 0,   // a window of up to `count` bytes to read; advances the position
        bufferWrite = 1,  // a window of at least `count` bytes to write
        bufferCommit = 2, // `count` bytes of the write window are written; advances the position
        bufferCheck = 3   // does the file support the other commands?
    };

    using Handle = void *; // the platform's handle: HANDLE on Windows, the descriptor on Linux

    explicit CXFile(bool throwOnError = true);
    CXFile(Handle handle, bool throwOnError);     // an open handle, which stays the caller's
    CXFile(std::FILE *stream, bool throwOnError); // the file under a C stream, which stays open
    CXFile(wchar_t const *path, unsigned int flags,
        bool throwOnError = true); // throws when Open() fails and throwOnError
    CXFile(CXFile const &) = delete;
    CXFile &operator=(CXFile const &) = delete;
    ~CXFile() override; // closes what Open() opened

    virtual unsigned long long GetPosition() const;

    // The last component of the path; empty when the path ends with a separator.
    virtual CXTString<wchar_t> GetFileName() const;

    // The path given to the last successful Open(), also after Close(), or to SetFilePath().
    virtual CXTString<wchar_t> GetFilePath() const;
    virtual void SetFilePath(wchar_t const *path); // the name that errors carry; nothing is renamed

    // Opens a file after closing the one that is open. Never throws: false on failure, and `error`
    // then has cause and path. A failed open never truncates. `path` must have 1 to 259 UTF-16
    // units (else cause 3).
    //
    // The open succeeds when every other open of the file, in any process, grants what this one
    // uses and uses what this one grants (else cause 11).
    virtual bool Open(wchar_t const *path, unsigned int flags, CXFileException *error = nullptr);

    // The new position. Before the beginning: cause 9, position unchanged. Beyond the end is
    // allowed; a write there leaves zeros in between.
    virtual unsigned long long Seek(long long offset, SeekPosition origin);

    // Cuts or extends (with zeros) the file; a position beyond the new end moves to it.
    virtual void SetLength(unsigned long long length);
    virtual unsigned long long GetLength() const;

    // Bytes read, fewer than `count` only at the end of the file. A count of 0 does nothing, here
    // and in Write().
    virtual unsigned int Read(void *target, unsigned int count);

    // After a failure some of the bytes may be written.
    virtual void Write(void const *source, unsigned int count);

    // Both close what Open() opened and let go of a handle that was passed in. A closed file stays
    // closed. Abort() ignores every error.
    virtual void Abort();
    virtual void Flush(); // everything written is on the disk when it returns
    virtual void Close();

    // See BufferCommandType. `*windowStart` and `*windowEnd` receive the window. Returns the bytes
    // of the window (bufferRead), 1 for success of the others, 0 when the file has no memory to
    // offer, which is the case for files on disk.
    virtual unsigned long long BufferCommand(BufferCommandType command,
        unsigned long long count = 0, void **windowStart = nullptr, void **windowEnd = nullptr);

    bool IsOpen() const; // has a handle; files in memory have none
    Handle GetHandle() const { return m_handle; }

protected:
    // For overrides of Open(): gives cause and path to `error`, unless it is null.
    static void FillError(CXFileException *error, CXFileException::FileExceptionType cause,
        wchar_t const *path) noexcept;

    // Of the last system call: throws, when the throw-on-error flag is set.
    void ReportFailure() const;

private:
    Handle m_handle;
    bool m_throwOnError;
    bool m_ownsHandle = false; // closed by the destructor
    CXTString<wchar_t> m_filePath;
};
