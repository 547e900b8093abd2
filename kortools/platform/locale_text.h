// SPDX-License-Identifier: MIT
// Conversion between narrow and wide text by the process's C locale, one character at a time.
//
// In the "C" locale the bytes 00 to FF are the characters 00 to FF and nothing else converts; in
// any other the C library's own conversion applies.
#pragma once

#include <climits>
#include <cstddef>
#include <cwchar>

namespace kortools::platform {

// Whether the category (LC_CTYPE, ...) is still that of the "C" locale.
bool is_c_locale(int category);

// The most characters that one character becomes in the other width.
inline constexpr std::size_t max_converted_length = MB_LEN_MAX;

// Reads narrow text, up to `end` (null: none) or its terminator, as wide characters. Never reads
// past what the result needs.
class NarrowReader {
public:
    explicit NarrowReader(char const *text, char const *end = nullptr);

    // Stores the next character. Returns 1, 0 at the end of the text, -1 for malformed text.
    int next(wchar_t *result);

private:
    bool is_at_end() const { return m_text == m_end || !*m_text; }

    char const *m_text;
    char const *m_end;
    bool m_is_c_locale;
    std::mbstate_t m_state {};
};

// Reads wide text, up to `end` (null: none) or its terminator, as bytes.
class WideReader {
public:
    explicit WideReader(wchar_t const *text, wchar_t const *end = nullptr);

    // Stores the next character's bytes, at most max_converted_length. Returns their count, 0 at
    // the end of the text, -1 for a character that the locale cannot represent.
    int next(char *result);

private:
    wchar_t const *m_text;
    wchar_t const *m_end;
    bool m_is_c_locale;
    std::mbstate_t m_state {};
};

// White space of the locale; in the "C" locale blank, \t, \n, \v, \f and \r only.
bool is_space(char ch);
bool is_space(wchar_t ch);

// The locale's decimal point; returns its length.
int get_decimal_point(char (&point)[max_converted_length]);
int get_decimal_point(wchar_t (&point)[max_converted_length]);

} // namespace kortools::platform
