// SPDX-License-Identifier: MIT
// Finding characters and texts. Every search is linear in the length of the string.
#include "kortools/core/xstring.h"

#include "kortools/core/character_set.h"
#include "kortools/core/throw.h"
#include "kortools/platform/text_compare.h"

#include <algorithm>
#include <memory>
#include <new>

namespace {

namespace platform = kortools::platform;

constexpr int not_found = -1;

// How the two forms of the forward search see characters.
template <class T> struct ExactCase {
    static T fold(T ch) { return ch; }
    static T const *find(T const *begin, T const *end, T ch)
    {
        if (begin != end && *begin == ch)
            return begin; // a run of the needle's first character
        T const *const found
            = std::char_traits<T>::find(begin, static_cast<std::size_t>(end - begin), ch);
        return found ? found : end;
    }
};

template <class T> struct NoCase {
    static T fold(T ch) { return platform::to_lower(ch); }
    static T const *find(T const *begin, T const *end, T folded)
    {
        return std::find_if(begin, end, [=](T ch) { return fold(ch) == folded; });
    }
};

// The place of `needle` in [begin, end), or null. After a partial match the search goes on at the
// character that differed, so no character is compared more than twice.
template <class Folding, class T>
T const *find_skipping(T const *begin, T const *end, T const *needle)
{
    T const first = Folding::fold(needle[0]);
    while ((begin = Folding::find(begin, end, first)) != end) {
        T const *at = begin + 1;
        T const *expected = needle + 1;
        while (*expected && at != end && Folding::fold(*at) == Folding::fold(*expected)) {
            ++at;
            ++expected;
        }
        if (!*expected)
            return begin;
        if (at == end)
            return nullptr;
        begin = at;
    }
    return nullptr;
}

template <class Folding, class T>
int find_text(std::basic_string_view<T> text, T const *needle, int start, bool end_position)
{
    start = std::max(start, 0);
    if (!needle || !*needle || static_cast<std::size_t>(start) >= text.size())
        return not_found;
    T const *const begin = text.data();
    T const *const found = find_skipping<Folding>(begin + start, begin + text.size(), needle);
    if (!found)
        return not_found;
    long long position = found - begin;
    if (end_position)
        position += static_cast<long long>(std::char_traits<T>::length(needle));
    return static_cast<int>(position);
}

constexpr std::size_t no_position = std::string_view::npos;

// Knuth, Morris and Pratt's search from the end: border[i] is the length of the longest proper
// border of the last i + 1 characters of the needle.
template <class T>
std::size_t find_last_linear(std::basic_string_view<T> text, std::basic_string_view<T> needle)
{
    std::size_t const length = needle.size();
    std::unique_ptr<unsigned int[]> const border(new (std::nothrow) unsigned int[length]());
    if (!border)
        kortools::core::throw_out_of_memory();
    auto const advance = [&](std::size_t matched, T ch) {
        while (matched > 0 && needle[length - 1 - matched] != ch)
            matched = border[matched - 1];
        return matched + (needle[length - 1 - matched] == ch);
    };
    for (std::size_t i = 1; i < length; ++i)
        border[i] = static_cast<unsigned int>(advance(border[i - 1], needle[length - 1 - i]));
    std::size_t matched = 0;
    for (std::size_t i = text.size(); i-- > 0;) {
        matched = advance(matched, text[i]);
        if (matched == length)
            return i;
    }
    return no_position;
}

// The last place of a needle that is not empty. Candidates are compared one by one as long as that
// costs little more than the scan itself.
template <class T>
std::size_t find_last(std::basic_string_view<T> text, std::basic_string_view<T> needle)
{
    std::size_t budget = 4 * text.size() + 256;
    std::size_t const length = needle.size();
    for (std::size_t end = text.size(); end >= length; --end) {
        end = text.substr(0, end).rfind(needle.back());
        if (end == no_position || ++end < length)
            return no_position;
        std::size_t matched = 1;
        while (matched < length && text[end - 1 - matched] == needle[length - 1 - matched])
            ++matched;
        if (matched == length)
            return end - length;
        if (matched > budget)
            return find_last_linear(text, needle);
        budget -= matched;
    }
    return no_position;
}

} // namespace

template <class T> int CXTString<T>::Find(T const *text, int start, bool noCase) const
{
    return noCase ? FindInternalNoCase(text, start, false) : FindInternal(text, start, false);
}

template <class T> int CXTString<T>::FindNoCase(T ch, int start) const
{
    start = std::max(start, 0);
    if (start >= GetLength())
        return not_found;
    T const *const found = NoCase<T>::find(begin() + start, end(), NoCase<T>::fold(ch));
    return found != end() ? static_cast<int>(found - begin()) : not_found;
}

template <class T> int CXTString<T>::FindNoCase(T const *text, int start) const
{
    return FindInternalNoCase(text, start, false);
}

template <class T> int CXTString<T>::FindEndPos(T const *text, int start, bool noCase) const
{
    return noCase ? FindInternalNoCase(text, start, true) : FindInternal(text, start, true);
}

template <class T> int CXTString<T>::FindOneOf(T const *set) const
{
    if (!set)
        return not_found;
    kortools::core::CharacterSet<T> const characters(set);
    T const *const found
        = std::find_if(begin(), end(), [&](T ch) { return characters.contains(ch); });
    return found != end() ? static_cast<int>(found - begin()) : not_found;
}

template <class T> int CXTString<T>::ReverseFind(T ch, int start) const
{
    View const searched = GetView().substr(0, LengthUpTo(start));
    std::size_t const found = searched.rfind(ch);
    return found != View::npos ? static_cast<int>(found) : not_found;
}

template <class T> int CXTString<T>::ReverseFind(T const *text, int start) const
{
    if (!text || !*text)
        return not_found;
    std::size_t const found = find_last(GetView().substr(0, LengthUpTo(start)), View(text));
    return found != no_position ? static_cast<int>(found) : not_found;
}

template <class T> std::size_t CXTString<T>::LengthUpTo(int last) const
{
    return static_cast<std::size_t>(IsIndex(last) ? last + 1LL : GetLength());
}

template <class T> int CXTString<T>::FindInternal(T const *text, int start, bool endPosition) const
{
    return find_text<ExactCase<T>>(GetView(), text, start, endPosition);
}

template <class T>
int CXTString<T>::FindInternalNoCase(T const *text, int start, bool endPosition) const
{
    return find_text<NoCase<T>>(GetView(), text, start, endPosition);
}

template class CXTString<char>;
template class CXTString<wchar_t>;
