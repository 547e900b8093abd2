// SPDX-License-Identifier: MIT
// The patterns of file searches, on both systems alike.
//
// '*' is any text and '?' any one character; case does not count. As in the searches of Windows:
//
//   *.*   *     every name, also one without a dot
//   *.          names without a dot
//   a?.c        "ab.c" and also "a.c": a '?' may be nothing in front of a dot and at the end
//   a.*         "a" as well, since a dot in front of '*' and '?' may be nothing at the end
#pragma once

#include <string>
#include <string_view>

namespace kortools::files {

class NamePattern {
public:
    explicit NamePattern(std::wstring_view pattern);

    bool has_wildcards() const { return m_has_wildcards; }
    bool matches(std::wstring_view name) const; // O(length of the name * that of the pattern)

private:
    std::wstring m_pattern; // lower case, with marks for what is special at a dot or at the end
    bool m_has_wildcards;
};

} // namespace kortools::files
