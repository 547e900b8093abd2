// SPDX-License-Identifier: MIT
#include "kortools/platform/key_names.h"

#include <windows.h>

#include <iterator>

namespace kortools::platform {
namespace {

// The keys that share their scan codes with others, of the numeric pad mostly.
bool is_extended(unsigned int virtual_key)
{
    return virtual_key == VK_PAUSE || (virtual_key >= VK_PRIOR && virtual_key <= VK_DOWN)
        || virtual_key == VK_INSERT || virtual_key == VK_DELETE || virtual_key == VK_NUMLOCK
        || virtual_key == VK_DIVIDE;
}

} // namespace

std::wstring get_key_name(unsigned int virtual_key, KeyLanguage)
{
    unsigned int const scan_code = MapVirtualKeyW(virtual_key, MAPVK_VK_TO_VSC);
    unsigned int const key_data
        = (scan_code & 0xFF) << 16 | unsigned(is_extended(virtual_key)) << 24;
    wchar_t name[30] = {};
    GetKeyNameTextW(static_cast<LONG>(key_data), name, int(std::size(name)));
    return name; // the length that the call returns counts a zero for some keys without a name
}

} // namespace kortools::platform
