// SPDX-License-Identifier: MIT
// The code pages that Linux serves: which converter has a page's characters, and how the page
// treats what is malformed.
#pragma once

#include <cstddef>

namespace kortools::platform {

enum class PageKind {
    Table,     // one or two bytes for each character: converted through tables built once
    Converter, // longer or stateful: converted by the converter itself
};

enum class PageBase {
    Ascii, // the bytes 00 to 7F are ASCII wherever a character starts, and encode nothing else
    Other, // stateful pages, EBCDIC and national variants
};

struct CodePageEntry {
    unsigned int page;
    char const *converter; // its name in ICU
    PageKind kind;
    PageBase base;
    char16_t default_character; // what a malformed or unassigned pair decodes to
};

inline constexpr int max_code_pages = 128;

// Null when the page does not exist.
CodePageEntry const *find_code_page(unsigned int page);

// The entry's position in the catalogue, below max_code_pages.
std::size_t get_code_page_index(CodePageEntry const &entry);

// The page of a charset as the C library names it (nl_langinfo(CODESET)); UTF-8 for plain ASCII and
// for a charset without a page.
unsigned int find_charset_page(char const *charset);

} // namespace kortools::platform
