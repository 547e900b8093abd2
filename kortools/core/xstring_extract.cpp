// SPDX-License-Identifier: MIT
// New strings out of parts of one.
#include "kortools/core/xstring.h"

#include "kortools/core/character_set.h"

#include <algorithm>
#include <utility>

namespace {

// The characters that are in the set, or those that are not.
template <class T>
CXTString<T> filter(CXTString<T> const &text, kortools::core::CharacterSet<T> const &set, bool in)
{
    auto const wanted = [&](T ch) { return set.contains(ch) == in; };
    CXTString<T> result(T(), static_cast<int>(std::count_if(text.begin(), text.end(), wanted)));
    std::copy_if(text.begin(), text.end(), result.GetBuffer(), wanted);
    return result;
}

} // namespace

template <class T> CXTString<T> CXTString<T>::Left(int count) const
{
    return Mid(0, std::max(count, 0));
}

template <class T> CXTString<T> CXTString<T>::Right(int count) const
{
    count = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - count, count);
}

template <class T> CXTString<T> CXTString<T>::Mid(int first, int count) const
{
    first = std::clamp(first, 0, GetLength());
    int const rest = GetLength() - first;
    return CXTString(begin() + first, count < 0 ? rest : std::min(count, rest));
}

template <class T> CXTString<T> CXTString<T>::Tokenize(T const *delimiters, int &position) const
{
    int const start = std::exchange(position, -1);
    if (start < 0 || start >= GetLength() || !delimiters)
        return {};
    kortools::core::CharacterSet<T> const set(delimiters);
    if (set.is_empty())
        return {};
    auto const is_delimiter = [&](T ch) { return set.contains(ch); };
    T const *const token = std::find_if_not(begin() + start, end(), is_delimiter);
    T const *const token_end = std::find_if(token, end(), is_delimiter);
    if (token_end != end())
        position = static_cast<int>(token_end - begin()) + 1;
    return CXTString(token, static_cast<int>(token_end - token));
}

template <class T> CXTString<T> CXTString<T>::SpanIncluding(T const *set) const
{
    return set ? filter(*this, kortools::core::CharacterSet<T>(set), true) : CXTString();
}

template <class T> CXTString<T> CXTString<T>::SpanExcluding(T const *set) const
{
    return set ? filter(*this, kortools::core::CharacterSet<T>(set), false) : CXTString();
}

template class CXTString<char>;
template class CXTString<wchar_t>;
