// SPDX-License-Identifier: MIT
// CXMemFile: a growable file in memory, with the interface of CXFile. Archives work on its block
// in place, without a buffer of their own.
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

    // On a caller's block of `size` bytes, which is also the length of the file. With `autoDelete`
    // the file frees it (it must then come from Alloc()).
    CXMemFile(unsigned char const *buffer, unsigned long long size, bool autoDelete = false,
        bool throwOnError = true);
    ~CXMemFile() override;

    // Replaces the block, as the second constructor does. A block that may not be freed is never
    // grown in place: growing copies it to one of the file's own.
    void Attach(unsigned char const *buffer, unsigned long long size, unsigned int growBytes = 0,
        bool autoDelete = false);

    // Hands the block over (free it with Free()) and resets the file: empty, grow bytes 2048, auto
    // delete on and throw-on-error on, even if it was off (kept: callers that reuse a file after
    // Detach() rely on the exceptions).
    unsigned char *Detach();

    unsigned char const *GetBuffer() const { return m_buffer; }
    unsigned long long GetBufferSize() const { return m_bufferSize; }

    unsigned long long GetPosition() const override;
    bool Open(wchar_t const *path, unsigned int flags,
        CXFileException *error = nullptr) override; // always false
    unsigned long long Seek(long long offset, SeekPosition origin) override;
    void SetLength(unsigned long long length) override;
    unsigned long long GetLength() const override;
    unsigned int Read(void *target, unsigned int count) override;
    void Write(void const *source, unsigned int count) override;
    void Abort() override;
    void Flush() override;
    void Close() override;
    unsigned long long BufferCommand(BufferCommandType command, unsigned long long count = 0,
        void **start = nullptr, void **end = nullptr) override;

    // Makes the block at least `newSize` bytes, in steps of the grow bytes. When memory is
    // exhausted: throws CXMemoryException with throw-on-error, else false, nothing changed.
    virtual bool GrowBuffer(unsigned long long newSize);

    // The block's memory. Static, because blocks outlive the file that made them.
    static unsigned char *Alloc(std::size_t size);
    static unsigned char *Realloc(unsigned char *block, std::size_t size);
    static void *Memcpy(void *target, void const *source, std::size_t size);
    static void Free(void *block);

private:
    unsigned long long m_growBytes;
    unsigned long long m_bufferSize = 0; // bytes allocated
    unsigned long long m_fileSize = 0;   // bytes in use
    unsigned long long m_position = 0;   // may lie beyond m_fileSize after Seek()
    unsigned char *m_buffer = nullptr;
    bool m_autoDelete = true; // m_buffer is freed with the file
    bool m_throwOnError;
};
