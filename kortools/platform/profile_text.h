// SPDX-License-Identifier: MIT
// The lines of a profile that is a text file, in UTF-8:
//
//   [settings]
//   lastFolder="C:\scenes\50%25 done"
//   windowWidth=1280
//   layout=hex:00ff10
//
// In names and texts "%XX" is an ASCII character in hex digits, and "%uXXXX" a surrogate without a
// partner. Written so are '%', control characters, and in names what would end them. A value
// without quotes that is no number (of 32 bits) and no bytes is a text, as people write them; '%'
// without the digits is itself.
#pragma once

#include "kortools/platform/profile_store.h"

namespace kortools::platform {

std::string encode_profile_name(std::wstring_view name);
std::string encode_profile_file_name(std::wstring_view name); // also without what files cannot have
std::string encode_profile_value(ProfileValue const &value);
ProfileValue decode_profile_value(std::string_view text);

} // namespace kortools::platform
