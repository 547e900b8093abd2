// SPDX-License-Identifier: MIT
// Text of the other character width.
#include "kortools/core/xstring.h"

#include "kortools/platform/code_pages.h"

#include <algorithm>

namespace {

namespace platform = kortools::platform;

constexpr unsigned int ansi_page = 0;

// Texts up to this length are converted in one pass, through the stack.
constexpr std::size_t short_length = 2048;

long long convert(std::string_view source, wchar_t *target, long long capacity)
{
    return platform::narrow_to_wide(
        ansi_page, source.data(), static_cast<long long>(source.size()), target, capacity);
}

long long convert(std::wstring_view source, char *target, long long capacity)
{
    return platform::wide_to_narrow(
        ansi_page, source.data(), static_cast<long long>(source.size()), target, capacity);
}

template <class C> std::basic_string_view<C> view_of_pointer(C const *text)
{
    return text ? std::basic_string_view<C>(text) : std::basic_string_view<C>();
}

char const *as_narrow(unsigned char const *text)
{
    return reinterpret_cast<char const *>(text);
}

// A converted text of up to short_length characters, before it has a block.
template <class T> struct ShortText {
    // Enough for every page without shift sequences: four bytes for a character, or as many wide
    // characters as bytes.
    static constexpr long long capacity = short_length * (sizeof(T) == 1 ? 4 : 1);

    explicit ShortText(std::basic_string_view<kortools::core::other_char_t<T>> source)
        : length(convert(source, characters, capacity))
    {
    }

    T characters[capacity];
    long long length; // -1 when the conversion failed
};

template <class T>
CXTCharArray<T> convert_long(std::basic_string_view<kortools::core::other_char_t<T>> source)
{
    CXTCharArray<T> result(convert(source, static_cast<T *>(nullptr), 0));
    if (convert(source, result.GetData(), result.GetLength()) != result.GetLength())
        result.SetLength(0);
    return result;
}

} // namespace

template <class T> CXTCharArray<T> CXTString<T>::Converted(std::basic_string_view<Other> text)
{
    if (text.size() <= short_length) {
        ShortText<T> const converted(text);
        if (converted.length >= 0)
            return CXTCharArray<T>(converted.characters, converted.length);
    }
    return convert_long<T>(text);
}

template <class T>
CXTString<T> &CXTString<T>::ReplaceTail(long long start, std::basic_string_view<Other> text)
{
    if (text.size() <= short_length) {
        ShortText<T> const converted(text);
        if (converted.length >= 0) {
            m_text.SetLength(start + converted.length);
            std::char_traits<T>::copy(m_text.GetData() + start, converted.characters,
                static_cast<std::size_t>(converted.length));
            return *this;
        }
    }
    long long const length = std::max(0LL, convert(text, static_cast<T *>(nullptr), 0));
    m_text.SetLength(start + length);
    if (convert(text, m_text.GetData() + start, length) != length)
        m_text.SetLength(start);
    return *this;
}

template <class T>
CXTString<T>::CXTString(Other const *text)
    : m_text(Converted(view_of_pointer(text)))
{
}

template <class T>
CXTString<T>::CXTString(CXTString<Other> const &text)
    : m_text(Converted(text.GetView()))
{
}

template <class T>
CXTString<T>::CXTString(unsigned char const *text)
    : CXTString(as_narrow(text))
{
}

template <class T> CXTString<T> &CXTString<T>::operator=(Other const *text)
{
    return ReplaceTail(0, view_of_pointer(text));
}

template <class T> CXTString<T> &CXTString<T>::operator=(CXTString<Other> const &text)
{
    return ReplaceTail(0, text.GetView());
}

template <class T> CXTString<T> &CXTString<T>::operator=(unsigned char const *text)
{
    return *this = as_narrow(text);
}

template <class T> CXTString<T> &CXTString<T>::operator+=(Other const *text)
{
    return ReplaceTail(m_text.GetLength(), view_of_pointer(text));
}

template <class T> CXTString<T> &CXTString<T>::operator+=(CXTString<Other> const &text)
{
    return ReplaceTail(m_text.GetLength(), text.GetView());
}

template <class T> CXTString<T> &CXTString<T>::operator+=(unsigned char const *text)
{
    return *this += as_narrow(text);
}

template class CXTString<char>;
template class CXTString<wchar_t>;
