// SPDX-License-Identifier: MIT
#include "kortools/platform/message_box.h"

#include "kortools/platform/utf8.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace kortools::platform {

// The C library's wide output depends on a locale that the host may not have set, so the text
// is written as UTF-8, which is what a Linux terminal takes.
void write_to_standard_error(wchar_t const *text)
{
    std::wstring_view const wide = text;
    std::string line(
        static_cast<std::size_t>(encode_utf8(wide.data(), wide.size(), nullptr, 0)), 0);
    encode_utf8(wide.data(), wide.size(), line.data(), line.size());
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace kortools::platform
