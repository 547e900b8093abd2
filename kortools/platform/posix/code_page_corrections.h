// SPDX-License-Identifier: MIT
// Where Windows' code pages differ from the converters that the tables are read from: mostly best
// fits, a similar character in place of one that the page does not have.
#pragma once

#include <string_view>

namespace kortools::platform {

// Both texts are pairs of characters.
struct CodePageCorrections {
    unsigned int page;
    std::u16string_view bytes;       // a byte, and the character that it stands for
    std::u16string_view substitutes; // a character, and the one encoded in its place; sorted
};

// Null when the page needs none.
CodePageCorrections const *find_corrections(unsigned int page);

} // namespace kortools::platform
