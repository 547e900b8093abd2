// SPDX-License-Identifier: MIT
// Formatting, and comparison and texts by the rules of the locale.
#include "kortools/core/xstring.h"

#include "kortools/platform/text_compare.h"
#include "kortools/platform/text_format.h"

#include <cstdarg>
#include <optional>

// The string tables are above this folder.
KORTOOLS_API CXTString<wchar_t> xLoadString(unsigned int id);

namespace {

namespace platform = kortools::platform;

// The result of a format. Most fit the stack; longer ones are formatted twice. Never formatted in
// the string that they go to, since the arguments may point there.
template <class T> class FormattedText {
public:
    FormattedText(T const *format, std::va_list args)
    {
        std::va_list again;
        va_copy(again, args);
        m_length = platform::format_text(m_short, short_capacity, format, args);
        if (m_length >= short_capacity) {
            m_long.emplace(static_cast<long long>(m_length));
            m_length = platform::format_text(
                m_long->GetData(), static_cast<std::size_t>(m_length) + 1, format, again);
        }
        va_end(again);
    }

    // Empty after an error.
    std::basic_string_view<T> GetView() const
    {
        if (m_length < 0)
            return {};
        return { m_long ? m_long->GetData() : m_short, static_cast<std::size_t>(m_length) };
    }

private:
    static constexpr int short_capacity = 512;
    T m_short[short_capacity];
    std::optional<CXTCharArray<T>> m_long;
    int m_length; // -1 after an error
};

} // namespace

template <class T> void CXTString<T>::Format(T const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

template <class T> void CXTString<T>::Format(unsigned int id, ...)
{
    std::va_list args;
    va_start(args, id);
    FormatV(CXTString(xLoadString(id)), args);
    va_end(args);
}

template <class T> void CXTString<T>::FormatV(T const *format, std::va_list args)
{
    if (format)
        AssignText(FormattedText<T>(format, args).GetView());
}

template <class T> void CXTString<T>::AppendFormat(T const *format, ...)
{
    std::va_list args;
    va_start(args, format);
    if (format)
        AppendText(FormattedText<T>(format, args).GetView());
    va_end(args);
}

template <class T> void CXTString<T>::AppendFormat(unsigned int id, ...)
{
    std::va_list args;
    va_start(args, id);
    AppendText(FormattedText<T>(CXTString(xLoadString(id)), args).GetView());
    va_end(args);
}

template <class T> bool CXTString<T>::LoadString(unsigned int id)
{
    CXTString const text = xLoadString(id);
    AssignText(text.GetView()); // into the block there is
    return !IsEmpty();
}

template <class T> bool CXTString<T>::LoadStringA(unsigned int id)
{
    return LoadString(id);
}

template <class T> bool CXTString<T>::LoadStringW(unsigned int id)
{
    return LoadString(id);
}

template <class T> xStringEncoding CXTString<T>::GetDefaultEncoding()
{
    return xEncodingDefault;
}

template <class T> int CXTString<T>::CompareNoCase(T const *text) const
{
    return text ? platform::compare_no_case(*this, text) : !IsEmpty();
}

template <class T> int CXTString<T>::Collate(T const *text) const
{
    return text ? platform::collate(*this, text) : !IsEmpty();
}

template <class T> int CXTString<T>::CollateNoCase(T const *text) const
{
    return text ? platform::collate_no_case(*this, text) : !IsEmpty();
}

template class CXTString<char>;
template class CXTString<wchar_t>;
