// SPDX-License-Identifier: MIT
// Conversion through an ICU converter, for the pages that no small table can hold: stateful ones
// and those with three or four bytes for a character. Each thread keeps the converter it used last.
#pragma once

#include "kortools/platform/posix/code_page_catalog.h"

namespace kortools::platform {

// Both convert a whole text, only measure with a null `target`, and return -1 when `capacity` is
// too small or the converter cannot be opened.
long long decode_with_converter(
    CodePageEntry const &entry, char const *source, int size, wchar_t *target, int capacity);
long long encode_with_converter(
    CodePageEntry const &entry, wchar_t const *source, int length, char *target, int capacity);

} // namespace kortools::platform
