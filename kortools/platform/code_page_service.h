// SPDX-License-Identifier: MIT
// What each system contributes to code_pages.h. The portable part above it has already dealt with
// page numbers 0, 1 and 3, UTF-8, size limits and the leading ASCII characters of the text.
#pragma once

namespace kortools::platform {

// The page that the system, or the user's locale, asks for. Constant over the life of the process.
unsigned int get_system_ansi_code_page();

// The page of the console; on Linux the same.
unsigned int get_system_oem_code_page();

// For any page but 0, 1, 3 and UTF-8.
bool has_system_code_page(unsigned int page);

// Converts a text that is not empty in a page that exists. With a null `target` only measures.
// Returns the number of characters, or -1 when `capacity` is too small.
long long convert_from_code_page(
    unsigned int page, char const *source, int size, wchar_t *target, int capacity);
long long convert_to_code_page(
    unsigned int page, wchar_t const *source, int length, char *target, int capacity);

// Provided by the portable part: true for pages in which the bytes 00 to 7F are ASCII wherever a
// character starts, and nothing else but ASCII characters is encoded with them (best fits aside).
// Stateful pages, EBCDIC and national variants are not among them.
bool is_ascii_based(unsigned int page);

} // namespace kortools::platform
