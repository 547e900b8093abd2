// SPDX-License-Identifier: MIT
// How the bytes of a text file stand for characters: the encodings, their marks, where lines end
// and where text may be cut. Pure functions; files are in stdio_file.h and stdio_file_ex.h.
//
// Nothing is refused: malformed bytes become U+FFFD (one for each maximal part of a UTF-8
// sequence, one for half a unit at the end of UTF-16), surrogates without a partner pass through
// UTF-16 and become U+FFFD in UTF-8, what a code page cannot map becomes its best fit or '?'.
#pragma once

#include "kortools/core/xstring.h"

#include <cstddef>
#include <string_view>

enum xTextEncoding : int {
    xTextANSI,          // a code page that contains ASCII; has no mark
    xTextUTF8,          // mark EF BB BF
    xTextUTF16,         // little-endian, mark FF FE
    xTextUTF16BigEndian // mark FE FF
};

namespace kortools::archive {

struct TextFormat {
    xTextEncoding encoding = xTextANSI;
    unsigned int page = 0; // of xTextANSI; 0 is the process's
};

// The bytes in front of marked text; empty for xTextANSI.
std::string_view get_text_mark(xTextEncoding encoding);

// The encoding whose mark `bytes` begins with, xTextANSI when there is none.
xTextEncoding find_text_mark(std::string_view bytes);

// Size in bytes of what a line feed, like every ASCII character, takes: 1 or 2.
std::size_t get_unit_size(xTextEncoding encoding);

// Position of the first line feed at or behind `start`, a multiple of the unit size; npos when
// there is none.
std::size_t find_line_feed(xTextEncoding encoding, std::string_view bytes, std::size_t start);

// True when `bytes` ends with a carriage return.
bool ends_with_return(xTextEncoding encoding, std::string_view bytes);

// Replaces `text`, in its block when that is large enough.
void decode_text(TextFormat const &format, std::string_view bytes, CXTString<wchar_t> &text);

// No encoding needs more bytes for one wide character.
inline constexpr std::size_t max_character_size = 4;

// Writes the bytes of `text` to `target`, which has room for max_character_size each, and returns
// how many.
std::size_t encode_text(TextFormat const &format, std::wstring_view text, char *target);

// The last place at or before `limit` (in [1, bytes.size()]) that is not inside a character; 0 when
// there is none but the beginning.
std::size_t find_cut(TextFormat const &format, std::string_view bytes, std::size_t limit);

// Gives the longest beginning of `bytes` that is at most `room` (at least 2) characters to `text`
// and returns its size in bytes, which is 0 only when there are no bytes.
std::size_t decode_part(
    TextFormat const &format, std::string_view bytes, int room, CXTString<wchar_t> &text);

} // namespace kortools::archive
