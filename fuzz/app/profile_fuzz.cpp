// SPDX-License-Identifier: MIT
// Values of a profile file, which people and other programs write: any bytes are read as a value,
// which is the same after it has been written.
#include "kortools/platform/profile_text.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace kortools::platform;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
    std::string_view const text(reinterpret_cast<char const *>(data), size);
    if (text.find('\0') != text.npos)
        return 0; // no profile has one
    ProfileValue const value = decode_profile_value(text);
    std::string const written = encode_profile_value(value);
    if (decode_profile_value(written) != value)
        std::abort();
    if (written.find_first_of("\r\n") != written.npos)
        std::abort();
    auto const *const name = std::get_if<std::wstring>(&value);
    if (name && encode_profile_name(*name).find_first_of("\r\n=[];#") != std::string::npos)
        std::abort();
    return 0;
}
