// SPDX-License-Identifier: MIT
// Construction, assignment, buffer access and comparison.
#include "kortools/core/xstring.h"

#include "kortools/core/utf16.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

int compare_texts(std::string_view a, std::string_view b)
{
    return a.compare(b);
}

int compare_texts(std::wstring_view a, std::wstring_view b)
{
    std::size_t const common = std::min(a.size(), b.size());
    std::size_t const i = kortools::core::count_equal(a.data(), b.data(), common);
    if (i == common)
        return (a.size() > common) - (b.size() > common);
    auto const x = static_cast<char32_t>(a[i]);
    auto const y = static_cast<char32_t>(b[i]);
    int const by_character = x < y ? -1 : 1;
    if (std::max(x, y) <= 0xFFFF)
        return by_character;
    int const by_unit = kortools::core::compare_utf16(&a[i], a.size() - i, &b[i], b.size() - i);
    // The same units in different characters (a code point and a pair of surrogates) are not equal.
    return by_unit != 0 ? by_unit : by_character;
}

template <class T> CXTString<char> quote_text(std::basic_string_view<T> text)
{
    static constexpr char plain[] = "\0\t\n\r\"\\";
    static constexpr char escape[] = "0tnr\"\\";
    CXTString<char> result = "\"";
    for (T const ch : text) {
        auto const code = static_cast<std::make_unsigned_t<T>>(ch);
        auto const *const special = code < 0x80 ? static_cast<char const *>(std::memchr(
                                        plain, static_cast<int>(code), sizeof plain - 1))
                                                : nullptr;
        char number[16];
        if (special) {
            result += '\\';
            result += escape[special - plain];
        } else if (code >= 0x20 && code < 0x7F) {
            result += static_cast<char>(code);
        } else {
            std::snprintf(number, sizeof number, code < 0x100 ? "\\x%02X" : "\\x{%04X}",
                static_cast<unsigned int>(code));
            result += number;
        }
    }
    return result += '"';
}

template <class T> long long length_of(T const *text)
{
    return text ? static_cast<long long>(std::char_traits<T>::length(text)) : 0;
}

} // namespace

template <class T>
CXTString<T>::CXTString(T const *text)
    : m_text(text, length_of(text))
{
}

template <class T>
CXTString<T>::CXTString(T const *text, int length)
    : m_text(text, text ? length : 0)
{
}

template <class T>
CXTString<T>::CXTString(T ch, int count)
    : m_text(static_cast<long long>(count))
{
    std::fill(m_text.begin(), m_text.end(), ch);
}

template <class T>
CXTString<T>::CXTString(View first, View second)
    : m_text(static_cast<long long>(first.size() + second.size()))
{
    std::char_traits<T>::copy(m_text.GetData(), first.data(), first.size());
    std::char_traits<T>::copy(m_text.GetData() + first.size(), second.data(), second.size());
}

template <class T> CXTString<T> &CXTString<T>::operator=(std::nullptr_t)
{
    Empty();
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::operator=(T const *text)
{
    return AssignText(ViewOf(text));
}

template <class T> CXTString<T> &CXTString<T>::operator=(T ch)
{
    return AssignText(View(&ch, 1));
}

template <class T> CXTString<T> &CXTString<T>::operator+=(T const *text)
{
    return AppendText(ViewOf(text));
}

template <class T> CXTString<T> &CXTString<T>::AssignText(View text)
{
    m_text.Assign(text.data(), static_cast<long long>(text.size()));
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::AppendText(View text)
{
    m_text.Append(text.data(), static_cast<long long>(text.size()));
    return *this;
}

template <class T> T *CXTString<T>::GetBuffer(int length)
{
    m_text.SetLength(std::max<long long>(length, m_text.GetLength()));
    return m_text.GetData();
}

template <class T> T *CXTString<T>::GetBufferSetLength(int length)
{
    m_text.SetLength(length);
    return m_text.GetData();
}

template <class T> void CXTString<T>::ReleaseBuffer(int length)
{
    long long const limit = m_text.GetCapacity() - 1;
    long long real_length = length;
    if (length < 0) {
        T const *const zero
            = std::char_traits<T>::find(m_text.GetData(), static_cast<std::size_t>(limit), T());
        real_length = zero ? zero - m_text.GetData() : limit;
    }
    m_text.SetLength(std::min(real_length, limit));
}

template <class T> void CXTString<T>::Copy(T const *text, int count)
{
    AssignText(text && count > 0 ? View(text, static_cast<std::size_t>(count)) : View());
}

template <class T> int CXTString<T>::Compare(T const *text) const
{
    return CompareText(ViewOf(text));
}

template <class T> bool CXTString<T>::operator==(T const *text) const
{
    return EqualsText(ViewOf(text));
}

template <class T> int CXTString<T>::CompareText(View text) const
{
    return compare_texts(GetView(), text);
}

CXTString<char> kortools::core::quote(std::string_view text)
{
    return quote_text(text);
}

CXTString<char> kortools::core::quote(std::wstring_view text)
{
    return quote_text(text);
}

template class CXTString<char>;
template class CXTString<wchar_t>;
