// SPDX-License-Identifier: MIT
// Every text that the library shows, in English and French.
#pragma once

#include <span>

namespace kortools::text {

// %1 is the name of a file; directives with letters are those of CXTString::Format; | separates the
// fields of texts that have several.
struct Text {
    unsigned int id;
    wchar_t const *english;
    wchar_t const *french;
};

// In ascending order of `id`, each at most once.
std::span<Text const> get_texts();

} // namespace kortools::text
