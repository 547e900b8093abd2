// SPDX-License-Identifier: MIT
#include "kortools/platform/message_box.h"

#include <cstdio>
#include <string>

namespace kortools::platform {
namespace {

// The C library's wide output depends on a locale that the host may not have set, so the text
// is written as UTF-8, which is what a Linux terminal takes.
void append_utf8(std::string &target, unsigned int ch)
{
    if (ch < 0x80) {
        target += static_cast<char>(ch);
    } else if (ch < 0x800) {
        target += static_cast<char>(0xC0 | (ch >> 6));
        target += static_cast<char>(0x80 | (ch & 0x3F));
    } else if (ch < 0x10000) {
        target += static_cast<char>(0xE0 | (ch >> 12));
        target += static_cast<char>(0x80 | ((ch >> 6) & 0x3F));
        target += static_cast<char>(0x80 | (ch & 0x3F));
    } else {
        target += static_cast<char>(0xF0 | ((ch >> 18) & 0x07));
        target += static_cast<char>(0x80 | ((ch >> 12) & 0x3F));
        target += static_cast<char>(0x80 | ((ch >> 6) & 0x3F));
        target += static_cast<char>(0x80 | (ch & 0x3F));
    }
}

} // namespace

void write_to_standard_error(wchar_t const *text)
{
    std::string line;
    for (; *text != 0; ++text)
        append_utf8(line, static_cast<unsigned int>(*text));
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace kortools::platform
