// SPDX-License-Identifier: MIT
// Code pages: conversion between bytes in a numbered Windows code page and wide text.
//
// The numbers and the results are those of Windows on both systems: 0 and 3 are the ANSI page,
// 65001 is UTF-8, unknown numbers fail, what cannot be mapped becomes the best fit or '?',
// malformed UTF-8 becomes U+FFFD. Wide text is the platform's: UTF-16 units on Windows, code points
// on Linux, lone surrogates included.
//
// Thread safe. Pure ASCII text in an ASCII-based page converts without a table or an allocation.
#pragma once

#include "kortools/export.h"

#include <cstddef>

namespace kortools::platform {

inline constexpr unsigned int utf8_code_page = 65001;

// The ANSI page of the process: the system's on Windows; on Linux 65001 when the locale's charset
// is UTF-8 or plain ASCII, else the page of that charset.
KORTOOLS_API unsigned int get_ansi_code_page();

// Makes `page` the ANSI page of this process, for data written under another one; 0 returns to
// the system's. False, and no change, when the page does not exist or does not contain ASCII.
KORTOOLS_API bool set_ansi_code_page(unsigned int page);

bool is_code_page(unsigned int page);

// Converts `size` bytes. With a null `target` only measures. Returns the number of wide characters
// that the whole result has; 0 when size is 0; -1 when the page does not exist, the input is
// larger than INT_MAX, or `capacity` (characters) is too small. Writes no terminator.
long long narrow_to_wide(
    unsigned int page, char const *source, long long size, wchar_t *target, long long capacity);

// The number of wide characters that narrow_to_wide() gives, sooner than by measuring; of malformed
// text it may give more. -1 as above.
long long estimate_wide_length(unsigned int page, char const *source, long long size);

// The mirror image: `length` wide characters to bytes.
long long wide_to_narrow(
    unsigned int page, wchar_t const *source, long long length, char *target, long long capacity);

// Copies the leading ASCII characters to `target`, which has room for `length`, if they are the
// same in the page. Returns how many.
std::size_t narrow_leading_ascii(
    unsigned int page, wchar_t const *source, std::size_t length, char *target);

} // namespace kortools::platform
