// SPDX-License-Identifier: MIT
// CXStdioFile: a buffered file of lines, in the ANSI code page of the process, and of bytes. For
// Unicode text, and for text whose encoding the file tells, use CStdioFileEx.
//
// Lines end with a line feed. Unless the file is opened with typeBinary, a carriage return in front
// of it belongs to the line end, whatever the system, and WriteString() writes a line feed as the
// system's line end: with a carriage return on Windows, where the text does not have one already.
// Read() and Write() move bytes as they are. Positions are in bytes and exact, whatever was read
// last; reading and writing may alternate.
//
// What is written reaches the system when the buffer is full and in Flush(), Seek(), Close() and
// the destructor, which is also where failures to write are reported. After such a failure the
// unwritten bytes are dropped and the position is where they should have begun.
//
// Failures are those of CXFile. One thread at a time. Reading takes memory for a few times the
// longest line, at most max_line_size.
//
//   CXStdioFile file(path, CXFile::modeRead | CXFile::shareDenyWrite);
//   CXTString<wchar_t> line;
//   while (file.ReadString(line))
//       Show(line);
#pragma once

#include "kortools/archive/file.h"
#include "kortools/archive/text_encoding.h"
#include "kortools/core/char_array.h"

#include <cstddef>
#include <string_view>

class KORTOOLS_API CXStdioFile : public CXFile {
    KOR_DECLARE_CLASS(CXStdioFile)
public:
    // For Open(), with those of CXFile. Neither is typeText.
    enum TypeFlags : unsigned int { typeText = 0x4000, typeBinary = 0x8000 };

    enum LineEnd { lineEndSystem, lineEndLF, lineEndCRLF };

    // Bytes. A longer line comes in parts, each of which looks like a line, cut between characters.
    static constexpr unsigned int max_line_size = 0x1000000;

    explicit CXStdioFile(bool throwOnError = true);
    CXStdioFile(std::FILE *stream, bool throwOnError); // see CXFile; text from where it stands
    CXStdioFile(wchar_t const *path, unsigned int flags, bool throwOnError = true);
    ~CXStdioFile() override;

    // --- Text

    // The next line without its end. False, and an empty text, when the file is at its end; a last
    // line without an end is a line, nothing behind the last end is not. Zeros are characters.
    bool ReadString(CXTString<wchar_t> &line);
    bool ReadStringA(CXTString<char> &line);

    // The next line with its line feed, or what of it has room in `size` characters with a zero
    // behind it; the next call goes on there. Null, with nothing stored or read, at the end of the
    // file and for a size below 3, since a character may need two.
    wchar_t *ReadString(wchar_t *buffer, unsigned int size);

    // The rest of the file, with a line feed at the end of each line. False when it has more than
    // `maxLength` characters; `text` is then those of its lines that have room.
    bool ReadText(CXTString<wchar_t> &text, int maxLength);

    // A pointer's text ends at its zero, a string may contain some. Null is an empty text.
    void WriteString(wchar_t const *text);
    void WriteString(CXTString<wchar_t> const &text) { WriteText(text.GetView()); }
    void WriteStringA(char const *text);
    void WriteStringA(CXTString<char> const &text) { WriteText(text.GetView()); }

    // What WriteString() makes of line feeds, until the next Open().
    void SetLineEnd(LineEnd lineEnd);

    // --- CXFile

    unsigned long long GetPosition() const override;
    bool Open(wchar_t const *path, unsigned int flags, CXFileException *error = nullptr) override;
    unsigned long long Seek(long long offset, SeekPosition origin) override;
    void SetLength(unsigned long long length) override;
    unsigned long long GetLength() const override; // with what is in the buffer
    unsigned int Read(void *target, unsigned int count) override;
    void Write(void const *source, unsigned int count) override;

    // Writes the buffer, as Close() does, and ignores every error.
    void Abort() override;

    // Hands everything to the system: it outlives this process, however that ends, but unlike
    // CXFile's not a loss of power.
    void Flush() override;
    void Close() override;

protected:
    // For overrides of Open(): how text is encoded, and the mark in front of it, which text neither
    // reads nor lacks when it starts at position 0.
    void SetFormat(kortools::archive::TextFormat const &format, std::string_view mark);
    kortools::archive::TextFormat const &GetFormat() const { return m_format; }
    std::string_view GetMark() const { return m_mark; }

    // The first bytes of the file, up to `count` (a few), without moving; for a file just opened.
    std::string_view Peek(std::size_t count);

private:
    static constexpr std::size_t buffer_size = 0x8000;

    struct Line;

    void WriteText(std::wstring_view text);
    void WriteText(std::string_view text);
    template <class T> void WriteLines(std::basic_string_view<T> text);
    void Put(std::wstring_view text);
    void Put(std::string_view bytes);
    bool WriteBuffer();
    bool WriteToSystem(char const *bytes, std::size_t size);
    bool HasPageOfProcess() const;

    bool StartText(bool writing);
    bool StartReading();
    void StartWriting();
    void DropReadAhead();
    void Restart();
    std::size_t Fill();
    bool PeekLine(std::size_t limit, Line &line);

    kortools::archive::TextFormat m_format;
    std::string_view m_mark;         // static text
    CXTCharArray<char> m_buffer;     // empty until it is needed, then all of its length is room
    std::size_t m_at = 0;            // the next byte to read
    std::size_t m_end = 0;           // of the bytes read ahead, or of those to be written
    unsigned long long m_offset = 0; // where the buffer begins in the file
    bool m_isWriting = false;        // the buffer's bytes are to be written, and m_at is 0
    bool m_isText = true;            // not typeBinary
    bool m_writesReturns = false;    // in front of line feeds
    bool m_wroteReturn = false;      // the last text ended with a carriage return
};
