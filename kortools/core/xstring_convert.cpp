// SPDX-License-Identifier: MIT
// Text of the other character width.
#include "kortools/core/xstring.h"

#include "kortools/core/text_conversion.h"

namespace {

using kortools::core::convert_long_text;
using kortools::core::ShortText;

constexpr unsigned int ansi_page = 0;

template <class C> std::basic_string_view<C> view_of_pointer(C const *text)
{
    return text ? std::basic_string_view<C>(text) : std::basic_string_view<C>();
}

char const *as_narrow(unsigned char const *text)
{
    return reinterpret_cast<char const *>(text);
}

} // namespace

template <class T> CXTCharArray<T> CXTString<T>::Converted(std::basic_string_view<Other> text)
{
    if (ShortText<T> const converted(ansi_page, text); converted.is_converted())
        return CXTCharArray<T>(converted.get_data(), converted.get_length());
    CXTCharArray<T> result;
    convert_long_text(ansi_page, text, result, 0);
    return result;
}

template <class T>
CXTString<T> &CXTString<T>::ReplaceTail(long long start, std::basic_string_view<Other> text)
{
    ShortText<T> const converted(ansi_page, text);
    if (!converted.is_converted()) {
        convert_long_text(ansi_page, text, m_text, start);
        return *this;
    }
    m_text.SetLength(start + converted.get_length());
    std::char_traits<T>::copy(m_text.GetData() + start, converted.get_data(),
        static_cast<std::size_t>(converted.get_length()));
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
