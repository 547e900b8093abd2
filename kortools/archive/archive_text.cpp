// SPDX-License-Identifier: MIT
// Counts, string lengths and strings. A string's text is converted between the window and the
// string's own block, piece by piece, so that long texts need no memory beside the string.
#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/core/char_array.h"
#include "kortools/core/text_conversion.h"
#include "kortools/core/utf16.h"
#include "kortools/platform/code_pages.h"

#include <algorithm>
#include <string>

using kortools::core::convert_long_text;
using kortools::core::copy_from_utf16;
using kortools::core::copy_to_utf16;
using kortools::core::count_utf16_units;
using kortools::platform::is_high_surrogate;
using kortools::platform::is_low_surrogate;
using kortools::platform::load_utf16_unit;

namespace {

constexpr unsigned char long_length = 0xFF; // the length, or a mark, is in the bytes that follow
constexpr unsigned short mark_utf16 = 0xFFFE;
constexpr unsigned short mark_utf8 = 0xFFFD;
constexpr unsigned short mark_fourth = 0xFFFC;
constexpr unsigned short lowest_mark = mark_fourth;
constexpr unsigned short large_count = 0xFFFF;
constexpr unsigned char short_wide_head[] = { 0xFF, 0xFE, 0xFF, 0 }; // the mark and the length
constexpr std::size_t longest_character = 4;                         // bytes of UTF-16

// 0 for an encoding that is not marked.
unsigned short mark_of(xStringEncoding encoding)
{
    switch (encoding) {
    case xEncodingUTF16:
        return mark_utf16;
    case xEncodingUTF8:
        return mark_utf8;
    case xEncodingMarked:
        return mark_fourth;
    default:
        return 0;
    }
}

// Encodings that are not named are the numbers of code pages.
unsigned int code_page_of(xStringEncoding encoding)
{
    if (encoding == xEncodingDefault || encoding == xEncodingANSI)
        return 0;
    if (encoding == xEncodingUTF8)
        return kortools::platform::utf8_code_page;
    return static_cast<unsigned int>(encoding);
}

template <class T> std::size_t length_before_zero(T const *text, std::size_t length)
{
    T const *const zero = std::char_traits<T>::find(text, length, T());
    return zero ? static_cast<std::size_t>(zero - text) : length;
}

// The characters of a string while it is being read. Whatever happens, the string ends with the
// last character that was.
template <class T> class StringFiller {
public:
    explicit StringFiller(CXTCharArray<T> &text)
        : m_text(text)
    {
        m_text.SetLength(0);
    }
    ~StringFiller() { m_text.SetLength(static_cast<long long>(m_length)); }
    StringFiller(StringFiller const &) = delete;
    StringFiller &operator=(StringFiller const &) = delete;

    // Room for `count` more characters.
    T *reserve(std::size_t count)
    {
        m_text.SetLength(static_cast<long long>(m_length + count));
        return get_end();
    }
    T *get_end() { return m_text.GetData() + m_length; }

    // The next `count` characters are read. False when there is a zero, which ends the text, among
    // them.
    bool add(std::size_t count)
    {
        std::size_t const kept = length_before_zero(get_end(), count);
        m_length += kept;
        return kept == count;
    }

private:
    CXTCharArray<T> &m_text;
    std::size_t m_length = 0;
};

} // namespace

// --- counts and lengths

void CXArchive::WriteCount(unsigned long long count)
{
    if (count < large_count)
        *this << static_cast<unsigned short>(count);
    else
        WriteLargeCount(count);
}

unsigned long long CXArchive::ReadCount()
{
    unsigned short count;
    *this >> count;
    return count != large_count ? count : ReadLargeCount();
}

// What follows where two bytes are not enough, the two bytes included.
void CXArchive::WriteLargeCount(unsigned long long count)
{
    bool const fits = count < 0xFFFFFFFF;
    *this << large_count << (fits ? static_cast<unsigned int>(count) : 0xFFFFFFFFU);
    if (!fits)
        *this << count;
}

unsigned long long CXArchive::ReadLargeCount()
{
    unsigned int count;
    *this >> count;
    if (count != 0xFFFFFFFF)
        return count;
    unsigned long long huge_count;
    *this >> huge_count;
    return huge_count;
}

void CXArchive::WriteStringLength(unsigned long long length, xStringEncoding encoding)
{
    if (unsigned short const mark = mark_of(encoding))
        *this << long_length << mark;
    if (length < long_length) {
        *this << static_cast<unsigned char>(length);
        return;
    }
    *this << long_length;
    if (length < lowest_mark)
        *this << static_cast<unsigned short>(length);
    else
        WriteLargeCount(length);
}

unsigned long long CXArchive::ReadStringLength(xStringEncoding &encoding)
{
    encoding = xEncodingANSI;
    unsigned char byte;
    *this >> byte;
    if (byte != long_length)
        return byte;
    unsigned short word;
    *this >> word;
    if (word >= lowest_mark && word != large_count) {
        encoding = word == mark_utf16 ? xEncodingUTF16
            : word == mark_utf8       ? xEncodingUTF8
                                      : xEncodingMarked;
        *this >> byte;
        if (byte != long_length)
            return byte;
        *this >> word; // a second mark counts as a length
    }
    return word != large_count ? word : ReadLargeCount();
}

// --- writing

CXArchive &CXArchive::operator<<(CXTString<char> const &value)
{
    WriteNarrow(value.GetConstBuffer(), static_cast<std::size_t>(value.GetLength()), xEncodingANSI);
    return *this;
}

CXArchive &CXArchive::operator<<(CXTString<wchar_t> const &value)
{
    WriteWide(value.GetConstBuffer(), static_cast<std::size_t>(value.GetLength()));
    return *this;
}

void CXArchive::WriteString(char const *text, xStringEncoding encoding)
{
    std::size_t const length = text ? std::char_traits<char>::length(text) : 0;
    if (encoding != xEncodingUTF16) {
        WriteNarrow(text, length, encoding);
        return;
    }
    CXTCharArray<wchar_t> wide;
    convert_long_text(0, std::string_view(text, length), wide, 0);
    WriteWide(wide.GetData(), static_cast<std::size_t>(wide.GetLength()));
}

void CXArchive::WriteString(wchar_t const *text, xStringEncoding encoding)
{
    CheckMode(store);
    std::size_t const length = text ? std::char_traits<wchar_t>::length(text) : 0;
    if (encoding == xEncodingUTF16) {
        WriteWide(text, length);
        return;
    }
    CXTCharArray<char> narrow;
    if (!convert_long_text(code_page_of(encoding), std::wstring_view(text, length), narrow, 0))
        Throw(CXArchiveException::genericException);
    WriteNarrow(narrow.GetData(), static_cast<std::size_t>(narrow.GetLength()), encoding);
}

void CXArchive::WriteNarrow(char const *text, std::size_t length, xStringEncoding encoding)
{
    if (length < long_length && mark_of(encoding) == 0 && HasRoom(1 + length)) {
        *m_current = static_cast<unsigned char>(length);
        std::copy_n(text, length, m_current + 1);
        m_current += 1 + length;
        return;
    }
    WriteStringLength(length, encoding);
    Write(text, length);
}

// Most strings are short: in one pass, where there is room for the worst case.
bool CXArchive::WriteShortWide(wchar_t const *text, std::size_t length)
{
    if (length >= long_length || !HasRoom(sizeof short_wide_head + longest_character * length))
        return false;
    std::size_t const count = copy_to_utf16(text, length, m_current + sizeof short_wide_head);
    if (count >= long_length)
        return false;
    std::memcpy(m_current, short_wide_head, sizeof short_wide_head);
    m_current[sizeof short_wide_head - 1] = static_cast<unsigned char>(count);
    m_current += sizeof short_wide_head + 2 * count;
    return true;
}

void CXArchive::WriteWide(wchar_t const *text, std::size_t length)
{
    if (WriteShortWide(text, length))
        return;
    std::size_t const count = count_utf16_units(text, length);
    WriteStringLength(count, xEncodingUTF16);
    if constexpr (kortools::platform::wide_is_utf16) {
        Write(text, length * 2);
        return;
    }
    while (length != 0) {
        if (!HasRoom(longest_character))
            MakeRoom(longest_character);
        std::size_t const part = std::min(length, GetRest() / longest_character);
        m_current += 2 * copy_to_utf16(text, part, m_current);
        text += part;
        length -= part;
    }
}

// --- reading

CXArchive &CXArchive::operator>>(CXTString<char> &value)
{
    xStringEncoding encoding;
    unsigned long long const length = ReadStringLength(encoding);
    CXTCharArray<char> &text = value;
    if (encoding != xEncodingUTF16) {
        ReadNarrow(length, text);
        return *this;
    }
    CXTCharArray<wchar_t> wide;
    ReadWide(length, wide);
    convert_long_text(0, wide.GetView(), text, 0);
    return *this;
}

CXArchive &CXArchive::operator>>(CXTString<wchar_t> &value)
{
    CXTCharArray<wchar_t> &text = value;
    if (ReadShortWide(text))
        return *this;
    xStringEncoding encoding;
    unsigned long long const length = ReadStringLength(encoding);
    if (encoding == xEncodingUTF16) {
        ReadWide(length, text);
    } else if (encoding == xEncodingMarked && length != 0) {
        Skip(length, 1); // nobody knows how to convert it: the string stays as it was
    } else {
        CXTCharArray<char> narrow;
        ReadNarrow(length, narrow);
        convert_long_text(code_page_of(encoding), narrow.GetView(), text, 0);
    }
    return *this;
}

// Bytes as they are, up to the first zero; all `length` bytes are consumed.
void CXArchive::ReadNarrow(unsigned long long length, CXTCharArray<char> &text)
{
    StringFiller<char> filler(text);
    while (length != 0) {
        auto const part = static_cast<std::size_t>(EnsureAvailable(length, 1));
        EnsureRead(filler.reserve(part), part);
        length -= part;
        if (!filler.add(part)) {
            Skip(length, 1);
            return;
        }
    }
}

// The record that WriteShortWide() makes, if it comes next and lies in the window.
bool CXArchive::ReadShortWide(CXTCharArray<wchar_t> &text)
{
    constexpr std::size_t head = sizeof short_wide_head;
    if (!HasUnread(head) || std::memcmp(m_current, short_wide_head, head - 1) != 0)
        return false;
    std::size_t const units = m_current[head - 1];
    if (units == long_length || !HasUnread(head + 2 * units))
        return false;
    text.SetLength(static_cast<long long>(units));
    std::size_t const count = copy_from_utf16(m_current + head, units, text.GetData());
    text.SetLength(static_cast<long long>(length_before_zero(text.GetData(), count)));
    m_current += head + 2 * units;
    return true;
}

// The same as ReadNarrow() for UTF-16 units.
void CXArchive::ReadWide(unsigned long long length, CXTCharArray<wchar_t> &text)
{
    StringFiller<wchar_t> filler(text);
    std::size_t room = 0; // characters
    while (length != 0) {
        if (room == 0) {
            room = static_cast<std::size_t>(EnsureAvailable(length, 2));
            filler.reserve(room);
        }
        std::size_t const units = FillUnits(std::min<unsigned long long>(length, room), length);
        std::size_t const count = copy_from_utf16(m_current, units, filler.get_end());
        m_current += 2 * units;
        length -= units;
        room -= count;
        if (!filler.add(count)) {
            Skip(length, 2);
            return;
        }
    }
}

// How many units of a text that has `length` more of them to convert at once: those in the window,
// `most` at most, but not the first half of a pair alone. They never make more than `most`
// characters.
std::size_t CXArchive::FillUnits(unsigned long long most, unsigned long long length)
{
    FillBuffer(2);
    auto const units = static_cast<std::size_t>(std::min<unsigned long long>(most, GetRest() / 2));
    if (kortools::platform::wide_is_utf16 || units == length
        || !is_high_surrogate(load_utf16_unit(m_current, units - 1)))
        return units;
    if (units > 1)
        return units - 1;
    FillBuffer(4);
    return is_low_surrogate(load_utf16_unit(m_current, 1)) ? 2 : 1;
}
