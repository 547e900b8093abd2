// SPDX-License-Identifier: MIT
// CStdioFileEx: a text file whose encoding is told by the mark in front of it, or by the flags
// where there is none. Lines, buffer, positions and errors are those of CXStdioFile.
//
//   mark         encoding
//   EF BB BF     UTF-8
//   FF FE        UTF-16, little-endian
//   FE FF        UTF-16, big-endian
//   none         that of the flags
//
//   flags                              encoding
//   none                               an ANSI code page, see SetCodePage()
//   typeUnicode                        UTF-16, little-endian
//   typeUnicode | unicodeBigEndian     UTF-16, big-endian
//   typeUnicode | unicodeUTF8          UTF-8
//
// A file that is empty when it is opened, or is truncated then, gets the mark in front of its first
// text, unless unicodeNoMark is given. One that has something in it keeps its encoding and gets no
// second mark: to append to a file, open it with modeNoTruncate and go to its end. (It is therefore
// opened for reading too when the system allows that; when not, the flags decide.)
//
// Text at position 0 starts behind the mark. Read() and Write() know nothing of marks.
//
//   CStdioFileEx file;
//   if (!file.Open(path, CXFile::modeWrite | CXFile::modeCreate | CStdioFileEx::typeUnicode
//               | CStdioFileEx::unicodeUTF8))
//       return false;
//   file.WriteString(L"first line\n");
#pragma once

#include "kortools/archive/stdio_file.h"

class KORTOOLS_API CStdioFileEx : public CXStdioFile {
    KOR_DECLARE_CLASS(CStdioFileEx)
public:
    // For Open(), with those of CXFile and CXStdioFile. The others count with typeUnicode only.
    enum UnicodeFlags : unsigned int {
        typeUnicode = 0x20000,
        unicodeUTF8 = 0x10000000,
        unicodeBigEndian = 0x20000000,
        unicodeNoMark = 0x40000000
    };

    explicit CStdioFileEx(bool throwOnError = true);
    CStdioFileEx(wchar_t const *path, unsigned int flags, bool throwOnError = true);

    bool Open(wchar_t const *path, unsigned int flags, CXFileException *error = nullptr) override;

    xTextEncoding GetEncoding() const { return GetFormat().encoding; }
    bool HasMark() const { return !GetMark().empty(); } // or will have, once there is text

    // The code page of xTextANSI, for this file and those opened later; 0 is the process's. False,
    // and no change, for a page that does not exist or does not contain ASCII.
    bool SetCodePage(unsigned int page);
    unsigned int GetCodePage() const { return GetFormat().page; }

private:
    void FindEncoding(unsigned int flags);
};
