// SPDX-License-Identifier: MIT
// Text: what is in the buffer as lines and back. stdio_file_buffer.cpp fills and writes it.
#include "kortools/archive/stdio_file.h"

#include "kortools/core/conversion.h"
#include "kortools/core/utf16.h"
#include "kortools/platform/ascii_text.h"
#include "kortools/platform/code_pages.h"
#include "kortools/platform/line_end.h"

#include <algorithm>
#include <utility>

using kortools::archive::decode_text;
using kortools::archive::encode_text;
using kortools::archive::ends_with_return;
using kortools::archive::find_line_feed;
using kortools::archive::get_unit_size;
using kortools::archive::max_character_size;
using kortools::archive::TextFormat;
using namespace kortools::platform;

namespace {

bool is_ascii(std::string_view text)
{
    return count_ascii(text.data(), text.size()) == text.size();
}

// The bytes of "\r\n", or of its second half only.
std::string_view get_line_end_bytes(xTextEncoding encoding, bool withReturn)
{
    std::string_view const bytes = encoding == xTextUTF16 ? std::string_view("\r\0\n\0", 4)
        : encoding == xTextUTF16BigEndian                 ? std::string_view("\0\r\0\n", 4)
                                                          : std::string_view("\r\n");
    return withReturn ? bytes : bytes.substr(bytes.size() / 2);
}

} // namespace

// The next line in the buffer.
struct CXStdioFile::Line {
    std::string_view bytes; // without its end
    std::size_t size = 0;   // with it
};

// --- reading text

bool CXStdioFile::ReadString(CXTString<wchar_t> &line)
{
    Line next;
    if (!StartText(false) || !PeekLine(max_line_size, next)) {
        line.Empty();
        return false;
    }
    decode_text(m_format, next.bytes, line);
    m_at += next.size;
    return true;
}

bool CXStdioFile::ReadStringA(CXTString<char> &line)
{
    if (!HasPageOfProcess()) {
        CXTString<wchar_t> wide;
        bool const isRead = ReadString(wide);
        kortools::core::convert_text(wide.GetView(), xEncodingDefault, line);
        return isRead;
    }
    Line next;
    bool const isRead = StartText(false) && PeekLine(max_line_size, next);
    static_cast<CXTCharArray<char> &>(line).Assign(
        next.bytes.data(), static_cast<long long>(next.bytes.size()));
    m_at += next.size;
    return isRead;
}

wchar_t *CXStdioFile::ReadString(wchar_t *buffer, unsigned int size)
{
    std::size_t const room = size - std::size_t { 1 };
    std::size_t const limit = std::min<std::size_t>(max_line_size, (room + 1) * max_character_size);
    Line next;
    if (!buffer || size < 3 || !StartText(false) || !PeekLine(limit, next))
        return nullptr;
    CXTString<wchar_t> text;
    std::size_t used = kortools::archive::decode_part(
        m_format, next.bytes, static_cast<int>(std::min<std::size_t>(room, max_line_size)), text);
    auto const length = static_cast<std::size_t>(text.GetLength());
    std::copy_n(text.GetConstBuffer(), length, buffer);
    wchar_t *behind = buffer + length;
    if (used == next.bytes.size() && next.size > used && length < room) {
        *behind++ = L'\n';
        used = next.size;
    }
    *behind = 0;
    m_at += used;
    return buffer;
}

bool CXStdioFile::ReadText(CXTString<wchar_t> &text, int maxLength)
{
    text.Empty();
    CXTString<wchar_t> part;
    Line next;
    if (!StartText(false))
        return true;
    while (PeekLine(max_line_size, next)) {
        decode_text(m_format, next.bytes, part);
        if (next.size > next.bytes.size())
            part += L'\n';
        if (part.GetLength() > maxLength - text.GetLength())
            return false;
        text += part;
        m_at += next.size;
    }
    return true;
}

// False at the end of the file. At most `limit` bytes of the line are given; all of its end is, or
// nothing.
bool CXStdioFile::PeekLine(std::size_t limit, Line &line)
{
    std::size_t const unit = get_unit_size(m_format.encoding);
    for (std::size_t searched = 0;;) {
        std::string_view const bytes(m_buffer.GetData() + m_at, m_end - m_at);
        std::size_t const found
            = find_line_feed(m_format.encoding, bytes.substr(0, limit + unit), searched);
        if (found <= limit) {
            line = { bytes.substr(0, found), found + unit };
            if (m_isText && ends_with_return(m_format.encoding, line.bytes))
                line.bytes.remove_suffix(unit);
            return true;
        }
        if (bytes.size() > limit + unit) {
            std::size_t const cut = kortools::archive::find_cut(m_format, bytes, limit);
            line.bytes = bytes.substr(0, cut != 0 ? cut : limit);
            // The other half of a line end may follow.
            if (line.bytes.size() > unit && ends_with_return(m_format.encoding, line.bytes))
                line.bytes.remove_suffix(unit);
            line.size = line.bytes.size();
            return true;
        }
        searched = bytes.size() / unit * unit;
        if (Fill() == 0) {
            line = { { m_buffer.GetData(), m_end }, m_end }; // Fill() has moved them
            return m_end != 0;
        }
    }
}

// --- writing text

void CXStdioFile::WriteString(wchar_t const *text)
{
    if (text)
        WriteText(std::wstring_view(text));
}

void CXStdioFile::WriteStringA(char const *text)
{
    if (text)
        WriteText(std::string_view(text));
}

void CXStdioFile::WriteText(std::wstring_view text)
{
    if (StartText(true))
        WriteLines(text);
}

void CXStdioFile::WriteText(std::string_view text)
{
    if (!StartText(true))
        return;
    if (HasPageOfProcess() || (m_format.encoding <= xTextUTF8 && is_ascii(text)))
        return WriteLines(text);
    CXTString<wchar_t> wide;
    kortools::core::convert_text(text, xEncodingDefault, wide);
    WriteLines(wide.GetView());
}

template <class T> void CXStdioFile::WriteLines(std::basic_string_view<T> text)
{
    if (!m_writesReturns)
        return Put(text);
    while (!text.empty()) {
        std::size_t const length = text.find(T('\n'));
        std::basic_string_view<T> const line = text.substr(0, length);
        Put(line);
        if (!line.empty())
            m_wroteReturn = line.back() == T('\r');
        if (length == text.npos)
            return;
        Put(get_line_end_bytes(m_format.encoding, !std::exchange(m_wroteReturn, false)));
        text.remove_prefix(length + 1);
    }
}

void CXStdioFile::Put(std::wstring_view text)
{
    auto const room = [&] { return (buffer_size - m_end) / max_character_size; };
    while (!text.empty()) {
        if (text.size() > room() && m_end != 0 && !WriteBuffer())
            return;
        std::size_t count = std::min(text.size(), room());
        // The halves of a pair of surrogates would become two characters.
        if (count < text.size() && is_high_surrogate(static_cast<char32_t>(text[count - 1])))
            --count;
        m_end += encode_text(m_format, text.substr(0, count), m_buffer.GetData() + m_end);
        text.remove_prefix(count);
    }
}

void CXStdioFile::SetLineEnd(LineEnd lineEnd)
{
    m_writesReturns = m_isText && lineEnd != lineEndLF
        && (lineEnd == lineEndCRLF || get_line_end().front() == '\r');
}

// Narrow text needs no conversion.
bool CXStdioFile::HasPageOfProcess() const
{
    return m_format.encoding == xTextANSI
        && (m_format.page == 0 || m_format.page == get_ansi_code_page());
}

// False when there is no file, which is reported.
bool CXStdioFile::StartText(bool writing)
{
    if (writing && m_isWriting && m_end != 0)
        return true;
    if (!IsOpen()) {
        ReportFailure();
        return false;
    }
    if (!writing) {
        if (!StartReading())
            return false;
        if (m_offset + m_at == 0 && !m_mark.empty() && Peek(m_mark.size()) == m_mark)
            m_at = m_mark.size();
        return true;
    }
    StartWriting();
    if (m_offset + m_end == 0)
        Put(m_mark);
    return true;
}

void CXStdioFile::SetFormat(TextFormat const &format, std::string_view mark)
{
    m_format = format;
    m_mark = mark;
}
