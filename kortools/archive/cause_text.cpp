// SPDX-License-Identifier: MIT
#include "kortools/archive/cause_text.h"

#include "kortools/text/string_table.h"

namespace kortools::archive {

CXTString<wchar_t> get_cause_text(
    unsigned int first_text, int cause, CXTString<wchar_t> const &file_name)
{
    CXTString<wchar_t> text = xLoadString(first_text + static_cast<unsigned int>(cause));
    // Continues after each inserted name, so a "%1" in the name stays.
    text.Replace(L"%1", file_name.IsEmpty() ? xLoadString(unnamed_file_text) : file_name);
    return text;
}

} // namespace kortools::archive
