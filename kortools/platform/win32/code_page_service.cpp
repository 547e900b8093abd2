// SPDX-License-Identifier: MIT
#include "kortools/platform/code_page_service.h"

#include <windows.h>

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

bool has_system_code_page(unsigned int page)
{
    return page == CP_MACCP || page == CP_SYMBOL || IsValidCodePage(page);
}

long long convert_from_code_page(
    unsigned int page, char const *source, int size, wchar_t *target, int capacity)
{
    if (target && capacity == 0)
        return -1; // the system would only measure
    int const count = MultiByteToWideChar(page, 0, source, size, target, target ? capacity : 0);
    return count > 0 ? count : -1;
}

long long convert_to_code_page(
    unsigned int page, wchar_t const *source, int length, char *target, int capacity)
{
    if (target && capacity == 0)
        return -1; // the system would only measure
    int const count = WideCharToMultiByte(
        page, 0, source, length, target, target ? capacity : 0, nullptr, nullptr);
    return count > 0 ? count : -1;
}

} // namespace kortools::platform
