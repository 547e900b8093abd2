// SPDX-License-Identifier: MIT
// The beginning or the end of a text, by number of characters, without half of a surrogate pair.
#pragma once

#include "kortools/platform/wide_text.h"

#include <string_view>

namespace kortools::files {

// Whether a cut at `position` parts the two halves of a character.
inline bool cuts_pair(std::wstring_view text, std::size_t position)
{
    using namespace platform;
    return wide_is_utf16 && position > 0 && position < text.size()
        && is_high_surrogate(static_cast<char32_t>(text[position - 1]))
        && is_low_surrogate(static_cast<char32_t>(text[position]));
}

// The first `count` characters, all when there are fewer, none for a count below 1.
inline std::wstring_view cut_text(std::wstring_view text, long long count)
{
    if (count >= static_cast<long long>(text.size()))
        return text;
    auto const length = static_cast<std::size_t>(count > 0 ? count : 0);
    return text.substr(0, length - cuts_pair(text, length));
}

// The last `count` characters, as above.
inline std::wstring_view cut_front(std::wstring_view text, long long count)
{
    if (count >= static_cast<long long>(text.size()))
        return text;
    std::size_t const start = text.size() - static_cast<std::size_t>(count > 0 ? count : 0);
    return text.substr(start + cuts_pair(text, start));
}

} // namespace kortools::files
