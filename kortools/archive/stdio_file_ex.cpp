// SPDX-License-Identifier: MIT
#include "kortools/archive/stdio_file_ex.h"

#include "kortools/platform/code_page_service.h"
#include "kortools/platform/code_pages.h"

KOR_IMPLEMENT_CLASS(CStdioFileEx, CXStdioFile, 1 | CXRuntimeClass::not_serializable)

namespace {

constexpr unsigned int access_mask = 3;
constexpr std::size_t longest_mark = 3;

xTextEncoding get_encoding(unsigned int flags)
{
    if ((flags & CStdioFileEx::typeUnicode) == 0)
        return xTextANSI;
    if ((flags & CStdioFileEx::unicodeUTF8) != 0)
        return xTextUTF8;
    return (flags & CStdioFileEx::unicodeBigEndian) != 0 ? xTextUTF16BigEndian : xTextUTF16;
}

bool is_truncated(unsigned int flags)
{
    return (flags & CXFile::modeCreate) != 0 && (flags & CXFile::modeNoTruncate) == 0;
}

} // namespace

CStdioFileEx::CStdioFileEx(bool throwOnError)
    : CXStdioFile(throwOnError)
{
}

CStdioFileEx::CStdioFileEx(wchar_t const *path, unsigned int flags, bool throwOnError)
    : CXStdioFile(throwOnError)
{
    CXFileException error;
    if (!CStdioFileEx::Open(path, flags, &error) && throwOnError)
        CXFileException::ThrowErrno(error.GetCause(), 0, error.GetFileName());
}

bool CStdioFileEx::Open(wchar_t const *path, unsigned int flags, CXFileException *error)
{
    bool const needsReading = (flags & access_mask) == modeWrite && !is_truncated(flags);
    unsigned int const readable = (flags & ~access_mask) | modeReadWrite;
    bool const isReadable = needsReading && CXStdioFile::Open(path, readable);
    if (!isReadable && !CXStdioFile::Open(path, flags, error))
        return false;
    try {
        FindEncoding(isReadable ? readable : flags);
        return true;
    } catch (CXFileException *exception) {
        FillError(error, exception->GetCause(), path);
        exception->Delete();
    } catch (CXException *exception) {
        FillError(error, CXFileException::genericException, path);
        exception->Delete();
    }
    CXStdioFile::Abort();
    return false;
}

void CStdioFileEx::FindEncoding(unsigned int flags)
{
    kortools::archive::TextFormat format = GetFormat();
    format.encoding = get_encoding(flags);
    bool const isWritable
        = (flags & access_mask) == modeWrite || (flags & access_mask) == modeReadWrite;
    if (isWritable && GetLength() == 0) {
        bool const hasMark = (flags & unicodeNoMark) == 0;
        return SetFormat(format,
            hasMark ? kortools::archive::get_text_mark(format.encoding) : std::string_view());
    }
    bool const isReadable = (flags & access_mask) != modeWrite;
    xTextEncoding const marked
        = isReadable ? kortools::archive::find_text_mark(Peek(longest_mark)) : xTextANSI;
    if (marked != xTextANSI)
        format.encoding = marked;
    SetFormat(format, kortools::archive::get_text_mark(marked));
}

bool CStdioFileEx::SetCodePage(unsigned int page)
{
    using namespace kortools::platform;
    SystemCodePage known;
    bool const isUsable = page == 0 || page == utf8_code_page
        || (find_system_code_page(page, known) && known.is_ascii_based);
    if (isUsable)
        SetFormat({ GetFormat().encoding, page }, GetMark());
    return isUsable;
}
