// SPDX-License-Identifier: MIT
// Editing in place: inserting, deleting, case, trimming.
#include "kortools/core/xstring.h"

#include "kortools/core/character_set.h"
#include "kortools/platform/text_compare.h"

#include <algorithm>
#include <functional>

namespace {

// ASCII's white space for narrow text, in which other bytes may be parts of a character; Unicode's
// for wide text. The same in every locale and on both systems.
bool is_space(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

bool is_space(wchar_t wide)
{
    auto const ch = static_cast<char32_t>(wide);
    if (ch < 0x80)
        return is_space(static_cast<char>(ch));
    return ch == 0x85 || ch == 0xA0 || ch == 0x1680 || (ch >= 0x2000 && ch <= 0x200A)
        || ch == 0x2028 || ch == 0x2029 || ch == 0x202F || ch == 0x205F || ch == 0x3000;
}

enum class Ends { Left = 1, Right = 2, Both = 3 };

// Looks at both ends before it changes one: a set of characters may lie in the text.
template <class T, class Predicate> void trim(CXTString<T> &text, Ends ends, Predicate unwanted)
{
    T const *begin = text.begin();
    T const *end = text.end();
    if (ends != Ends::Right)
        begin = std::find_if_not(begin, end, unwanted);
    while (ends != Ends::Left && end != begin && unwanted(end[-1]))
        --end;
    int const removed = static_cast<int>(begin - text.begin());
    text.GetBufferSetLength(static_cast<int>(end - text.begin()));
    text.Delete(0, removed);
}

template <class T> void trim_space(CXTString<T> &text, Ends ends)
{
    trim(text, ends, [](T ch) { return is_space(ch); });
}

template <class T> void trim_character(CXTString<T> &text, Ends ends, T unwanted)
{
    trim(text, ends, [=](T ch) { return ch == unwanted; });
}

template <class T> void trim_set(CXTString<T> &text, Ends ends, T const *set)
{
    if (!set)
        return;
    kortools::core::CharacterSet<T> const unwanted(set);
    trim(text, ends, [&](T ch) { return unwanted.contains(ch); });
}

template <class T> void map_from(CXTCharArray<T> &text, int start, T (*map)(T))
{
    for (long long i = std::max(start, 0); i < text.GetLength(); ++i)
        text[i] = map(text[i]);
}

} // namespace

template <class T> int CXTString<T>::Insert(int position, T ch)
{
    return InsertText(position, View(&ch, 1));
}

template <class T> int CXTString<T>::Insert(int position, T const *text)
{
    return InsertText(position, ViewOf(text));
}

template <class T> int CXTString<T>::InsertText(int position, View text)
{
    using Traits = std::char_traits<T>;
    if (text.empty())
        return GetLength();
    T const *const old_data = m_text.GetData();
    std::size_t const old_length = GetView().size();
    bool const own = !std::less<>()(text.data(), old_data)
        && std::less<>()(text.data(), old_data + old_length);
    std::size_t const offset = own ? static_cast<std::size_t>(text.data() - old_data) : 0;
    std::size_t const at = static_cast<std::size_t>(std::clamp(position, 0, GetLength()));

    m_text.SetLength(static_cast<long long>(old_length + text.size()));
    T *const data = m_text.GetData();
    Traits::move(data + at + text.size(), data + at, old_length - at);
    if (!own) {
        Traits::copy(data + at, text.data(), text.size());
        return GetLength();
    }
    // What stood behind the position has moved along with the rest.
    std::size_t const before = offset < at ? std::min(at - offset, text.size()) : 0;
    Traits::copy(data + at, data + offset, before);
    Traits::copy(data + at + before, data + offset + before + text.size(), text.size() - before);
    return GetLength();
}

template <class T> int CXTString<T>::Delete(int position, int count)
{
    int const length = GetLength();
    if (position < 0 || position >= length || count < 1)
        return length;
    count = std::min(count, length - position);
    T *const gap = m_text.GetData() + position;
    std::char_traits<T>::move(
        gap, gap + count, static_cast<std::size_t>(length - position - count));
    m_text.SetLength(length - count);
    return GetLength();
}

template <class T> CXTString<T> &CXTString<T>::MakeLower(int start)
{
    map_from<T>(m_text, start, kortools::platform::to_lower);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::MakeUpper(int start)
{
    map_from<T>(m_text, start, kortools::platform::to_upper);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::MakeReverse()
{
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::Trim()
{
    trim_space(*this, Ends::Both);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::Trim(T ch)
{
    trim_character(*this, Ends::Both, ch);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::Trim(T const *set)
{
    trim_set(*this, Ends::Both, set);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::TrimLeft()
{
    trim_space(*this, Ends::Left);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::TrimLeft(T ch)
{
    trim_character(*this, Ends::Left, ch);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::TrimLeft(T const *set)
{
    trim_set(*this, Ends::Left, set);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::TrimRight()
{
    trim_space(*this, Ends::Right);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::TrimRight(T ch)
{
    trim_character(*this, Ends::Right, ch);
    return *this;
}

template <class T> CXTString<T> &CXTString<T>::TrimRight(T const *set)
{
    trim_set(*this, Ends::Right, set);
    return *this;
}

template class CXTString<char>;
template class CXTString<wchar_t>;
