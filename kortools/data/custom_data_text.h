// SPDX-License-Identifier: MIT
// The texts in the entries of a custom data container: in three encodings, each text ended by a
// zero or, where a damaged entry has none, by the entry.
#pragma once

#include "kortools/core/xstring.h"

namespace kortools::data {

enum class TextForm { None, UTF16, ANSI, UTF8 };

// The form of one text or of a list of texts. Kinds that are no text have one in legacy mode: the
// oldest streams (2) had narrow texts, the ones after them (1) wide texts.
TextForm get_text_form(unsigned int kind, unsigned int legacy_mode);
TextForm get_list_form(unsigned int kind, unsigned int legacy_mode);

// Both read the text at `at` and return where the next one begins.
unsigned char const *read_text(
    TextForm form, unsigned char const *at, unsigned char const *end, CXTString<wchar_t> &text);
unsigned char const *read_text(TextForm form, unsigned char const *at, unsigned char const *end,
    CXTString<char> &text); // in the ANSI code page

} // namespace kortools::data
