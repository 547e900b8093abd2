// SPDX-License-Identifier: MIT
#include "kortools/files/wildcards.h"

#include "kortools/text/wildcard_matcher.h"

using kortools::text::match_wildcards;

bool fileMatchWilcards(
    CXTString<wchar_t> const &name, CXTString<wchar_t> const &pattern, bool caseSensitive)
{
    return match_wildcards(name.GetView(), pattern.GetView(), caseSensitive);
}

bool fileMatchWilcards(
    CXTString<wchar_t> const &name, CHashTable<CXTString<wchar_t>> const &patterns)
{
    if (patterns.GetCount() == 0)
        return false;
    CXTString<wchar_t> lowered = name;
    lowered.MakeLower();
    for (CXTString<wchar_t> const &pattern : patterns) {
        if (match_wildcards(lowered.GetView(), pattern.GetView(), false))
            return true;
    }
    return false;
}
