// SPDX-License-Identifier: MIT
// Case mapping, caseless comparison and collation of the C runtime, with the Windows results in
// the C locale (only A to Z and a to z are cased) and the locale's own in others.
#pragma once

namespace kortools::platform {

char to_lower(char ch);
char to_upper(char ch);
wchar_t to_lower_by_locale(wchar_t ch);
wchar_t to_upper_by_locale(wchar_t ch);

// ASCII letters have the same partners in every locale, but for I and i in Turkish ones. So most
// characters need no call.
inline wchar_t to_lower(wchar_t ch)
{
    if (ch == L'I' || static_cast<unsigned>(ch) > 0x7F)
        return to_lower_by_locale(ch);
    return ch >= L'A' && ch <= L'Z' ? static_cast<wchar_t>(ch | 0x20) : ch;
}

inline wchar_t to_upper(wchar_t ch)
{
    if (ch == L'i' || static_cast<unsigned>(ch) > 0x7F)
        return to_upper_by_locale(ch);
    return ch >= L'a' && ch <= L'z' ? static_cast<wchar_t>(ch & ~0x20) : ch;
}

// Ordinal after lower-casing both sides: bytes as unsigned, wide text by UTF-16 unit on both
// systems. Negative, 0 or positive.
int compare_no_case(char const *a, char const *b);
int compare_no_case(wchar_t const *a, wchar_t const *b);

// By UTF-16 unit on both systems, without case mapping.
int compare_ordinal(wchar_t const *a, wchar_t const *b);

// The order of the current locale's LC_COLLATE category; in the C locale the ordinal one. The
// caseless forms lower-case both sides first.
int collate(char const *a, char const *b);
int collate(wchar_t const *a, wchar_t const *b);
int collate_no_case(char const *a, char const *b);
int collate_no_case(wchar_t const *a, wchar_t const *b);

} // namespace kortools::platform
