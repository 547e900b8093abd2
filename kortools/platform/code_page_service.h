// SPDX-License-Identifier: MIT
// What each system contributes to code_pages.h. The portable part above it has already dealt with
// page numbers 0, 1 and 3, UTF-8, size limits and the leading ASCII characters of the text.
#pragma once

namespace kortools::platform {

// The page that the system, or the user's locale, asks for. Constant over the life of the process.
unsigned int get_system_ansi_code_page();

// The page of the console; on Linux the same.
unsigned int get_system_oem_code_page();

// A page as the system knows it.
struct SystemCodePage {
    unsigned int page;
    void const *entry;   // of the system's own
    bool is_ascii_based; // the bytes 00 to 7F are ASCII wherever a character starts, and nothing
                         // but ASCII is encoded with them (best fits aside)
};

// For any page but 0, 1, 3 and UTF-8; false when the page does not exist.
bool find_system_code_page(unsigned int page, SystemCodePage &result);

// Convert a text that is not empty. With a null `target` they only measure. Return the number of
// characters, or -1 when `capacity` is too small.
long long convert_from_code_page(
    SystemCodePage const &page, char const *source, int size, wchar_t *target, int capacity);
long long convert_to_code_page(
    SystemCodePage const &page, wchar_t const *source, int length, char *target, int capacity);

} // namespace kortools::platform
