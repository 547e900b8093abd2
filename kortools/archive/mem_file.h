// SPDX-License-Identifier: MIT
// CXMemFile: a growable file in memory, with the interface of CXFile. Archives work on its block
// in place, without a buffer of their own.
//
// The block grows in equal steps, of which GetBufferSize() tells; the memory behind it is reserved
// ahead, so that appending n bytes takes O(n) whatever the step.
//
// Failures throw when the throw-on-error flag is set: CXMemoryException when memory is exhausted,
// CXInvalidArgException for bad arguments (null pointers, positions before the beginning or that do
// not fit 64 bits). Otherwise they are quiet, as CXFile's are. The file is unchanged after either.
//
//   CXMemFile file(4096, true);
//   CXArchive archive(&file, CXArchive::store);
//   archive << document;
//   archive.Close();
//   send(file.GetBuffer(), file.GetLength());
#pragma once

#include "kortools/archive/file.h"

#include <cstddef>

class KORTOOLS_API CXMemFile : public CXFile {
    KOR_DECLARE_CLASS(CXMemFile)
public:
    // Starts empty, without a block. `growBytes` is the step by which the block grows, 0 is 2048.
    explicit CXMemFile(unsigned int growBytes = 1024, bool throwOnError = true);

    // On a caller's block of `size` bytes, see Attach(); the step is 2048.
    CXMemFile(unsigned char const *buffer, unsigned long long size, bool autoDelete = false,
        bool throwOnError = true);
    ~CXMemFile() override;

    // Replaces the block by a caller's, which is all in use, and goes to its beginning. Writing
    // within the block writes to the caller's memory. With `autoDelete` the block becomes the
    // file's, which reallocates and frees it: it must then come from Alloc(). Without, it must
    // outlive its use here and is neither moved nor freed; growing goes to a copy that is the
    // file's own.
    void Attach(unsigned char const *buffer, unsigned long long size, unsigned int growBytes = 0,
        bool autoDelete = false);

    // Hands the block over (free it with Free(), unless it was attached without autoDelete) and
    // resets the file: empty, grow bytes 2048, auto delete on and throw-on-error on, even if it was
    // off (kept: callers that reuse a file after Detach() rely on the exceptions). Null when there
    // is no block.
    unsigned char *Detach();

    // The block, null when there is none; valid until the file grows, is closed or gets another.
    unsigned char const *GetBuffer() const { return m_buffer; }
    unsigned long long GetBufferSize() const { return m_bufferSize; }

    unsigned long long GetPosition() const override;

    // There is nothing to open: always false, with a generic cause; the contents stay.
    bool Open(wchar_t const *path, unsigned int flags, CXFileException *error = nullptr) override;

    // May go beyond the end. The file then grows, by zeros, with the next write of at least a byte.
    unsigned long long Seek(long long offset, SeekPosition origin) override;

    // The block never shrinks.
    void SetLength(unsigned long long length) override;
    unsigned long long GetLength() const override;
    unsigned int Read(void *target, unsigned int count) override;

    // `source` may lie in the file's own block.
    void Write(void const *source, unsigned int count) override;

    // Both free the block (or let go of one that is not the file's). The file is empty then and can
    // be used again.
    void Abort() override;
    void Close() override;
    void Flush() override; // nothing to do

    // Direct access to the block. `windowStart` and `windowEnd` must not be null for the first two
    // commands, which set them, and are not used by the others. A window is valid until the block
    // moves, see GetBuffer(). Returns 0 after a quiet failure, with `*windowStart` and `*windowEnd`
    // as they were.
    //
    //   bufferRead    the window is [position, position + n), n = min(count, length - position);
    //                 the position advances by n. Returns n, 0 at and beyond the end.
    //   bufferWrite   grows the block to position + count bytes, if it is smaller, as Write() does.
    //                 The window is [position, buffer size): all that is free, at least `count`
    //                 bytes. Neither position nor length change. Returns 1.
    //   bufferCommit  the first `count` bytes from the position on are written: the position
    //                 advances, the length follows it, and a gap between the old length and the
    //                 position becomes zeros. `count` must not pass the buffer's end, and 0 does
    //                 nothing. Returns 1.
    //   bufferCheck   returns 1.
    unsigned long long BufferCommand(BufferCommandType command, unsigned long long count = 0,
        void **windowStart = nullptr, void **windowEnd = nullptr) override;

    // Makes the block at least `newSize` bytes, in steps of the grow bytes. When memory is
    // exhausted: throws CXMemoryException with throw-on-error, else false, nothing changed.
    virtual bool GrowBuffer(unsigned long long newSize);

    // The block's memory, of the library's heap. Static, because blocks outlive the file that made
    // them. Alloc() and Realloc() return null when memory is exhausted; Memcpy() allows overlap.
    static unsigned char *Alloc(std::size_t size);
    static unsigned char *Realloc(unsigned char *block, std::size_t size);
    static void *Memcpy(void *target, void const *source, std::size_t size);
    static void Free(void *block);

private:
    unsigned long long RejectArgument(unsigned long long result = 0) const; // throws, or the result
    bool Reserve(unsigned long long size);
    void TakeBlock(unsigned char *buffer, unsigned long long size, bool autoDelete);
    void AdvanceOver(unsigned long long count);
    unsigned long long OpenReadWindow(
        unsigned long long count, void **windowStart, void **windowEnd);
    unsigned long long OpenWriteWindow(
        unsigned long long count, void **windowStart, void **windowEnd);
    unsigned long long CommitWindow(unsigned long long count);

    unsigned long long m_growBytes;
    unsigned long long m_bufferSize = 0; // bytes of the block that may be used
    unsigned long long m_fileSize = 0;   // bytes in use
    unsigned long long m_position = 0;   // may lie beyond m_fileSize after Seek()
    unsigned char *m_buffer = nullptr;
    bool m_autoDelete = true; // m_buffer is freed with the file
    bool m_throwOnError;
    unsigned long long m_capacity = 0; // bytes allocated, at least m_bufferSize
};
