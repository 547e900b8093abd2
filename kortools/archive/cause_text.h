// SPDX-License-Identifier: MIT
// The texts of exceptions that carry a cause and the name of a file.
#pragma once

#include "kortools/core/xstring.h"

namespace kortools::archive {

// Numbers in the string table of the texts for cause 0; the text of cause n is n entries further.
inline constexpr unsigned int first_file_text = 61856;
inline constexpr unsigned int first_archive_text = 61872;
inline constexpr unsigned int unnamed_file_text = 61446; // stands for an empty name

// The text of `cause` with every "%1" replaced by the name.
CXTString<wchar_t> get_cause_text(
    unsigned int first_text, int cause, CXTString<wchar_t> const &file_name);

} // namespace kortools::archive
