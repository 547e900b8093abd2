// SPDX-License-Identifier: MIT
#include "kortools/text/wildcard_matcher.h"

#include "kortools/platform/wide_text.h"
#include "kortools/text/part_search.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace kortools::text {
namespace {

std::uint32_t reduce_unit(std::uint32_t unit)
{
    std::uint32_t const byte = unit & 0xFF;
    return byte >= 'a' && byte <= 'z' ? byte - 'a' + 'A' : byte;
}

// What of a character counts where case does not.
std::uint32_t reduce(std::uint32_t ch)
{
    if (ch <= 0xFFFF)
        return reduce_unit(ch);
    return 0x10000 | reduce_unit(platform::high_surrogate_of(ch)) << 8
        | reduce_unit(platform::low_surrogate_of(ch));
}

template <class Char> class Matcher {
public:
    using View = std::basic_string_view<Char>;

    static bool match(View name, View pattern, bool case_sensitive)
    {
        std::size_t i = 0;
        for (; i < name.size() && (i >= pattern.size() || pattern[i] != Char('*')); ++i) {
            if (i >= pattern.size() || !takes(pattern[i], name[i], case_sensitive))
                return false;
        }
        return match_behind_star(name.substr(i), pattern.substr(i));
    }

private:
    static bool takes(Char pattern, Char ch, bool case_sensitive)
    {
        if (pattern == Char('?') || pattern == ch)
            return true;
        return !case_sensitive
            && reduce(static_cast<std::uint32_t>(pattern))
            == reduce(static_cast<std::uint32_t>(ch));
    }

    // The pattern begins with '*', or the name is empty.
    static bool match_behind_star(View name, View pattern)
    {
        while (!name.empty()) {
            pattern.remove_prefix(std::min(pattern.find_first_not_of(Char('*')), pattern.size()));
            std::size_t const star = pattern.find(Char('*'));
            if (pattern.empty())
                return true;
            if (star == View::npos) {
                return name.size() >= pattern.size()
                    && PartSearch<Char>::stands_at(
                        name.substr(name.size() - pattern.size()), pattern);
            }
            View const part = pattern.substr(0, star);
            std::size_t const place = PartSearch<Char>(name, part).find();
            if (place == View::npos)
                return false;
            name.remove_prefix(place + star);
            pattern.remove_prefix(star);
        }
        return pattern.find_first_not_of(Char('*')) == View::npos;
    }
};

bool has_pairs(std::wstring_view text)
{
    return platform::wide_is_utf16 && std::ranges::any_of(text, [](wchar_t ch) {
        return platform::is_surrogate(static_cast<char32_t>(ch));
    });
}

// The text with one element for each character.
std::u32string to_characters(std::wstring_view text)
{
    std::u32string characters;
    for (wchar_t const unit : text) {
        auto const ch = static_cast<char32_t>(unit);
        bool const joins = platform::is_low_surrogate(ch) && !characters.empty()
            && platform::is_high_surrogate(characters.back());
        if (joins)
            characters.back() = platform::join_surrogates(characters.back(), ch);
        else
            characters += ch;
    }
    return characters;
}

} // namespace

bool match_wildcards(std::wstring_view text, std::wstring_view pattern, bool case_sensitive)
{
    if (has_pairs(text) || has_pairs(pattern))
        return Matcher<char32_t>::match(
            to_characters(text), to_characters(pattern), case_sensitive);
    return Matcher<wchar_t>::match(text, pattern, case_sensitive);
}

} // namespace kortools::text
