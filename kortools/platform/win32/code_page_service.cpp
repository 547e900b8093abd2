// SPDX-License-Identifier: MIT
#include "kortools/platform/code_page_service.h"

#include <windows.h>

#include <algorithm>

namespace kortools::platform {

unsigned int get_system_ansi_code_page()
{
    static unsigned int const s_page = GetACP();
    return s_page;
}

unsigned int get_system_oem_code_page()
{
    static unsigned int const s_page = GetOEMCP();
    return s_page;
}

bool find_system_code_page(unsigned int page, SystemCodePage &result)
{
    static constexpr unsigned int ascii_based[]
        = { 437, 720, 737, 775, 850, 852, 855, 857, 858, 860, 861, 862, 863, 864, 865, 866, 869,
              874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 10000,
              10006, 10007, 10029, 10081, 20127, 20866, 21866, 28591, 28592, 28593, 28594, 28595,
              28596, 28597, 28598, 28599, 28603, 28605, 51932, 51936, 51949, 54936 };
    result = { page, nullptr, std::ranges::binary_search(ascii_based, page) };
    return page == CP_MACCP || page == CP_SYMBOL || IsValidCodePage(page);
}

long long convert_from_code_page(
    SystemCodePage const &page, char const *source, int size, wchar_t *target, int capacity)
{
    if (target && capacity == 0)
        return -1; // the system would only measure
    int const count
        = MultiByteToWideChar(page.page, 0, source, size, target, target ? capacity : 0);
    return count > 0 ? count : -1;
}

long long convert_to_code_page(
    SystemCodePage const &page, wchar_t const *source, int length, char *target, int capacity)
{
    if (target && capacity == 0)
        return -1; // the system would only measure
    int const count = WideCharToMultiByte(
        page.page, 0, source, length, target, target ? capacity : 0, nullptr, nullptr);
    return count > 0 ? count : -1;
}

} // namespace kortools::platform
